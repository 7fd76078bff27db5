#include "frame/resource_library.h"

#include "include/lang_mgr.h"

#include <shlwapi.h>

namespace {

constexpr wchar_t RESOURCE_LIBRARY_NAME[] = L"WizText.dll";

} // namespace

bool CResourceLibrary::Load(const CString& path)
{
    if (m_module && m_strPath.CompareNoCase(path) == 0) {
        return true;
    }
    m_strPath.Empty();
    m_module.reset(); // before the other is loaded: both may be versions of one library
    m_module.reset(::LoadLibraryW(path));
    if (!m_module) {
        ::MessageBoxW(nullptr, L"Failed to load " + path, L"Error", MB_OK);
        return false;
    }
    m_strPath = path;
    return true;
}

CString GetResourceLibraryPath()
{
    const CString name(RESOURCE_LIBRARY_NAME);
    // The folder ends in a backslash.
    return ::PathIsRelativeW(name) ? CLangMgr::Instance().GetWizTextPath() + name : name;
}
