#include "frame/folder_check.h"

#include "base/path_text.h"
#include "frame/file_path.h"
#include "frame/path_rules.h"

#include <windows.h>

#include <shlobj.h>
#include <shlwapi.h>
#include <winnetwk.h>

namespace {

constexpr int LOCAL_PATH_LIMIT = 259;
constexpr int SHORTEST_ROOT = 3; // "C:\"

// Beyond these lengths Windows refuses to make a folder and a temporary file. Wine makes the folder, which none of its
// calls removes again, and writes the file's name past the end of its buffer.
constexpr int LONGEST_NEW_FOLDER = 248;
constexpr int LONGEST_PROBED_FOLDER = MAX_PATH - 14;

// Without "." and ".." parts. A path that is too long for the system's buffer stays as it is, for the checks that
// follow to refuse.
CString Canonicalize(const CString& path)
{
    CString canonical;
    const BOOL done = path.GetLength() < MAX_PATH && ::PathCanonicalizeW(canonical.GetBuffer(MAX_PATH), path);
    canonical.ReleaseBuffer();
    return done ? canonical : path;
}

// Unquotes, trims and canonicalizes in place. False, with `path` untouched, when nothing is left.
bool Normalize(CString& path)
{
    CString text = UnquotePath(path);
    text.Trim(L" \t");
    if (text.IsEmpty()) {
        return false;
    }
    path = Canonicalize(WithClosingBackslash(text));
    return true;
}

// "C:\" or "\\server\share"; empty when the path has none.
CString RootOf(const CString& path)
{
    CString root = path.Left(MAX_PATH - 1); // a root stands at the front; the call takes no longer text
    const BOOL found = ::PathStripToRootW(root.GetBuffer(MAX_PATH));
    root.ReleaseBuffer();
    return found ? root : CString();
}

bool IsSubstitutedDrive(const CString& root)
{
    CString target;
    const DWORD length = ::QueryDosDeviceW(root.Left(2), target.GetBuffer(MAX_PATH), MAX_PATH);
    target.ReleaseBuffer(length > 0 ? -1 : 0); // the first of several texts counts
    return IsSubstitutedTarget(target);
}

bool ConnectShare(const CString& path)
{
    CString root = RootOf(path);
    NETRESOURCEW resource = {};
    resource.lpRemoteName = root.GetBuffer(root.GetLength());
    // The connection stays: the deployment is written over it later.
    DWORD error = ::WNetAddConnection3W(nullptr, &resource, nullptr, nullptr, CONNECT_INTERACTIVE);
    // Wine answers so whenever it would be allowed to ask; on Windows a share with a bad name fails once more.
    if (error == ERROR_BAD_NET_NAME)
        error = ::WNetAddConnection3W(nullptr, &resource, nullptr, nullptr, 0);
    return error == NO_ERROR;
}

PathCheckResult ProbeExistingFolder(const CString& path, bool network)
{
    const PathCheckResult written = TestWrite(path);
    if (written == PCR_FAILED && network) {
        return PCR_NETWORK_FAILED;
    }
    if (written != PCR_OK) {
        return written;
    }
    return ::PathIsDirectoryEmptyW(path) ? PCR_OK : PCR_NOT_EMPTY;
}

// Removes the folder and the empty folders above it. Parents that were empty before go too: they are made again
// together with the deployment.
void RemoveProbedFolders(const CString& path)
{
    for (CString folder(path); !folder.IsEmpty() && ::PathIsDirectoryEmptyW(folder);
         folder = ParentFolder(folder)) {
        ::RemoveDirectoryW(folder);
    }
}

PathCheckResult ProbeNewFolder(const CString& path, bool network)
{
    const int error = path.GetLength() > LONGEST_NEW_FOLDER ? ERROR_FILENAME_EXCED_RANGE
                                                            : ::SHCreateDirectoryExW(nullptr, path, nullptr);
    if (error == ERROR_ACCESS_DENIED || error == ERROR_PATH_NOT_FOUND) {
        return PCR_ACCESS_DENIED;
    }
    if (error != ERROR_SUCCESS) {
        return network ? PCR_NETWORK_FAILED : PCR_FAILED;
    }
    RemoveProbedFolders(path);
    return PCR_OK;
}

PathCheckResult ValidateNetworkFolder(const CString& path)
{
    if (!::PathIsUNCW(path)) {
        return PCR_NOT_UNC;
    }
    return ConnectShare(path) ? ProbeFolder(path, true) : PCR_NETWORK_FAILED;
}

PathCheckResult ValidateLocalFolder(CString& path)
{
    if (!Normalize(path)) {
        return PCR_EMPTY;
    }
    path = RebuildPath(path);
    const CString root = RootOf(path);
    if (root.GetLength() < SHORTEST_ROOT) {
        return PCR_FAILED;
    }
    if (path.GetLength() >= LOCAL_PATH_LIMIT) {
        return PCR_TOO_LONG;
    }
    if (::PathGetDriveNumberW(path) < 0) {
        return PCR_NO_DRIVE;
    }
    const UINT drive = ::GetDriveTypeW(root);
    if ((drive != DRIVE_FIXED && drive != DRIVE_REMOVABLE) || IsSubstitutedDrive(root)) {
        return PCR_BAD_DRIVE_KIND;
    }
    return ProbeFolder(path, false);
}

} // namespace

PathCheckResult ValidateFolder(CString& path, bool requireNetwork)
{
    if (!Normalize(path)) {
        return PCR_EMPTY;
    }
    return requireNetwork ? ValidateNetworkFolder(path) : ValidateLocalFolder(path);
}

PathCheckResult ProbeFolder(const CString& path, bool network)
{
    if (!network) {
        if (::PathIsRelativeW(path)) {
            return PCR_FAILED;
        }
        if (::PathIsRootW(path)) {
            return PCR_IS_ROOT;
        }
    }
    return ::PathIsDirectoryW(path) ? ProbeExistingFolder(path, network) : ProbeNewFolder(path, network);
}

PathCheckResult TestWrite(const CString& folder)
{
    if (folder.GetLength() > LONGEST_PROBED_FOLDER) {
        return PCR_FAILED;
    }
    CString file;
    const UINT made = ::GetTempFileNameW(folder, L"_AIA", 0, file.GetBuffer(MAX_PATH));
    const DWORD error = ::GetLastError();
    file.ReleaseBuffer(made ? -1 : 0);
    if (!made) {
        return error == ERROR_ACCESS_DENIED ? PCR_ACCESS_DENIED : PCR_FAILED;
    }
    const BOOL exists = ::PathFileExistsW(file);
    ::DeleteFileW(file);
    return exists ? PCR_OK : PCR_ACCESS_DENIED;
}

bool IsLocalOrNetworkPath(const CString& path)
{
    if (::PathIsRelativeW(path)) {
        return false;
    }
    if (::PathIsNetworkPathW(path)) {
        return true;
    }
    const CString root = RootOf(path);
    return ::GetDriveTypeW(root) == DRIVE_FIXED && !IsSubstitutedDrive(root);
}
