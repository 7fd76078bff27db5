// Databases as the builder reads them: what fails stops the build, with the path in the message.
#pragma once

#include "installer/handle.h"
#include "installer/snapshot.h"

#include <functional>
#include <initializer_list>

// What messages name a failure with: "Reading the table File of C:\...\Zolt.msi".
void CheckInstaller(unsigned int code, const CString& operation, const CString& path);

CInstallerHandle OpenDatabaseToRead(const CString& path);

// Every table with every row, and the streams that belong to no table; uncommitted changes included. A stream stands
// as its size and SHA-256. `path` names the database in messages. `poll` is called now and then and may throw.
DatabaseSnapshot ReadSnapshot(MSIHANDLE database, const CString& path, const std::function<void()>& poll);

// Some tables alone; those that aren't there are left out.
DatabaseSnapshot ReadTables(MSIHANDLE database, const CString& path,
                            std::initializer_list<const wchar_t*> names);

// As what a stream with the bytes of that file stands.
CString DescribeStreamOf(const CString& path);

struct OpenedDatabase
{
    MSIHANDLE hDatabase = 0;
    CString strPath; // names it in messages
};
// As ReadUnequalRows of installer/snapshot.h.
SnapshotPair ReadUnequalRows(const OpenedDatabase& first, const OpenedDatabase& second,
                             const std::set<CString>& whole, const std::function<void()>& poll);

// The revision number of the summary information.
CString ReadPackageCode(MSIHANDLE database, const CString& path);
void WritePackageCode(MSIHANDLE database, const CString& packageCode, const CString& path);
