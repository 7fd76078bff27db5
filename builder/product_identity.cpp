#include "builder/product_identity.h"

#include "base/number_text.h"

#include <vector>

namespace {

constexpr std::size_t VERSION_NUMBERS = 4;
constexpr int VERSION_DIGITS = 9;
constexpr std::uint64_t MOST_IN_VERSION = 999'999'999;

// The numbers of a version; empty when it is none.
std::vector<std::uint64_t> ParseVersion(const CString& text)
{
    std::vector<std::uint64_t> numbers;
    for (int index = 0;; ++index) {
        const int start = index;
        numbers.push_back(ReadDigits(text, index, MOST_IN_VERSION));
        const bool isNumber = index > start && index - start <= VERSION_DIGITS;
        if (!isNumber || numbers.size() > VERSION_NUMBERS) {
            return {};
        }
        if (index == text.GetLength()) {
            return numbers;
        }
        if (text[index] != L'.') {
            return {};
        }
    }
}

} // namespace

bool IsInstallerVersion(const CString& text)
{
    return !ParseVersion(text).empty();
}

bool IsVersionComparable(const CString& text)
{
    const std::vector<std::uint64_t> numbers = ParseVersion(text);
    constexpr std::uint64_t MOST[] = {255, 255, 65535};
    for (std::size_t index = 0; index < numbers.size() && index < 3; ++index) {
        if (numbers[index] > MOST[index]) {
            return false;
        }
    }
    return !numbers.empty();
}
