// The library with the dialogs, icons, menus and strings of all pages.
#pragma once

#include "base/handle.h"
#include "base/string.h"

#include <windows.h>

// Owns a loaded library.
class CResourceLibrary
{
public:
    CResourceLibrary() = default;
    CResourceLibrary(const CResourceLibrary&) = delete;
    CResourceLibrary& operator=(const CResourceLibrary&) = delete;

    // Loads the library in place of the one held; the same path in any case keeps the module. False, after a message
    // box with the path, when it can't be loaded; then none is held.
    bool Load(const CString& path);

    // Null while none is held.
    [[nodiscard]] HMODULE GetModule() const { return m_module.get(); }

private:
    CString m_strPath;
    CModuleOwner m_module;
};

// The full path of the resource library: in the language manager's folder of the current language.
[[nodiscard]] CString GetResourceLibraryPath();
