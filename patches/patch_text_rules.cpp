#include "patches/patch_text_rules.h"

#include "base/ascii.h"
#include "base/number_text.h"

#include <algorithm>
#include <limits>

namespace {

constexpr std::uint64_t BYTES_PER_KILOBYTE = 1024;
constexpr std::uint32_t PREVIEW_ON = 1; // every other value is off
constexpr int MOST = std::numeric_limits<int>::max();

} // namespace

int SizeInKilobytes(const CString& bytes) noexcept
{
    int index = 0;
    while (bytes[index] == L' ' || bytes[index] == L'\t') {
        ++index;
    }
    const std::uint64_t number = ReadDigits(bytes, index, std::numeric_limits<std::uint64_t>::max() - 1);
    return static_cast<int>(std::min<std::uint64_t>(number / BYTES_PER_KILOBYTE, MOST));
}

int DownloadPercentage(double received, std::uint32_t promised) noexcept
{
    if (promised == 0) {
        return received > 0 ? MOST : 0;
    }
    const double percent = received / promised * 100.0;
    return percent >= MOST ? MOST : static_cast<int>(percent);
}

CString CatalogUrlTemplate(const CString& address, std::uint32_t previewMode)
{
    return address + L"?%s" + (previewMode == PREVIEW_ON ? L"&preview=1" : L"");
}

bool IsWebAddress(const CString& address) noexcept
{
    return address.Left(7).CompareNoCase(L"http://") == 0 || address.Left(8).CompareNoCase(L"https://") == 0;
}
