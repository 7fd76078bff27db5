// The page library's module.
#include "window/module.h"

#include <windows.h>

#include <commctrl.h>

CAppModule _Module;

namespace {

void RegisterCommonControls()
{
    constexpr DWORD CONTROL_CLASSES = 767; // all that the pages use, as a mask of ICC_ flags
    const INITCOMMONCONTROLSEX controls = {sizeof controls, CONTROL_CLASSES};
    ::InitCommonControlsEx(&controls);
}

} // namespace

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void*)
{
    switch (reason) {
    case DLL_PROCESS_ATTACH:
        _Module.Init(instance);
        RegisterCommonControls();
        break;
    case DLL_PROCESS_DETACH:
        _Module.Term();
        break;
    default:
        break;
    }
    return TRUE;
}
