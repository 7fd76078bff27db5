#include "base/name_rules.h"

#include <initializer_list>

namespace {

constexpr int PATH_LIMIT = 240;
constexpr int COMPONENT_LIMIT = 255;

} // namespace

bool IsReservedCharacter(wchar_t character)
{
    return character < 32 || CString(RESERVED_CHARACTERS).Find(character) >= 0;
}

bool EndsInDotOrBlank(const CString& name)
{
    const wchar_t last = name[name.GetLength() - 1];
    return last == L'.' || last == L' ';
}

bool IsPlainRelativePath(const CString& path)
{
    for (int start = 0; start <= path.GetLength();) {
        int end = path.Find(L'\\', start);
        end = end < 0 ? path.GetLength() : end;
        const CString name = path.Mid(start, end - start);
        if (name.IsEmpty() || EndsInDotOrBlank(name) || IsDeviceName(name)) {
            return false;
        }
        for (int index = 0; index < name.GetLength(); ++index) {
            if (IsReservedCharacter(name[index])) {
                return false;
            }
        }
        start = end + 1;
    }
    return true;
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

bool IsSafeFileName(const CString& name)
{
    if (name.IsEmpty() || name.GetLength() > COMPONENT_LIMIT) {
        return false;
    }
    for (int index = 0; index < name.GetLength(); ++index) {
        if (name[index] < 0x20) {
            return false;
        }
    }
    const wchar_t last = name[name.GetLength() - 1];
    return name.FindOneOf(L"\\/:*?\"<>|") < 0 && last != L'.' && last != L' ' && name[0] != L' ' &&
           !IsDeviceName(name);
}

bool IsSafeRelativePath(const CString& path)
{
    if (path.IsEmpty() || path.GetLength() > PATH_LIMIT) {
        return false;
    }
    int start = 0;
    for (;;) {
        const int slash = path.Find(L'\\', start);
        // A name that ends in a dot is refused, so "." and ".." are too.
        if (!IsSafeFileName(path.Mid(start, (slash < 0 ? path.GetLength() : slash) - start))) {
            return false;
        }
        if (slash < 0) {
            return true;
        }
        start = slash + 1;
    }
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
