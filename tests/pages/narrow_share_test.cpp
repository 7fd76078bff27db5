// The path of a share on a system of the other kind: its library and its call, put in the place of this program's own
// imports.
#include "pages/share_resolving.h"
#include "tests/support/import_redirect.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>
#include <lm.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

// As that system's header packs it.
#pragma pack(push, 1)
struct NarrowShare
{
    char name[13];
    unsigned char type;
    unsigned short flags;
    char* remark;
    char* path;
    char writePassword[9];
    char readPassword[9];
};
#pragma pack(pop)

struct NarrowSystem
{
    std::string name;            // the share asked for
    std::vector<unsigned> sizes; // of the buffers that came
    char path[32] = "c:\\b\xFCro\\\\";
    DWORD second = NERR_Success; // the answer of the call with a buffer
    unsigned short needed = sizeof(NarrowShare) + 20;
    std::vector<CString> loaded;
};
NarrowSystem narrow;

BOOL WINAPI OtherPlatform(OSVERSIONINFOW* version)
{
    EXPECT_EQ(version->dwOSVersionInfoSize, sizeof(OSVERSIONINFOW));
    version->dwPlatformId = VER_PLATFORM_WIN32_WINDOWS;
    return TRUE;
}

// Any library will do: the call is looked up below.
HMODULE WINAPI LoadAnyLibrary(const wchar_t* name)
{
    narrow.loaded.emplace_back(name);
    return LoadLibraryExW(L"kernel32.dll", nullptr, 0);
}

DWORD __stdcall ShareInfo(const char* server, const char* name, short level, char* buffer,
                          unsigned short size, unsigned short* needed)
{
    EXPECT_EQ(server, nullptr);
    EXPECT_EQ(level, 50);
    narrow.name = name;
    narrow.sizes.push_back(size);
    *needed = narrow.needed;
    if (!buffer)
        return NERR_BufTooSmall;
    NarrowShare share = {};
    share.path = narrow.path;
    std::memcpy(buffer, &share, sizeof share);
    return narrow.second;
}

FARPROC WINAPI FindCall(HMODULE, const char* name)
{
    EXPECT_STREQ(name, "NetShareGetInfo");
    return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(ShareInfo));
}

class NarrowShares : public testing::Test
{
protected:
    NarrowShares()
    {
        narrow = NarrowSystem();
        EXPECT_TRUE(version.IsInPlace() && load.IsInPlace() && find.IsInPlace());
    }

    CImportRedirect version{nullptr, "GetVersionExW", reinterpret_cast<void*>(OtherPlatform)};
    CImportRedirect load{nullptr, "LoadLibraryW", reinterpret_cast<void*>(LoadAnyLibrary)};
    CImportRedirect find{nullptr, "GetProcAddress", reinterpret_cast<void*>(FindCall)};
    CString out = L"before";
};

TEST_F(NarrowShares, TheShareIsAskedForInUpperCaseOnceForTheSizeAndOnceWithABufferOfIt)
{
    EXPECT_EQ(LocalPathOfShare(out, L"\\\\pc\\b\u00FCro.v2"), 1);
    EXPECT_EQ(narrow.name, "B\xDCRO");
    EXPECT_EQ(narrow.sizes, (std::vector<unsigned>{0, narrow.needed}));
    EXPECT_EQ(out, CString(L"c:\\b\u00FCro")) << "wide, and without backslashes at the end";
    EXPECT_EQ(narrow.loaded, std::vector<CString>{L"svrapi.dll"});
}

TEST_F(NarrowShares, ANameIsCutTo260Bytes)
{
    EXPECT_EQ(LocalPathOfShare(out, L"\\\\pc\\" + CString(L'a', 300)), 1);
    EXPECT_EQ(narrow.name, std::string(260, 'A'));
}

TEST_F(NarrowShares, AnErrorGivesNothing)
{
    narrow.second = NERR_NetNameNotFound;
    EXPECT_EQ(LocalPathOfShare(out, L"\\\\pc\\gone"), 0);
    EXPECT_EQ(out, CString());
}

TEST_F(NarrowShares, ASizeThatHoldsNoShareGivesNothing)
{
    narrow.needed = sizeof(NarrowShare) - 1;
    EXPECT_EQ(LocalPathOfShare(out, L"\\\\pc\\gone"), 0);
    EXPECT_EQ(narrow.sizes, std::vector<unsigned>{0}) << "it was asked a second time";
}

} // namespace
