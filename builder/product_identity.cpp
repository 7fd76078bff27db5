#include "builder/product_identity.h"

#include <vector>

namespace {

constexpr std::size_t VERSION_NUMBERS = 4;
constexpr int VERSION_DIGITS = 9;

bool IsDigit(wchar_t unit)
{
    return unit >= L'0' && unit <= L'9';
}

bool IsHexDigit(wchar_t unit)
{
    return IsDigit(unit) || (unit >= L'A' && unit <= L'F') || (unit >= L'a' && unit <= L'f');
}

// The numbers of a version; empty when it is none.
std::vector<long> ParseVersion(const CString& text)
{
    std::vector<long> numbers(1);
    int digits = 0;
    for (int index = 0; index < text.GetLength(); ++index) {
        if (IsDigit(text[index]) && digits < VERSION_DIGITS) {
            numbers.back() = numbers.back() * 10 + (text[index] - L'0');
            ++digits;
        } else if (text[index] == L'.' && digits > 0 && numbers.size() < VERSION_NUMBERS) {
            numbers.push_back(0);
            digits = 0;
        } else {
            return {};
        }
    }
    return digits > 0 ? numbers : std::vector<long>();
}

} // namespace

bool IsBracedGuid(const CString& text)
{
    if (text.GetLength() != 38 || text[0] != L'{' || text[37] != L'}') {
        return false;
    }
    for (int index = 1; index < 37; ++index) {
        const bool hyphen = index == 9 || index == 14 || index == 19 || index == 24;
        if (hyphen ? text[index] != L'-' : !IsHexDigit(text[index])) {
            return false;
        }
    }
    return true;
}

bool IsInstallerVersion(const CString& text)
{
    return !ParseVersion(text).empty();
}

bool IsVersionComparable(const CString& text)
{
    const std::vector<long> numbers = ParseVersion(text);
    constexpr long MOST[] = {255, 255, 65535};
    for (std::size_t index = 0; index < numbers.size() && index < 3; ++index) {
        if (numbers[index] > MOST[index]) {
            return false;
        }
    }
    return !numbers.empty();
}
