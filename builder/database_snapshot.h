// Reads a whole installer database.
#pragma once

#include "builder/change_report.h"
#include "installer/handle.h"

#include <objidl.h>

#include <functional>
#include <initializer_list>

// What messages name a failure with: "Reading the table File of C:\...\Zolt.msi".
void CheckInstaller(unsigned int code, const CString& operation, const CString& path);

CInstallerHandle OpenDatabaseToRead(const CString& path);

// Every table with every row, and the streams that belong to no table; uncommitted changes included. `path` names
// the database in messages. `poll` is called now and then and may throw.
DatabaseSnapshot ReadSnapshot(MSIHANDLE database, const CString& path, const std::function<void()>& poll);

// Some tables alone; those that aren't there are left out.
DatabaseSnapshot ReadTables(MSIHANDLE database, const CString& path,
                            std::initializer_list<const wchar_t*> names);

// A column of a fetched record, of any length; counted from 1.
CString ReadRecordField(MSIHANDLE record, UINT field);

// The revision number of the summary information.
CString ReadPackageCode(MSIHANDLE database, const CString& path);
void WritePackageCode(MSIHANDLE database, const CString& packageCode, const CString& path);
