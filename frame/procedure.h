// Calls of libraries that are loaded by name.
#pragma once

#include <windows.h>

// Null when the library doesn't export it.
template <class Function>
[[nodiscard]] Function FindProcedure(HMODULE library, const char* name)
{
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(library, name)));
}
