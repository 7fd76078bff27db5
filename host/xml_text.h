// Writing XML: elements and attributes into a text of our own layout, one attribute-only element a line. The
// platform's writer would need a stream and a window header for what fits into a page, and the tests on other builds
// write the same files with this.
#pragma once

#include "base/string.h"

#include <initializer_list>
#include <utility>
#include <vector>

class CXmlText
{
public:
    CXmlText();
    void OpenElement(const wchar_t* name); // attributes may follow
    void AddAttribute(const wchar_t* name, const CString& value);
    // Values that can hold any units: when one of them has units that XML can't carry, all of them travel with those as
    // \uXXXX, marked by the element's attribute `escaped`, which CXmlValues::ReadAnyValue understands.
    void AddAnyValues(std::initializer_list<std::pair<const wchar_t*, CString>> values);
    void AddAnyValue(const wchar_t* name, const CString& value) { AddAnyValues({{name, value}}); }
    void CloseElement();
    const CString& GetText() const { return m_text; }

private:
    void EndStartTag();
    void Indent();

    CString m_text;
    std::vector<CString> m_open;
    bool m_inStartTag = false;
};

// True when the value reads back unchanged from an attribute: no controls, no unpaired surrogates.
[[nodiscard]] bool CanStandInAttribute(const CString& value);
// Each of those units as a blank.
[[nodiscard]] CString WithoutSpecialUnits(const CString& value);
[[nodiscard]] CString EscapeUnits(const CString& value);
// False when a backslash isn't followed by what EscapeUnits writes.
[[nodiscard]] bool UnescapeUnits(const CString& escaped, CString& value);
