#include "builder/manifest_text.h"

#include "base/ascii.h"
#include "base/number_text.h"
#include "builder/shown_text.h"

#include <cstring>

namespace {

// manifest = [mark] *(line CR LF)
// line     = "#" anything / 64 lower-case hex digits " " decimal digits " " path
constexpr int HASH_DIGITS = 64;
constexpr long long LARGEST_SIZE = 0x7FFFFFFFFFFFFFFF; // of a file

bool ReadSize(const CString& text, std::uint64_t& size)
{
    const std::optional<long long> number = ReadWholeNumber(text, 0, LARGEST_SIZE);
    size = static_cast<std::uint64_t>(number.value_or(0));
    return number.has_value();
}

bool ReadLine(const CString& line, ManifestEntry& entry)
{
    const int hashEnd = line.Find(L' ');
    const int sizeEnd = hashEnd < 0 ? -1 : line.Find(L' ', hashEnd + 1);
    if (sizeEnd < 0) {
        return false;
    }
    entry.strSha256 = line.Left(hashEnd);
    entry.strPath = NameFromShown(line.Mid(sizeEnd + 1));
    return IsHashText(entry.strSha256) &&
           ReadSize(line.Mid(hashEnd + 1, sizeEnd - hashEnd - 1), entry.size) && !entry.strPath.IsEmpty() &&
           entry.strPath.Find(L'\0') < 0;
}

} // namespace

bool IsHashText(const CString& text)
{
    if (text.GetLength() != HASH_DIGITS) {
        return false;
    }
    for (int index = 0; index < HASH_DIGITS; ++index) {
        // Hashes are compared as texts, which are written with small letters.
        if (!IsHexDigit(text[index]) || (text[index] >= L'A' && text[index] <= L'F')) {
            return false;
        }
    }
    return true;
}

bool ReadManifest(const char* bytes, std::size_t length, std::vector<ManifestEntry>& entries)
{
    entries.clear();
    if (length >= 3 && std::memcmp(bytes, "\xEF\xBB\xBF", 3) == 0) {
        bytes += 3;
        length -= 3;
    }
    while (length > 0) {
        const void* const found = std::memchr(bytes, '\n', length);
        if (!found) {
            return false; // cut off
        }
        const std::size_t lineLength = static_cast<std::size_t>(static_cast<const char*>(found) - bytes);
        CString line = TextFromUtf8(bytes, lineLength);
        line.TrimRight(L"\r");
        bytes += lineLength + 1;
        length -= lineLength + 1;
        ManifestEntry entry;
        if (line[0] == L'#') {
            continue;
        }
        if (!ReadLine(line, entry)) {
            return false;
        }
        entries.push_back(std::move(entry));
    }
    return !entries.empty();
}
