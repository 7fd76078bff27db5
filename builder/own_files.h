// What somebody put into a deployment's folder or changed there since it was built. Its manifest tells.
#pragma once

#include "builder/manifest_check.h"

// What FindOwnFiles saw. A file that is not named as somebody's own is the build's to delete.
struct FolderJudgement
{
    bool hasManifest = false;     // without one nothing can be told, and all of the folder is somebody's own
    std::vector<CString> added;   // relative paths of files and links that the manifest doesn't name
    std::vector<CString> changed; // of files whose content is not the manifest's
    ReadContents ours;            // the others, to look again

    bool IsAllOurs() const { return hasManifest && added.empty() && changed.empty(); }
    std::vector<CString> Own() const; // added and changed
};

// Reads each file that the manifest names, but for those whose content is in `known` and that weren't written since.
// `poll` is called between pieces and may throw to stop.
[[nodiscard]] FolderJudgement FindOwnFiles(const CString& folder, const ReadContents& known,
                                           const std::function<void()>& poll);

// Files that were added or written since `judgement` was made, by sizes and times alone.
[[nodiscard]] std::vector<CString> FindLateFiles(const CString& folder, const FolderJudgement& judgement);

// Deletes an old deployment that has its successor. What is somebody's own is moved into a folder beside first: all files
// named by `own`, or the whole folder when it has no manifest. What can't be deleted goes there too. Returns the folder to
// which that went; empty when there was nothing to keep. A link is refused.
[[nodiscard]] CString RetireDeployment(const CString& old, const CString& location, const CString& name,
                                       bool hasManifest, const std::vector<CString>& own);
