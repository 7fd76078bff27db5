// What a user adds to a deployment, written as rows: a file, a folder or a drive is a fixed set of rows in several
// tables. Everything hangs on one hidden feature of its own, and each addition has a component with a new GUID.
//
// Every row is written at once. An operation stops at the first row that fails and keeps what it wrote before: nothing is
// rolled back. The table TarnCustomFile, by which a later load finds an addition again, comes last, so that a half
// written addition isn't taken for a whole one.
#pragma once

#include "include/product.h"
#include "msi/row_statements.h"

// True once the user feature is known to be in the database. One flag for the whole module although each product has a
// database of its own: in one run only the first product that lacks the feature gets it. That is on purpose.
extern bool g_bUserFeatureExists;

// Texts may be null where an operation doesn't need them.
class CUserFileWriter
{
public:
    CUserFileWriter() = default;
    CUserFileWriter(CProduct* product, InstallerHandle database) : Product(product), Database(database) {}

    // Adding makes a new key: "TARN_" and a GUID with underscores. A file of exactly 2 GB is refused by the service before
    // any row of its own is written (so are 6 GB, 10 GB, ...); other files above 2 GB are written, and the build refuses
    // them by name.
    [[nodiscard]] bool AddUserFile(const wchar_t* sourcePath, const wchar_t* parentKey, CString& key);
    [[nodiscard]] bool AddUserFolder(const wchar_t* name, const wchar_t* parentKey, CString& key);
    // `drive`: a letter and a colon.
    [[nodiscard]] bool AddUserDrive(const wchar_t* drive, CString& key);

    // Gives a folder another name or a drive another letter. A folder needs its parent's key.
    [[nodiscard]] bool UpdateUserItem(const wchar_t* parentKey, const wchar_t* key, const wchar_t* newName,
                                      bool isDrive);

    [[nodiscard]] bool RemoveUserFile(const wchar_t* parentKey, const wchar_t* key);
    [[nodiscard]] bool RemoveUserFolder(const wchar_t* key);
    [[nodiscard]] bool RemoveUserDrive(const wchar_t* key);

    // Makes sure that the feature is there.
    [[nodiscard]] bool EnsureUserFeature();

    // One row each.
    [[nodiscard]] bool WriteComponent(const CString& component, const CString& guidText,
                                      const CString& directory, MsiRowAction action);
    [[nodiscard]] bool WriteCreateFolder(const CString& directory, const CString& component,
                                         MsiRowAction action);
    [[nodiscard]] bool WriteDirectory(const CString& key, const CString& parent, const CString& defaultDir,
                                      MsiRowAction action);
    [[nodiscard]] bool WriteFeatureComponent(const CString& component, MsiRowAction action);
    // Counts the product's file sequence up for an insert and down for a delete. The size of a source that can't be
    // opened is 0.
    [[nodiscard]] bool WriteFile(const CString& key, const CString& sourcePath, MsiRowAction action);
    [[nodiscard]] bool WriteCustomFile(const CString& component, const CString& source, int flags,
                                       MsiRowAction action);
    [[nodiscard]] bool WriteCustomAction(const CString& actionName, const CString& target,
                                         MsiRowAction action);
    [[nodiscard]] bool WriteSequence(const CString& actionName, MsiRowAction action);

    CProduct* Product = nullptr; // both belong to the host
    InstallerHandle Database = 0;
};
