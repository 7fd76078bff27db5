// Forms of paths and names that a build uses, and which names it refuses. No window header.
#pragma once

#include "base/path_text.h"
#include "base/string.h"

#include <cstdint>
#include <vector>

constexpr int MAX_DEPLOYMENT_NAME = 200; // leaves room for what the working folders add
constexpr int MAX_INSTALLER_PATH = 259;  // longest path that the installer service of a workstation opens

// Why a deployment can't have this name, as a sentence; empty when it can.
[[nodiscard]] CString RefusedName(const CString& name);

// The working folders of one build, beside the deployment: `.<name>.staging-1a2b3c4d`.
[[nodiscard]] CString StagingFolderName(const CString& name, std::uint32_t id);
[[nodiscard]] CString OldFolderName(const CString& name, std::uint32_t id);
// The file that a living build holds open; it names the build's id: `.<name>.build-lock`.
[[nodiscard]] CString LockFileName(const CString& name);
[[nodiscard]] CString LockFileText(std::uint32_t id);
enum class LockText
{
    Complete,   // `id` is filled
    Unfinished, // the build ended while it wrote the text, so before it made a folder
    Foreign,    // not a lock file of ours
};
[[nodiscard]] LockText ReadLockFileText(const char* text, std::size_t length, std::uint32_t& id);
// The deployment's name from that of a lock file; empty for any other file.
[[nodiscard]] CString NameFromLockFile(const CString& fileName);
// True for the names above, of whatever deployment: none can be called so.
[[nodiscard]] bool IsWorkingName(const CString& name);
// Where the log of a failed build is kept, beside the deployment: `<name>.Build.log`, or with a number from 2 on where
// something else has that name. Its first line, by which it is known as one.
[[nodiscard]] CString FailedLogName(const CString& name, int number);
[[nodiscard]] CString FailedLogHead(const CString& name);
// The folder beside a new deployment for what somebody had put into the one before: `<name> (kept files <when>)`.
[[nodiscard]] CString KeptFolderName(const CString& name, const CString& when);

[[nodiscard]] bool IsAscii(const CString& text);

// What a dead build left, and what follows from it.
enum class LeftoverStep
{
    Nothing,    // no old folder
    PutOldBack, // it died between the two renames
    DeleteOld,  // it died after the second rename
    KeepOld,    // somebody made a deployment of that name since: nothing may be thrown away
};
[[nodiscard]] LeftoverStep JudgeLeftovers(bool targetExists, bool stagingExists, bool oldExists);
