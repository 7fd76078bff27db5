#include "catalog/web_address.h"

#include "base/ascii.h"
#include "base/name_rules.h"
#include "base/number_text.h"
#include "catalog/catalog_limits.h"

#include <algorithm>
#include <initializer_list>

namespace {

constexpr int EXTENSION_LENGTH = 4;

// Characters that stand in no address, though they are printable.
constexpr wchar_t NOT_IN_ADDRESSES[] = L"\"<>\\^`{|}";

bool HasAddressCharacters(const CString& address)
{
    for (int index = 0; index < address.GetLength(); ++index) {
        const wchar_t unit = address[index];
        if (unit <= L' ' || unit >= 0x7F || CString(NOT_IN_ADDRESSES).Find(unit) >= 0 ||
            (unit == L'%' && !ReadHexDigits(address, index + 1, 2))) {
            return false;
        }
    }
    return true;
}

// Behind "http://" or "https://"; 0 for any other text.
int SchemeLength(const CString& address)
{
    for (const wchar_t* scheme : {L"http://", L"https://"}) {
        const int length = TextLength(scheme);
        if (address.Left(length).CompareNoCase(scheme) == 0) {
            return length;
        }
    }
    return 0;
}

bool IsHost(const CString& host)
{
    const bool isNumber6 = host.GetLength() > 2 && host[0] == L'[' && host.Right(1) == L"]";
    for (int index = isNumber6 ? 1 : 0; index < host.GetLength() - (isNumber6 ? 1 : 0); ++index) {
        const wchar_t unit = host[index];
        const bool fits = isNumber6 ? IsHexDigit(unit) || unit == L':' || unit == L'.'
                                    : IsAsciiLetter(unit) || IsAsciiDigit(unit) || unit == L'-' ||
                                          unit == L'.' || unit == L'_';
        if (!fits) {
            return false;
        }
    }
    return !host.IsEmpty();
}

// "host" or "host:port".
bool IsAuthority(const CString& authority)
{
    const int bracket = authority.ReverseFind(L']');
    const int colon = authority.Find(L':', bracket + 1);
    if (colon < 0) {
        return IsHost(authority);
    }
    return IsHost(authority.Left(colon)) && ReadWholeNumber(authority.Mid(colon + 1), 1, 65535).has_value();
}

CString Extension(const CString& name)
{
    return name.Right(EXTENSION_LENGTH);
}

} // namespace

bool IsWebAddress(const CString& address, int limit)
{
    const int start = SchemeLength(address);
    if (start == 0 || address.GetLength() > limit || !HasAddressCharacters(address)) {
        return false;
    }
    const int rest = address.Mid(start).FindOneOf(L"/?#");
    return IsAuthority(rest < 0 ? address.Mid(start) : address.Mid(start, rest));
}

CString DownloadName(const CString& address)
{
    const int start = SchemeLength(address);
    const int slash = address.ReverseFind(L'/');
    if (!IsWebAddress(address, FIELD_LIMIT) || address.FindOneOf(L"?#") >= 0 || slash < start) {
        return CString();
    }
    const CString name = address.Mid(slash + 1);
    return IsPatchFileName(name) ? name : CString();
}

bool IsPatchFileName(const CString& name)
{
    for (int index = 0; index < name.GetLength(); ++index) {
        const wchar_t unit = name[index];
        if (!IsAsciiLetter(unit) && !IsAsciiDigit(unit) && unit != L'.' && unit != L'-' && unit != L'_') {
            return false;
        }
    }
    const bool isPatch = Extension(name).CompareNoCase(L".msp") == 0;
    return name.GetLength() > EXTENSION_LENGTH && name.GetLength() <= FILE_NAME_LIMIT &&
           (isPatch || IsProgramName(name)) && name[0] != L'.' && IsSafeFileName(name);
}

bool IsProgramName(const CString& name)
{
    return Extension(name).CompareNoCase(L".exe") == 0;
}

CString UnpackedName(const CString& name)
{
    return name.Left(name.GetLength() - EXTENSION_LENGTH) + L".msp";
}
