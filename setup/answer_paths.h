// Paths as they stand in an answers file, and as a page's edit is to have them.
#pragma once

#include "base/string.h"

// At the front of a path: the folder of the media. No path can begin so.
constexpr wchar_t MEDIA_FOLDER_MARK[] = L"<media>";

// Full paths that relative ones count from.
struct AnswerFolders
{
    CString strBase;  // of the answers file, or the current folder for the command line
    CString strMedia; // empty while no media are open
};

// A relative path, joined to its folder, with "." and ".." taken out and slashes turned. Everything else stays letter for
// letter, for the page to judge as it would a person's: full paths, drive-relative ones ("C:x"), addresses ("http://x").
CString ResolveAnswerPath(const AnswerFolders& folders, const CString& path);

[[nodiscard]] bool HasMediaMark(const CString& path);

// A path that begins with the mark, below `media`; any other as it is.
CString ResolveMediaMark(const CString& media, const CString& path);

struct PortablePath
{
    CString strText;
    bool bLiteral = false; // to be entered letter for letter
};

// The text that ResolveAnswerPath makes the path of: relative for what lies below the file's folder or the media's. With
// `besideToo` also for what lies beside the file's folder, so that the text doesn't say where that is.
PortablePath MakePortable(const AnswerFolders& folders, const CString& path, bool besideToo = false);
