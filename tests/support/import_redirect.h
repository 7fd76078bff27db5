// Sends a loaded library's calls of one imported function elsewhere, as long as the object lives.
#pragma once

#include "base/string.h"

#include <windows.h>

class CImportRedirect
{
public:
    CImportRedirect(const wchar_t* library, const char* function, void* replacement);
    ~CImportRedirect();
    CImportRedirect(const CImportRedirect&) = delete;
    CImportRedirect& operator=(const CImportRedirect&) = delete;

    // False when the library doesn't import the function by name.
    bool IsInPlace() const { return m_slot != nullptr; }

private:
    void** m_slot = nullptr;
    void* m_former = nullptr;
};
