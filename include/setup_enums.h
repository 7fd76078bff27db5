// The host's enumerations. Only the values that the pages use have a meaning here.
#pragma once

namespace Setup {

enum tagSETUPMODE : int
{
    SETUPMODE_INSTALL = 2,  // the two modes of the ordinary installation stages;
    SETUPMODE_MAINTAIN = 3, // only the cancel question differs
    SETUPMODE_CREATE_DEPLOYMENT = 4,
    SETUPMODE_CREATE_FROM_DEPLOYMENT = 5,
    SETUPMODE_MODIFY_DEPLOYMENT = 6,
};

enum tagPLATFORM : int
{
    PLATFORM_X86 = 2,
    PLATFORM_X64 = 3,
};

// What CheckForDeploymentLocation found. 1 and 2 are acceptable, 3 needs the user's word, all else is refused.
enum tagDEPLOYMENTLOCATIONTYPE : int
{
    DEPLOYMENTLOCATION_REFUSED = 0,
    DEPLOYMENTLOCATION_EMPTY = 1,
    DEPLOYMENTLOCATION_HAS_DEPLOYMENTS = 2,
    DEPLOYMENTLOCATION_HAS_OTHER_FILES = 3,
};

// The state of a product's service pack. The pages store 0, 1, 2 and 4.
enum tagPATCHSTATE : int
{
    PATCHSTATE_0 = 0,
    PATCHSTATE_1 = 1,
    PATCHSTATE_2 = 2,
    PATCHSTATE_3 = 3,
    PATCHSTATE_4 = 4,
    PATCHSTATE_5 = 5,
};

} // namespace Setup

// An installer handle as the service gives it: an unsigned 32-bit value, 0 for none (the type of the service's own
// header, named here so that the contract needs no installer header).
using InstallerHandle = unsigned long;
