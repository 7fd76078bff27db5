#include "files/user_items.h"

#include "base/guid_text.h"
#include "msi/msi_rows.h"

#include <set>

namespace {

// Which columns a query selects, for the rows' own reading.
constexpr unsigned int ALL_OF_DIRECTORY = 7;
constexpr unsigned int KEY_ONLY = 1;
constexpr unsigned int COMPONENT_AND_DIRECTORY = 5;
constexpr unsigned int COMPONENT_AND_SOURCE = 3;

using Keys = std::set<CString>;

std::vector<DirectoryColumns> ReadDirectories(InstallerHandle database)
{
    std::vector<DirectoryColumns> rows;
    MsiRowCursor cursor(database, L"SELECT `Directory`,`Directory_Parent`,`DefaultDir` FROM `Directory`",
                        ALL_OF_DIRECTORY);
    for (DirectoryData row; cursor.Next(row); row = {}) {
        rows.push_back(row);
    }
    return rows;
}

Keys ReadActions(InstallerHandle database)
{
    Keys actions;
    MsiRowCursor cursor(database, L"SELECT `Action` FROM `CustomAction`", KEY_ONLY);
    for (CustomActionData row; cursor.Next(row); row = {}) {
        actions.insert(row.Action);
    }
    return actions;
}

Keys ReadAddedComponents(InstallerHandle database)
{
    Keys components;
    MsiRowCursor cursor(database, L"SELECT `Component_` FROM `TarnCustomFile`", KEY_ONLY);
    for (CustomFileData row; cursor.Next(row); row = {}) {
        components.insert(row.Component_);
    }
    return components;
}

// The directory of each component.
std::map<CString, CString> ReadComponents(InstallerHandle database)
{
    std::map<CString, CString> directories;
    MsiRowCursor cursor(database, L"SELECT `Component`,`Directory_` FROM `Component`",
                        COMPONENT_AND_DIRECTORY);
    for (ComponentData row; cursor.Next(row); row = {}) {
        directories.emplace(row.Component, row.Directory_);
    }
    return directories;
}

std::vector<UserFileRow> ReadFiles(InstallerHandle database, const std::map<CString, CString>& components)
{
    std::vector<UserFileRow> files;
    MsiRowCursor cursor(database, L"SELECT * FROM `TarnCustomFile` WHERE `Flags`=0", COMPONENT_AND_SOURCE);
    for (CustomFileData row; cursor.Next(row); row = {}) {
        const auto component = components.find(row.Component_);
        // A key with an apostrophe stands in no statement, so nothing of such a row is ever found again.
        if (component != components.end() && row.Component_.Find(L'\'') < 0) {
            files.push_back({row.Component_, component->second, row.SourceFileName});
        }
    }
    return files;
}

} // namespace

UserItemRows ReadUserItems(InstallerHandle database)
{
    const std::vector<DirectoryColumns> directories = ReadDirectories(database);
    const Keys actions = ReadActions(database);
    const std::map<CString, CString> components = ReadComponents(database);
    Keys usedDirectories;
    for (const CString& component : ReadAddedComponents(database)) {
        const auto found = components.find(component);
        if (found != components.end()) {
            usedDirectories.insert(found->second);
        }
    }

    UserItemRows items;
    for (const DirectoryColumns& row : directories) {
        if (row.Directory_Parent == L"TARGETDIR" && actions.count(row.Directory)) {
            items.drives.push_back(row);
        }
        if (usedDirectories.count(row.Directory) && IsUserKey(row.Directory)) {
            items.folders.emplace(row.Directory, row);
        }
    }
    items.files = ReadFiles(database, components);
    return items;
}
