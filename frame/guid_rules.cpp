#include "frame/guid_rules.h"

#include "frame/text_rules.h"

namespace {

bool IsHexDigit(wchar_t character)
{
    return (character >= L'0' && character <= L'9') || (character >= L'a' && character <= L'f') ||
           (character >= L'A' && character <= L'F');
}

} // namespace

CString StripGuidBraces(const CString& text)
{
    CString stripped(text);
    TrimLeft(stripped, L"{");
    TrimRight(stripped, L"}");
    return stripped;
}

bool IsUuidForm(const CString& text)
{
    const CString form(L"XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX");
    if (text.GetLength() != form.GetLength()) {
        return false;
    }
    for (int index = 0; index < form.GetLength(); ++index) {
        const bool fits = form[index] == L'X' ? IsHexDigit(text[index]) : text[index] == form[index];
        if (!fits) {
            return false;
        }
    }
    return true;
}

bool GetTarnKeyGuid(const CString& text, CString& guid)
{
    if (text.Find(TARN_KEY_PREFIX) != 0) {
        return false;
    }
    guid = text.Mid(TextLength(TARN_KEY_PREFIX));
    guid.Replace(L'_', L'-');
    return true;
}
