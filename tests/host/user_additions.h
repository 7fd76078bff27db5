// Additions as the pages write them: the same rows in the same tables, on an open database.
#pragma once

#include "tests/host/build_fixture.h"

// Tables that additions need and the fixture's product lacks, as the host makes them when it opens a package.
void MakeAdditionTables(const CString& database);

class UserAdditionRows
{
public:
    // `lastSequence`: the highest number of the product's files. The database stays the caller's.
    UserAdditionRows(InstallerHandle database, int lastSequence)
        : m_database(database), m_sequence(lastSequence)
    {
    }

    // Each answers the new key.
    CString AddFile(const CString& source, const CString& parent);
    CString AddFolder(const CString& name, const CString& parent);
    CString AddDrive(const CString& drive);
    void RemoveFile(const CString& parent, const CString& key);

private:
    void EnsureFeature();
    void AddComponent(const CString& key, const CString& directory);
    void Run(const CString& statement, const CString* bound = nullptr);

    InstallerHandle m_database;
    int m_sequence;
    bool m_featureWritten = false;
};
