#include "host/property_names.h"

#include "base/ascii.h"

namespace {

bool IsLetter(wchar_t character)
{
    return IsAsciiLetter(character) || character == L'_';
}

bool Continues(wchar_t character)
{
    return IsLetter(character) || IsAsciiDigit(character) || character == L'.';
}

} // namespace

void ForEachIdentifier(const CString& text, const std::function<void(const CString& name)>& onName)
{
    for (int index = 0; index < text.GetLength();) {
        const int start = index;
        while (index < text.GetLength() && Continues(text[index])) {
            ++index;
        }
        if (index == start) {
            ++index;
        } else if (IsLetter(text[start])) {
            onName(text.Mid(start, index - start));
        }
    }
}
