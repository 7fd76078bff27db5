#include "tests/support/patch_fixtures.h"

#include "tests/support/text.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace {

// Test programs stand in the build tree's folder bin or in folders of their own below it.
CString FixtureFolder()
{
    wchar_t program[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    CString folder = program;
    while (folder.ReverseFind(L'\\') > 0) {
        folder = folder.Left(folder.ReverseFind(L'\\'));
        const CString found = folder + L"\\patch_fixtures";
        if (GetFileAttributesW(found) != INVALID_FILE_ATTRIBUTES) {
            return found;
        }
    }
    return {};
}

} // namespace

CString PatchFixture(const CString& name)
{
    const CString path = FixtureFolder() + L"\\" + name;
    EXPECT_NE(GetFileAttributesW(path), INVALID_FILE_ATTRIBUTES) << Utf8(path) << " is missing";
    return path;
}
