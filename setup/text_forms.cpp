#include "setup/text_forms.h"

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

CString StemInWords(const CString& stem)
{
    CString words;
    for (int index = 0; index < stem.GetLength(); ++index) {
        const bool isCapital = stem[index] >= L'A' && stem[index] <= L'Z';
        if (isCapital && index > 0) {
            words += L' ';
            words += CString(stem[index]).MakeLower();
        } else {
            words += stem[index];
        }
    }
    return words;
}
