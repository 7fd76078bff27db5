#include "builder/own_files.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"

#include <algorithm>

namespace {

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
    const ManifestCheckCalls calls = {[&poll](std::uint64_t, std::uint64_t, const CString&) { poll(); },
                                      [](const CString&, const BuildFailure& failure) { throw failure; }};
    ManifestCheck check = CheckManifest(folder, known, calls);
    FolderJudgement judgement;
    judgement.hasManifest = check.manifest == ManifestState::Read;
    judgement.added = std::move(check.added);
    judgement.added.insert(judgement.added.end(), check.links.begin(), check.links.end());
    for (ChangedFile& file : check.changed) {
        judgement.changed.push_back(std::move(file.strPath));
    }
    judgement.ours = std::move(check.same);
    return judgement;
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
