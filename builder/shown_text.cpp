#include "builder/shown_text.h"

#include "base/number_text.h"

namespace {

bool IsHighHalf(wchar_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLowHalf(wchar_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

bool IsMarkOfDirection(wchar_t unit)
{
    return unit == 0x061C || unit == 0x200E || unit == 0x200F || (unit >= 0x202A && unit <= 0x202E) ||
           (unit >= 0x2066 && unit <= 0x2069);
}

constexpr int CODE_LENGTH = 8; // `<U+000A>`

bool ReadCode(const CString& text, wchar_t& unit)
{
    if (text.GetLength() != CODE_LENGTH || !(text.Left(3) == L"<U+") || text[CODE_LENGTH - 1] != L'>') {
        return false;
    }
    const std::uint32_t code = ReadHexDigits(text, 3, 4).value_or(0);
    if (code != 0) {
        unit = static_cast<wchar_t>(code);
    }
    return code != 0;
}

} // namespace

bool IsHiddenUnit(const CString& text, int index)
{
    const wchar_t unit = text[index];
    if (IsHighHalf(unit)) {
        return index + 1 >= text.GetLength() || !IsLowHalf(text[index + 1]);
    }
    if (IsLowHalf(unit)) {
        return index == 0 || !IsHighHalf(text[index - 1]);
    }
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || unit == 0x2028 || unit == 0x2029 ||
           IsMarkOfDirection(unit) || unit == 0xFEFF || unit >= 0xFFFE;
}

CString NameFromShown(const CString& shown)
{
    CString name;
    for (int index = 0; index < shown.GetLength(); ++index) {
        wchar_t unit = shown[index];
        if (ReadCode(shown.Mid(index, CODE_LENGTH), unit)) {
            index += CODE_LENGTH - 1;
        }
        name += unit;
    }
    return name;
}

CString ShownText(const CString& text)
{
    CString shown;
    for (int index = 0; index < text.GetLength(); ++index) {
        if (!IsHiddenUnit(text, index)) {
            shown += text[index];
            continue;
        }
        shown += L"<U+" + HexText(text[index], 4, HexLetters::Capital) + L">";
    }
    return shown;
}

CString PlainName(const CString& text)
{
    CString name = text;
    for (int index = 0; index < text.GetLength(); ++index) {
        if (IsHiddenUnit(text, index)) {
            name.SetAt(index, L' ');
        }
    }
    return name.Trim();
}
