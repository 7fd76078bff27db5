// Folders and files of a test.
#pragma once

#include "base/string.h"

#include <windows.h>

// Folder of the running program, ending in a backslash.
CString ProgramFolder();

bool FolderExists(const CString& path);
bool FileExists(const CString& path);
// Creates or replaces a file with these bytes.
void WriteFileBytes(const CString& path, const char* bytes);
// Removes a folder with all that is in it, read-only files too; nothing happens when it isn't there.
void RemoveTree(const CString& path);

// A fresh folder below %TEMP% that goes with the object.
class CTestFolder
{
public:
    CTestFolder();
    ~CTestFolder();
    CTestFolder(const CTestFolder&) = delete;
    CTestFolder& operator=(const CTestFolder&) = delete;

    // Ends in a backslash.
    const CString& GetPath() const { return m_path; }
    CString operator/(const wchar_t* name) const { return m_path + name; }
    // Makes a folder below; the path comes back without a backslash at its end.
    CString AddFolder(const wchar_t* name) const;
    CString AddFile(const wchar_t* name, const char* bytes) const;

private:
    CString m_root;
    CString m_path;
};
