#include "tests/support/resource_strings.h"

#include "base/handle.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

CString BuiltLanguageFolder()
{
    return ProgramFolder() + L"..\\Languages\\en-US\\";
}

CString ResourceText(UINT id)
{
    const CString path = BuiltLanguageFolder() + L"WizText.dll";
    const CModuleOwner library(LoadLibraryExW(path, nullptr, LOAD_LIBRARY_AS_DATAFILE));
    EXPECT_TRUE(library) << Utf8(path) << " can't be loaded, error " << GetLastError();
    const wchar_t* text = nullptr;
    const int length = LoadStringW(library.get(), id, reinterpret_cast<wchar_t*>(&text), 0);
    EXPECT_GT(length, 0) << "the resource library has no string " << id;
    return CString(text, length);
}

CString ResourceText(UINT id, const CString& argument)
{
    CString text;
    text.Format(ResourceText(id), argument.GetString());
    return text;
}
