// What the tree of additional files decides without a window: names, drives, commands.
#pragma once

#include "base/string.h"

#include <functional>
#include <set>

// What a node is. Folders and drives have no source.
struct FileNodeKind
{
    bool bUserItem = false; // added by the administrator
    bool bFile = false;
};

// 0 for A: or a:, 25 for Z:; -1 for a text that doesn't begin with a drive. The system's long form (\\?\C:\) counts too.
[[nodiscard]] int DriveNumberOf(const CString& path);

// The label decides, not the key: with a colon, and a path with a drive.
[[nodiscard]] bool IsDriveLabel(const CString& label);

// The last part of a path, without what stands before its last backslash; and what stands before it, which is empty for
// a path of one part.
[[nodiscard]] CString LastPartOf(const CString& path);
[[nodiscard]] CString ParentPathOf(const CString& path);

// The form that people see: the installation folder at the beginning of the path, in any case, is its label. Without
// closing backslash. An empty `root` stays out of it.
[[nodiscard]] CString ToDisplayPath(const CString& path, const CString& root, const CString& rootLabel);

// ---- new names

enum class NewNameResult
{
    Accepted = 0,
    Invalid = 1,      // not a name
    Taken = 2,        // by a sibling
    InvalidDrive = 3, // not a drive that can be added
    Nothing = 4,      // nothing to do and nothing to say
};

// What is wrong with the text as the name of a folder, or of a drive in upper case; siblings aside.
[[nodiscard]] NewNameResult CheckNewName(const CString& text, bool isDrive);

// `plain`, or the first of numbered(2), numbered(3), ... that is none of the names. By exact comparison, although a name that
// is typed must differ from its siblings in more than case: that is on purpose.
[[nodiscard]] CString FirstFreeName(const std::set<CString>& names, const CString& plain,
                                    const std::function<CString(int number)>& numbered);

// ---- commands

struct FileCommandStates
{
    bool bAddFolder = false;
    bool bDelete = false;
    bool bRename = false;
};

// Null for no selection. Files and drives can always be added.
[[nodiscard]] FileCommandStates FileCommandsFor(const FileNodeKind* selected);
