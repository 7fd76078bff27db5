#include "frame/text_rules.h"

int ReplaceAll(CString& text, const wchar_t* old, const wchar_t* with)
{
    return text.Replace(old, with);
}

CString DoubleAmpersands(const CString& text)
{
    CString doubled(text);
    ReplaceAll(doubled, L"&", L"&&");
    return doubled;
}

void TrimLeft(CString& text)
{
    text.TrimLeft();
}
void TrimRight(CString& text)
{
    text.TrimRight();
}
void TrimLeft(CString& text, const wchar_t* set)
{
    text.TrimLeft(set);
}
void TrimRight(CString& text, const wchar_t* set)
{
    text.TrimRight(set);
}

void SplitText(const CString& text, const wchar_t* separator, std::vector<CString>& list, int, bool trim)
{
    const CString source(text); // `text` may be a piece of `list`
    list.clear();
    const int separatorLength = TextLength(separator);
    for (int start = 0; start < source.GetLength();) {
        const int found = separatorLength > 0 ? source.Find(separator, start) : -1;
        const int end = found < 0 ? source.GetLength() : found;
        CString piece = source.Mid(start, end - start);
        if (trim) {
            piece.Trim();
        }
        if (!trim || !piece.IsEmpty()) {
            list.push_back(piece);
        }
        start = found < 0 ? end : found + separatorLength;
    }
}
