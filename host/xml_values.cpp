#include "host/xml_values.h"

#include "base/ascii.h"
#include "base/character.h"
#include "base/guid_text.h"
#include "base/name_rules.h"
#include "base/number_text.h"
#include "builder/build_names.h"
#include "builder/manifest_text.h"
#include "builder/product_identity.h"
#include "host/host_messages.h"
#include "host/xml_limits.h"
#include "host/xml_text.h"

#include <algorithm>
#include <set>

bool IsLocaleName(const CString& text)
{
    if (text.GetLength() > 84) {
        return false;
    }
    int start = 0;
    for (int part = 0;; ++part) {
        const int hyphen = text.Find(L'-', start);
        const int end = hyphen < 0 ? text.GetLength() : hyphen;
        const int length = end - start;
        if (length < (part == 0 ? 2 : 1) || length > 8) {
            return false;
        }
        for (int index = start; index < end; ++index) {
            if (!IsAsciiLetter(text[index]) && (part == 0 || !IsAsciiDigit(text[index]))) {
                return false;
            }
        }
        if (hyphen < 0) {
            return true;
        }
        start = hyphen + 1;
    }
}

CString Shown(const CString& value)
{
    constexpr int SHOWN_LIMIT = 200;
    const CString shown = WithoutSpecialUnits(value.Left(SHOWN_LIMIT));
    return value.GetLength() > SHOWN_LIMIT ? shown + L"..." : shown;
}

CXmlValues::CXmlValues(const CString& element, const std::vector<XmlAttribute>& attributes, int line)
    : m_element(element), m_attributes(attributes), m_taken(attributes.size())
{
    m_fault.line = line;
    std::set<CString> names;
    for (const XmlAttribute& attribute : attributes) {
        if (!names.insert(attribute.name).second) {
            Fail(HostSentence(HostText::XmlRepeatedAttribute, {Shown(attribute.name), element}));
        }
    }
}

void CXmlValues::Fail(const CString& message)
{
    if (!m_fault) {
        m_fault.message = message;
    }
}

bool CXmlValues::Has(const wchar_t* name) const
{
    return std::any_of(m_attributes.begin(), m_attributes.end(),
                       [&](const XmlAttribute& attribute) { return attribute.name == name; });
}

const XmlAttribute* CXmlValues::Take(const wchar_t* name)
{
    for (std::size_t index = 0; index < m_attributes.size(); ++index) {
        if (m_attributes[index].name == name) {
            m_taken[index] = true;
            return &m_attributes[index];
        }
    }
    return nullptr;
}

CString CXmlValues::ReadRequired(const wchar_t* name)
{
    const XmlAttribute* attribute = Take(name);
    if (!attribute) {
        Fail(HostSentence(HostText::XmlMissingAttribute, {name, m_element}));
        return CString();
    }
    return attribute->value;
}

void CXmlValues::CheckLength(const wchar_t* name, const CString& value, int limit)
{
    if (value.GetLength() > limit) {
        Fail(HostSentence(HostText::ValueTooLong, {name, NumberText(limit)}));
    }
}

CString CXmlValues::ReadText(const wchar_t* name, int limit)
{
    CString value = WithoutSpecialUnits(ReadRequired(name));
    CString trimmed = value;
    if (!m_fault && trimmed.Trim().IsEmpty()) {
        Fail(HostSentence(HostText::ValueEmpty, {name}));
    }
    CheckLength(name, value, limit);
    return value;
}

CString CXmlValues::ReadOptionalText(const wchar_t* name, int limit)
{
    const XmlAttribute* attribute = Take(name);
    const CString value = attribute ? WithoutSpecialUnits(attribute->value) : CString();
    CheckLength(name, value, limit);
    return value;
}

CString CXmlValues::ReadAnyValue(const wchar_t* name, int limit)
{
    CString value = ReadRequired(name);
    if (ReadOptionalNumber(L"escaped", 0, 1, 0) == 1) {
        CString plain;
        if (!UnescapeUnits(value, plain)) {
            Fail(HostSentence(HostText::ValueBadEscape, {name}));
        }
        value = plain;
    }
    CheckLength(name, value, limit);
    return value;
}

CString CXmlValues::ReadOptionalAnyValue(const wchar_t* name, int limit)
{
    return Has(name) ? ReadAnyValue(name, limit) : CString();
}

int CXmlValues::ReadNumber(const wchar_t* name, int least, int most)
{
    const CString text = ReadRequired(name);
    const std::optional<long long> number = ReadWholeNumber(text, least, most);
    if (!number) {
        Fail(
            HostSentence(HostText::ValueNotNumber, {name, Shown(text), NumberText(least), NumberText(most)}));
    }
    return static_cast<int>(number.value_or(least));
}

int CXmlValues::ReadOptionalNumber(const wchar_t* name, int least, int most, int otherwise)
{
    const XmlAttribute* attribute = Take(name);
    return attribute ? ReadNumber(name, least, most) : otherwise;
}

CString CXmlValues::ReadGuid(const wchar_t* name)
{
    CString value = ReadRequired(name);
    if (!IsBracedGuid(value)) {
        Fail(HostSentence(HostText::ValueNotGuid, {name, Shown(value)}));
    }
    return value.MakeUpper();
}

CString CXmlValues::ReadHash(const wchar_t* name)
{
    const CString value = ReadRequired(name);
    if (!IsHashText(value)) {
        Fail(HostSentence(HostText::ValueNotHash, {name, Shown(value)}));
    }
    return value;
}

CString CXmlValues::ReadLocale(const wchar_t* name)
{
    const CString value = ReadRequired(name);
    if (!IsLocaleName(value)) {
        Fail(HostSentence(HostText::ValueNotLocale, {name, Shown(value)}));
    }
    return value;
}

CString CXmlValues::ReadRelativePath(const wchar_t* name, bool mayBeEmpty)
{
    const CString value = ReadRequired(name);
    if (!(mayBeEmpty && value.IsEmpty()) && !IsSafeRelativePath(value)) {
        Fail(HostSentence(HostText::ValueNotRelative, {name, Shown(value)}));
    }
    return value;
}

CString CXmlValues::ReadFileName(const wchar_t* name)
{
    const CString value = ReadRequired(name);
    if (!IsSafeFileName(value)) {
        Fail(HostSentence(HostText::ValueNotFileName, {name, Shown(value)}));
    }
    return value;
}

CString CXmlValues::ReadFolderName(const wchar_t* name, bool mayBeEmpty)
{
    const CString value = mayBeEmpty && !Has(name) ? CString() : ReadRequired(name);
    const bool possible = IsSafeFileName(value) && CanStandInAttribute(value);
    if (!(mayBeEmpty && value.IsEmpty()) && !possible) {
        Fail(HostSentence(HostText::ValueNotFolderName, {name, Shown(value)}));
    }
    return value;
}

CString CXmlValues::ReadOptionalPath(const wchar_t* name)
{
    const CString value = Has(name) ? ReadRequired(name) : CString();
    if (!CanStandInAttribute(value)) {
        Fail(HostSentence(HostText::ValueHoldsControl, {name, Shown(value)}));
    }
    CheckLength(name, value, FULL_PATH_LIMIT);
    return value;
}

const XmlFault& CXmlValues::Finish()
{
    for (std::size_t index = 0; index < m_attributes.size(); ++index) {
        if (!m_taken[index]) {
            Fail(HostSentence(HostText::XmlUnknownAttribute, {Shown(m_attributes[index].name), m_element}));
        }
    }
    return m_fault;
}
