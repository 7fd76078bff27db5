#include "builder/changes_codes.h"

#include "base/number_text.h"

#include <optional>
#include <string_view>

namespace {

// line   = `    {"file": ` text { `, "` name `": ` ( text | "true" | "false" ) } `, "rows": [` anything
// text   = quote { character | `\"` | `\\` | `\u` 4 hex digits } quote
constexpr std::string_view LINE_START = "    {\"file\": ";

class CLineReader
{
public:
    explicit CLineReader(const CString& line) : m_line(line) {}

    bool Take(const wchar_t* text)
    {
        const CString wanted = text;
        const bool is = m_line.Mid(m_index, wanted.GetLength()) == wanted;
        m_index += is ? wanted.GetLength() : 0;
        return is;
    }

    bool TakeText(CString& text)
    {
        text.Empty();
        if (!Take(L"\"")) {
            return false;
        }
        while (m_index < m_line.GetLength() && m_line[m_index] != L'"') {
            if (!TakeUnit(text)) {
                return false;
            }
        }
        return Take(L"\"");
    }

private:
    bool TakeUnit(CString& text)
    {
        if (m_line[m_index] != L'\\') {
            text += m_line[m_index++];
            return true;
        }
        if (Take(L"\\\"") || Take(L"\\\\")) {
            text += m_line[m_index - 1];
            return true;
        }
        const std::optional<std::uint32_t> code =
            Take(L"\\u") ? ReadHexDigits(m_line, m_index, 4) : std::optional<std::uint32_t>();
        if (!code || *code == 0) { // none of our texts holds a zero
            return false;
        }
        text += static_cast<wchar_t>(*code);
        m_index += 4;
        return true;
    }

    const CString m_line;
    int m_index = 0;
};

bool ReadDatabase(const CString& text, DatabaseCodes& database)
{
    CLineReader line(text);
    if (!line.Take(L"    {\"file\": ") || !line.TakeText(database.strTarget)) {
        return false;
    }
    CString name;
    while (line.Take(L", ") && line.TakeText(name) && line.Take(L": ")) {
        if (name == L"rows") {
            return !database.strTarget.IsEmpty() && !database.strPackageCode.IsEmpty();
        }
        CString value;
        if (!line.Take(L"true") && !line.Take(L"false") && !line.TakeText(value)) {
            return false;
        }
        if (name == L"product") {
            database.strProductName = value;
        } else if (name == L"newPackageCode") {
            database.strPackageCode = value;
        }
    }
    return false;
}

} // namespace

bool ReadDatabaseCodes(const char* bytes, std::size_t length, std::vector<DatabaseCodes>& databases)
{
    databases.clear();
    std::string_view rest(bytes, length);
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : rest.size());
        if (line.substr(0, LINE_START.size()) == LINE_START) {
            databases.emplace_back();
            if (!ReadDatabase(TextFromUtf8(line.data(), line.size()), databases.back())) {
                return false;
            }
        }
    }
    return !databases.empty();
}
