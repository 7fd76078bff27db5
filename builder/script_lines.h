// The lines of a script for workstations, as they are collected. No window header.
#pragma once

#include "base/string.h"

class CCommandScript
{
public:
    void Line(const CString& line) { m_text += line + L"\r\n"; }
    void Set(const wchar_t* name, const CString& value)
    {
        Line(CString(L"set \"") + name + L"=" + value + L"\"");
    }
    const CString& Text() const { return m_text; }

private:
    CString m_text;
};
