#include "pages/share_rules.h"

#include "base/path_text.h"

namespace {

constexpr int DRIVE_ENTRY = 4; // "C:\" and its zero
constexpr int DRIVE_LENGTH = 2;
constexpr int DRIVE_ROOT_LENGTH = 3;

} // namespace

CString WithoutBackslashes(CString path)
{
    return path.TrimRight(L"\\");
}

CString ComputerRoot(const CString& computer)
{
    return L"\\\\" + computer;
}

bool IsDriveInList(const CString& path, const wchar_t* drives)
{
    const CString drive = path.Left(DRIVE_LENGTH);
    for (; *drives; drives += DRIVE_ENTRY) {
        if (drive.CompareNoCase(CString(drives, DRIVE_LENGTH)) == 0) {
            return true;
        }
    }
    return false;
}

CString MappedPath(const CString& remoteName, const CString& path)
{
    CString networkPath = WithoutBackslashes(remoteName);
    if (path.GetLength() > DRIVE_ROOT_LENGTH) {
        CString rest = path.Mid(DRIVE_ROOT_LENGTH);
        rest.Trim(L"\\");
        networkPath += L"\\" + rest;
    }
    return networkPath;
}

bool FindShareOfPath(const ShareMap& shares, const CString& path, CString& networkPath)
{
    const CString whole = WithClosingBackslash(path);
    for (const auto& [remote, local] : shares) {
        // The share's local path is a set of characters here, not a beginning: as the path ends in a backslash, the
        // first share always takes it. Callers ask only whether there is a share at all.
        const CString set = local + L"\\";
        CString rest = whole;
        rest.TrimRight(set);
        if (rest.GetLength() != whole.GetLength()) {
            networkPath = WithoutBackslashes(remote + L"\\" + rest);
            return true;
        }
    }
    return false;
}
