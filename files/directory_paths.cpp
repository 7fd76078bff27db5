#include "files/directory_paths.h"

#include "include/installer_calls.h"
#include "msi/msi_property.h"

std::map<CString, CString> DirectoryPathCache;

bool ResolveDirectoryPath(InstallerHandle database, const CString& key, CString& path)
{
    path.Empty();
    if (key.IsEmpty()) {
        return false;
    }
    const auto remembered = DirectoryPathCache.find(key);
    if (remembered != DirectoryPathCache.end()) {
        path = remembered->second;
    } else if (GetInstallerText(database, key, path, WizGetTargetPathW) && !path.IsEmpty()) {
        if (path.Right(1) == L"\\") {
            path.Delete(path.GetLength() - 1);
        }
        DirectoryPathCache.emplace(key, path);
    }
    return !path.IsEmpty();
}
