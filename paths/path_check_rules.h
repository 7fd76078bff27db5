// Whether a text that was typed into a node of the paths' tree can stand there.
//
//   node                    text             must be                              otherwise
//   entry of the support    with ";"         each of its entries as below
//   list                    anchored         a rest that is valid and not UNC     BadFolder
//                           other            a directory; that exists             BadFolder; Missing
//   address of a folder     any              not UNC                              Unc
//   other folder            anchored         a rest that is valid and not UNC     BadFolder
//                           other            valid, a directory; that exists      BadFolder; Missing
//   file                    anchored         a rest that is valid and not UNC     BadFolder, on purpose
//                           other            valid; that exists, unless it        BadFile; Missing
//                                            need not
//
// Anchored means: by a drive letter or by a folder of the product; nothing is looked up on the disk then.
#pragma once

#include "base/string.h"
#include "paths/path_resolution.h"

#include <cstdint>
#include <vector>

// What the checks ask of the computer.
class IPathProbe
{
public:
    [[nodiscard]] virtual bool IsDirectory(const CString& path) const = 0;
    [[nodiscard]] virtual bool Exists(const CString& path) const = 0;

protected:
    ~IPathProbe() = default;
};

enum class PathVerdict
{
    Good,
    BadFolder,
    BadFile,
    Unc,
    Missing, // the administrator decides
};

// The texts that are judged one by one: the entries of a support list, else the text itself.
[[nodiscard]] std::vector<CString> PathsToJudge(const CString& text, bool isSupportEntry);

[[nodiscard]] PathVerdict JudgePath(const CString& text, std::uint32_t flags, bool isSupportEntry,
                                    const CPathResolver& resolver, const IPathProbe& probe);
