#include "frame/error_text.h"

#include "base/system_text.h"
#include "frame/resource_library.h"
#include "frame/resource_text.h"
#include "include/lang_mgr.h"
#include "include/resource_ids.h"

namespace {

constexpr DWORD USER_LANGUAGE = 1024;
constexpr int RESOURCE_TEXT_CAPACITY = 2048;

CString FindSetupText(DWORD code, HMODULE resources)
{
    if (!resources) {
        return CString();
    }
    CString text;
    const int length = ::LoadStringW(resources, code | IDS_EXIT_CODE_FIRST,
                                     text.GetBuffer(RESOURCE_TEXT_CAPACITY), RESOURCE_TEXT_CAPACITY);
    text.ReleaseBuffer(length);
    return text;
}

DWORD SetupLanguage()
{
    CLangMgr& languages = CLangMgr::Instance();
    return languages.LocaleNameToLANGID(languages.GetWizCoreLanguage());
}

// `findSetupText` is asked only when the system has no text in the setup's language.
template <class FindText>
CString FindMessage(DWORD code, FindText findSetupText)
{
    CString text = FindSystemText(code, SetupLanguage());
    if (text.IsEmpty()) {
        text = findSetupText();
    }
    if (text.IsEmpty()) {
        text = FindSystemText(code, USER_LANGUAGE);
    }
    return text;
}

} // namespace

CString MessageForCode(DWORD code)
{
    return FindMessage(code, [code] {
        CResourceLibrary library;
        library.Load(GetResourceLibraryPath());
        return FindSetupText(code, library.GetModule());
    });
}

CString MessageForCode(DWORD code, HMODULE resources)
{
    return FindMessage(code, [code, resources] { return FindSetupText(code, resources); });
}

void ShowErrorBox(DWORD code, const wchar_t* text, const wchar_t* title, HWND owner)
{
    const CString message = (code ? MessageForCode(code) : CString()) + text;
    const CString caption = title ? CString(title) : LoadResourceString(IDS_ERROR_TITLE);
    ::MessageBoxW(::IsWindow(owner) ? owner : nullptr, message, caption, MB_OK | MB_ICONERROR);
}
