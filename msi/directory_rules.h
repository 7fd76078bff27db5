// How a Directory row becomes a path: the installer's own rules, for rows that came after its session was asked.
#pragma once

#include "base/string.h"
#include "installer/package_layout.h"
#include "msi/row_columns.h"

#include <map>

// DefaultDir is `[short|]target[:[short|]source]`; "." means the parent's own folder.
// Of the target the long name, of the source the one that the package has. Empty for ".".
[[nodiscard]] CString TargetFolderName(const CString& defaultDir);
[[nodiscard]] CString SourceFolderName(const CString& defaultDir, const PackageLayout& layout);

// With its closing backslash; empty stays empty.
[[nodiscard]] CString WithBackslash(const CString& path);

// What the rules ask of the database.
class IDirectorySource
{
public:
    // Null for an unknown key.
    virtual const DirectoryColumns* FindDirectory(const CString& key) const = 0;
    // A path that is already settled, for instance by a property of the directory's name; empty when there is none.
    virtual CString GetSettledPath(const CString& key) const = 0;

protected:
    ~IDirectorySource() = default;
};

// Empty when the key, or one of its parents, is unknown, or when the parents go round in a circle.
[[nodiscard]] CString ResolveTargetPath(const IDirectorySource& source, const CString& key);
// Source paths below the package's folder, which the root stands for. A compressed package has that folder alone.
[[nodiscard]] CString ResolveSourcePath(const IDirectorySource& source, const CString& key,
                                        const CString& packageFolder, const PackageLayout& layout);
