// The features of additions in a database that was built.
#pragma once

#include "installer/handle.h"

// A build spreads many additions over further features (builder/user_features.h), of which the pages know nothing:
// they look for an addition in the first one. Puts all of them back there, and removes the further ones. 0, or the
// service's code.
[[nodiscard]] unsigned int GatherUserFeatures(MSIHANDLE database);
