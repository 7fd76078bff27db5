#include "base/name_rules.h"

#include <initializer_list>

namespace {

constexpr int PATH_LIMIT = 240;
constexpr int COMPONENT_LIMIT = 255;

// A name that ends in a dot is none, so "." and ".." aren't either.
bool IsPlainName(const CString& name)
{
    for (int index = 0; index < name.GetLength(); ++index) {
        if (IsReservedCharacter(name[index])) {
            return false;
        }
    }
    return !name.IsEmpty() && !EndsInDotOrBlank(name) && !IsDeviceName(name);
}

// For the names between the backslashes of a path, an empty one included.
template <class Rule>
bool HoldsForEachName(const CString& path, Rule rule)
{
    for (int start = 0; start <= path.GetLength();) {
        const int backslash = path.Find(L'\\', start);
        const int end = backslash < 0 ? path.GetLength() : backslash;
        if (!rule(path.Mid(start, end - start))) {
            return false;
        }
        start = end + 1;
    }
    return true;
}

} // namespace

bool IsReservedCharacter(wchar_t character)
{
    return character < 32 || CString(RESERVED_CHARACTERS).Find(character) >= 0;
}

bool EndsInDotOrBlank(const CString& name)
{
    const CString last = name.Right(1);
    return last == L"." || last == L" ";
}

bool IsDeviceName(const CString& name)
{
    const int dot = name.Find(L'.');
    CString base = dot < 0 ? name : name.Left(dot);
    base.TrimRight(L" ");
    for (const wchar_t* device : {L"CON", L"PRN", L"AUX", L"NUL", L"CONIN$", L"CONOUT$"}) {
        if (base.CompareNoCase(device) == 0) {
            return true;
        }
    }
    const CString port = base.Left(3);
    return base.GetLength() == 4 && (port.CompareNoCase(L"COM") == 0 || port.CompareNoCase(L"LPT") == 0) &&
           CString(L"0123456789\x00B9\x00B2\x00B3").Find(base[3]) >= 0;
}

bool IsPlainRelativePath(const CString& path)
{
    return HoldsForEachName(path, IsPlainName);
}

bool IsSafeFileName(const CString& name)
{
    return IsPlainName(name) && name.GetLength() <= COMPONENT_LIMIT && name[0] != L' ';
}

bool IsSafeRelativePath(const CString& path)
{
    return path.GetLength() <= PATH_LIMIT && HoldsForEachName(path, IsSafeFileName);
}

CString FileNamePart(const CString& text)
{
    CString part = text;
    for (int index = 0; index < part.GetLength(); ++index) {
        if (IsReservedCharacter(part[index])) {
            part.SetAt(index, L'_');
        }
    }
    part.TrimRight(L". ");
    return part;
}
