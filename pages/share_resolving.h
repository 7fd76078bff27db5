// Turns a path that the user gave into the form that other computers can use.
#pragma once

#include "pages/share_rules.h"

// 1 with the network form in `out`: a network path as it is, a path on a mapped drive by its share, a local path by
// this computer's own shares. Otherwise 0, with `out` empty. No failure is reported.
[[nodiscard]] int ResolveNetworkPath(CString& out, const CString& in);

// The steps of the above: 1 when the drive of `in` is mapped; 1 when the shares could be listed, which a network that
// works never answers; 1 when the share named `remote` lies on this computer.
[[nodiscard]] int ResolveMappedDrive(CString& out, const CString& in);
[[nodiscard]] int EnumerateShares(ShareMap& shares);
[[nodiscard]] int LocalPathOfShare(CString& out, const CString& remote);

// This computer's name, at most 260 characters; empty when it can't be read.
[[nodiscard]] CString ComputerName();
