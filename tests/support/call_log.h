// What a recording host was asked, in order. A call reads as in code: `SetDeploymentName(Alpha)`.
#pragma once

#include "base/string.h"

#include <vector>

class CallLog
{
public:
    void Add(const CString& call) { m_calls.push_back(call); }
    void Add(const wchar_t* operation, const CString& argument)
    {
        Add(CString(operation) + L"(" + argument + L")");
    }
    void Clear() { m_calls.clear(); }

    const std::vector<CString>& All() const { return m_calls; }

    // Those that store or change something; questions to the host left out.
    std::vector<CString> Changes() const
    {
        std::vector<CString> changes;
        for (const CString& call : m_calls) {
            for (const wchar_t* verb :
                 {L"Set", L"Load", L"Reload", L"Delete", L"Init", L"Reset", L"Enable"}) {
                if (call.Find(verb) == 0) {
                    changes.push_back(call);
                    break;
                }
            }
        }
        return changes;
    }

    // Calls of one operation.
    std::vector<CString> Of(const wchar_t* operation) const
    {
        const CString start = CString(operation) + L"(";
        std::vector<CString> found;
        for (const CString& call : m_calls) {
            if (call.Find(start) == 0)
                found.push_back(call);
        }
        return found;
    }

private:
    std::vector<CString> m_calls;
};
