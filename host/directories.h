// The directories and features of one product's open database.
#pragma once

#include "host/setup_host.h"
#include "include/directory_manager.h"
#include "msi/directory_rules.h"
#include "msi/msi_rows.h"

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

class CHostDirectoryManager final : public CDirectoryManager, private IDirectorySource
{
public:
    // `packageFolder`: where the vendor's package lies on the media, with backslash.
    CHostDirectoryManager(InstallerHandle database, const CString& packageFolder);

    // Asks an installer session on the open database for all paths. 0, or why there was none: the paths then come
    // from the tables. No other session may be open in the process.
    unsigned int ResolveBySession(const CString& workFolder);

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
