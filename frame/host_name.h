// Whether a server's name is known to the network.
#pragma once

// True when the system resolves the name. Any failure on the way gives false.
[[nodiscard]] bool IsHostResolvable(const wchar_t* host);
