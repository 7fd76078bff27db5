// The rows of what an administrator added, read in one pass a table.
#pragma once

#include "include/setup_enums.h"
#include "msi/row_columns.h"

#include <map>
#include <vector>

struct UserFileRow
{
    CString component;
    CString directory;
    CString source;
};

struct UserItemRows
{
    std::vector<DirectoryColumns> drives; // directories below TARGETDIR that an action of their name sets
    std::map<CString, DirectoryColumns>
        folders; // directories of all additions, files' too, by key; added ones alone
    std::vector<UserFileRow> files;
};

// What can't be read is missing. The rows and their order are those of joins of the tables, and of a look-up of each file's
// component, at a small part of their cost: joins take seconds for thousands of additions.
[[nodiscard]] UserItemRows ReadUserItems(InstallerHandle database);
