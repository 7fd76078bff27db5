#include "slimhtml/file_rules.h"

#include "base/ascii.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace {

constexpr int mostImagePixels = 16 * 1024 * 1024;
constexpr int longestImageSide = 16384;

CString TextFromUtf16(const unsigned char* bytes, std::size_t length, bool bigEndian)
{
    CString text;
    const auto units = static_cast<int>(length / 2);
    wchar_t* buffer = text.GetBuffer(units);
    for (int index = 0; index < units; ++index) {
        const unsigned char* pair = bytes + 2 * static_cast<std::size_t>(index);
        buffer[index] = static_cast<wchar_t>(bigEndian ? pair[0] << 8 | pair[1] : pair[1] << 8 | pair[0]);
    }
    text.ReleaseBuffer(units);
    return text;
}

bool StartsWith(const unsigned char* bytes, std::size_t length, const char* mark,
                std::size_t markLength) noexcept
{
    return length >= markLength && std::memcmp(bytes, mark, markLength) == 0;
}

int BigEndian32(const unsigned char* bytes) noexcept
{
    const std::uint32_t value =
        static_cast<std::uint32_t>(bytes[0]) << 24 | bytes[1] << 16 | bytes[2] << 8 | bytes[3];
    return static_cast<int>(std::min<std::uint32_t>(value, 0x7FFFFFFF));
}

CString ResolvePercents(const CString& source)
{
    std::vector<char> bytes;
    AppendUtf8(bytes, source);
    std::vector<char> resolved;
    for (std::size_t at = 0; at < bytes.size(); ++at) {
        const int high = bytes[at] == '%' && at + 2 < bytes.size() ? HexDigitValue(bytes[at + 1]) : -1;
        const int low = high >= 0 ? HexDigitValue(bytes[at + 2]) : -1;
        if (low < 0) {
            resolved.push_back(bytes[at]);
            continue;
        }
        resolved.push_back(static_cast<char>(high * 16 + low));
        at += 2;
    }
    return TextFromUtf8(resolved.data(), resolved.size());
}

// True when a part of the path is the folder above.
bool LeadsUp(const CString& path)
{
    const CString framed = L"\\" + path + L"\\";
    return framed.Find(L"\\..\\") >= 0;
}

// Percents stay: a path that a program puts into its text is no address.
CString FullImagePath(const CString& source)
{
    CString path = source;
    path.Replace(L'/', L'\\');
    const bool bOnDrive = IsAsciiLetter(path[0]) && path[1] == L':' && path[2] == L'\\';
    const bool bOnServer =
        path[0] == L'\\' && path[1] == L'\\' && path[2] != L'\\' && path[2] != L'?' && path[2] != L'.';
    const int name = bOnDrive ? 3 : 2;
    return (bOnDrive || bOnServer) && path.Find(L':', name) < 0 ? path : CString();
}

} // namespace

CString TextFromFileBytes(const unsigned char* bytes, std::size_t length)
{
    if (StartsWith(bytes, length, "\xFF\xFE", 2)) {
        return TextFromUtf16(bytes + 2, length - 2, false);
    }
    if (StartsWith(bytes, length, "\xFE\xFF", 2)) {
        return TextFromUtf16(bytes + 2, length - 2, true);
    }
    const std::size_t mark = StartsWith(bytes, length, "\xEF\xBB\xBF", 3) ? 3 : 0;
    return TextFromUtf8(reinterpret_cast<const char*>(bytes) + mark, length - mark);
}

bool ReadImageHeader(const unsigned char* bytes, std::size_t length, HtmlSize& size) noexcept
{
    constexpr std::size_t pngHeader = 24;
    constexpr std::size_t gifHeader = 10;
    if (length >= pngHeader && StartsWith(bytes, length, "\x89PNG\r\n\x1A\n", 8) &&
        std::memcmp(bytes + 12, "IHDR", 4) == 0) {
        size = {BigEndian32(bytes + 16), BigEndian32(bytes + 20)};
        return true;
    }
    if (length >= gifHeader &&
        (StartsWith(bytes, length, "GIF87a", 6) || StartsWith(bytes, length, "GIF89a", 6))) {
        size = {bytes[6] | bytes[7] << 8, bytes[8] | bytes[9] << 8};
        return true;
    }
    return false;
}

bool IsReasonableImage(const HtmlSize& size) noexcept
{
    return size.width > 0 && size.height > 0 && size.width <= longestImageSide &&
           size.height <= longestImageSide && size.width <= mostImagePixels / size.height;
}

CString ImagePath(const CString& folder, const CString& source)
{
    if (folder.IsEmpty()) {
        return FullImagePath(source);
    }
    CString path = ResolvePercents(source);
    path.Replace(L'/', L'\\');
    if (path.IsEmpty() || path[0] == L'\\' || path.Find(L':') >= 0 || LeadsUp(path)) {
        return CString();
    }
    return folder + path;
}

HtmlSize DisplaySize(const HtmlImage& image, const HtmlSize& own, int dpi) noexcept
{
    const auto part = [](int value, int factor, int divisor) {
        return static_cast<int>(std::min(static_cast<long long>(value) * factor / std::max(divisor, 1),
                                         static_cast<long long>(longestImageSide)));
    };
    HtmlSize size = own;
    if (image.width > 0 && image.height > 0) {
        size = {image.width, image.height};
    } else if (image.width > 0) {
        size = {image.width, part(own.height, image.width, own.width)};
    } else if (image.height > 0) {
        size = {part(own.width, image.height, own.height), image.height};
    }
    return {std::max(1, part(size.width, dpi, 96)), std::max(1, part(size.height, dpi, 96))};
}
