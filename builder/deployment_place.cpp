#include "builder/deployment_place.h"

#include "base/number_text.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/file_operations.h"

namespace {

// Where a share has no such numbers, the path tells.
CString NumbersOf(const BY_HANDLE_FILE_INFORMATION& information, const CString& path)
{
    if (information.nFileIndexHigh == 0 && information.nFileIndexLow == 0) {
        return CString(path).MakeLower();
    }
    return HexText(information.dwVolumeSerialNumber) + HexText(information.nFileIndexHigh) +
           HexText(information.nFileIndexLow);
}

} // namespace

CString StampOfDeployment(const CString& folder)
{
    const CString file = JoinFolder(folder, DEPLOYMENT_FILE);
    if (KindOfPath(file) != PathKind::File) {
        return {};
    }
    const BY_HANDLE_FILE_INFORMATION ofFile = InformationOf(file);
    return NumbersOf(InformationOf(folder), folder) + L" " + NumbersOf(ofFile, file) +
           HexText(ofFile.ftLastWriteTime.dwHighDateTime) + HexText(ofFile.ftLastWriteTime.dwLowDateTime) +
           HexText(ofFile.nFileSizeLow);
}

namespace {

// A folder that can't be looked at is none that anybody could have deployed into.
bool HoldsDeploymentFile(const CString& folder)
{
    try {
        return KindOfPath(JoinFolder(folder, DEPLOYMENT_FILE)) == PathKind::File;
    } catch (const BuildFailure&) {
        return false;
    }
}

// The server alone is no folder, and asking it for a file may take as long as a network does.
bool IsRoot(const CString& folder)
{
    const CString parent = FolderAbove(folder);
    return parent.GetLength() < 3 || parent == folder ||
           (parent.Left(2) == L"\\\\" && parent.ReverseFind(L'\\') == 1);
}

} // namespace

CString DeploymentAround(const CString& location)
{
    CString folder = WithoutClosingBackslash(location);
    while (!folder.IsEmpty() && !HoldsDeploymentFile(folder)) {
        folder = IsRoot(folder) ? CString() : FolderAbove(folder);
    }
    return folder;
}
