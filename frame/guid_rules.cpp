#include "frame/guid_rules.h"

#include "frame/text_rules.h"

CString StripGuidBraces(const CString& text)
{
    CString stripped(text);
    TrimLeft(stripped, L"{");
    TrimRight(stripped, L"}");
    return stripped;
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
