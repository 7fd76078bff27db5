// ReadMe.txt, Manifest.txt and the end of Build.log. No window header.
#pragma once

#include "builder/build_plan.h"

struct ManifestEntry
{
    CString strPath; // relative to the deployment's folder
    std::uint64_t size = 0;
    CString strSha256; // 64 hex digits, lower case
};

// What an administrator pastes into scripts, group policy and management systems. `workstationPath` is the
// deployment's folder as workstations see it, without closing backslash. `hasAdditions`: Additions.txt lies beside it.
[[nodiscard]] CString ComposeReadMe(const BuildPlan& plan, const CString& workstationPath,
                                    bool hasAdditions = false);

// One line a file, sorted by path: hash, size, path. Everything but the manifest itself.
[[nodiscard]] CString ComposeManifest(std::vector<ManifestEntry> entries);

// What became of files that somebody had put into a replaced deployment, or changed there: names the first few.
[[nodiscard]] CString DescribeKept(bool hasManifest, const std::vector<CString>& own,
                                   const CString& keptFolder);

// The closing lines of a log: code, cause and remedy in words.
[[nodiscard]] CString ComposeLogEnd(unsigned int code, const CString& cause);
