// Holds a deployment that stands against what it says was built: its files against the manifest, its databases and patches
// against their codes, its commands but for the settings that an administrator may change. Reads only.
#pragma once

#include "builder/build_plan.h"
#include "builder/build_result.h"
#include "builder/verify_result.h"

#include <functional>

struct RecordedPatch
{
    CString strFile;      // relative path in the deployment
    CString strCode;      // with braces; empty where the deployment doesn't record it
    CString strSha256;    // likewise
    bool bMerged = false; // its content is part of the image then, and its file need not be
};

// What the deployment file says that can be held against the rest.
struct DeploymentRecord
{
    CString strProduct; // name and version
    WorkstationCommands commands;
    std::vector<CString> productCodes; // with braces, of all databases
    std::vector<RecordedPatch> patches;
};

// Reads the deployment file, whose full path it gets. The empty text, or why it could not be read.
using RecordReader = std::function<CString(const CString& file, DeploymentRecord& record)>;

// `folder`: full path. What `progress` cancels is undetermined.
[[nodiscard]] VerifyResult VerifyDeployment(const CString& folder, const RecordReader& readRecord,
                                            IBuildProgress& progress);
