// CCurrentFolderKeeper: the process's current folder stays what it was. A file dialog makes the folder that it shows the
// current one, which would hold a share or a stick in use.
#pragma once

#include <windows.h>

class CCurrentFolderKeeper
{
public:
    CCurrentFolderKeeper() { ::GetCurrentDirectoryW(MAX_PATH, m_folder); }
    ~CCurrentFolderKeeper() { ::SetCurrentDirectoryW(m_folder); }
    CCurrentFolderKeeper(const CCurrentFolderKeeper&) = delete;
    CCurrentFolderKeeper& operator=(const CCurrentFolderKeeper&) = delete;

private:
    wchar_t m_folder[MAX_PATH] = {};
};
