#include "base/fill_text.h"

CString FillText(const CString& text, std::initializer_list<CString> arguments)
{
    CString result;
    for (int index = 0; index < text.GetLength(); ++index) {
        const wchar_t next = text[index] == L'%' ? text[index + 1] : L'\0';
        const int number = next - L'1';
        if (next == L'%') {
            result += L'%';
            ++index;
        } else if (next >= L'1' && next <= L'9' && static_cast<std::size_t>(number) < arguments.size()) {
            result += arguments.begin()[number];
            ++index;
        } else {
            result += text[index];
        }
    }
    return result;
}
