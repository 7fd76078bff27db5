// Browsing for the log folder, with the system's own folder picker.
#include "automation/folder_picker.h"
#include "tests/pages/picker_redirect.h"
#include "tests/pages/settings_page.h"

namespace {

class SettingsBrowse : public SettingsPage
{
protected:
    SettingsBrowse()
    {
        EXPECT_TRUE(redirect.IsInPlace()) << "the page library doesn't import the picker";
        picked = folder.AddFolder(L"picked");
        FillShellCaches();
        CountFromHere();
    }

    // The shell makes its icons when a picker first shows them, and keeps them.
    void FillShellCaches()
    {
        static bool done = false;
        if (done)
            return;
        done = true;
        for (const CString& begin : {picked, folder.AddFolder(L"other")}) {
            WithLog(begin);
            Pick();
            ShowAndLeave();
            WithLog(begin);
            Cancel();
            ShowAndLeave();
        }
        browseCall = BrowseCall();
        host.ui.stored.clear();
        host.ui.saved = false;
    }
    void Pick()
    {
        Press(IDC_LOG_FOLDER_BROWSE);
        Step(L"select the folder in the picker", [this] { return SelectPickerFolder(picked); });
        Step(L"press OK in the picker", [] { return AcceptPicker(); });
        AwaitPage();
    }
    void Cancel()
    {
        Press(IDC_LOG_FOLDER_BROWSE);
        Step(L"cancel", [] { return CancelPicker(); });
        AwaitPage();
    }
    void AwaitPage()
    {
        Step(L"see the picker go", [] { return Until(!FindFolderPicker(), L"the picker is still up"); });
        Await(L"the page is still disabled", [this] { return IsWindowEnabled(Page()) != FALSE; });
    }

    CPickerRedirect redirect;
    CString picked;
};

TEST_F(SettingsBrowse, ThePickerIsOwnedRootedTitledAndStyled)
{
    WithLog(L"\\\\srv\\logs\\");
    Cancel();
    Look([&] {
        EXPECT_EQ(browseCall.flags, 325u);
        EXPECT_TRUE(browseCall.fromNetwork);
        EXPECT_EQ(browseCall.owner, Page());
        EXPECT_EQ(browseCall.title, ResourceText(IDS_BROWSE_LOG_FOLDER));
    });
    ShowAndLeave();
}

TEST_F(SettingsBrowse, ThePickerBeginsAtTheTextOfTheEdit)
{
    WithLog(L"\\\\srv\\logs\\");
    Type(IDC_LOG_FOLDER, picked);
    Cancel();
    Look([&] { EXPECT_EQ(browseCall.selection, picked); });
    ShowAndLeave();
}

TEST_F(SettingsBrowse, ThePickerGetsTheFirst260CharactersOfALongText)
{
    const CString text = L"C:\\" + CString(L'a', 297);
    WithLog(text);
    Cancel();
    Look([&] {
        EXPECT_EQ(browseCall.selection, text.Left(260));
        EXPECT_EQ(Text(IDC_LOG_FOLDER), text);
    });
    ShowAndLeave();
}

TEST_F(SettingsBrowse, ThePickedFolderGetsABackslashAndTheEditTheFocus)
{
    WithLog(folder.GetPath());
    Pick();
    AwaitFocus();
    Look([&] {
        EXPECT_EQ(Text(IDC_LOG_FOLDER).CompareNoCase(picked + L"\\"), 0) << Utf8(Text(IDC_LOG_FOLDER));
        EXPECT_TRUE(HasFocus(IDC_LOG_FOLDER));
        EXPECT_TRUE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

TEST_F(SettingsBrowse, APickedFolderSwitchesNextOn)
{
    WithLog(folder.GetPath());
    Type(IDC_LOG_FOLDER, L"");
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()); });
    Pick();
    Look([&] { EXPECT_TRUE(Control(IDC_NEXT).IsEnabled()); });
    ShowAndLeave();
}

TEST_F(SettingsBrowse, ACancelledPickerChangesNothing)
{
    WithLog(L"\\\\srv\\logs\\");
    Cancel();
    Look([&] { EXPECT_EQ(Text(IDC_LOG_FOLDER), CString(L"\\\\srv\\logs\\")); });
    ShowAndLeave();
}

} // namespace
