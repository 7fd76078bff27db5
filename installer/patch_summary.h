// What a patch file says of itself. All is read anew with each call, and no handle stays open.
#pragma once

#include "base/string.h"
#include "installer/handle.h"

// How a patch file is opened: for reading alone. Anything else, a package too, can't be opened so.
[[nodiscard]] unsigned int OpenPatch(const CString& path, CInstallerHandle& patch);

// The product codes that the patch is for, of whatever length. False: not read.
[[nodiscard]] bool ReadPatchTargets(const CString& path, CString& targets);
// The patch's own code, and whatever stands behind it: the codes of patches that it replaces. False: not read, or longer
// than 1,023 units.
[[nodiscard]] bool ReadPatchCode(const CString& path, CString& code);
// What a person calls it: name of the product and of the patch, with a blank between them; the patch's alone where the
// product has none. Each is cut to 259 units. False when it names neither.
[[nodiscard]] bool ReadPatchDisplayName(const CString& path, CString& name);
