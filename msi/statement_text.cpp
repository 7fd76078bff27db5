#include "msi/statement_text.h"

#include <algorithm>
#include <iterator>

namespace {

bool IsPlaceholder(const wchar_t* text)
{
    return text[0] == L'%' && (text[1] == L's' || text[1] == L'd');
}

} // namespace

CStatementValue::CStatementValue(int number)
{
    wchar_t* digit = std::end(m_digits) - 1;
    const bool isNegative = number < 0;
    unsigned int rest =
        isNegative ? 0u - static_cast<unsigned int>(number) : static_cast<unsigned int>(number);
    do {
        *--digit = static_cast<wchar_t>(L'0' + rest % 10);
        rest /= 10;
    } while (rest > 0);
    if (isNegative) {
        *--digit = L'-';
    }
    m_length = static_cast<int>(std::end(m_digits) - 1 - digit);
    std::copy_n(digit, m_length, m_digits);
    m_digits[m_length] = L'\0';
}

CString FillTemplate(const wchar_t* text, std::initializer_list<CStatementValue> values)
{
    int longest = TextLength(text);
    for (const CStatementValue& value : values) {
        longest += value.GetLength();
    }
    // One buffer for the whole: statements are built by the ten thousand.
    CString filled;
    wchar_t* end = filled.GetBuffer(longest);
    const wchar_t* const start = end;
    auto value = values.begin();
    while (*text) {
        if (!IsPlaceholder(text)) {
            *end++ = *text++;
            continue;
        }
        if (value != values.end()) {
            end = std::copy_n(value->GetText(), value->GetLength(), end);
            ++value;
        }
        text += 2;
    }
    filled.ReleaseBuffer(static_cast<int>(end - start));
    return filled;
}
