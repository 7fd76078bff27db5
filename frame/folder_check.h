// Whether a folder can take a deployment or a log.
#pragma once

#include "base/string.h"

enum PathCheckResult
{
    PCR_OK = 0,             // usable and empty, or can be created
    PCR_EMPTY = 1,          // nothing is left of the text after unquoting and trimming
    PCR_TOO_LONG = 2,       // the normalised local path has 259 or more characters
    PCR_NO_DRIVE = 3,       // a local path without a drive letter
    PCR_BAD_DRIVE_KIND = 4, // neither a fixed nor a removable disk, or a substituted drive
    PCR_FAILED = 5,         // any other failure of a local path
    PCR_NOT_EMPTY = 6,      // exists, can be written to and isn't empty
    PCR_NOT_UNC = 7,        // not in UNC form, though a network path is required
    PCR_NETWORK_FAILED = 8, // connecting to, creating on or writing to the share failed
    PCR_ACCESS_DENIED = 9,  // access was denied, or a parent of the folder wasn't found
    PCR_IS_ROOT = 10,       // the root of a drive
};

// Judges the folder by trying it: connects to a share (the system may ask for credentials), writes a file into a folder
// that exists, or makes the folder and removes it again. `path` comes back in canonical form, with a backslash at the
// end. Callers ask for a network path first, and on PCR_NOT_UNC once more for a local one.
[[nodiscard]] PathCheckResult ValidateFolder(CString& path, bool requireNetwork);

// The last step of the above, on a canonical path.
[[nodiscard]] PathCheckResult ProbeFolder(const CString& path, bool network);

// Makes and deletes a file in the folder: PCR_OK, PCR_ACCESS_DENIED or PCR_FAILED.
[[nodiscard]] PathCheckResult TestWrite(const CString& folder);

// True for an absolute path on the network or on a fixed drive that isn't a substituted one.
[[nodiscard]] bool IsLocalOrNetworkPath(const CString& path);
