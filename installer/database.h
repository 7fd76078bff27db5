// An installer database: its file, its tables, its properties. Result 0 is success, anything else the service's code.
#pragma once

#include "base/string.h"
#include "installer/handle.h"

[[nodiscard]] unsigned int OpenDatabase(const CString& path, const wchar_t* mode, CInstallerHandle& database);

[[nodiscard]] bool HasTable(MSIHANDLE database, const wchar_t* table);
// True when the Property table has the row; `value` then holds it.
[[nodiscard]] bool ReadPropertyRow(MSIHANDLE database, const CString& name, CString& value);
// Inserts or changes the row; an empty value deletes it.
[[nodiscard]] unsigned int WritePropertyRow(MSIHANDLE database, const CString& name, const CString& value);
