#include "setup/answer_paths.h"

#include "base/path_text.h"

#include <vector>

namespace {

bool IsLetter(wchar_t character)
{
    return (character >= L'A' && character <= L'Z') || (character >= L'a' && character <= L'z');
}

bool IsSeparator(wchar_t character)
{
    return character == L'\\' || character == L'/';
}

bool HasDrive(const CString& path)
{
    return path.GetLength() >= 2 && IsLetter(path[0]) && path[1] == L':';
}

// "\\server", "C:\x", "C:x", "http://x"
bool StandsByItself(const CString& path)
{
    const bool isShare = path.GetLength() >= 2 && IsSeparator(path[0]) && IsSeparator(path[1]);
    return isShare || HasDrive(path) || path.Find(L"://") > 0;
}

// Length of what ".." can't climb over: "\\server\share\", "C:\". 0 for a path without a root.
int RootLength(const CString& path)
{
    if (path.Left(2) == L"\\\\") {
        const int server = path.Find(L'\\', 2);
        const int share = server < 0 ? -1 : path.Find(L'\\', server + 1);
        return share < 0 ? path.GetLength() : share + 1;
    }
    return HasDrive(path) && path[2] == L'\\' ? 3 : 0;
}

// The part that ".." leaves goes, with the empty parts behind it.
void DropLastPart(std::vector<CString>& parts)
{
    while (!parts.empty() && parts.back().IsEmpty()) {
        parts.pop_back();
    }
    if (!parts.empty()) {
        parts.pop_back();
    }
}

// Takes "." and ".." out of a path with a root; the root stays. Two backslashes have an empty part between them, and so
// has a closing one behind it.
CString CollapseDots(const CString& path)
{
    const int root = RootLength(path);
    const bool onlyRoot = root == path.GetLength();
    std::vector<CString> parts;
    for (int start = root; !onlyRoot && start <= path.GetLength();) {
        const int found = path.Find(L'\\', start);
        const int end = found < 0 ? path.GetLength() : found;
        const CString part = path.Mid(start, end - start);
        start = end + 1;
        if (part == L"..") {
            DropLastPart(parts);
        } else if (part != L".") {
            parts.push_back(part);
        }
    }
    CString result = path.Left(root);
    for (std::size_t index = 0; index < parts.size(); ++index) {
        result += (index == 0 ? CString() : CString(L"\\")) + parts[index];
    }
    return result;
}

CString JoinRelative(const CString& folder, const CString& path)
{
    CString text = path;
    text.Replace(L'/', L'\\');
    // "\x" counts from the root of the folder's drive or share.
    return CollapseDots(text[0] == L'\\' ? WithClosingBackslash(folder.Left(RootLength(folder))) + text.Mid(1)
                                         : WithClosingBackslash(folder) + text);
}

// What stands behind "<media>"; false for a path without the mark.
bool SplitMediaMark(const CString& path, CString& rest)
{
    const CString mark(MEDIA_FOLDER_MARK);
    if (path.Left(mark.GetLength()).CompareNoCase(mark) != 0) {
        return false;
    }
    rest = path.Mid(mark.GetLength());
    if (!rest.IsEmpty() && !IsSeparator(rest[0])) {
        return false;
    }
    rest = rest.Mid(1);
    return true;
}

// The path as seen from the folder; false when it doesn't lie below it.
bool SplitFolder(const CString& folder, const CString& path, CString& rest)
{
    const CString front = WithClosingBackslash(folder);
    if (folder.IsEmpty() || path.GetLength() <= front.GetLength() ||
        path.Left(front.GetLength()).CompareNoCase(front) != 0) {
        return false;
    }
    rest = path.Mid(front.GetLength());
    return true;
}

} // namespace

bool HasMediaMark(const CString& path)
{
    CString rest;
    return SplitMediaMark(path, rest);
}

CString ResolveMediaMark(const CString& media, const CString& path)
{
    CString rest;
    if (media.IsEmpty() || !SplitMediaMark(path, rest)) {
        return path;
    }
    return rest.IsEmpty() ? media : JoinRelative(media, rest);
}

CString ResolveAnswerPath(const AnswerFolders& folders, const CString& path)
{
    CString rest;
    if (SplitMediaMark(path, rest)) {
        return ResolveMediaMark(folders.strMedia, path);
    }
    return path.IsEmpty() || StandsByItself(path) ? path : JoinRelative(folders.strBase, path);
}

PortablePath MakePortable(const AnswerFolders& folders, const CString& path, bool besideToo)
{
    CString rest;
    if (SplitFolder(folders.strBase, path, rest) && ResolveAnswerPath(folders, rest) == path) {
        return {rest, false};
    }
    if (SplitFolder(folders.strMedia, path, rest)) {
        const CString marked = CString(MEDIA_FOLDER_MARK) + L"\\" + rest;
        if (ResolveAnswerPath(folders, marked) == path) {
            return {marked, false};
        }
    }
    if (besideToo && SplitFolder(FolderAbove(folders.strBase), path, rest)) {
        const CString beside = L"..\\" + rest;
        if (ResolveAnswerPath(folders, beside) == path) {
            return {beside, false};
        }
    }
    return {path, ResolveAnswerPath(folders, path) != path};
}
