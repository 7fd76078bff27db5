#include "base/html_text.h"

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
