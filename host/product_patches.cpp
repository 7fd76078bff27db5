#include "host/product_patches.h"

#include "base/files.h"
#include "base/guid_text.h"
#include "base/path_text.h"
#include "builder/build_failure.h"
#include "builder/content_hash.h"
#include "builder/file_operations.h"
#include "installer/patch_summary.h"

#include <algorithm>

namespace {

constexpr int GUID_UNITS = 38; // with braces

CString KeyOf(const CString& path)
{
    CString key = path;
    return key.MakeLower();
}

// The patch's own and, behind it, those that it stands in for; none for a file that is no patch.
std::vector<CString> CodesOf(const CString& path)
{
    std::vector<CString> codes;
    CString text;
    if (ReadPatchCode(path, text)) {
        for (; IsBracedGuid(text.Left(GUID_UNITS)); text = text.Mid(GUID_UNITS)) {
            codes.push_back(text.Left(GUID_UNITS).MakeUpper());
        }
    }
    return codes;
}

} // namespace

void CProductPatches::Load(const std::vector<StoredPatch>& stored, const CString& imageRoot,
                           const CString& productFolder, std::vector<CString>& lost)
{
    m_imageRoot = imageRoot;
    m_stored.clear();
    m_noted.clear();
    for (StoredPatch patch : stored) {
        const bool isOwn = FolderOfFile(patch.file).CompareNoCase(productFolder + PATCH_FOLDER) == 0;
        if (!patch.file.IsEmpty() && !(isOwn && IsFile(imageRoot + patch.file))) {
            lost.push_back(patch.file);
            patch.file.Empty();
        }
        if (!patch.file.IsEmpty() || patch.merged) {
            m_stored.push_back(patch);
        }
    }
}

bool CProductPatches::HasMerged() const
{
    return std::any_of(m_stored.begin(), m_stored.end(),
                       [](const StoredPatch& patch) { return patch.merged; });
}

bool CProductPatches::HasUnmerged() const
{
    return std::any_of(m_stored.begin(), m_stored.end(),
                       [](const StoredPatch& patch) { return !patch.merged; });
}

CString CProductPatches::PathOf(const StoredPatch& stored) const
{
    return stored.file.IsEmpty() ? CString() : m_imageRoot + stored.file;
}

const StoredPatch* CProductPatches::FindStored(const CString& path) const
{
    for (const StoredPatch& stored : m_stored) {
        if (!stored.file.IsEmpty() && PathOf(stored).CompareNoCase(path) == 0) {
            return &stored;
        }
    }
    return nullptr;
}

CProductPatches::FileMark CProductPatches::MarkOf(const CString& path)
{
    const CFileOwner file = OpenForReading(path);
    const FILE_BASIC_INFO times = TimesAndAttributes(file, path);
    return {SizeOfFile(path), times.LastWriteTime.QuadPart, times.ChangeTime.QuadPart};
}

CProductPatches::Seen& CProductPatches::Look(const CString& path)
{
    Seen& seen = m_seen[KeyOf(path)];
    try {
        const FileMark mark = MarkOf(path);
        if (seen.strCode.IsEmpty() || !(seen.mark == mark)) {
            seen = {mark, CString(), CodesOf(path), CString()};
            if (!seen.replaced.empty()) {
                seen.strCode = seen.replaced.front();
                seen.replaced.erase(seen.replaced.begin());
            }
        }
    } catch (const BuildFailure&) {
        seen = {}; // as good as gone; a build says why
    }
    return seen;
}

CString CProductPatches::ReadHash(const CString& path)
{
    Seen& seen = Look(path);
    if (seen.strSha256.IsEmpty() && !seen.strCode.IsEmpty()) {
        try {
            seen.strSha256 = HashOfFile(path, [] {});
        } catch (const BuildFailure&) {
            // a build says why, should it still be so then
        }
    }
    return seen.strSha256;
}

bool CProductPatches::IsMerged(const CString& path)
{
    if (!HasMerged()) {
        return false;
    }
    const CString code = ReadCode(path);
    return std::any_of(m_stored.begin(), m_stored.end(), [&](const StoredPatch& patch) {
        return patch.merged && patch.code == code && patch.sha256 == ReadHash(path);
    });
}

void CProductPatches::Note(const CString& path)
{
    const StoredPatch* const stored = FindStored(path);
    if (!stored || stored->sha256.IsEmpty()) {
        m_noted[KeyOf(path)] = ReadHash(path);
    }
}

CString CProductPatches::NotedHash(const CString& path) const
{
    const StoredPatch* const stored = FindStored(path);
    if (stored && !stored->sha256.IsEmpty()) {
        return stored->sha256;
    }
    const auto noted = m_noted.find(KeyOf(path));
    return noted == m_noted.end() ? CString() : noted->second;
}
