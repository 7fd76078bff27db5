// How a path becomes its network form. Drives and files are the system's; what a network would have to answer, and the
// prefix has no network for, is put in the place of this program's own imports.
#include "pages/share_resolving.h"

#include "automation/message_box.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "pages/library_cache.h"
#include "tests/support/import_redirect.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_network.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>
#include <lm.h>
#include <winnetwk.h>

#include <functional>
#include <string>
#include <vector>

namespace {

struct Entry
{
    const wchar_t* local;
    const wchar_t* remote;
};

// What the calls answer, and what they were asked; they have no argument of their own for it.
struct Network
{
    DWORD opened = ERROR_ACCESS_DENIED;
    HANDLE handle = nullptr; // that the opening leaves
    std::vector<HANDLE> closed;
    std::vector<Entry> entries;
    std::size_t given = 0;
    int reads = 0;
    CString container;
    HANDLE readFrom = nullptr;
    CString lookedUp; // the share asked for
    const wchar_t* sharePath = nullptr;
    int freed = 0;
    std::string missing; // a function that the library doesn't have
    DWORD connection = NO_ERROR;
    CString device;
};
Network network;

DWORD WINAPI OpenEnum(DWORD scope, DWORD type, DWORD usage, NETRESOURCEW* resource, HANDLE* handle)
{
    EXPECT_EQ(scope, 2u);
    EXPECT_EQ(type, 1u);
    EXPECT_EQ(usage, 0u);
    network.container = resource->lpRemoteName;
    *handle = network.handle;
    return network.opened;
}

DWORD WINAPI CloseEnum(HANDLE enumeration)
{
    network.closed.push_back(enumeration);
    return NO_ERROR;
}

DWORD WINAPI EnumResource(HANDLE enumeration, DWORD* count, void* buffer, DWORD* size)
{
    ++network.reads;
    network.readFrom = enumeration;
    EXPECT_EQ(*count, 1u);
    EXPECT_EQ(*size, 480u);
    if (network.given == network.entries.size())
        return ERROR_NO_MORE_ITEMS;
    const Entry& entry = network.entries[network.given++];
    auto* resource = static_cast<NETRESOURCEW*>(buffer);
    *resource = {};
    resource->lpLocalName = const_cast<wchar_t*>(entry.local);
    resource->lpRemoteName = const_cast<wchar_t*>(entry.remote);
    return NO_ERROR;
}

DWORD WINAPI ShareInfo(wchar_t* server, wchar_t* name, DWORD level, BYTE** buffer)
{
    EXPECT_EQ(server, nullptr);
    EXPECT_EQ(level, 2u);
    network.lookedUp = name;
    static SHARE_INFO_2 info;
    info = {};
    info.shi2_path = const_cast<wchar_t*>(network.sharePath);
    *buffer = reinterpret_cast<BYTE*>(&info);
    return network.sharePath ? NERR_Success : NERR_NetNameNotFound;
}

DWORD WINAPI FreeShareInfo(void*)
{
    ++network.freed;
    return NERR_Success;
}

FARPROC WINAPI ProcAddress(HMODULE, const char* name)
{
    if (network.missing == name)
        return nullptr;
    if (strcmp(name, "NetShareGetInfo") == 0)
        return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(ShareInfo));
    if (strcmp(name, "NetApiBufferFree") == 0)
        return reinterpret_cast<FARPROC>(reinterpret_cast<void*>(FreeShareInfo));
    ADD_FAILURE() << name << " was looked up";
    return nullptr;
}

FARPROC WINAPI NoProcAddress(HMODULE, const char*)
{
    return nullptr;
}

DWORD WINAPI Connection(const wchar_t* device, wchar_t* remote, DWORD* size)
{
    network.device = device;
    EXPECT_EQ(*size, 520u);
    if (network.connection == NO_ERROR)
        wcscpy(remote, L"\\\\srv\\data\\");
    return network.connection;
}

class Redirect : public CImportRedirect
{
public:
    template <class Call>
    Redirect(const char* function, Call* call)
        : CImportRedirect(nullptr, function, reinterpret_cast<void*>(call))
    {
        EXPECT_TRUE(IsInPlace()) << function << " isn't imported";
    }
};

class Shares : public testing::Test
{
protected:
    Shares() { network = Network(); }

    Redirect open{"WNetOpenEnumW", OpenEnum};
    Redirect read{"WNetEnumResourceW", EnumResource};
    Redirect close{"WNetCloseEnum", CloseEnum};
    Redirect connection{"WNetGetConnectionW", Connection};
    ShareMap shares{{L"before", L"BEFORE"}};
    CString out = L"before";
};

// ---- the path

TEST_F(Shares, APathInNetworkFormComesBackUnchanged)
{
    EXPECT_EQ(ResolveNetworkPath(out, L"\\\\server\\share\\dir"), 1);
    EXPECT_EQ(out, CString(L"\\\\server\\share\\dir"));
}

TEST_F(Shares, NothingAndARelativePathGiveNothing)
{
    for (const wchar_t* path : {L"", L"dir", L"dir\\sub", L"\\dir", L"C:dir"}) {
        out = L"before";
        EXPECT_EQ(ResolveNetworkPath(out, path), 0) << Utf8(path);
        EXPECT_EQ(out, CString()) << Utf8(path);
    }
    EXPECT_EQ(network.reads, 0);
}

TEST_F(Shares, ADriveThatIsNotInTheListGivesNothing)
{
    EXPECT_EQ(ResolveNetworkPath(out, L"Q:\\dir\\"), 0);
    EXPECT_EQ(out, CString());
    EXPECT_EQ(network.container, CString()) << "the shares were asked for";
}

// The list is written before the system fails, so that only the failure can be what counts.
DWORD WINAPI FailDriveStrings(DWORD, wchar_t* drives)
{
    memcpy(drives, L"C:\\\0", 5 * sizeof(wchar_t));
    return 0;
}

TEST_F(Shares, ADriveListThatCannotBeReadGivesNothing)
{
    const Redirect list("GetLogicalDriveStringsW", FailDriveStrings);
    EXPECT_EQ(ResolveNetworkPath(out, L"C:\\dir\\"), 0);
    EXPECT_EQ(out, CString());
    EXPECT_EQ(network.container, CString()) << "the shares were asked for";
}

TEST_F(Shares, AMappedDriveIsNamedByItsShare)
{
    const CTestDrive drive(L'X', DRIVE_REMOTE, "/");
    EXPECT_EQ(ResolveNetworkPath(out, L"X:\\"), 1);
    EXPECT_EQ(out, CString(L"\\\\srv\\data"));
    EXPECT_EQ(network.device, CString(L"X:"));
}

TEST_F(Shares, TheRestOfAPathOnAMappedDriveFollowsTheShare)
{
    EXPECT_EQ(ResolveMappedDrive(out, L"X:\\sub\\"), 1);
    EXPECT_EQ(out, CString(L"\\\\srv\\data\\sub"));
}

TEST_F(Shares, ADriveWithoutAConnectionGivesNothing)
{
    network.connection = ERROR_NOT_CONNECTED;
    EXPECT_EQ(ResolveMappedDrive(out, L"X:\\sub\\"), 0);
}

// ---- the enumeration

// Kept on purpose: the test of the result stands the wrong way round.
TEST_F(Shares, ASuccessfulOpenGivesNothingAndReadsNothing)
{
    network.opened = NO_ERROR;
    network.handle = &network;
    network.entries = {{L"C:\\tools", L"\\\\PC\\tools"}};
    EXPECT_EQ(EnumerateShares(shares), 0);
    EXPECT_TRUE(shares.empty());
    EXPECT_EQ(network.reads, 0);
    EXPECT_EQ(ResolveNetworkPath(out, L"C:\\tools\\"), 0);
    EXPECT_EQ(out, CString());
}

// Kept on purpose, like the test above.
TEST_F(Shares, ASuccessfulOpenLeavesTheEnumerationOpen)
{
    network.opened = NO_ERROR;
    network.handle = &network;
    EXPECT_EQ(EnumerateShares(shares), 0);
    EXPECT_EQ(network.closed, std::vector<HANDLE>());
}

TEST_F(Shares, NoNetworkGivesNothing)
{
    network.opened = ERROR_NO_NETWORK;
    EXPECT_EQ(EnumerateShares(shares), 0);
    EXPECT_TRUE(shares.empty());
    EXPECT_EQ(network.reads, 0);
}

TEST_F(Shares, AnyOtherErrorGoesOnWithoutAHandle)
{
    EXPECT_EQ(EnumerateShares(shares), 1);
    EXPECT_TRUE(shares.empty());
    EXPECT_EQ(network.reads, 1);
    EXPECT_EQ(network.readFrom, nullptr);
    EXPECT_EQ(network.closed, std::vector<HANDLE>());
}

TEST_F(Shares, AHandleThatAnErrorLeftIsReadFromAndClosedOnce)
{
    network.handle = &network;
    EXPECT_EQ(EnumerateShares(shares), 1);
    EXPECT_EQ(network.readFrom, &network);
    EXPECT_EQ(network.closed, std::vector<HANDLE>{&network});
}

TEST_F(Shares, TheContainerIsThisComputer)
{
    EXPECT_EQ(EnumerateShares(shares), 1);
    EXPECT_EQ(network.container, L"\\\\" + ComputerName());
}

BOOL WINAPI FailComputerName(wchar_t* name, DWORD* size)
{
    wcscpy(name, L"HALF");
    *size = 4;
    return FALSE;
}

BOOL WINAPI EmptyComputerName(wchar_t* name, DWORD* size)
{
    *name = L'\0';
    *size = 0;
    return TRUE;
}

TEST_F(Shares, TheContainerOfAComputerWithoutANameIsTwoBackslashes)
{
    for (auto* call : {FailComputerName, EmptyComputerName}) {
        const Redirect name("GetComputerNameW", call);
        EXPECT_EQ(EnumerateShares(shares), 1);
        EXPECT_EQ(network.container, CString(L"\\\\"));
    }
}

TEST_F(Shares, LocalPathsAreUpperCaseWithoutBackslashesAtTheEnd)
{
    network.entries = {{L"c:\\B\u00FCro\\\\", L"\\\\pc\\Tools\\"}};
    EXPECT_EQ(EnumerateShares(shares), 1);
    EXPECT_EQ(shares, (ShareMap{{L"\\\\pc\\Tools", L"C:\\B\u00DCRO"}}));
}

TEST_F(Shares, AnEntryWithoutARemoteNameIsSkipped)
{
    network.entries = {{L"c:\\none", nullptr}, {L"c:\\tools", L"\\\\pc\\tools"}};
    EXPECT_EQ(EnumerateShares(shares), 1);
    EXPECT_EQ(shares, (ShareMap{{L"\\\\pc\\tools", L"C:\\TOOLS"}}));
}

TEST_F(Shares, AnEntryWithoutALocalNameIsLookedUp)
{
    const Redirect lookUp("GetProcAddress", ProcAddress);
    network.sharePath = L"c:\\tools\\";
    network.entries = {{nullptr, L"\\\\pc\\tools.v2"}, {L"", L"\\\\pc\\more"}};
    EXPECT_EQ(EnumerateShares(shares), 1);
    EXPECT_EQ(shares, (ShareMap{{L"\\\\pc\\tools.v2", L"C:\\TOOLS"}, {L"\\\\pc\\more", L"C:\\TOOLS"}}));
    EXPECT_EQ(network.freed, 2);
}

TEST_F(Shares, ALookUpThatFailsEndsTheWalk)
{
    const Redirect lookUp("GetProcAddress", ProcAddress);
    network.entries = {{nullptr, L"\\\\pc\\gone"}, {L"c:\\tools", L"\\\\pc\\tools"}};
    EXPECT_EQ(EnumerateShares(shares), 0);
    EXPECT_EQ(network.reads, 1);
}

TEST_F(Shares, ALocalPathTakesTheFirstShare)
{
    network.entries = {{L"d:\\other", L"\\\\pc\\zz"}, {L"q:\\none", L"\\\\pc\\aa"}};
    EXPECT_EQ(ResolveNetworkPath(out, L"C:\\work"), 1);
    EXPECT_EQ(out, CString(L"\\\\pc\\aa\\C:\\work"));
}

// ---- the path of one share

// Kept on purpose: the extension goes before the look-up.
TEST_F(Shares, AShareIsLookedUpWithoutItsExtension)
{
    const Redirect lookUp("GetProcAddress", ProcAddress);
    network.sharePath = L"c:\\Tools\\\\";
    EXPECT_EQ(LocalPathOfShare(out, L"\\\\pc\\tools.v2"), 1);
    EXPECT_EQ(network.lookedUp, CString(L"tools"));
    EXPECT_EQ(out, CString(L"c:\\Tools"));
}

TEST_F(Shares, ANameIsLookedUpByItsFirst260Characters)
{
    const Redirect lookUp("GetProcAddress", ProcAddress);
    network.sharePath = L"c:\\tools";
    EXPECT_EQ(LocalPathOfShare(out, L"\\\\pc\\" + CString(L'a', 259) + L"bc"), 1);
    EXPECT_EQ(network.lookedUp, CString(L'a', 259) + L"b");
}

TEST_F(Shares, AShareThatIsUnknownGivesNothing)
{
    const Redirect lookUp("GetProcAddress", ProcAddress);
    EXPECT_EQ(LocalPathOfShare(out, L"\\\\pc\\gone"), 0);
    EXPECT_EQ(out, CString());
    EXPECT_EQ(network.freed, 0);
}

// ---- functions by name

// Makes the call and gives the texts of the boxes that came, each answered by OK; one box too many fails.
std::vector<CString> BoxesOf(const std::function<void()>& call, std::size_t expected)
{
    std::vector<CString> texts;
    const auto findNext = [&] {
        std::optional<MessageBoxView> box = FindMessageBox();
        return box && (texts.empty() || !(box->Describe() == texts.back())) ? box : std::nullopt;
    };
    CScript script;
    script.SetFailureHandler([] { CloseFrontWindow(); });
    for (std::size_t count = 0; count < expected; ++count) {
        script.Add(L"answer the box", [&] {
            const std::optional<MessageBoxView> box = findNext();
            if (!box)
                return StepOutcome::NotYet(L"no further message box is up");
            texts.push_back(box->Describe());
            return AnswerMessageBox(*box, IDOK);
        });
    }
    script.SetEnding(L"the call's end", [&] {
        const std::optional<MessageBoxView> box = findNext();
        return box ? StepOutcome::Failed(L"an unexpected message box is up: " + box->Describe())
                   : StepOutcome::NotYet(L"the call has not come back");
    });
    script.Start();
    call();
    script.Stop();
    EXPECT_EQ(script.GetFailure(), CString());
    return texts;
}

CString MissingCallBox(const CString& text)
{
    MessageBoxView box;
    box.title = L"Error";
    box.text = text;
    box.icon = MB_ICONERROR;
    return box.Describe();
}

TEST_F(Shares, ALibraryWithoutTheCallsIsReportedOnce)
{
    const Redirect lookUp("GetProcAddress", NoProcAddress);
    const auto call = [this] { EXPECT_EQ(LocalPathOfShare(out, L"\\\\pc\\tools"), 0); };
    EXPECT_EQ(BoxesOf(call, 1),
              std::vector<CString>{MissingCallBox(L"NetShareGetInfo was not found in netapi32.dll!")});
    EXPECT_EQ(out, CString());
}

TEST_F(Shares, WithoutTheCallThatFreesNoShareIsAskedFor)
{
    const Redirect lookUp("GetProcAddress", ProcAddress);
    network.missing = "NetApiBufferFree";
    network.sharePath = L"c:\\tools";
    const auto call = [this] { EXPECT_EQ(LocalPathOfShare(out, L"\\\\pc\\tools"), 0); };
    EXPECT_EQ(BoxesOf(call, 1),
              std::vector<CString>{MissingCallBox(L"NetApiBufferFree was not found in netapi32.dll!")});
    EXPECT_EQ(network.lookedUp, CString());
}

// ---- with the system's own calls

TEST(SharesOfTheSystem, AMappedDriveIsNamedByItsShare)
{
    const CTestShare share(L"SRV", L"data");
    const CTestDrive drive(L'X', DRIVE_REMOTE, "unc/SRV/data");
    CString out;
    EXPECT_EQ(ResolveNetworkPath(out, L"X:\\"), 1);
    EXPECT_EQ(out.CompareNoCase(L"\\\\SRV\\data"), 0) << Utf8(out);
    ASSERT_TRUE(CreateDirectoryW(L"X:\\sub", nullptr)) << GetLastError();
    EXPECT_EQ(ResolveNetworkPath(out, L"X:\\sub\\"), 1);
    EXPECT_EQ(out.CompareNoCase(L"\\\\SRV\\data\\sub"), 0) << Utf8(out);
}

TEST(SharesOfTheSystem, ALocalPathHasNoNetworkForm)
{
    CString out = L"before";
    EXPECT_EQ(ResolveNetworkPath(out, L"C:\\"), 0);
    EXPECT_EQ(out, CString());
}

using OpenEnumCall = DWORD(WINAPI*)(DWORD, DWORD, DWORD, NETRESOURCEW*, HANDLE*);

DWORD answered = ERROR_INVALID_DATA;

// The system's own call, past the redirect; what it opens is closed for the routine, which leaves it open.
DWORD WINAPI NoteOpenEnum(DWORD scope, DWORD type, DWORD usage, NETRESOURCEW* resource, HANDLE* handle)
{
    const auto open = reinterpret_cast<OpenEnumCall>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"mpr.dll"), "WNetOpenEnumW")));
    answered = open(scope, type, usage, resource, handle);
    if (answered == NO_ERROR)
        WNetCloseEnum(*handle);
    return answered;
}

TEST(SharesOfTheSystem, ANetworkThatAnswersLeavesTheListEmpty)
{
    const Redirect open("WNetOpenEnumW", NoteOpenEnum);
    ShareMap shares{{L"before", L"BEFORE"}};
    EXPECT_EQ(EnumerateShares(shares), 0);
    EXPECT_EQ(answered, static_cast<DWORD>(NO_ERROR));
    EXPECT_TRUE(shares.empty());
}

TEST(SharesOfTheSystem, AShareThatNobodyMadeIsUnknown)
{
    CString out = L"before";
    EXPECT_EQ(LocalPathOfShare(out, L"\\\\" + ComputerName() + L"\\no such share"), 0);
    EXPECT_EQ(out, CString());
}

TEST(LibraryCacheTest, AFunctionIsTheLibrarysOwn)
{
    EXPECT_EQ(CLibraryCache::Instance().GetProc(L"kernel32.dll", L"GetComputerNameW"),
              GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "GetComputerNameW"));
}

// Asks for a function that isn't there.
std::vector<CString> BoxesOfLookUp(const wchar_t* library, std::size_t expected)
{
    return BoxesOf([&] { EXPECT_EQ(CLibraryCache::Instance().GetProc(library, L"NoSuchCall"), nullptr); },
                   expected);
}

TEST(LibraryCacheTest, AMissingFunctionIsReportedAtEachCall)
{
    const CString box = MissingCallBox(L"NoSuchCall was not found in kernel32.dll!");
    for (int call = 0; call < 2; ++call)
        EXPECT_EQ(BoxesOfLookUp(L"kernel32.dll", 1), std::vector<CString>{box}) << "call " << call;
}

TEST(LibraryCacheTest, AMissingLibraryIsReportedBeforeItsFunction)
{
    MessageBoxView load;
    load.title = L"Error";
    load.text = L"Failed to load no_such_library.dll";
    const CString box = MissingCallBox(L"NoSuchCall was not found in no_such_library.dll!");
    EXPECT_EQ(BoxesOfLookUp(L"no_such_library.dll", 2), (std::vector<CString>{load.Describe(), box}));
}

} // namespace
