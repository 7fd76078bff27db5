#include "base/path_text.h"

namespace {

constexpr int PLAIN_PATH_LIMIT = 240; // folders end earlier than the 260 characters of files

} // namespace

CString JoinFolder(const CString& folder, const CString& name)
{
    if (name.IsEmpty() || folder.IsEmpty()) {
        return name.IsEmpty() ? folder : name;
    }
    return folder[folder.GetLength() - 1] == L'\\' ? folder + name : folder + L"\\" + name;
}

CString WithoutClosingBackslash(const CString& path)
{
    CString bare = path;
    while (bare.GetLength() > 1 && bare[bare.GetLength() - 1] == L'\\' &&
           !(bare.GetLength() == 3 && bare[1] == L':')) {
        bare.Delete(bare.GetLength() - 1);
    }
    return bare;
}

CString WithClosingBackslash(const CString& path)
{
    return path.Right(1) == L"\\" ? path : path + L"\\";
}

CString FolderAbove(const CString& path)
{
    const CString bare = WithoutClosingBackslash(path);
    const int slash = bare.ReverseFind(L'\\');
    if (slash < 0) {
        return {};
    }
    return slash == 2 && bare[1] == L':' ? bare.Left(3) : bare.Left(slash);
}

CString ParentFolder(const CString& folder)
{
    const CString above = FolderAbove(folder);
    // The backslashes at 0 and 1 introduce a server.
    const bool isTop = above.GetLength() < 2 || above == WithoutClosingBackslash(folder);
    return isTop ? CString() : WithClosingBackslash(above);
}

CString FolderOfFile(const CString& file)
{
    return file.Left(file.ReverseFind(L'\\') + 1);
}

CString LastName(const CString& path)
{
    const CString bare = WithoutClosingBackslash(path);
    return bare.Mid(bare.ReverseFind(L'\\') + 1);
}

bool IsSameOrBelow(const CString& path, const CString& folder)
{
    const CString outer = WithClosingBackslash(WithoutClosingBackslash(folder));
    return WithClosingBackslash(WithoutClosingBackslash(path)).Left(outer.GetLength()).CompareNoCase(outer) ==
           0;
}

CString UnlimitedPath(const CString& path)
{
    if (path.Left(4) == L"\\\\?\\" || path.Left(4) == L"\\\\.\\") {
        return path;
    }
    if (path.Left(2) == L"\\\\") {
        return L"\\\\?\\UNC\\" + path.Mid(2);
    }
    return path.GetLength() >= 3 && path[1] == L':' && path[2] == L'\\' ? L"\\\\?\\" + path : path;
}

CString FilePath(const CString& path)
{
    return path.GetLength() < PLAIN_PATH_LIMIT ? path : UnlimitedPath(path);
}
