// Fills the placeholders of a fixed text, a statement above all.
#pragma once

#include "base/string.h"

#include <initializer_list>

// What goes in for one placeholder: a text as it is, up to its first zero, or a number in decimal digits. Borrows the
// text, and so lives no longer than the call that it is made for.
class CStatementValue
{
public:
    CStatementValue(const CString& text) : CStatementValue(text.GetString()) {}
    CStatementValue(const wchar_t* text) : m_text(text), m_length(TextLength(text)) {} // never null
    CStatementValue(int number);

    const wchar_t* GetText() const { return m_text ? m_text : m_digits; }
    int GetLength() const { return m_length; }

private:
    const wchar_t* m_text = nullptr; // null for a number
    int m_length = 0;
    wchar_t m_digits[12] = L""; // room for the least number of 32 bits
};

// Replaces each "%s" and "%d" of the template, in their order, by a value of any length. Nothing is quoted or escaped,
// and values are not searched for placeholders. The value alone decides how it is written: a number behind a "%s" stands
// there in digits. A placeholder without a value stays empty.
[[nodiscard]] CString FillTemplate(const wchar_t* text, std::initializer_list<CStatementValue> values);
