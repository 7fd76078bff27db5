#include "installer/record.h"

#include <iterator>

unsigned int CopyRecordText(MSIHANDLE record, unsigned int column, CString& text)
{
    // Nearly all texts of a package fit, and are read by one call.
    wchar_t room[256];
    DWORD length = static_cast<DWORD>(std::size(room));
    UINT result = MsiRecordGetStringW(record, column, room, &length);
    if (result == ERROR_SUCCESS) {
        text = CString(room, static_cast<int>(length));
    } else if (result == ERROR_MORE_DATA) {
        CString whole;
        DWORD capacity = length + 1;
        result = MsiRecordGetStringW(record, column, whole.GetBuffer(static_cast<int>(length)), &capacity);
        whole.ReleaseBuffer(result == ERROR_SUCCESS ? static_cast<int>(capacity) : 0);
        if (result == ERROR_SUCCESS) {
            text = whole;
        }
    }
    return result;
}

CString RecordText(MSIHANDLE record, unsigned int column)
{
    CString text;
    static_cast<void>(CopyRecordText(record, column, text));
    return text;
}

unsigned int MakeTextRecord(std::initializer_list<CString> texts, CInstallerHandle& record)
{
    CInstallerHandle made(MsiCreateRecord(static_cast<UINT>(texts.size())));
    if (!made) {
        return ERROR_OUTOFMEMORY; // the call has no other reason, and gives none
    }
    UINT column = 0;
    for (const CString& text : texts) {
        const UINT result = MsiRecordSetStringW(made.get(), ++column, text);
        if (result != ERROR_SUCCESS) {
            return result;
        }
    }
    record = std::move(made);
    return ERROR_SUCCESS;
}
