// Calls that the service seldom refuses, made to fail by the program's own import table for as long as a Refusal lives:
//
//     const Refusal refusal("MsiViewExecute", RefuseToRun);
#pragma once

#include "tests/support/import_redirect.h"

#include <gtest/gtest.h>
#include <msi.h>
#include <msiquery.h>

template <class Function>
struct Refusal : CImportRedirect
{
    Refusal(const char* name, Function function)
        : CImportRedirect(nullptr, name, reinterpret_cast<void*>(function))
    {
        EXPECT_TRUE(IsInPlace()) << name;
    }
};

inline MSIHANDLE WINAPI NoRecord(UINT)
{
    return 0;
}

inline UINT WINAPI RefuseText(MSIHANDLE, UINT, LPCWSTR)
{
    return ERROR_FUNCTION_FAILED;
}

inline UINT WINAPI RefuseToRun(MSIHANDLE, MSIHANDLE)
{
    return ERROR_FUNCTION_FAILED;
}

// Not the code for the end of the rows. The record that it leaves all the same must not be read, and must be closed.
inline UINT WINAPI RefuseToFetch(MSIHANDLE, MSIHANDLE* record)
{
    *record = MsiCreateRecord(3);
    MsiRecordSetStringW(*record, 1, L"of a failed fetch");
    MsiRecordSetInteger(*record, 3, 7);
    return ERROR_FUNCTION_FAILED;
}

inline UINT WINAPI RefuseToRead(MSIHANDLE, UINT, LPWSTR, LPDWORD)
{
    return ERROR_FUNCTION_FAILED;
}
