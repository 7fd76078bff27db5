#include "base/guid_text.h"

#include "base/ascii.h"

namespace {

constexpr int GUID_LENGTH = 36;

} // namespace

bool IsGuidForm(const CString& text)
{
    if (text.GetLength() != GUID_LENGTH) {
        return false;
    }
    for (int index = 0; index < GUID_LENGTH; ++index) {
        const bool hyphen = index == 8 || index == 13 || index == 18 || index == 23;
        if (hyphen ? text[index] != L'-' : !IsHexDigit(text[index])) {
            return false;
        }
    }
    return true;
}

bool IsBracedGuid(const CString& text)
{
    return text[0] == L'{' && text.Right(1) == L"}" && IsGuidForm(text.Mid(1, text.GetLength() - 2));
}

CString StripGuidBraces(const CString& text)
{
    CString stripped(text);
    return stripped.TrimLeft(L"{").TrimRight(L"}");
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

bool IsUserKey(const CString& key)
{
    CString guid;
    return GetTarnKeyGuid(key, guid) && IsGuidForm(guid);
}
