// Next on the settings page: each kind of log folder with its box, and what is stored.
#include "tests/pages/settings_page.h"

#include <commctrl.h>

namespace {

// The system reads the list of network providers when the program starts, so this must come first of all.
const bool networkIsReady = PrepareTestNetwork();

class SettingsNext : public SettingsPage
{
protected:
    SettingsNext() { EXPECT_TRUE(networkIsReady) << "the network provider could not be registered"; }

    static ExpectedBox NotNetwork() { return WarningBox(ResourceText(IDS_LOG_FOLDER_NOT_NETWORK)); }
    static ExpectedBox Unusable(const CString& logFolder)
    {
        return {ResourceText(IDS_LOG_FOLDER_UNUSABLE, logFolder), MB_YESNO, MB_ICONWARNING, std::nullopt,
                true};
    }
    void ExpectTaken(const CString& typed, const CString& stored)
    {
        NextWithLog(typed);
        EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
        EXPECT_TRUE(host.manager.m_bNetworkLog);
        EXPECT_EQ(host.manager.m_strNetworkLogFolder, stored);
    }
    // Enter where the text is typed: the focus stays in the edit until a box takes it.
    void TypeAndPressEnter(const CString& typed)
    {
        WithLog(L"before");
        Type(IDC_LOG_FOLDER, typed);
        Key(VK_RETURN);
    }
    void ExpectRefusedAsNoNetworkPath(const CString& typed)
    {
        WithLog(L"before");
        Type(IDC_LOG_FOLDER, typed);
        Press(IDC_NEXT);
        Answer(NotNetwork(), IDOK);
        ExpectStaysOnFolder(typed);
        ShowAndLeave();
        EXPECT_EQ(host.manager.m_strNetworkLogFolder, CString(L"before"));
    }
};

TEST_F(SettingsNext, AFolderOnAShareIsTaken)
{
    const CTestShare share(L"SRV", L"LOGS");
    ExpectTaken(L"\\\\SRV\\LOGS\\new", L"\\\\SRV\\LOGS\\new\\");
    EXPECT_FALSE(FolderExists(L"\\\\SRV\\LOGS\\new"));
}

TEST_F(SettingsNext, ALocalFolderThatIsEmptyOrNewIsTaken)
{
    const CString empty = folder.AddFolder(L"empty");
    ExpectTaken(empty, empty + L"\\");
    ExpectTaken(folder / L"new", (folder / L"new") + L"\\");
}

TEST_F(SettingsNext, AFolderThatIsNotEmptyIsTaken)
{
    folder.AddFile(L"file.txt", "text");
    ExpectTaken(folder.GetPath(), folder.GetPath());
}

TEST_F(SettingsNext, TheRootOfADriveIsTaken)
{
    ExpectTaken(L"C:\\", L"C:\\");
}

TEST_F(SettingsNext, QuotesAroundTheFolderAreTakenOff)
{
    const CString empty = folder.AddFolder(L"with blank");
    ExpectTaken(L"\"" + empty + L"\"", empty + L"\\");
}

TEST_F(SettingsNext, WithoutALogNoFolderIsLookedAt)
{
    host.manager.m_strNetworkLogFolder = L"no folder at all";
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_FALSE(host.manager.m_bNetworkLog);
    EXPECT_EQ(host.manager.m_strNetworkLogFolder, CString());
}

TEST_F(SettingsNext, ARelativeFolderIsRefused)
{
    ExpectRefusedAsNoNetworkPath(L"logs");
}

TEST_F(SettingsNext, AFolderThatIsAFileIsRefused)
{
    ExpectRefusedAsNoNetworkPath(folder.AddFile(L"file.txt", "text"));
}

TEST_F(SettingsNext, AServerWithoutAShareIsRefused)
{
    ExpectRefusedAsNoNetworkPath(L"\\\\SRV");
}

TEST_F(SettingsNext, LongLocalFoldersAreRefused)
{
    for (const int length : {259, 260, 300})
        ExpectRefusedAsNoNetworkPath(L"C:\\" + CString(L'a', 100) + L"\\" + CString(L'b', length - 104));
}

TEST_F(SettingsNext, NoKeepsThePageWhereTheShareDoesNotAnswer)
{
    NextWithLog(L"\\\\SRV\\MISSING\\logs");
    Answer(Unusable(L"\\\\SRV\\MISSING\\logs\\"), IDNO);
    ExpectStaysOnFolder(L"\\\\SRV\\MISSING\\logs");
    ShowAndLeave();
    EXPECT_EQ(host.manager.m_strNetworkLogFolder, CString(L"\\\\SRV\\MISSING\\logs"));
}

TEST_F(SettingsNext, YesTakesAShareThatDoesNotAnswer)
{
    NextWithLog(L"\\\\SRV\\MISSING\\logs");
    Answer(Unusable(L"\\\\SRV\\MISSING\\logs\\"), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.manager.m_strNetworkLogFolder, CString(L"\\\\SRV\\MISSING\\logs\\"));
}

// The text was stored as typed, quotes and all, when Enter was pressed in the edit.
TEST_F(SettingsNext, YesStoresTheFolderThatTheBoxNamed)
{
    for (const wchar_t* typed : {L"\"\\\\SRV\\MISSING\\logs\"", L"\\\\SRV\\MISSING\\other\\..\\logs"}) {
        TypeAndPressEnter(typed);
        Answer(Unusable(L"\\\\SRV\\MISSING\\logs\\"), IDYES);
        EXPECT_EQ(ShowPage(), NAVIGATION_NEXT) << Utf8(typed);
        EXPECT_EQ(host.manager.m_strNetworkLogFolder, CString(L"\\\\SRV\\MISSING\\logs\\")) << Utf8(typed);
    }
}

TEST_F(SettingsNext, NoLeavesTheTextAsItWasTyped)
{
    for (const wchar_t* typed : {L"\"\\\\SRV\\MISSING\\logs\"", L"\\\\SRV\\MISSING\\other\\..\\logs"}) {
        TypeAndPressEnter(typed);
        Answer(Unusable(L"\\\\SRV\\MISSING\\logs\\"), IDNO);
        ExpectStaysOnFolder(typed);
        ShowAndLeave();
        EXPECT_EQ(host.manager.m_strNetworkLogFolder, CString(L"before")) << Utf8(typed);
    }
}

int caretScrolls = 0;

LRESULT CALLBACK CountCaretScrolls(HWND edit, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR, DWORD_PTR)
{
    caretScrolls += message == EM_SCROLLCARET;
    return DefSubclassProc(edit, message, wParam, lParam);
}

// Wine scrolls when the text is selected, Windows only when it is asked to.
TEST_F(SettingsNext, ARefusalAsksTheEditToScrollToTheCaret)
{
    caretScrolls = 0;
    WithLog(L"logs");
    Look([this] { SetWindowSubclass(Control(IDC_LOG_FOLDER).GetWindow(), CountCaretScrolls, 0, 0); });
    Press(IDC_NEXT);
    Answer(NotNetwork(), IDOK);
    ExpectStaysOnFolder(L"logs");
    Look([] { EXPECT_EQ(caretScrolls, 1); });
    ShowAndLeave();
}

TEST_F(SettingsNext, TheEndOfALongRefusedTextIsInView)
{
    const CString typed = L"logs\\" + CString(L'w', 200);
    const auto isInView = [this](int character) {
        const HWND edit = Control(IDC_LOG_FOLDER).GetWindow();
        RECT room = {};
        GetClientRect(edit, &room);
        const auto left = static_cast<short>(LOWORD(SendMessageW(edit, EM_POSFROMCHAR, character, 0)));
        return left >= 0 && left < room.right;
    };
    WithLog(L"before");
    Type(IDC_LOG_FOLDER, typed);
    Key(VK_HOME);
    Await(L"the beginning of the text is not in view", [=] { return isInView(0); });
    Look([=] { EXPECT_FALSE(isInView(typed.GetLength() - 1)) << "the text is no longer than the edit"; });
    Press(IDC_NEXT);
    Answer(NotNetwork(), IDOK);
    ExpectStaysOnFolder(typed);
    Look([=] { EXPECT_TRUE(isInView(typed.GetLength() - 1)); });
    ShowAndLeave();
}

TEST_F(SettingsNext, ALocalFolderWithDeniedAccessIsAskedAbout)
{
    const CTestDrive machine(L'P', DRIVE_FIXED, "/");
    NextWithLog(L"P:\\dev\\pts\\new");
    Answer(Unusable(L"P:\\dev\\pts\\new\\"), IDNO);
    ExpectStaysOnFolder(L"P:\\dev\\pts\\new");
    ShowAndLeave();
}

TEST_F(SettingsNext, ADoubleClickAsksOnce)
{
    WithLog(L"\\\\SRV\\MISSING\\logs");
    Look([&] {
        EXPECT_TRUE(Control(IDC_NEXT).Click().IsDone());
        EXPECT_TRUE(Control(IDC_NEXT).Click().IsDone());
    });
    Answer(Unusable(L"\\\\SRV\\MISSING\\logs\\"), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_F(SettingsNext, ATextTypedRightBeforeTheKeyOfNextCounts)
{
    const CString empty = folder.AddFolder(L"empty");
    WithLog(L"\\\\SRV\\MISSING\\logs");
    Type(IDC_LOG_FOLDER, L"  " + empty + L" ");
    Key('N', KeyModifier::Alt);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.manager.m_strNetworkLogFolder, empty + L"\\");
}

int Veto(PageContext*)
{
    return 2;
}

TEST_F(SettingsNext, AVetoOfALeaveHookComesBeforeTheFolderIsLookedAt)
{
    context.leaveHooks = {Veto};
    NextWithLog(L"no folder at all");
    Await(L"Cancel is still disabled", [&] { return Control(IDC_CANCEL).IsEnabled(); });
    ShowAndLeave();
}

} // namespace
