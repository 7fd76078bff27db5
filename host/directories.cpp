#include "host/directories.h"

#include "base/path_text.h"
#include "host/silent_installer.h"
#include "installer/database.h"
#include "installer/missing_tables.h"
#include "installer/query.h"
#include "installer/record.h"
#include "installer/summary.h"
#include "msi/msi_property.h"

#include <msiquery.h>

#include <algorithm>

namespace {

constexpr int ACTION_SET_DIRECTORY = 51; // the type of a custom action that sets a property from a text
constexpr int ACTION_TYPE_MASK = 0x3F;

bool CopyPath(const CString& path, wchar_t* buffer, unsigned int* size)
{
    if (path.IsEmpty() || !size) {
        return false;
    }
    const unsigned int needed = static_cast<unsigned int>(path.GetLength());
    const bool fits = buffer && *size > needed;
    if (fits) {
        std::copy_n(path.GetString(), needed + 1, buffer);
    }
    *size = needed;
    return fits;
}

unsigned int OpenSession(InstallerHandle database, const CString& packageFolder, CInstallerHandle& session)
{
    CString name;
    name.Format(L"#%lu", database);
    UINT result = MsiOpenPackageExW(name, MSIOPENPACKAGEFLAGS_IGNOREMACHINESTATE, session.put());
    if (result != ERROR_SUCCESS) {
        return result;
    }
    // The working copy lies elsewhere than the files that go with the package.
    MsiSetPropertyW(session.get(), L"SourceDir", packageFolder);
    for (const wchar_t* action : {L"CostInitialize", L"FileCost", L"CostFinalize"}) {
        result = MsiDoActionW(session.get(), action);
        if (result != ERROR_SUCCESS) {
            return result;
        }
    }
    return ERROR_SUCCESS;
}

} // namespace

CFeature* CHostFeatureManager::FindFeature(const CString& name)
{
    bool found = false;
    const unsigned int result =
        ForEachRow(m_database, L"SELECT `Feature` FROM `Feature` WHERE `Feature`=?", {name}, [&](MSIHANDLE) {
            found = true;
            return false;
        });
    return result == ERROR_SUCCESS && found ? &m_feature : nullptr;
}

CHostDirectoryManager::CHostDirectoryManager(InstallerHandle database, const CString& packageFolder)
    : m_database(database), m_packageFolder(packageFolder),
      m_layout(LayoutOf(SummaryNumber(database, SUMMARY_WORD_COUNT)))
{
    ReadRows();
    ReadProperties();
}

unsigned int ReadSessionTargets(const CString& package, const CString& packageFolder, SessionTargets& targets)
{
    const CSilentInstaller silent;
    CInstallerHandle database;
    unsigned int result = OpenDatabase(package, MSIDBOPEN_TRANSACT, database);
    CString table;
    if (result == ERROR_SUCCESS) {
        result = AddMissingTables(database.get(), table); // costing asks for them
    }
    CInstallerHandle session;
    if (result == ERROR_SUCCESS) {
        result = OpenSession(database.get(), packageFolder, session);
    }
    if (result != ERROR_SUCCESS) {
        return result;
    }
    const CString workFolder = ParentFolder(package);
    return ForEachRow(database.get(), L"SELECT `Directory` FROM `Directory`", {}, [&](MSIHANDLE record) {
        const CString key = RecordText(record, 1);
        CString target;
        // A directory without a path here is resolved by its rows; the working copy's folder is nobody's target.
        if (GetInstallerText(session.get(), key, target, MsiGetTargetPathW) &&
            target.Left(workFolder.GetLength()).CompareNoCase(workFolder) != 0) {
            targets[key] = target;
        }
        return true;
    });
}

void CHostDirectoryManager::SetSessionTargets(const SessionTargets& targets)
{
    for (const auto& [key, target] : targets) {
        const auto row = m_rows.find(key);
        if (row != m_rows.end()) {
            row->second.sessionTarget = target;
        }
    }
}

void CHostDirectoryManager::Retire(Row& row)
{
    m_retired.push_back(std::move(row.data));
}

// The session's answer for a directory holds only while all the rows above it stay.
void CHostDirectoryManager::ForgetBelow(const CString& key)
{
    for (auto& [name, row] : m_rows) {
        if (row.data->Directory_Parent == key && name != key && !row.sessionTarget.IsEmpty()) {
            row.sessionTarget.Empty();
            ForgetBelow(name);
        }
    }
}

void CHostDirectoryManager::ReadRows()
{
    std::set<CString> seen;
    std::vector<CString> changed;
    const unsigned int result =
        ForEachRow(m_database, L"SELECT `Directory`,`Directory_Parent`,`DefaultDir` FROM `Directory`", {},
                   [&](MSIHANDLE record) {
                       DirectoryData data;
                       data.Directory = RecordText(record, 1);
                       data.Directory_Parent = RecordText(record, 2);
                       data.DefaultDir = RecordText(record, 3);
                       seen.insert(data.Directory);
                       Row& row = m_rows[data.Directory];
                       if (row.data && row.data->Directory_Parent == data.Directory_Parent &&
                           row.data->DefaultDir == data.DefaultDir) {
                           return true;
                       }
                       if (row.data) {
                           changed.push_back(data.Directory);
                           Retire(row);
                       }
                       row.data = std::make_unique<DirectoryData>(data);
                       row.sessionTarget.Empty();
                       return true;
                   });
    if (result != ERROR_SUCCESS) {
        return; // the table can't be read now; what was known stays
    }
    for (auto row = m_rows.begin(); row != m_rows.end();) {
        if (seen.count(row->first)) {
            ++row;
            continue;
        }
        changed.push_back(row->first);
        Retire(row->second);
        row = m_rows.erase(row);
    }
    for (const CString& key : changed) {
        ForgetBelow(key);
    }
}

void CHostDirectoryManager::ReadProperties()
{
    m_properties.clear();
    unsigned int result =
        ForEachRow(m_database, L"SELECT `Property`,`Value` FROM `Property`", {}, [&](MSIHANDLE record) {
            const CString name = RecordText(record, 1);
            if (m_rows.count(name)) {
                m_properties[name] = RecordText(record, 2);
            }
            return true;
        });
    // A drive that a user added is a directory of that name which an action sets.
    result = ForEachRow(
        m_database, L"SELECT `Type`,`Source`,`Target` FROM `CustomAction`", {}, [&](MSIHANDLE record) {
            const CString name = RecordText(record, 2);
            const CString target = RecordText(record, 3);
            const bool sets = (MsiRecordGetInteger(record, 1) & ACTION_TYPE_MASK) == ACTION_SET_DIRECTORY;
            if (sets && m_rows.count(name) && target.GetLength() == 2 && target[1] == L':') {
                m_properties[name] = target;
            }
            return true;
        });
    static_cast<void>(result); // a package without custom actions has no such drives
}

const DirectoryColumns* CHostDirectoryManager::FindDirectory(const CString& key) const
{
    const auto row = m_rows.find(key);
    return row == m_rows.end() ? nullptr : row->second.data.get();
}

CString CHostDirectoryManager::GetSettledPath(const CString& key) const
{
    const auto property = m_properties.find(key);
    if (property != m_properties.end() && property->second.Find(L'[') < 0) {
        return property->second;
    }
    const auto row = m_rows.find(key);
    if (row != m_rows.end() && !row->second.sessionTarget.IsEmpty()) {
        return row->second.sessionTarget;
    }
    if (key == L"TARGETDIR") {
        // The session's own rule is the drive with the most space; the system's drive is what a workstation has.
        wchar_t windows[MAX_PATH] = {};
        GetWindowsDirectoryW(windows, MAX_PATH);
        return CString(windows, 2) + L"\\";
    }
    return CString();
}

const CDirectoryManager::DirectoryMap& CHostDirectoryManager::GetDirectories()
{
    ReadRows();
    ReadProperties();
    for (auto entry = m_entries.begin(); entry != m_entries.end();) {
        entry = m_rows.count(entry->first) ? std::next(entry) : m_entries.erase(entry);
    }
    for (const auto& [key, row] : m_rows) {
        m_entries[key] = {row.data.get(), ResolveTargetPath(*this, key),
                          ResolveSourcePath(*this, key, m_packageFolder, m_layout)};
    }
    return m_entries;
}

CString CHostDirectoryManager::FindTargetPath(const CString& key, bool& known)
{
    ReadRows();
    ReadProperties();
    known = m_rows.count(key) != 0;
    return ResolveTargetPath(*this, key);
}

bool CHostDirectoryManager::GetTargetPath(const wchar_t* directory, wchar_t* buffer, unsigned int* size)
{
    if (!m_rows.count(directory)) {
        GetDirectories();
    }
    return CopyPath(ResolveTargetPath(*this, directory), buffer, size);
}

bool CHostDirectoryManager::GetSourcePath(const wchar_t* directory, wchar_t* buffer, unsigned int* size)
{
    if (!m_rows.count(directory)) {
        GetDirectories();
    }
    return CopyPath(ResolveSourcePath(*this, directory, m_packageFolder, m_layout), buffer, size);
}
