// Paths of the running program and of its arguments.
#pragma once

#include "base/string.h"

// The full path of the program's file.
CString ProgramFile();

// The folder of the program's file, ending in a backslash.
CString FolderOfProgram();

// Without a backslash, but for a root.
CString CurrentFolder();

// The full path of what a user named, counted from the current folder; the path itself when it can't be resolved.
CString FullPath(const CString& path);

bool FileOrFolderExists(const CString& path);

// Makes the folder with all that lead to it. The empty text, or the system's reason.
[[nodiscard]] CString MakeFolder(const CString& path);
