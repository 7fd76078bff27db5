// The system's dialog for opening a file.
#pragma once

#include "base/string.h"

#include <windows.h>

#include <initializer_list>

struct FileDialog
{
    CString title;
    CString filter;     // of FileFilter
    CString folder;     // that it begins in; empty for the system's choice
    DWORD flags = 0;    // OFN_...
    DWORD capacity = 0; // characters for the picked path, the closing zero included
};

// Descriptions and patterns by turns, from the resource library.
[[nodiscard]] CString FileFilter(std::initializer_list<unsigned int> texts);

// True when a file was picked; `file` then is its whole path. The current folder stays what it was.
[[nodiscard]] bool BrowseForFile(HWND owner, const FileDialog& dialog, CString& file);
