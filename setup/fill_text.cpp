#include "setup/fill_text.h"

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

CString OneLine(const CString& text)
{
    CString line;
    for (int index = 0; index < text.GetLength(); ++index) {
        const bool ends = text[index] == L'\r' || text[index] == L'\n';
        const bool follows = index > 0 && (text[index - 1] == L'\r' || text[index - 1] == L'\n');
        if (!ends) {
            line += text[index];
        } else if (!follows) {
            line += L' ';
        }
    }
    return line;
}

CString HtmlText(const CString& text)
{
    CString html = text;
    html.Replace(L"&", L"&amp;"); // first, as the others bring their own
    html.Replace(L"<", L"&lt;");
    html.Replace(L">", L"&gt;");
    html.Replace(L"\r\n", L"\n");
    html.Replace(L"\n", L"<br>");
    return html;
}
