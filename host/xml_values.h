// The checked values of one element. Each Take call reads an attribute by name and notes the first fault; what is
// left at the end is an unknown attribute.
#pragma once

#include "host/xml_events.h"

#include <vector>

class CXmlValues
{
public:
    CXmlValues(const CString& element, const std::vector<XmlAttribute>& attributes, int line);

    // A required text of at most `limit` units, not blank. It is shown and written in one line: a control character in
    // it becomes a blank, as does half a surrogate pair.
    CString ReadText(const wchar_t* name, int limit);
    CString ReadOptionalText(const wchar_t* name, int limit);
    // A value written with CXmlText::AddAnyValue; may be empty. `limit`: units of the plain value.
    CString ReadAnyValue(const wchar_t* name, int limit);
    CString ReadOptionalAnyValue(const wchar_t* name, int limit);
    int ReadNumber(const wchar_t* name, int least, int most);
    int ReadOptionalNumber(const wchar_t* name, int least, int most, int otherwise);
    // {8-4-4-4-12}, given back in upper case.
    CString ReadGuid(const wchar_t* name);
    // A SHA-256: 64 hex digits, lower case.
    CString ReadHash(const wchar_t* name);
    CString ReadLocale(const wchar_t* name);
    // A path below the file's folder: relative, backslashes, no "." or "..", no reserved character or device name.
    CString ReadRelativePath(const wchar_t* name, bool mayBeEmpty);
    CString ReadFileName(const wchar_t* name);
    // The name of a deployment's folder.
    CString ReadFolderName(const wchar_t* name, bool mayBeEmpty);
    // A full path; empty when there is none. Never one that a command couldn't hold in one line.
    CString ReadOptionalPath(const wchar_t* name);
    [[nodiscard]] bool Has(const wchar_t* name) const;
    // Notes a fault of the caller's own.
    void Fail(const CString& message);
    // To be called last: notes attributes that nobody took.
    const XmlFault& Finish();

private:
    const XmlAttribute* Take(const wchar_t* name);
    void CheckLength(const wchar_t* name, const CString& value, int limit);
    CString ReadRequired(const wchar_t* name);

    const CString& m_element;
    const std::vector<XmlAttribute>& m_attributes;
    std::vector<bool> m_taken;
    XmlFault m_fault;
};

// "de", "de-DE", "zh-Hans-CN": two to eight letters, then parts of one to eight letters or digits.
[[nodiscard]] bool IsLocaleName(const CString& text);
// A foreign text as a message shows it: in one line and not at any length.
[[nodiscard]] CString Shown(const CString& value);
