// Which addresses and file names from a foreign text are used. No window header.
#pragma once

#include "base/string.h"

// http:// or https://, a host, perhaps a port, and a path: printable ASCII as a browser would send it, percent signs only in
// front of two hex digits, no user and password. At most `limit` units.
[[nodiscard]] bool IsWebAddress(const CString& address, int limit);

// The name under which the page will store the file: the last element of the address's path as it stands. Empty when the
// address is none, has a query or a fragment, or when its last element isn't the plain name of a patch file.
[[nodiscard]] CString DownloadName(const CString& address);

// Letters, digits, ".", "-" and "_" of ASCII, the extension .msp or .exe, no name of a device. Short enough for any folder.
[[nodiscard]] bool IsPatchFileName(const CString& name);
[[nodiscard]] bool IsProgramName(const CString& name);
// What the program `name` writes: its stem with ".msp".
[[nodiscard]] CString UnpackedName(const CString& name);
