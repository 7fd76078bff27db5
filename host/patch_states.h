// What the patch state of a product means: what a stored one comes back as, and what a chosen one brings into a build.
// No window header.
#pragma once

#include "include/setup_enums.h"

// What a deployment's file and image say of one product.
struct PatchesOfImage
{
    int storedState = 0;      // tagPATCHSTATE when it was built
    bool hasMerged = false;   // the database and the files have them already
    bool hasUnmerged = false; // patches that aren't merged lie in the image
};

// What the deployment has: 3 with appended patches, merged ones beside them or not, 5 with merged ones alone, otherwise 0.
[[nodiscard]] Setup::tagPATCHSTATE StateInImage(const PatchesOfImage& patches);
// What was chosen when it was built, as the page finds it. Merging that is done comes back as done; what was chosen for
// patches that are no longer there, as chosen for an empty list.
[[nodiscard]] Setup::tagPATCHSTATE ChosenState(const PatchesOfImage& patches);

enum class PatchUse
{
    None,   // the list is left alone, and none of it goes into the deployment
    Append, // installed along with the product
    Merge,  // made a part of the database and the files
};
// What a build does with the listed patches that aren't merged yet.
[[nodiscard]] PatchUse UseOfPatches(Setup::tagPATCHSTATE chosen);
