// Forms of paths and names that a build uses, and which names it refuses. No window header.
#pragma once

#include "window/string.h"

#include <cstdint>
#include <vector>

constexpr int MAX_DEPLOYMENT_NAME = 200; // leaves room for what the working folders add
constexpr int MAX_INSTALLER_PATH = 259;  // longest path that the installer service of a workstation opens

// Why a deployment can't have this name, as a sentence; empty when it can.
CString RefusedName(const CString& name);

// True for a path below a folder that leads nowhere else: `Image\x64\Zolt.msi`. False for the empty text, a drive,
// a leading or closing backslash, "." and "..", reserved characters and device names, closing dots and blanks.
bool IsPlainRelativePath(const CString& path);

// True for the name of a device: CON, NUL, COM1, ... Such a name counts with any extension and with the superscript digits
// that Windows takes for 1 to 3.
bool IsDeviceName(const CString& name);

// Folder and name with one backslash between them; the folder alone for an empty name.
CString JoinFolder(const CString& folder, const CString& name);
// Without closing backslashes; a drive's root keeps its one.
CString WithoutClosingBackslash(const CString& path);
CString WithClosingBackslash(const CString& path);
CString FolderAbove(const CString& path); // without closing backslash; empty for a bare name
CString LastName(const CString& path);
// True when `path` is `folder` or lies below it, in any case.
bool IsSameOrBelow(const CString& path, const CString& folder);

// `\\?\C:\x` for `C:\x`, `\\?\UNC\server\share` for `\\server\share`: the form without a limit of 260 characters.
// Other paths, and paths that have the form already, come back as they are.
CString UnlimitedPath(const CString& path);

// The working folders of one build, beside the deployment: `.<name>.staging-1a2b3c4d`.
CString StagingFolderName(const CString& name, std::uint32_t id);
CString OldFolderName(const CString& name, std::uint32_t id);
// The file that a living build holds open; it names the build's id: `.<name>.build-lock`.
CString LockFileName(const CString& name);
CString LockFileText(std::uint32_t id);
enum class LockText
{
    Complete,   // `id` is filled
    Unfinished, // the build ended while it wrote the text, so before it made a folder
    Foreign,    // not a lock file of ours
};
LockText ReadLockFileText(const char* text, std::size_t length, std::uint32_t& id);
// The deployment's name from that of a lock file; empty for any other file.
CString NameFromLockFile(const CString& fileName);
// True for the names above, of whatever deployment: none can be called so.
bool IsWorkingName(const CString& name);
// Where the log of a failed build is kept, beside the deployment: `<name>.Build.log`, or with a number from 2 on where
// something else has that name. Its first line, by which it is known as one.
CString FailedLogName(const CString& name, int number);
CString FailedLogHead(const CString& name);
// The folder beside a new deployment for what somebody had put into the one before: `<name> (kept files <when>)`.
CString KeptFolderName(const CString& name, const CString& when);

CString HexText(std::uint32_t value); // 8 digits, lower case

// A text made fit for a part of a file name: reserved and control characters become "_".
CString FileNamePart(const CString& text);

bool IsAscii(const CString& text);

// What a dead build left, and what follows from it.
enum class LeftoverStep
{
    Nothing,    // no old folder
    PutOldBack, // it died between the two renames
    DeleteOld,  // it died after the second rename
    KeepOld,    // somebody made a deployment of that name since: nothing may be thrown away
};
LeftoverStep JudgeLeftovers(bool targetExists, bool stagingExists, bool oldExists);
