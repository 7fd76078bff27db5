// The desktop shortcut of both shapes, and the profile settings of the tab page.
#include "tests/workstation/workstation_page.h"

namespace {

class DesktopShortcut : public WorkstationPage
{
protected:
    void GoNext()
    {
        Press(Next());
        EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    }
};
INSTANTIATE_BOTH_SHAPES(DesktopShortcut);

class ProfileSettings : public DesktopShortcut
{
protected:
    // Next stores the name.
    void ExpectAccepted(const CString& name)
    {
        Type(IDC_PROFILE_NAME, name);
        GoNext();
        EXPECT_EQ(InDatabase(L"ZOLTDEFAULTPROFILENAME"), name);
    }
    void ExpectRefused(const CString& name)
    {
        WithPropertyRow(L"ZOLTDEFAULTPROFILENAME", L"as before");
        Type(IDC_PROFILE_NAME, name);
        TypeRow(0, L"A", L"/b");
        Press(Next());
        AnswerError(IDS_PROFILE_NAME_INVALID);
        SeeFocus(IDC_PROFILE_NAME);
        Look([this] {
            EXPECT_EQ(InDatabase(L"ZOLTDEFAULTPROFILENAME"), CString(L"as before"));
            EXPECT_EQ(InDatabase(L"TARN_DESKTOPSHORTCUT_1"), CString(L"(none)"))
                << "the rest isn't stored either";
            ExpectRows(L"");
        });
        ShowAndGoBack();
        EXPECT_EQ(InDatabase(L"ZOLTDEFAULTPROFILENAME"), CString(L"as before")) << "the way back drops it";
    }
};
INSTANTIATE_TEST_SUITE_P(Shapes, ProfileSettings, testing::Values(Shape::Tab), ShapeName);

class WizardAlone : public DesktopShortcut
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, WizardAlone, testing::Values(Shape::Wizard), ShapeName);

} // namespace

// ---- the desktop shortcut

TEST_P(DesktopShortcut, ThePropertyDecidesTheBoxByItsExactValue)
{
    for (const wchar_t* value : {L"", L"1"}) {
        WithProperty(L"TARN_DESKTOPSHORTCUT_1", value);
        Look([this] { EXPECT_TRUE(IsChecked(IDC_DESKTOP_SHORTCUT)); });
        ShowAndGoBack();
    }
    for (const wchar_t* value : {L"0", L"#1", L"true", L" 1"}) {
        WithProperty(L"TARN_DESKTOPSHORTCUT_1", value);
        Look([this] { EXPECT_FALSE(IsChecked(IDC_DESKTOP_SHORTCUT)); });
        ShowAndGoBack();
    }
}

TEST_P(DesktopShortcut, AMissingPropertyReadsAsChecked)
{
    Look([this] { EXPECT_TRUE(IsChecked(IDC_DESKTOP_SHORTCUT)); });
    ShowAndGoBack();
    EXPECT_EQ(InDatabase(L"TARN_DESKTOPSHORTCUT_1"), CString(L"1")); // the way back stores too
}

TEST_P(DesktopShortcut, WhatIsChosenIsWrittenToTheDatabase)
{
    SetChecked(IDC_DESKTOP_SHORTCUT, false);
    GoNext();
    EXPECT_EQ(InDatabase(L"TARN_DESKTOPSHORTCUT_1"), CString(L"0"));
    GoNext();
    EXPECT_EQ(InDatabase(L"TARN_DESKTOPSHORTCUT_1"), CString(L"1"));
}

TEST_P(DesktopShortcut, TheBoxNamesTheProductByItsCatalogKeyWithItsAmpersand)
{
    Look([this] {
        EXPECT_HOLDS(Text(IDC_DESKTOP_SHORTCUT), L"Zolt && Co");
        EXPECT_EQ(Text(IDC_DESKTOP_SHORTCUT).Find(L"[ProductName]"), -1);
    });
    ShowAndGoBack();
}

TEST_P(DesktopShortcut, ABoxWithoutThePlaceOfTheProductKeepsItsText)
{
    context.preInitHooks = {[](PageContext* page) {
        SetDlgItemTextW(page->hParent, IDC_DESKTOP_SHORTCUT, L"On the desktop && elsewhere");
        return 1;
    }};
    Look([this] { EXPECT_EQ(Text(IDC_DESKTOP_SHORTCUT), CString(L"On the desktop && elsewhere")); });
    ShowAndGoBack();
}

TEST_P(DesktopShortcut, AHidingRowHidesTheBoxAndKeepsThePropertyWhateverTheRowSays)
{
    for (const wchar_t* value : {L"0", L"1", L"no"}) {
        WithPropertyRow(L"TARN_DO_NOT_SHOW_SHORTCUT_CHECKBOX", value);
        WithPropertyRow(L"TARN_DESKTOPSHORTCUT_1", L"kept");
        Look([this] {
            EXPECT_FALSE(IsShown(IDC_DESKTOP_SHORTCUT));
            EXPECT_FALSE(Control(IDC_DESKTOP_SHORTCUT).IsEnabled());
        });
        GoNext();
        EXPECT_EQ(InDatabase(L"TARN_DESKTOPSHORTCUT_1"), CString(L"kept"));
        ShowAndGoBack();
        EXPECT_EQ(InDatabase(L"TARN_DESKTOPSHORTCUT_1"), CString(L"kept"));
    }
}

TEST_P(DesktopShortcut, TheHeadingHasItsText)
{
    Look([this] { EXPECT_EQ(Text(IDC_WORKSTATION_HEADING), ResourceText(IDS_WORKSTATION_HEADING)); });
    ShowAndGoBack();
}

TEST_P(DesktopShortcut, AVetoOfAHookStoresNothing)
{
    context.leaveHooks = {[](PageContext*) { return HOOK_VETO; }};
    TypeRow(0, L"A", L"/b");
    Press(Next());
    Look([this] {
        EXPECT_EQ(InDatabase(L"TARN_DESKTOPSHORTCUT_1"), CString(L"(none)"));
        ExpectRows(L"");
    });
    ShowAndGoBack();
}

TEST_P(DesktopShortcut, HooksBehindTheInitSeeTheFilledTable)
{
    static CString seen;
    WithProperty(L"ZOLT_CUSTOM_SHORTCUT", L"2;K1;");
    WithShortcut(L"K1", L"A", L"/b");
    context.postInitHooks = {[](PageContext* page) {
        seen = CListControl(page->hParent, IDC_SHORTCUTS).GetCell(0, 0);
        return 1;
    }};
    ShowAndGoBack();
    EXPECT_EQ(seen, CString(L"A"));
}

TEST_P(WizardAlone, TheProfileSettingsAreNeitherShownNorWritten)
{
    Look([this] {
        for (const int id : {IDC_BROWSER_REQUIRED, IDC_SHEET_FORMAT, IDC_PROFILE_NAME}) {
            EXPECT_EQ(GetDlgItem(Page(), id), nullptr) << id;
        }
    });
    GoNext();
    for (const wchar_t* name : {L"ZOLT_IE_REQUIRED", L"ZOLT_SHEETX_FORMAT", L"ZOLTDEFAULTPROFILENAME"}) {
        EXPECT_EQ(InDatabase(name), CString(L"(none)")) << Utf8(name);
    }
}

TEST_P(WizardAlone, TheFocusStartsOnTheFirstThingThatCanBeEntered)
{
    SeeFocus(IDC_DESKTOP_SHORTCUT);
    ShowAndGoBack();
    WithPropertyRow(L"TARN_DO_NOT_SHOW_SHORTCUT_CHECKBOX", L"1");
    SeeFocus(IDC_SHORTCUTS);
    ShowAndGoBack();
    WithoutTemplate();
    SeeFocus(IDC_NEXT);
    ShowAndGoBack();
}

// ---- the profile

TEST_P(ProfileSettings, EachSwitchReadsItsOwnValueAsOn)
{
    struct Row
    {
        const wchar_t* browser;
        const wchar_t* sheets;
        bool browserOn;
        bool sheetsOn;
    };
    for (const Row& row :
         {Row{L"", L"", true, true}, Row{L"1", L"#1", true, true}, Row{L"0", L"#0", false, false},
          Row{L"#1", L"1", false, false}, Row{L"yes", L"yes", false, false}}) {
        WithProperty(L"ZOLT_IE_REQUIRED", row.browser);
        WithProperty(L"ZOLT_SHEETX_FORMAT", row.sheets);
        Look([this, row] {
            EXPECT_EQ(IsChecked(IDC_BROWSER_REQUIRED), row.browserOn) << Utf8(row.browser);
            EXPECT_EQ(IsChecked(IDC_SHEET_FORMAT), row.sheetsOn) << Utf8(row.sheets);
        });
        ShowAndGoBack();
    }
}

TEST_P(ProfileSettings, EachSwitchIsWrittenInItsOwnForm)
{
    SetChecked(IDC_BROWSER_REQUIRED, false);
    GoNext();
    EXPECT_EQ(InDatabase(L"ZOLT_IE_REQUIRED"), CString(L"0"));
    EXPECT_EQ(InDatabase(L"ZOLT_SHEETX_FORMAT"), CString(L"#1"));
    SetChecked(IDC_SHEET_FORMAT, false);
    GoNext();
    EXPECT_EQ(InDatabase(L"ZOLT_IE_REQUIRED"), CString(L"1"));
    EXPECT_EQ(InDatabase(L"ZOLT_SHEETX_FORMAT"), CString(L"#0"));
}

TEST_P(ProfileSettings, TheNameIsShownAndATooLongOneReadsAsEmpty)
{
    WithProperty(L"ZOLTDEFAULTPROFILENAME", CString(L'x', 1023));
    Look([this] { EXPECT_EQ(Text(IDC_PROFILE_NAME).GetLength(), 1023); });
    ShowAndGoBack();
    WithProperty(L"ZOLTDEFAULTPROFILENAME", CString(L'x', 1024));
    Look([this] { EXPECT_EQ(Text(IDC_PROFILE_NAME), CString()); });
    ShowAndGoBack();
}

TEST_P(ProfileSettings, TypingStopsAtTheLengthThatIsReadAgain)
{
    Look([this] {
        const HWND edit = Control(IDC_PROFILE_NAME).GetWindow();
        for (const int length : {1022, 1023}) {
            SetWindowTextW(edit, CString(L'x', length));
            SendMessageW(edit, EM_SETSEL, static_cast<WPARAM>(length), length);
            SendMessageW(edit, WM_CHAR, L'y', 1);
            EXPECT_EQ(Text(IDC_PROFILE_NAME).GetLength(), 1023) << length;
        }
    });
    ShowAndGoBack();
}

TEST_P(ProfileSettings, ATextOfOnlyTheTwoMarksIsRefused)
{
    ExpectRefused(L"<<>>");
}

TEST_P(ProfileSettings, TheOpeningMarkAloneIsRefused)
{
    ExpectRefused(L"<<");
}

TEST_P(ProfileSettings, TheClosingMarkAloneIsRefused)
{
    ExpectRefused(L">>");
}

TEST_P(ProfileSettings, ANameWithOnlyTheOpeningMarkIsAcceptedAsItStands)
{
    ExpectAccepted(L"<<Default");
}

TEST_P(ProfileSettings, ANameWithBothMarksOrOnlyTheClosingOneIsAcceptedAsItStands)
{
    ExpectAccepted(L"<<Default>>");
    ExpectAccepted(L"Default>>");
}

TEST_P(ProfileSettings, ANameWithTheMarkInTheMiddleIsRefused)
{
    ExpectRefused(L"De<<fault");
}

TEST_P(ProfileSettings, TheEmptyNameIsWrittenAsEmptyWithoutAMessage)
{
    WithProperty(L"ZOLTDEFAULTPROFILENAME", L"Default");
    WithPropertyRow(L"ZOLTDEFAULTPROFILENAME", L"Default");
    Type(IDC_PROFILE_NAME, L"");
    GoNext();
    EXPECT_EQ(InDatabase(L"ZOLTDEFAULTPROFILENAME"), CString(L"(none)")); // the table holds no empty values
}

TEST_P(ProfileSettings, TheSwitchesStayWrittenWhenTheNameIsRefused)
{
    SetChecked(IDC_BROWSER_REQUIRED, false);
    Type(IDC_PROFILE_NAME, L"a*b");
    Press(Next());
    AnswerError(IDS_PROFILE_NAME_INVALID);
    Look([this] {
        EXPECT_EQ(InDatabase(L"ZOLT_IE_REQUIRED"), CString(L"0"));
        EXPECT_EQ(InDatabase(L"ZOLT_SHEETX_FORMAT"), CString(L"#1"));
    });
    ShowAndGoBack();
}

TEST_P(ProfileSettings, TheNameIsJudgedBeforeTheShortcuts)
{
    Type(IDC_PROFILE_NAME, L"a*b");
    TypeRow(0, L"A", L"/x");
    Press(Next());
    AnswerError(IDS_PROFILE_NAME_INVALID);
    Type(IDC_PROFILE_NAME, L"ab");
    Press(Next());
    AnswerError(IDS_SHORTCUT_SWITCH_UNKNOWN, L"x");
    Look([this] { EXPECT_EQ(InDatabase(L"ZOLTDEFAULTPROFILENAME"), CString(L"ab")); });
    ShowAndGoBack();
}

TEST_P(ProfileSettings, TheHostsStoreMessagesValidateAndStay)
{
    for (const UINT message : {PAGE_MESSAGE_STORE, PAGE_MESSAGE_STORE_ALL}) {
        LRESULT refused = -1, accepted = -1;
        Type(IDC_PROFILE_NAME, L"a*b");
        Send(message, refused);
        AnswerError(IDS_PROFILE_NAME_INVALID);
        Await(L"there is no answer", [&refused] { return refused != -1; });
        Type(IDC_PROFILE_NAME, L"Office");
        Send(message, accepted);
        Look([&] {
            EXPECT_EQ(refused, 0);
            EXPECT_EQ(accepted, 1);
            EXPECT_EQ(InDatabase(L"ZOLTDEFAULTPROFILENAME"), CString(L"Office"));
            EXPECT_EQ(InDatabase(L"TARN_DESKTOPSHORTCUT_1"), CString(L"1"));
        });
        ShowAndGoBack();
    }
}
