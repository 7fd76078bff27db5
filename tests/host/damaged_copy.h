// A deployment that a test damages, in a folder of its own that goes with the object.
#pragma once

#include "base/path_text.h"
#include "builder/content_hash.h"
#include "builder/manifest_text.h"
#include "tests/host/folder_tree.h"
#include "tests/host/package_maker.h"

#include <gtest/gtest.h>

class DamagedCopy
{
public:
    DamagedCopy(const Tree& built, const CString& folder) : m_folder(folder)
    {
        for (const auto& [path, bytes] : built) {
            const bool isFolder = path.Right(1) == L"\\";
            EXPECT_EQ(MakeFolders(isFolder ? *this / path : FolderAbove(*this / path)), 0u);
            if (!isFolder) {
                Write(path, bytes);
            }
        }
    }
    ~DamagedCopy() { RemoveFolder(WithClosingBackslash(m_folder)); }
    DamagedCopy(const DamagedCopy&) = delete;
    DamagedCopy& operator=(const DamagedCopy&) = delete;

    const CString& Folder() const { return m_folder; }
    CString operator/(const CString& path) const { return JoinFolder(m_folder, path); }

    std::string Read(const CString& path) const { return ReadBytes(*this / path); }
    void Write(const CString& path, const std::string& bytes) const
    {
        EXPECT_EQ(MakeFolders(FolderAbove(*this / path)), 0u);
        WriteFileBytes(*this / path, bytes);
    }
    void Delete(const CString& path) const
    {
        EXPECT_TRUE(DeleteFileW(FilePath(*this / path))) << Utf8(path) << " " << GetLastError();
    }
    void Rename(const CString& path, const CString& other) const
    {
        EXPECT_TRUE(MoveFileW(*this / path, *this / other)) << Utf8(path) << " " << GetLastError();
    }
    void Replace(const CString& path, const std::string& part, const std::string& by) const
    {
        std::string bytes = Read(path);
        const std::size_t found = bytes.find(part);
        ASSERT_NE(found, std::string::npos) << part << " is missing in " << Utf8(path);
        Write(path, bytes.replace(found, part.size(), by));
    }
    void Append(const CString& path, const std::string& more) const { Write(path, Read(path) + more); }
    void FlipLastByte(const CString& path) const
    {
        std::string bytes = Read(path);
        bytes.back() ^= 1;
        Write(path, bytes);
    }
    // The manifest as if the file had been built as it is now.
    void ListAnew(const CString& path) const
    {
        const std::string manifest = Read(MANIFEST_FILE);
        std::vector<ManifestEntry> entries;
        EXPECT_TRUE(ReadManifest(manifest.data(), manifest.size(), entries));
        for (ManifestEntry& entry : entries) {
            if (entry.strPath == path) {
                const std::string bytes = Read(path);
                CContentHash hash;
                hash.Add(bytes.data(), bytes.size());
                entry.size = bytes.size();
                entry.strSha256 = hash.Finish();
            }
        }
        Write(MANIFEST_FILE, Utf8(ComposeManifest(entries)));
    }

    // As if the build had never written the file.
    void Unlist(const CString& path) const
    {
        const std::string manifest = Read(MANIFEST_FILE);
        std::vector<ManifestEntry> entries;
        EXPECT_TRUE(ReadManifest(manifest.data(), manifest.size(), entries));
        EXPECT_EQ(
            std::erase_if(entries, [&path](const ManifestEntry& entry) { return entry.strPath == path; }),
            1u);
        Write(MANIFEST_FILE, Utf8(ComposeManifest(entries)));
        Delete(path);
    }

private:
    CString m_folder;
};
