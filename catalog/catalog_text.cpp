#include "catalog/catalog_text.h"

#include <initializer_list>

bool IsPlainText(const CString& text)
{
    for (int index = 0; index < text.GetLength(); ++index) {
        const wchar_t unit = text[index];
        const bool isHigh = unit >= 0xD800 && unit < 0xDC00;
        if (isHigh && text[index + 1] >= 0xDC00 && text[index + 1] < 0xE000) {
            ++index;
        } else if (unit < 0x20 || (unit >= 0x7F && unit < 0xA0) || (unit >= 0xD800 && unit < 0xE000) ||
                   unit >= 0xFFFE) {
            return false;
        }
    }
    return true;
}

bool IsShownText(const CString& text, int limit)
{
    return text.GetLength() <= limit && !IsBlankText(text) && IsPlainText(text);
}

bool IsBlankText(const CString& text)
{
    CString trimmed = text;
    return trimmed.Trim().IsEmpty();
}

CString XmlField(const wchar_t* name, const CString& value)
{
    CString escaped = value;
    escaped.Replace(L"&", L"&amp;");
    escaped.Replace(L"<", L"&lt;");
    escaped.Replace(L">", L"&gt;");
    escaped.Replace(L"\"", L"&quot;");
    return CString(L" ") + name + L"=\"" + escaped + L"\"";
}

CString CXmlFields::Read(const wchar_t* name)
{
    const XmlAttribute* found = nullptr;
    for (const XmlAttribute& attribute : m_attributes) {
        if (attribute.name == name) {
            found = &attribute;
        }
    }
    m_missing = m_missing || !found;
    ++m_read;
    return found ? found->value : CString();
}

bool CCatalogReader::Judge(bool accepted, int line)
{
    if (!accepted && !m_fault) {
        m_fault = {L"refused", line};
    }
    return accepted;
}

bool CCatalogReader::OnElement(const CString& name, const std::vector<XmlAttribute>& attributes, int line)
{
    m_path += (m_path.IsEmpty() ? CString() : CString(L"/")) + name;
    CXmlFields fields(attributes);
    return Judge(OnStart(m_path, fields) && fields.IsComplete(), line);
}

bool CCatalogReader::OnElementEnd()
{
    const CString path = m_path;
    const int slash = m_path.ReverseFind(L'/');
    m_path = m_path.Left(slash < 0 ? 0 : slash);
    return Judge(OnEnd(path), 0);
}

bool CCatalogReader::OnText(const CString& text, int line)
{
    return Judge(IsBlankText(text), line);
}

bool ReadCatalogXml(const char* bytes, std::size_t length, std::size_t limit, CCatalogReader& reader)
{
    return length <= limit && !ReadXml(bytes, length, reader, [](XmlProblem, std::initializer_list<CString>) {
               return CString(L"refused");
           });
}
