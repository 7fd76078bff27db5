// Libraries whose functions are looked up by name, because not every system has them.
#pragma once

#include "frame/resource_library.h"

#include <map>

// One for the process, made when it is first asked for. It is never freed: nothing says when the last caller is done
// with a function, and the system drops the libraries with the process.
class CLibraryCache
{
public:
    [[nodiscard]] static CLibraryCache& Instance();

    // The function, from a library that is loaded when it is first needed. Null, after a message box with both names,
    // when there is none.
    [[nodiscard]] FARPROC GetProc(const CString& library, const CString& procedure);

private:
    CLibraryCache() = default;

    std::map<CString, CResourceLibrary*> m_libraries;
};
