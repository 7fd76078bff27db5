// What the settings page shows and how its choices act on each other, up to Back.
#include "tests/pages/settings_page.h"

namespace {

using SettingsInit = SettingsPage;
using SettingsLog = SettingsPage;
using SettingsBack = SettingsPage;

// ---- init

TEST_F(SettingsInit, WithoutALogTheFolderIsOffAndNextOn)
{
    Look([&] {
        EXPECT_FALSE(Control(IDC_NETWORK_LOG).IsChecked());
        EXPECT_EQ(Text(IDC_LOG_FOLDER), CString());
        ExpectFolderEnabled(false);
        EXPECT_TRUE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

TEST_F(SettingsInit, WithALogTheHostsFolderStandsInTheEdit)
{
    WithLog(L"\\\\srv\\logs\\B\u00FCro & Co\\");
    Look([&] {
        EXPECT_TRUE(Control(IDC_NETWORK_LOG).IsChecked());
        EXPECT_EQ(Text(IDC_LOG_FOLDER), CString(L"\\\\srv\\logs\\B\u00FCro & Co\\"));
        ExpectFolderEnabled(true);
        EXPECT_TRUE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

TEST_F(SettingsInit, AFolderWithoutALogIsShownButOff)
{
    host.manager.m_strNetworkLogFolder = L"\\\\srv\\logs\\";
    Look([&] {
        EXPECT_EQ(Text(IDC_LOG_FOLDER), CString(L"\\\\srv\\logs\\"));
        ExpectFolderEnabled(false);
        EXPECT_TRUE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

TEST_F(SettingsInit, ALogWithoutAFolderBeginsWithTheDefaultBelowTheComputer)
{
    WithLog(L"");
    Look([&] {
        EXPECT_EQ(Text(IDC_LOG_FOLDER), FolderBelowComputer());
        EXPECT_TRUE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

TEST_F(SettingsInit, TheDefaultLiesBelowALocationInNetworkForm)
{
    for (const wchar_t* location : {L"\\\\srv\\depot", L"\\\\srv\\depot\\"}) {
        WithLocation(location);
        WithLog(L"");
        Look([&] { EXPECT_EQ(Text(IDC_LOG_FOLDER), CString(L"\\\\srv\\depot\\Log\\")); });
        ShowAndLeave();
    }
}

// Other computers don't know the drive, but the location is offered as it was typed.
TEST_F(SettingsInit, TheDefaultLiesBelowALocationOnAMappedDrive)
{
    const CTestShare share(L"SRV", L"data");
    const CTestDrive drive(L'X', DRIVE_REMOTE, "unc/SRV/data");
    ASSERT_TRUE(CreateDirectoryW(L"X:\\depot", nullptr)) << GetLastError();
    WithLocation(L"X:\\depot");
    WithLog(L"");
    Look([&] { EXPECT_EQ(Text(IDC_LOG_FOLDER), CString(L"X:\\depot\\Log\\")); });
    ShowAndLeave();
}

TEST_F(SettingsInit, ALocationThatIsEmptyOrRelativeGivesTheComputersForm)
{
    for (const wchar_t* location : {L"", L"depot", L"Q:\\depot"}) {
        WithLocation(location);
        WithLog(L"");
        Look([&] { EXPECT_EQ(Text(IDC_LOG_FOLDER), FolderBelowComputer()) << Utf8(location); });
        ShowAndLeave();
    }
}

TEST_F(SettingsInit, TheOptionIsTheHosts)
{
    for (const bool option : {false, true}) {
        host.manager.m_bSettingsOption = option;
        Look([&] { EXPECT_EQ(Control(IDC_SETTINGS_OPTION).IsChecked(), option); });
        ShowAndLeave();
        EXPECT_EQ(host.manager.m_bSettingsOption, option);
    }
}

TEST_F(SettingsInit, OnlyModeTwoChecksTheFirstRadio)
{
    for (const int mode : {2, 3, 0, 7}) {
        host.manager.m_installMode = mode;
        Look([&] {
            EXPECT_EQ(Control(IDC_INSTALL_SILENT).IsChecked(), mode == 2) << mode;
            EXPECT_EQ(Control(IDC_INSTALL_PROGRESS).IsChecked(), mode != 2) << mode;
        });
        ShowAndLeave();
        EXPECT_EQ(host.manager.m_installMode, mode == 2 ? 2 : 3);
    }
}

CString hookSaw;
int SeeFolder(PageContext* hook)
{
    hookSaw = CControl(hook->hParent, IDC_LOG_FOLDER).GetText() +
              (CControl(hook->hParent, IDC_LOG_FOLDER).IsEnabled() ? L" on" : L" off");
    return 0;
}

TEST_F(SettingsInit, TheHooksBehindTheInitSeeThePageFilled)
{
    WithLog(L"\\\\srv\\logs\\");
    context.postInitHooks = {SeeFolder};
    ShowAndLeave();
    EXPECT_EQ(hookSaw, CString(L"\\\\srv\\logs\\ on"));
}

// ---- the log's check box

TEST_F(SettingsLog, CheckingFillsInTheDefault)
{
    Press(IDC_NETWORK_LOG);
    Look([&] {
        EXPECT_EQ(Text(IDC_LOG_FOLDER), FolderBelowComputer());
        ExpectFolderEnabled(true);
        EXPECT_TRUE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

TEST_F(SettingsLog, UncheckingLosesTheText)
{
    WithLog(L"\\\\srv\\logs\\");
    Press(IDC_NETWORK_LOG);
    Look([&] {
        EXPECT_EQ(Text(IDC_LOG_FOLDER), CString());
        ExpectFolderEnabled(false);
        EXPECT_TRUE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

// Kept on purpose: a text that stood there while the box was off doesn't survive the check mark.
TEST_F(SettingsLog, CheckingWithATextLosesTheText)
{
    host.manager.m_strNetworkLogFolder = L"\\\\srv\\logs\\";
    Press(IDC_NETWORK_LOG);
    Look([&] {
        EXPECT_EQ(Text(IDC_LOG_FOLDER), CString());
        ExpectFolderEnabled(true);
        EXPECT_FALSE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

TEST_F(SettingsLog, CheckingAgainFillsInTheDefault)
{
    WithLog(L"\\\\srv\\logs\\");
    Press(IDC_NETWORK_LOG);
    Press(IDC_NETWORK_LOG);
    Look([&] { EXPECT_EQ(Text(IDC_LOG_FOLDER), FolderBelowComputer()); });
    ShowAndLeave();
}

// ---- the folder's edit

TEST_F(SettingsLog, NextFollowsTheTextWhileItIsTyped)
{
    WithLog(L"\\\\srv\\logs\\");
    Type(IDC_LOG_FOLDER, L"");
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()); });
    Type(IDC_LOG_FOLDER, L"x");
    Look([&] { EXPECT_TRUE(Control(IDC_NEXT).IsEnabled()); });
    ShowAndLeave();
}

TEST_F(SettingsLog, BlanksAreTrimmedOnlyWhenTheEditLosesTheFocus)
{
    WithLog(L"\\\\srv\\logs\\");
    Type(IDC_LOG_FOLDER, L"  \\\\srv\\other \t");
    Look([&] { EXPECT_EQ(Text(IDC_LOG_FOLDER), CString(L"  \\\\srv\\other \t")); });
    FocusOn(IDC_SETTINGS_OPTION);
    Look([&] { EXPECT_EQ(Text(IDC_LOG_FOLDER), CString(L"\\\\srv\\other")); });
    ShowAndLeave();
}

TEST_F(SettingsLog, BlanksAloneDisableNextWhenTheEditLosesTheFocus)
{
    WithLog(L"\\\\srv\\logs\\");
    Type(IDC_LOG_FOLDER, L"   ");
    Look([&] { EXPECT_TRUE(Control(IDC_NEXT).IsEnabled()); });
    FocusOn(IDC_SETTINGS_OPTION);
    Look([&] {
        EXPECT_EQ(Text(IDC_LOG_FOLDER), CString());
        EXPECT_FALSE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

class SettingsLogOff : public SettingsPage
{
protected:
    // Nobody can type there while the log is off, but a program can set the text.
    void SetFolder(const wchar_t* text, WORD notification)
    {
        const HWND edit = Control(IDC_LOG_FOLDER).GetWindow();
        SetWindowTextW(edit, text);
        SendMessageW(Page(), WM_COMMAND, MAKEWPARAM(IDC_LOG_FOLDER, notification),
                     reinterpret_cast<LPARAM>(edit));
    }
};

TEST_F(SettingsLogOff, ATextThatGoesLeavesNextOn)
{
    host.manager.m_strNetworkLogFolder = L"\\\\srv\\logs\\";
    Look([&] {
        SetFolder(L"", EN_CHANGE);
        EXPECT_TRUE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

TEST_F(SettingsLogOff, LeavingTheEditTrimsNothing)
{
    Look([&] {
        SetFolder(L"   ", EN_KILLFOCUS);
        EXPECT_EQ(Text(IDC_LOG_FOLDER), CString(L"   "));
        EXPECT_TRUE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

// ---- Back

TEST_F(SettingsBack, KeepsTheHostsFolderWhileTheLogIsOn)
{
    WithLog(L"\\\\srv\\logs\\");
    Type(IDC_LOG_FOLDER, L"no folder at all");
    ShowAndLeave();
    EXPECT_TRUE(host.manager.m_bNetworkLog);
    EXPECT_EQ(host.manager.m_strNetworkLogFolder, CString(L"\\\\srv\\logs\\"));
}

TEST_F(SettingsBack, EmptiesTheHostsFolderWhenTheLogIsOff)
{
    WithLog(L"\\\\srv\\logs\\");
    Press(IDC_NETWORK_LOG);
    ShowAndLeave();
    EXPECT_FALSE(host.manager.m_bNetworkLog);
    EXPECT_EQ(host.manager.m_strNetworkLogFolder, CString());
}

TEST_F(SettingsBack, StoresTheChoices)
{
    Press(IDC_NETWORK_LOG);
    Press(IDC_SETTINGS_OPTION);
    Press(IDC_INSTALL_PROGRESS);
    ShowAndLeave();
    EXPECT_TRUE(host.manager.m_bNetworkLog);
    EXPECT_TRUE(host.manager.m_bSettingsOption);
    EXPECT_EQ(host.manager.m_installMode, 3);
    EXPECT_EQ(host.manager.m_strNetworkLogFolder, CString());
}

int leaveHooks = 0;
int CountLeaving(PageContext*)
{
    ++leaveHooks;
    return 0;
}

TEST_F(SettingsBack, RunsNoLeaveHooks)
{
    leaveHooks = 0;
    context.leaveHooks = {CountLeaving};
    ShowAndLeave();
    EXPECT_EQ(leaveHooks, 0);
}

} // namespace
