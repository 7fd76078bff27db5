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

// What happens with a product's patches. The pages store 0, 1, 2 and 4; 3 and 5 are what GetMsiPatchState reports of a
// deployment that was built, and lock the choice between appending and merging.
enum tagPATCHSTATE : int
{
    PATCHSTATE_NONE = 0,
    PATCHSTATE_MERGE_EMPTY = 1, // merging is chosen, and the list is empty
    PATCHSTATE_APPEND = 2,      // the listed patches are installed along with the product
    PATCHSTATE_APPENDED = 3,    // the deployment has such patches already
    PATCHSTATE_MERGE = 4,       // the listed patches become part of the image
    PATCHSTATE_MERGED = 5,      // patches are part of the image already, and can't be removed from it
};

} // namespace Setup

// An installer handle as the service gives it: an unsigned 32-bit value, 0 for none (the type of the service's own
// header, named here so that the contract needs no installer header).
using InstallerHandle = unsigned long;
