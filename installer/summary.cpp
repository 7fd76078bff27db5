#include "installer/summary.h"

#include <algorithm>

unsigned int CSummary::Open(MSIHANDLE database, unsigned int changes)
{
    return MsiGetSummaryInformationW(database, nullptr, changes, m_summary.put());
}

unsigned int CSummary::ReadText(unsigned int property, CString& text) const
{
    text.Empty();
    UINT type = 0;
    INT number = 0;
    FILETIME time = {};
    DWORD length = 0;
    wchar_t none[1] = {};
    UINT result = MsiSummaryInfoGetPropertyW(m_summary.get(), property, &type, &number, &time, none, &length);
    if (result == ERROR_MORE_DATA) {
        DWORD capacity = ++length;
        result = MsiSummaryInfoGetPropertyW(m_summary.get(), property, &type, &number, &time,
                                            text.GetBuffer(static_cast<int>(capacity)), &capacity);
        text.ReleaseBuffer(result == ERROR_SUCCESS ? -1 : 0);
    }
    return result;
}

unsigned int CSummary::ReadNumber(unsigned int property, int& number) const
{
    UINT type = 0;
    INT value = 0;
    FILETIME time = {};
    DWORD length = 0;
    const UINT result =
        MsiSummaryInfoGetPropertyW(m_summary.get(), property, &type, &value, &time, nullptr, &length);
    number = result == ERROR_SUCCESS ? value : 0;
    return result;
}

unsigned int CSummary::WriteText(unsigned int property, const CString& text)
{
    return MsiSummaryInfoSetPropertyW(m_summary.get(), property, VT_LPSTR, 0, nullptr, text);
}

unsigned int CSummary::Persist()
{
    return MsiSummaryInfoPersist(m_summary.get());
}

CString SummaryText(MSIHANDLE database, unsigned int property)
{
    CSummary summary;
    CString text;
    const bool read =
        summary.Open(database) == ERROR_SUCCESS && summary.ReadText(property, text) == ERROR_SUCCESS;
    return read ? text : CString();
}

int SummaryNumber(MSIHANDLE database, unsigned int property)
{
    CSummary summary;
    int number = 0;
    const bool read =
        summary.Open(database) == ERROR_SUCCESS && summary.ReadNumber(property, number) == ERROR_SUCCESS;
    return read ? number : 0;
}

bool IsSixtyFourBit(MSIHANDLE database)
{
    const CString text = SummaryText(database, SUMMARY_TEMPLATE);
    const CString platform = text.Left(std::max(text.Find(L';'), 0));
    return platform.CompareNoCase(L"x64") == 0 || platform.CompareNoCase(L"Intel64") == 0 ||
           platform.CompareNoCase(L"Arm64") == 0;
}
