// Cleanup: what a dead build left is cleared by the next one of that name, or by the next start.
#include "builder/build_lock.h"
#include "builder/deployment_builder.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/own_files.h"
#include "builder/readme_text.h"

namespace {

// Clears the folders of the build that a lock file names. A failure is thrown and leaves the file for the next try.
void ClearBuild(const CString& location, const CString& name, std::uint32_t id,
                std::vector<CString>& messages)
{
    const CString target = JoinFolder(location, name);
    const CString staging = JoinFolder(location, StagingFolderName(name, id));
    const CString old = JoinFolder(location, OldFolderName(name, id));
    const bool stagingExists = KindOfPath(staging) == PathKind::Folder;
    const bool oldExists = KindOfPath(old) == PathKind::Folder;
    switch (JudgeLeftovers(KindOfPath(target) != PathKind::Nothing, stagingExists, oldExists)) {
    case LeftoverStep::Nothing:
        break;
    case LeftoverStep::PutOldBack:
        RenameFolder(old, target);
        messages.push_back(L"A build of \"" + name + L"\" was interrupted. The old deployment was put back.");
        break;
    case LeftoverStep::DeleteOld: {
        const FolderJudgement judgement = FindOwnFiles(old, {}, [] {});
        const CString kept = RetireDeployment(old, location, name, judgement.hasManifest, judgement.Own());
        messages.push_back(L"The replaced deployment of \"" + name + L"\" was removed.");
        if (!kept.IsEmpty()) {
            messages.push_back(DescribeKept(judgement.hasManifest, judgement.Own(), kept));
        }
        break;
    }
    case LeftoverStep::KeepOld:
        messages.push_back(L"A build of \"" + name +
                           L"\" was interrupted, and a folder of that name was made since. "
                           L"The old deployment is kept in \"" +
                           old + L"\".");
        break;
    }
    if (stagingExists) {
        DeleteTree(staging);
        messages.push_back(L"The unfinished folder of a build of \"" + name + L"\" was removed.");
    }
}

// Clears by the lock file that this process now holds. False when the file isn't a lock of ours.
bool ClearByLock(const CFileOwner& lock, const CString& path, std::vector<CString>& messages)
{
    const std::vector<char> bytes = ReadAll(lock, path);
    std::uint32_t id = 0;
    const LockText kind = ReadLockFileText(bytes.data(), bytes.size(), id);
    if (kind != LockText::Complete) {
        return kind == LockText::Unfinished;
    }
    ClearBuild(FolderAbove(path), NameFromLockFile(LastName(path)), id, messages);
    return true;
}

void ClearOneLock(const CString& path, std::vector<CString>& messages)
{
    try {
        const CFileOwner lock = OpenAlone(path, false);
        if (lock && ClearByLock(lock, path, messages)) {
            DeleteOnClose(lock, path);
        }
    } catch (const BuildFailure& failure) {
        messages.push_back(L"What an interrupted build left could not be cleared. " + failure.message);
    }
}

// Not open when there is none and none is to be made.
CFileOwner OpenLock(const CString& path, const CString& name, bool makeIt)
{
    const PathKind kind = KindOfPath(path);
    if (kind == PathKind::Folder) {
        throw BuildFailure{
            BUILD_ALREADY_EXISTS,
            L"The folder \"" + path +
                L"\" stands where a build writes its lock file. Rename it, or choose another name."};
    }
    if (kind == PathKind::Nothing && !makeIt) {
        return CFileOwner();
    }
    CFileOwner file = OpenAlone(path, makeIt);
    if (!file) {
        throw BuildFailure{BUILD_BUSY, L"The deployment \"" + name +
                                           L"\" is being built already, by this computer or "
                                           L"another one. " +
                                           RemedyOf(BUILD_BUSY)};
    }
    return file;
}

[[noreturn]] void RefuseForeignLock(const CString& path)
{
    throw BuildFailure{BUILD_ALREADY_EXISTS,
                       L"The file \"" + path +
                           L"\" is not this program's. Move it away, or choose another name."};
}

} // namespace

void RequireLockFree(const CString& location, const CString& name)
{
    const CString path = JoinFolder(location, LockFileName(name));
    const CFileOwner file = OpenLock(path, name, false);
    if (!file) {
        return;
    }
    const std::vector<char> bytes = ReadAll(file, path);
    std::uint32_t id = 0;
    if (ReadLockFileText(bytes.data(), bytes.size(), id) == LockText::Foreign) {
        RefuseForeignLock(path);
    }
}

CBuildLock::CBuildLock(const CString& location, const CString& name, std::uint32_t id)
    : m_path(JoinFolder(location, LockFileName(name))), m_file(OpenLock(m_path, name, true))
{
    std::vector<CString> messages;
    if (!ClearByLock(m_file, m_path, messages)) {
        RefuseForeignLock(m_path);
    }
    std::vector<char> bytes;
    AppendUtf8(bytes, LockFileText(id));
    try {
        ReplaceAll(m_file, bytes, m_path);
    } catch (const BuildFailure&) {
        Remove();
        throw;
    }
}

CBuildLock::~CBuildLock()
{
    if (!m_keep) {
        Remove();
    }
}

void CBuildLock::Remove()
{
    try {
        DeleteOnClose(m_file, m_path);
    } catch (const BuildFailure&) {
        // A lock file without a holder is no lock; the next start removes it.
    }
}

void CleanUpLocation(const CString& location, std::vector<CString>& messages) noexcept
{
    try {
        if (KindOfPath(location) != PathKind::Folder) {
            return;
        }
        for (const FolderEntry& entry : ListFolder(location)) {
            if (!entry.IsFolder() && !NameFromLockFile(entry.strName).IsEmpty()) {
                ClearOneLock(JoinFolder(WithoutClosingBackslash(location), entry.strName), messages);
            }
        }
    } catch (const BuildFailure& failure) {
        messages.push_back(failure.message);
    } catch (const std::exception&) {
        messages.push_back(L"There was not enough memory to look for what interrupted builds left.");
    }
}
