#include "host/build/deployment_place.h"

#include "host/build/build_names.h"
#include "host/build/file_operations.h"

namespace {

// Where a share has no such numbers they are the same for all its files, and time and size alone tell.
CString NumbersOf(const BY_HANDLE_FILE_INFORMATION& information)
{
    return HexText(information.dwVolumeSerialNumber) + HexText(information.nFileIndexHigh) +
           HexText(information.nFileIndexLow);
}

} // namespace

CString StampOfDeployment(const CString& folder)
{
    const CString file = JoinFolder(folder, DEPLOYMENT_FILE_NAME);
    if (KindOfPath(file) != PathKind::File) {
        return {};
    }
    const BY_HANDLE_FILE_INFORMATION ofFile = InformationOf(file);
    return NumbersOf(InformationOf(folder)) + L" " + NumbersOf(ofFile) +
           HexText(ofFile.ftLastWriteTime.dwHighDateTime) + HexText(ofFile.ftLastWriteTime.dwLowDateTime) +
           HexText(ofFile.nFileSizeLow);
}

CString DeploymentAround(const CString& location)
{
    CString folder = WithoutClosingBackslash(location);
    while (!folder.IsEmpty()) {
        if (KindOfPath(JoinFolder(folder, DEPLOYMENT_FILE_NAME)) == PathKind::File) {
            return folder;
        }
        const CString parent = FolderAbove(folder);
        if (parent.GetLength() < 3 || parent == folder) {
            break;
        }
        folder = parent;
    }
    return {};
}
