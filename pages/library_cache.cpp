#include "pages/library_cache.h"

#include <string>

namespace {

std::string SystemBytes(const CString& text)
{
    const int length = WideCharToMultiByte(CP_ACP, 0, text, text.GetLength(), nullptr, 0, nullptr, nullptr);
    std::string bytes(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_ACP, 0, text, text.GetLength(), bytes.data(), length, nullptr, nullptr);
    return bytes;
}

} // namespace

CLibraryCache& CLibraryCache::Instance()
{
    static CLibraryCache* const cache = new CLibraryCache;
    return *cache;
}

FARPROC CLibraryCache::GetProc(const CString& library, const CString& procedure)
{
    CResourceLibrary*& found = m_libraries[library];
    if (!found) {
        found = new CResourceLibrary;
    }
    FARPROC address = nullptr;
    if (found->GetModule() || found->Load(library)) {
        address = GetProcAddress(found->GetModule(), SystemBytes(procedure).c_str());
    }
    if (!address) {
        CString text;
        text.Format(L"%s was not found in %s!", procedure.GetString(), library.GetString());
        MessageBoxW(nullptr, text, L"Error", MB_OK | MB_ICONERROR);
    }
    return address;
}
