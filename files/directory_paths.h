// The display paths of directories and components by their keys: one memory for the whole module.
#pragma once

#include "base/string.h"
#include "include/setup_enums.h"

#include <map>

// By exact comparison of the keys. It outlives a page, so that a later one of the same run finds the paths of earlier ones;
// a tree that loads replaces what was remembered for the keys of its own database.
extern std::map<CString, CString> DirectoryPathCache;

// The remembered path, or the one that the installer resolves, which is remembered then. That one is absolute: the label of
// the installation folder isn't put into it. False when there is none; `path` is empty then.
[[nodiscard]] bool ResolveDirectoryPath(InstallerHandle database, const CString& key, CString& path);

// The display path of something in a folder; empty when it has 260 characters or more. Names are joined as they are: some systems
// take one that begins with two dots for a way upwards.
[[nodiscard]] CString AppendedPath(const CString& folder, const CString& name);
