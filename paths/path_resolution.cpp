#include "paths/path_resolution.h"

#include "frame/pattern.h"
#include "frame/text_rules.h"

#include <algorithm>
#include <utility>

namespace {

constexpr wchar_t SEPARATOR[] = L";";
// Of TarnDirectoryMap.Flags: the row may stand for the beginning of a path.
constexpr int USABLE_AS_PREFIX = 0x2;

struct InstallerEscape
{
    const wchar_t* escaped;
    const wchar_t* plain;
};
// In this order: what one leaves behind may be another one's.
constexpr InstallerEscape ESCAPES[] = {
    {L"[\\[]", L"["}, {L"[\\]]", L"]"}, {L"[\\{]", L"{"}, {L"[\\}]", L"}"}};

bool StartsWith(const CString& text, const CString& prefix)
{
    const int length = prefix.GetLength();
    return text.GetLength() >= length &&
           std::equal(prefix.GetString(), prefix.GetString() + length, text.GetString());
}

// The key of an entry, and what stands behind it. The odd shapes give what their formulas give:
//   [KEY]rest, text[KEY]rest   what stands in front is lost
//   KEY]rest
//   a]b[KEY                    key "KEY", rest "b[KEY"
//   [KEY                       key "KEY", the whole entry as rest
//   KEY                        the whole entry as both
struct KeyedEntry
{
    CString key;
    CString rest;
};
KeyedEntry SplitEntry(const CString& entry)
{
    const int open = entry.Find(L'[');
    const int close = entry.Find(L']');
    const CString rest = entry.Mid(close + 1);
    return close > open ? KeyedEntry{entry.Mid(open + 1, close - open - 1), rest}
                        : KeyedEntry{entry.Mid(open + 1), rest};
}

} // namespace

bool IsNullPath(const CString& value)
{
    return value.CompareNoCase(NULL_PATH) == 0;
}

CPathResolver::CPathResolver(DirectoryMap directoryMap) : m_directoryMap(std::move(directoryMap))
{
    for (const auto& [key, row] : m_directoryMap) {
        // An empty text stands at the beginning of every path and says nothing about it.
        if ((row->Flags & USABLE_AS_PREFIX) != 0 && !row->LocalString.IsEmpty()) {
            m_prefixes.push_back(row.get());
        }
    }
}

bool CPathResolver::LookupDirectoryKey(const CString& key, CString& text) const
{
    const auto found = m_directoryMap.find(key);
    text = found != m_directoryMap.end() ? found->second->LocalString : CString();
    return found != m_directoryMap.end();
}

bool CPathResolver::SplitDirectoryPrefix(CString& key, CString& rest, const CString& path) const
{
    const CString whole(path); // `path` may be one of the two
    key.Empty();
    rest = whole;
    if (IsDrivePath(whole)) {
        return true;
    }
    // The first row in the order of the keys, not the one with the longest text, and whether or not its text ends at a
    // backslash: what deployments hold was encoded by this order.
    const auto row = std::find_if(m_prefixes.begin(), m_prefixes.end(), [&whole](const auto* candidate) {
        return StartsWith(whole, candidate->LocalString);
    });
    if (row == m_prefixes.end()) {
        return false;
    }
    key = (*row)->Directory_;
    rest = whole.Mid((*row)->LocalString.GetLength());
    rest.Trim(L"\\");
    return true;
}

CString CPathResolver::DecodePathList(const CString& installerForm) const
{
    CString text(installerForm);
    for (const InstallerEscape& escape : ESCAPES) {
        ReplaceAll(text, escape.escaped, escape.plain);
    }
    std::vector<CString> entries;
    SplitText(text, SEPARATOR, entries, 0, true);
    CString value;
    for (const CString& entry : entries) {
        AppendDecoded(value, entry);
    }
    // Of the whole value only: an entry before the last keeps its closing backslash.
    TrimRight(value, SEPARATOR);
    TrimRight(value, L"\\");
    return value;
}

// Of a key that is unknown nothing stays but what stands behind it.
void CPathResolver::AppendDecoded(CString& value, const CString& entry) const
{
    const KeyedEntry parts = SplitEntry(entry);
    CString text;
    if (LookupDirectoryKey(parts.key, text)) {
        value += text;
        if (!parts.rest.IsEmpty()) {
            value += L'\\';
        }
    }
    value += parts.rest;
    value += SEPARATOR;
}

void CPathResolver::EncodePathList(CString& value) const
{
    std::vector<CString> entries;
    SplitText(value, SEPARATOR, entries, 0, true);
    CString encoded;
    for (const CString& entry : entries) {
        CString key, rest;
        SplitDirectoryPrefix(key, rest, entry);
        if (!key.IsEmpty()) {
            encoded += L'[';
            encoded += key;
            encoded += L']';
        }
        encoded += rest;
        // A row without a key that stands for a whole entry leaves nothing of it.
        if (encoded.IsEmpty() || encoded[encoded.GetLength() - 1] != SEPARATOR[0]) {
            encoded += SEPARATOR;
        }
    }
    TrimRight(encoded, SEPARATOR);
    value = encoded;
}
