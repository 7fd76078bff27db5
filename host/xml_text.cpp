#include "host/xml_text.h"

#include "base/number_text.h"

#include <algorithm>

namespace {

bool IsHighSurrogate(wchar_t unit)
{
    return unit >= 0xD800 && unit < 0xDC00;
}

bool IsLowSurrogate(wchar_t unit)
{
    return unit >= 0xDC00 && unit < 0xE000;
}

bool IsSpecialUnit(const CString& text, int index)
{
    const wchar_t unit = text[index];
    if (unit < 0x20 || unit == 0x7F || unit == 0xFFFE || unit == 0xFFFF) {
        return true;
    }
    if (IsHighSurrogate(unit)) {
        return !IsLowSurrogate(text[index + 1]);
    }
    return IsLowSurrogate(unit) && (index == 0 || !IsHighSurrogate(text[index - 1]));
}

void AppendUnitCode(CString& text, wchar_t unit)
{
    text += L"\\u" + HexText(unit, 4, HexLetters::Capital);
}

void AppendMarkup(CString& text, const CString& value)
{
    for (int index = 0; index < value.GetLength(); ++index) {
        switch (const wchar_t unit = value[index]) {
        case L'&':
            text += L"&amp;";
            break;
        case L'<':
            text += L"&lt;";
            break;
        case L'>':
            text += L"&gt;";
            break;
        case L'"':
            text += L"&quot;";
            break;
        default:
            text += unit;
        }
    }
}

} // namespace

bool CanStandInAttribute(const CString& value)
{
    for (int index = 0; index < value.GetLength(); ++index) {
        if (IsSpecialUnit(value, index)) {
            return false;
        }
    }
    return true;
}

CString WithoutSpecialUnits(const CString& value)
{
    if (CanStandInAttribute(value)) {
        return value;
    }
    CString clean = value;
    for (int index = 0; index < value.GetLength(); ++index) {
        if (IsSpecialUnit(value, index)) {
            clean.SetAt(index, L' ');
        }
    }
    return clean;
}

CString EscapeUnits(const CString& value)
{
    CString escaped;
    for (int index = 0; index < value.GetLength(); ++index) {
        if (value[index] == L'\\' || IsSpecialUnit(value, index)) {
            AppendUnitCode(escaped, value[index]);
        } else {
            escaped += value[index];
        }
    }
    return escaped;
}

bool UnescapeUnits(const CString& escaped, CString& value)
{
    value.Empty();
    for (int index = 0; index < escaped.GetLength(); ++index) {
        if (escaped[index] != L'\\') {
            value += escaped[index];
            continue;
        }
        if (escaped[index + 1] != L'u') {
            return false;
        }
        const std::optional<std::uint32_t> unit = ReadHexDigits(escaped, index + 2, 4);
        if (!unit) {
            return false;
        }
        const auto character = static_cast<wchar_t>(*unit);
        value.Append(&character, 1);
        index += 5;
    }
    return true;
}

CXmlText::CXmlText() : m_text(L"<?xml version=\"1.0\" encoding=\"utf-8\"?>\r\n")
{
}

void CXmlText::Indent()
{
    for (std::size_t level = 0; level < m_open.size(); ++level) {
        m_text += L"  ";
    }
}

void CXmlText::EndStartTag()
{
    if (m_inStartTag) {
        m_text += L">\r\n";
        m_inStartTag = false;
    }
}

void CXmlText::OpenElement(const wchar_t* name)
{
    EndStartTag();
    Indent();
    m_text += L"<";
    m_text += name;
    m_open.emplace_back(name);
    m_inStartTag = true;
}

void CXmlText::AddAttribute(const wchar_t* name, const CString& value)
{
    m_text += L" ";
    m_text += name;
    m_text += L"=\"";
    AppendMarkup(m_text, value);
    m_text += L"\"";
}

void CXmlText::AddAnyValues(std::initializer_list<std::pair<const wchar_t*, CString>> values)
{
    const bool plain = std::all_of(values.begin(), values.end(),
                                   [](const auto& value) { return CanStandInAttribute(value.second); });
    for (const auto& [name, value] : values) {
        AddAttribute(name, plain ? value : EscapeUnits(value));
    }
    if (!plain) {
        AddAttribute(L"escaped", L"1");
    }
}

void CXmlText::CloseElement()
{
    const CString name = m_open.back();
    m_open.pop_back();
    if (m_inStartTag) {
        m_text += L"/>\r\n";
        m_inStartTag = false;
        return;
    }
    Indent();
    m_text += L"</";
    m_text += name;
    m_text += L">\r\n";
}
