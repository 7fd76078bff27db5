#include "builder/own_files.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/file_hash.h"
#include "builder/manifest_text.h"

#include <algorithm>

namespace {

constexpr std::size_t PIECE_BYTES = 1 << 20;

using Entries = std::map<CString, ManifestEntry, CompareNoCaseLess>;

bool LoadManifest(const CString& folder, Entries& entries)
{
    const CString path = JoinFolder(folder, MANIFEST_FILE);
    if (KindOfPath(path) != PathKind::File) {
        return false;
    }
    const CFileOwner file = OpenForReading(path);
    std::vector<char> bytes;
    std::vector<char> piece(PIECE_BYTES);
    while (const DWORD read = ReadChunk(file, piece.data(), static_cast<DWORD>(piece.size()), path)) {
        bytes.insert(bytes.end(), piece.begin(), piece.begin() + read);
    }
    std::vector<ManifestEntry> lines;
    if (!ReadManifest(bytes.data(), bytes.size(), lines)) {
        return false;
    }
    for (ManifestEntry& line : lines) {
        entries[line.strPath] = std::move(line);
    }
    return true;
}

// Visits each file below, and each link in the place of what it leads to.
void VisitFiles(const CString& folder, const CString& inner,
                const std::function<void(const CString&, const FolderEntry&)>& visit)
{
    for (const FolderEntry& entry : ListFolder(JoinFolder(folder, inner))) {
        const CString path = JoinFolder(inner, entry.strName);
        if (entry.IsFolder() && !entry.IsLink()) {
            VisitFiles(folder, path, visit);
        } else {
            visit(path, entry);
        }
    }
}

class CFolderJudge
{
public:
    CFolderJudge(const CString& folder, const ReadContents& known, const std::function<void()>& poll)
        : m_folder(folder), m_known(known), m_poll(poll)
    {
    }

    FolderJudgement Judge()
    {
        m_judgement.hasManifest = LoadManifest(m_folder, m_entries);
        if (m_judgement.hasManifest) {
            VisitFiles(m_folder, CString(),
                       [this](const CString& path, const FolderEntry& entry) { JudgeFile(path, entry); });
        }
        return std::move(m_judgement);
    }

private:
    void JudgeFile(const CString& path, const FolderEntry& entry)
    {
        if (path.CompareNoCase(MANIFEST_FILE) == 0) {
            return;
        }
        const auto line = m_entries.find(path);
        if (line == m_entries.end() || entry.IsLink()) {
            m_judgement.added.push_back(path);
        } else if (entry.size != line->second.size || ContentOf(path, entry) != line->second.strSha256) {
            m_judgement.changed.push_back(path);
        } else {
            m_judgement.ours[path] = {entry.size, entry.lastWritten, line->second.strSha256};
        }
    }

    CString ContentOf(const CString& path, const FolderEntry& entry)
    {
        const auto known = m_known.find(path);
        const bool isKnown = known != m_known.end() && known->second.size == entry.size &&
                             known->second.lastWritten == entry.lastWritten;
        return isKnown ? known->second.strSha256 : HashOfFile(JoinFolder(m_folder, path), m_poll);
    }

    const CString& m_folder;
    const ReadContents& m_known;
    const std::function<void()>& m_poll;
    Entries m_entries;
    FolderJudgement m_judgement;
};

void MakeFolderChain(const CString& folder)
{
    if (KindOfPath(folder) == PathKind::Nothing) {
        MakeFolderChain(FolderAbove(folder));
        MakeFolder(folder);
    }
}

// A folder that isn't there yet, with the deployment's name below it: what is kept may hold a deployment file, and stands
// too deep to be listed as a deployment.
CString MakeKeptFolder(const CString& location, const CString& name)
{
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    CString when;
    when.Format(L"%04u-%02u-%02u %02u.%02u.%02u", now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute,
                now.wSecond);
    CString folder = JoinFolder(location, KeptFolderName(name, when));
    for (int number = 2; KindOfPath(folder) != PathKind::Nothing; ++number) {
        folder = JoinFolder(location, KeptFolderName(name, when + L" " + NumberText(number)));
    }
    MakeFolder(folder);
    return JoinFolder(folder, name);
}

void MoveFiles(const CString& folder, const std::vector<CString>& paths, const CString& target)
{
    for (const CString& path : paths) {
        const CString place = JoinFolder(target, path);
        MakeFolderChain(FolderAbove(place));
        RenameFile(JoinFolder(folder, path), place);
    }
}

// Beside what was kept already, under a name that says what it is.
bool SetAside(const CString& old, const CString& kept)
{
    try {
        RenameFolder(old, kept + L" (rest)");
        return true;
    } catch (const BuildFailure&) {
        return false;
    }
}

// What couldn't be kept there stays where it is, and needs no place beside.
void RemoveEmptyFolders(const CString& folder)
{
    try {
        for (const FolderEntry& entry : ListFolder(folder)) {
            if (entry.IsFolder() && !entry.IsLink()) {
                RemoveEmptyFolders(JoinFolder(folder, entry.strName));
            }
        }
        if (ListFolder(folder).empty()) {
            DeleteEmptyFolder(folder);
        }
    } catch (const BuildFailure&) {
        // An empty folder harms nobody.
    }
}

bool HoldsFiles(const CString& folder)
{
    bool holds = false;
    VisitFiles(folder, CString(), [&](const CString&, const FolderEntry&) { holds = true; });
    return holds;
}

// The manifest goes last: were it gone first, a deletion that is interrupted would leave files that nothing accounts for.
void DeleteByManifest(const CString& folder)
{
    for (const FolderEntry& entry : ListFolder(folder)) {
        const CString path = JoinFolder(folder, entry.strName);
        if (!entry.IsFolder()) {
            if (entry.strName.CompareNoCase(MANIFEST_FILE) != 0) {
                DeleteOneFile(path);
            }
        } else if (entry.IsLink()) {
            DeleteEmptyFolder(path);
        } else {
            DeleteTree(path);
        }
    }
    DeleteTree(folder);
}

} // namespace

std::vector<CString> FolderJudgement::Own() const
{
    std::vector<CString> own = added;
    own.insert(own.end(), changed.begin(), changed.end());
    std::sort(own.begin(), own.end(), CompareNoCaseLess());
    return own;
}

FolderJudgement FindOwnFiles(const CString& folder, const ReadContents& known,
                             const std::function<void()>& poll)
{
    return CFolderJudge(folder, known, poll).Judge();
}

std::vector<CString> FindLateFiles(const CString& folder, const FolderJudgement& judgement)
{
    std::vector<CString> late;
    const std::vector<CString> own = judgement.Own();
    VisitFiles(folder, CString(), [&](const CString& path, const FolderEntry& entry) {
        const auto seen = judgement.ours.find(path);
        const bool isSame = seen != judgement.ours.end() && seen->second.size == entry.size &&
                            seen->second.lastWritten == entry.lastWritten;
        const bool isOwn = std::binary_search(own.begin(), own.end(), path, CompareNoCaseLess());
        if (!isSame && !isOwn && path.CompareNoCase(MANIFEST_FILE) != 0) {
            late.push_back(path);
        }
    });
    return late;
}

CString RetireDeployment(const CString& old, const CString& location, const CString& name, bool hasManifest,
                         const std::vector<CString>& own)
{
    // Through a link the files of another folder would go.
    if (EntryOnDisk(old).IsLink()) {
        throw BuildFailure{BUILD_ALREADY_EXISTS,
                           L"\"" + old + L"\" is a link to another folder. Remove the link by hand."};
    }
    const bool keepsAll = !hasManifest && HoldsFiles(old);
    CString kept;
    try {
        if (keepsAll || !own.empty()) {
            kept = MakeKeptFolder(location, name);
        }
        if (keepsAll) {
            RenameFolder(old, kept);
            return kept;
        }
        MoveFiles(old, own, kept);
        DeleteByManifest(old);
    } catch (const BuildFailure&) {
        // One file that can't be moved or deleted would keep the folder, and every later build of that name waits for it
        // to go. The folder as a whole can still be moved, mostly.
        kept = kept.IsEmpty() ? MakeKeptFolder(location, name) : kept;
        if (!SetAside(old, kept)) {
            RemoveEmptyFolders(FolderAbove(kept));
            throw;
        }
    }
    return kept;
}
