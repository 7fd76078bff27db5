#include "window/module.h"

#include <windows.h>

CAppModule _Module;

namespace {

// The module that RolloutUi.dll initialises when it is attached.
const struct ModuleStart
{
    ModuleStart() { _Module.Init(::GetModuleHandleW(nullptr)); }
    ~ModuleStart() { _Module.Term(); }
} g_start;

} // namespace
