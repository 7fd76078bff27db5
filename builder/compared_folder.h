// The files of one deployment as a comparison needs them. Failures are BuildFailures.
#pragma once

#include "builder/compare_rules.h"

#include <functional>
#include <map>

struct FolderFile
{
    std::uint64_t size = 0;
    bool bFolderLink = false; // leads to a folder elsewhere, which isn't followed
    CString strListedSha256;  // in the manifest, for a file that still has the size that stands there
};
using FolderFiles = std::map<CString, FolderFile, CompareNoCaseLess>; // by relative path

class CComparedFolder
{
public:
    CComparedFolder(const CString& folder, const std::function<void()>& poll);

    [[nodiscard]] const FolderFiles& GetFiles() const { return m_files; }
    [[nodiscard]] bool Has(const CString& path) const { return m_files.count(path) != 0; }
    [[nodiscard]] CString FullPath(const CString& path) const;
    // SHA-256 of a file: as the manifest has it, or of its bytes.
    [[nodiscard]] CString Hash(const CString& path) const;
    [[nodiscard]] CString HashOfBytes(const CString& path) const;
    [[nodiscard]] std::vector<char> Read(const CString& path) const;

private:
    void ListFiles(const CString& inner);
    void ReadListedHashes();

    CString m_folder;
    const std::function<void()>& m_poll;
    FolderFiles m_files;
};
