// The directories and features of one product's open database.
#pragma once

#include "host/setup_host.h"
#include "include/directory_manager.h"
#include "msi/directory_rules.h"
#include "msi/msi_rows.h"

#include <map>
#include <memory>
#include <set>
#include <vector>

class CHostFeatureManager final : public CFeatureManager
{
public:
    explicit CHostFeatureManager(InstallerHandle database) : m_database(database) {}
    // Asks the database each time: a page adds features by itself.
    CFeature* FindFeature(const CString& name) override;

private:
    InstallerHandle m_database;
    CFeature m_feature; // stands for every feature: nobody asks it anything
};

// Target paths by directory.
using SessionTargets = std::map<CString, CString>;

// Asks an installer session for the target paths of a package that nothing else has open. 0, or why there was no session.
// No other session may be open in the process. The session gets a database object of its own: what is equal to one of its
// properties' values is lost when some versions of the service write it through the same object later.
[[nodiscard]] unsigned int ReadSessionTargets(const CString& package, const CString& packageFolder,
                                              SessionTargets& targets);

class CHostDirectoryManager final : public CDirectoryManager, private IDirectorySource
{
public:
    // `packageFolder`: where the vendor's package lies on the media, with backslash.
    CHostDirectoryManager(InstallerHandle database, const CString& packageFolder);

    // The paths that a session resolved, for the rows as they stand now; the others come from the tables.
    void SetSessionTargets(const SessionTargets& targets);

    bool GetTargetPath(const wchar_t* directory, wchar_t* buffer, unsigned int* size) override;
    bool GetSourcePath(const wchar_t* directory, wchar_t* buffer, unsigned int* size) override;
    const DirectoryMap& GetDirectories() override;

    // The target path of a key as the database stands now; empty when it can't be read. `known` says whether there
    // is such a directory.
    CString FindTargetPath(const CString& key, bool& known);

private:
    struct Row
    {
        std::unique_ptr<DirectoryData> data;
        // What the session answered for the row as it was then; empty when it wasn't asked.
        CString sessionTarget;
    };

    const DirectoryColumns* FindDirectory(const CString& key) const override;
    CString GetSettledPath(const CString& key) const override;
    void ReadRows();
    void ReadProperties();
    void Retire(Row& row);
    void ForgetBelow(const CString& key);

    InstallerHandle m_database;
    CString m_packageFolder;
    PackageLayout m_layout;
    std::map<CString, Row> m_rows;
    std::map<CString, CString> m_properties;               // that settle a directory
    std::vector<std::unique_ptr<DirectoryData>> m_retired; // pages may still point at them
    DirectoryMap m_entries;
};
