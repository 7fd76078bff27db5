// The patch files of one product: those of the deployment that it comes from, and what the files were when the page chose
// them. A patch is known by its code and its content, never by its name.
#pragma once

#include "host/deployment_file.h"

#include <map>

constexpr const wchar_t* PATCH_FOLDER = L"ServicePacks\\"; // below a product's folder in the image

class CProductPatches
{
public:
    // Those of a deployment whose image lies at `imageRoot`. A file that isn't there, or lies outside of the product's own
    // folder of patches, is dropped, and named in `lost`; what is merged stays known without it.
    void Load(const std::vector<StoredPatch>& stored, const CString& imageRoot, const CString& productFolder,
              std::vector<CString>& lost);
    const std::vector<StoredPatch>& GetStored() const { return m_stored; }
    bool HasMerged() const;
    bool HasUnmerged() const;
    // Full path; empty for one without a file.
    CString PathOf(const StoredPatch& stored) const;
    // The stored one whose file that is; null for none.
    const StoredPatch* FindStored(const CString& path) const;

    // True when code and content are those of a merged one.
    bool IsMerged(const CString& path);
    // The page has just had the file judged: what it holds now is what is meant from now on. What comes from the deployment
    // keeps the content that its file names.
    void Note(const CString& path);
    // SHA-256 of the file when it was chosen; empty when nobody chose it.
    CString NotedHash(const CString& path) const;

    // As the file is now; empty for one that can't be read. Read anew when it has been written.
    CString ReadCode(const CString& path) { return Look(path).strCode; }
    // The codes of patches that it stands in for.
    std::vector<CString> ReadReplacedCodes(const CString& path) { return Look(path).replaced; }
    CString ReadHash(const CString& path);

private:
    // What tells one state of a file from another: a copy can have the size and the time of what it replaces, but not the
    // time of its own last change.
    struct FileMark
    {
        unsigned long long size = 0;
        long long lastWritten = 0;
        long long lastChanged = 0;
        bool operator==(const FileMark&) const = default;
    };
    struct Seen
    {
        FileMark mark;
        CString strCode;
        std::vector<CString> replaced;
        CString strSha256; // empty: not read yet
    };
    static FileMark MarkOf(const CString& path); // throws a BuildFailure
    Seen& Look(const CString& path);

    CString m_imageRoot; // with backslash
    std::vector<StoredPatch> m_stored;
    std::map<CString, Seen> m_seen;     // by path in lower case
    std::map<CString, CString> m_noted; // likewise; SHA-256
};
