// What an administrator adds to a product, written by the pages' own writer on an open database.
#pragma once

#include "msi/user_file_writer.h"

#include <memory>

// Tables that additions need and a bare package lacks, as the host makes them when it opens one.
void MakeAdditionTables(const CString& database);

// Each call fails the test when the writer refuses.
class AddedRows
{
public:
    // For a database without a host around it, whose files have numbers up to `lastSequence`.
    AddedRows(InstallerHandle database, int lastSequence);
    // For a product of a host's.
    explicit AddedRows(CProduct& product);
    ~AddedRows();

    // Each answers the new key.
    CString AddFile(const CString& source, const CString& parent);
    CString AddFolder(const CString& name, const CString& parent);
    CString AddDrive(const CString& drive);
    void RemoveFile(const CString& parent, const CString& key);
    void RemoveFolder(const CString& key);
    void RenameFolder(const CString& parent, const CString& key, const CString& name);

private:
    std::unique_ptr<CProduct> m_product; // a stand-in when there is no host
    CUserFileWriter m_writer;
};
