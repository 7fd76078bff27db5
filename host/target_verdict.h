// What stands where a deployment will be, and whether the build may replace it.
#pragma once

#include "host/setup_host.h"

struct TargetQuestion
{
    CString strLocation;
    CString strName;
    CString strSetupCode;
    CString strMediaRoot; // of described media, which no deployment may lie in; else empty
    // StampOfDeployment of those that may be replaced: the one that is modified, and those that somebody was asked about.
    std::vector<CString> replaceable;
};

[[nodiscard]] TargetVerdict JudgeTargetFolder(const TargetQuestion& question);
