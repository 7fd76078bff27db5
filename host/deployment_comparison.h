// Two deployments compared for the program: what WizCore.dll offers beside the host itself (setup_host.h). No media, no host
// object, nothing written.
#pragma once

#include "base/operation_error.h"
#include "builder/deployment_difference.h"
#include "include/installer_calls.h"

#include <vector>

// A product of a deployment, as answers name it.
struct ComparedProductName
{
    CString strCode; // with braces
    CString strName;
};

struct TwoDeployments
{
    std::vector<ComparedProductName> firstProducts;
    std::vector<ComparedProductName> secondProducts;
    std::vector<DeploymentDifference> differences; // sorted
};

// Compares all but the answers, which are the program's to read. `first`, `second`: full paths of the deployments' folders.
// False with an error that says what can't be read, why, and what to do.
extern "C" WIZCORE_API bool CompareTwoDeployments(const CString& first, const CString& second,
                                                  TwoDeployments& compared, OperationError& error);
