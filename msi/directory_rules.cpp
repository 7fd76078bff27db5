#include "msi/directory_rules.h"

namespace {

constexpr int DEPTH_LIMIT = 200; // deeper than any path; ends a circle

// "." is the parent's own folder.
CString FolderName(const CString& name, const PackageLayout& layout)
{
    const CString text = SourceName(name, layout);
    return text == L"." ? CString() : text;
}

bool IsRoot(const DirectoryColumns& row)
{
    return row.Directory_Parent.IsEmpty() || row.Directory_Parent == row.Directory;
}

CString ResolveTarget(const IDirectorySource& source, const CString& key, int depth)
{
    const CString settled = WithBackslash(source.GetSettledPath(key));
    const DirectoryColumns* row = source.FindDirectory(key);
    if (!row || !settled.IsEmpty()) {
        return row ? settled : CString();
    }
    if (IsRoot(*row) || depth >= DEPTH_LIMIT) {
        return CString();
    }
    const CString parent = ResolveTarget(source, row->Directory_Parent, depth + 1);
    return parent.IsEmpty() ? CString() : parent + WithBackslash(TargetFolderName(row->DefaultDir));
}

CString ResolveSource(const IDirectorySource& source, const CString& key, const CString& packageFolder,
                      const PackageLayout& layout, int depth)
{
    const DirectoryColumns* row = source.FindDirectory(key);
    if (!row || depth >= DEPTH_LIMIT) {
        return CString();
    }
    if (IsRoot(*row)) {
        return packageFolder;
    }
    const CString parent = ResolveSource(source, row->Directory_Parent, packageFolder, layout, depth + 1);
    return parent.IsEmpty() ? CString() : parent + WithBackslash(SourceFolderName(row->DefaultDir, layout));
}

} // namespace

CString TargetFolderName(const CString& defaultDir)
{
    const int colon = defaultDir.Find(L':');
    return FolderName(colon < 0 ? defaultDir : defaultDir.Left(colon), PackageLayout());
}

CString SourceFolderName(const CString& defaultDir, const PackageLayout& layout)
{
    return FolderName(defaultDir.Mid(defaultDir.Find(L':') + 1), layout);
}

CString WithBackslash(const CString& path)
{
    return path.IsEmpty() || path[path.GetLength() - 1] == L'\\' ? path : path + L"\\";
}

CString ResolveTargetPath(const IDirectorySource& source, const CString& key)
{
    return ResolveTarget(source, key, 0);
}

CString ResolveSourcePath(const IDirectorySource& source, const CString& key, const CString& packageFolder,
                          const PackageLayout& layout)
{
    if (layout.bCompressed && source.FindDirectory(key)) {
        return packageFolder;
    }
    return ResolveSource(source, key, packageFolder, layout, 0);
}
