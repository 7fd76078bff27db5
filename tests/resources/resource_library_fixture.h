// The resource libraries of all languages beside the test program, and their dialogs as real windows.
#pragma once

#include "include/resource_ids.h"
#include "tests/support/text.h"
#include "window/handle.h"
#include "window/string.h"
#include "window/window.h"

#include <gtest/gtest.h>

#include <vector>

inline CString LanguagesFolder()
{
    wchar_t path[MAX_PATH] = {};
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    const CString program(path);
    return program.Left(program.ReverseFind(L'\\') + 1) + L"Languages\\";
}

inline std::vector<CString> Languages()
{
    std::vector<CString> found;
    WIN32_FIND_DATAW data = {};
    const HANDLE search = FindFirstFileW(LanguagesFolder() + L"*", &data);
    for (BOOL more = search != INVALID_HANDLE_VALUE; more; more = FindNextFileW(search, &data)) {
        if ((data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && data.cFileName[0] != L'.') {
            found.push_back(data.cFileName);
        }
    }
    FindClose(search);
    return found;
}

// Each test runs once for every language.
class ResourceLibraryTest : public testing::TestWithParam<CString>
{
protected:
    ResourceLibraryTest() : m_library(LoadLibraryW(LanguagesFolder() + GetParam() + L"\\WizText.dll")) {}
    ~ResourceLibraryTest() override { FreeLibrary(m_library); }
    void SetUp() override { ASSERT_NE(m_library, nullptr) << Utf8(GetParam()) << " has no WizText.dll"; }

    CString Text(UINT id) const
    {
        const wchar_t* text = nullptr;
        const int length = LoadStringW(m_library, id, reinterpret_cast<LPWSTR>(&text), 0);
        return length > 0 ? CString(text, length) : CString();
    }

    HMODULE m_library;
};

inline const int PAGE_DIALOGS[] = {IDD_BEGIN_DEPLOYMENT, IDD_PRODUCT_CONTACT, IDD_DEPLOYMENT_COMPLETE,
                                   IDD_DEPLOYMENT_FAILED};
