#include "files/directory_paths.h"

#include "base/path_text.h"
#include "files/node_rules.h"
#include "frame/file_path.h"
#include "include/installer_calls.h"
#include "msi/msi_property.h"

std::map<CString, CString> DirectoryPathCache;

namespace {

// A name, and no way from one folder to another.
bool IsPlainPart(const CString& part)
{
    return !part.IsEmpty() && part.FindOneOf(L"\\/") < 0 && part != L"." && part != L"..";
}

} // namespace

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

CString AppendedPath(const CString& folder, const CString& name)
{
    constexpr int CAPACITY = 260; // characters, the closing zero included
    const bool isPlain = IsPlainPart(name) && IsPlainPart(LastPartOf(folder));
    if (!isPlain) { // rows that no page writes
        return JoinPath(folder, name);
    }
    const CString path = JoinFolder(folder, name);
    return path.GetLength() < CAPACITY ? path : CString();
}
