// Deployments as they are found on disk. A deployment is known by its folder: the folder's name is its name, whatever name
// its file holds.
#pragma once

#include "host/media.h"

// A deployment that another one is made from, or that is modified.
struct DeploymentBase
{
    CString strEntry; // full path of its deployment file; empty: none
    CString strStamp; // StampOfDeployment when it was opened
    DeploymentFile file;
    Media image;
};

// The name of the deployment whose file `entry` is: that of its folder. Only where the folder is a drive's root, which has
// no name, it is the name in the file.
[[nodiscard]] CString NameOfDeployment(const CString& entry);

// Opens a deployment of that setup code with its image. An error says why it can't be a base.
[[nodiscard]] OperationError OpenBase(const CString& entry, const CString& setupCode, DeploymentBase& base);
