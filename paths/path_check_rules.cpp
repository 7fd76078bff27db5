#include "paths/path_check_rules.h"

#include "frame/path_rules.h"
#include "frame/text_rules.h"
#include "paths/path_table.h"

namespace {

PathVerdict JudgeFolderOnDisk(const CString& text, const IPathProbe& probe)
{
    if (!probe.IsDirectory(text)) {
        return PathVerdict::BadFolder;
    }
    return probe.Exists(text) ? PathVerdict::Good : PathVerdict::Missing;
}

PathVerdict JudgeFileOnDisk(const CString& text, std::uint32_t flags, const IPathProbe& probe)
{
    if (!IsValidPath(text)) {
        return PathVerdict::BadFile;
    }
    const bool mayBeMissing = (flags & PNF_NO_EXIST_CHECK) != 0;
    return mayBeMissing || probe.Exists(text) ? PathVerdict::Good : PathVerdict::Missing;
}

} // namespace

std::vector<CString> PathsToJudge(const CString& text, bool isSupportEntry)
{
    std::vector<CString> paths;
    if (isSupportEntry && text.Find(L';') >= 0) {
        SplitText(text, L";", paths, 0, true);
    } else {
        paths.push_back(text);
    }
    return paths;
}

PathVerdict JudgePath(const CString& text, std::uint32_t flags, bool isSupportEntry,
                      const CPathResolver& resolver, const IPathProbe& probe)
{
    const bool isFolder = (flags & PNF_FOLDER) != 0;
    if (isFolder && !isSupportEntry && (flags & PNF_URL) != 0) {
        return IsUncForm(text) ? PathVerdict::Unc : PathVerdict::Good;
    }
    CString key;
    CString rest;
    if (resolver.SplitDirectoryPrefix(key, rest, text)) {
        return IsValidPath(rest) && !IsUncForm(rest) ? PathVerdict::Good : PathVerdict::BadFolder;
    }
    if (!isFolder) {
        return JudgeFileOnDisk(text, flags, probe);
    }
    // The support list alone doesn't look at the text first.
    return isSupportEntry || IsValidPath(text) ? JudgeFolderOnDisk(text, probe) : PathVerdict::BadFolder;
}
