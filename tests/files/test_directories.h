// A product's directories as a host with a map answers them.
#pragma once

#include "include/directory_manager.h"
#include "msi/msi_rows.h"

#include <deque>

class TestDirectoryManager : public CDirectoryManager
{
public:
    // Replaces an entry of that key. An empty path is one that the host doesn't know.
    void Set(const CString& key, const CString& parent, const CString& name, const CString& target,
             const CString& source);
    // A key without a row.
    void SetWithoutRow(const CString& key, const CString& target, const CString& source);
    void Clear() { m_directories.clear(); }

    bool GetTargetPath(const wchar_t* directory, wchar_t* buffer, unsigned int* size) override;
    bool GetSourcePath(const wchar_t* directory, wchar_t* buffer, unsigned int* size) override;
    const DirectoryMap& GetDirectories() override { return m_directories; }

private:
    DirectoryMap m_directories;
    std::deque<DirectoryData> m_rows;
};
