// How a path on a drive becomes a path on the network: the parts that ask nothing of the system.
#pragma once

#include "base/string.h"

#include <map>

// Remote name of a share to its local path in upper case, both without a backslash at the end.
using ShareMap = std::map<CString, CString>;

// Without any backslash at the end: a drive's root becomes `C:`.
[[nodiscard]] CString WithoutBackslashes(CString path);

// `\\COMPUTER`, or two backslashes alone for a computer whose name can't be read.
[[nodiscard]] CString ComputerRoot(const CString& computer);

// True when the path's drive is in the list: entries of four characters ("C:\" and a zero), closed by an empty one.
[[nodiscard]] bool IsDriveInList(const CString& path, const wchar_t* drives);

// The network form of a path on a drive that is mapped to `remoteName`.
[[nodiscard]] CString MappedPath(const CString& remoteName, const CString& path);

// Looks for the share in which the local path lies. False when the map is empty.
[[nodiscard]] bool FindShareOfPath(const ShareMap& shares, const CString& path, CString& networkPath);
