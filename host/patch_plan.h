// What a build does with the patches of one product: which come into the image, under which names, and what of the old ones
// stays behind.
#pragma once

#include "builder/build_plan.h"
#include "host/host_product.h"

// Fills the patches of `database`, the files of `plan` and the patches of `stored`. Reads each patch once.
void PlanPatches(CHostProduct& product, const CString& mediaRoot, BuildPlan& plan, BuildDatabase& database,
                 StoredProduct& stored);
