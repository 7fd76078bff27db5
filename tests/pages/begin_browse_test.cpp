// Browsing for the location, with the system's own folder picker.
#include "automation/folder_picker.h"
#include "tests/pages/begin_page.h"
#include "tests/pages/picker_redirect.h"

namespace {

class BeginBrowse : public BeginPage
{
protected:
    BeginBrowse()
    {
        browseCall = BrowseCall();
        EXPECT_TRUE(redirect.IsInPlace()) << "the page library doesn't import the picker";
        WithName(L"Gamma");
        WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {L"Alpha"});
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
        for (const CString& selected : {picked, folder.AddFolder(L"other")}) {
            Pick(selected);
            Press(IDC_LOCATION_BROWSE);
            Step(L"cancel", [] { return CancelPicker(); });
        }
        ShowAndLeave();
        host.log.Clear();
        host.ui.stored.clear();
        host.ui.saved = false;
        browseCall = BrowseCall();
    }

    void Pick(const CString& path)
    {
        Press(IDC_LOCATION_BROWSE);
        Step(L"select the folder in the picker", [path] { return SelectPickerFolder(path); });
        Step(L"press OK in the picker", [] { return AcceptPicker(); });
        Step(L"see the picker go", [] { return Until(!FindFolderPicker(), L"the picker is still up"); });
    }
    void ExpectLocation(const CString& text)
    {
        Await(L"the page is still disabled", [this] { return IsWindowEnabled(Page()) != FALSE; });
        Look([this, text] {
            EXPECT_EQ(Text(IDC_LOCATION).CompareNoCase(text), 0) << Utf8(Text(IDC_LOCATION));
        });
    }
    // The path as the location check gives it back.
    CString Canonical() const { return picked + L"\\"; }

    CPickerRedirect redirect;
    CString picked;
};

TEST_F(BeginBrowse, ThePickerIsOwnedRootedTitledAndStyled)
{
    Press(IDC_LOCATION_BROWSE);
    Step(L"cancel", [] { return CancelPicker(); });
    Look([&] {
        EXPECT_EQ(browseCall.flags, 325u);
        EXPECT_TRUE(browseCall.fromNetwork);
        EXPECT_EQ(browseCall.owner, Page());
        EXPECT_EQ(browseCall.title, ResourceText(IDS_BROWSE_LOCATION));
    });
    ShowAndLeave();
}

TEST_F(BeginBrowse, ACancelledPickerChangesNothing)
{
    WithLocation(L"C:\\former");
    Press(IDC_LOCATION_BROWSE);
    Step(L"cancel", [] { return CancelPicker(); });
    ExpectLocation(L"C:\\former");
    ShowAndLeave();
    EXPECT_EQ(host.log.Of(L"CheckForDeploymentLocation"), Calls());
}

TEST_F(BeginBrowse, ThePickerBeginsAtTheCurrentLocation)
{
    WithLocation(picked);
    Press(IDC_LOCATION_BROWSE);
    Step(L"cancel", [] { return CancelPicker(); });
    Look([this] { EXPECT_EQ(browseCall.selection, picked); });
    ShowAndLeave();
}

TEST_F(BeginBrowse, ThePickerGetsTheFirst260CharactersOfALongLocation)
{
    const CString location = L"C:\\" + CString(L'a', 297);
    WithLocation(location);
    Press(IDC_LOCATION_BROWSE);
    Step(L"cancel", [] { return CancelPicker(); });
    ExpectLocation(location);
    Look([&] { EXPECT_EQ(browseCall.selection, location.Left(260)); });
    ShowAndLeave();
}

TEST_F(BeginBrowse, AnAcceptableFolderBecomesTheLocation)
{
    for (const int type : {1, 2}) {
        host.manager.locationType = type;
        host.log.Clear();
        Pick(picked);
        ExpectLocation(Canonical());
        Look([&] { EXPECT_TRUE(Control(IDC_NEXT).IsEnabled()); });
        ShowAndLeave();
        EXPECT_EQ(host.log.Of(L"CheckForDeploymentLocation").size(), 1u) << "type " << type;
    }
}

TEST_F(BeginBrowse, ADoubtfulFolderIsTakenWithYes)
{
    host.manager.locationType = 3;
    Pick(picked);
    Answer(QuestionBox(ResourceText(IDS_CONFIRM_FOLDER)), IDYES);
    ExpectLocation(Canonical());
    ShowAndLeave();
}

TEST_F(BeginBrowse, NoToADoubtfulFolderLeavesTheEditAsItIs)
{
    host.manager.locationType = 3;
    CString shown;
    Pick(picked);
    Answer(QuestionBox(ResourceText(IDS_CONFIRM_FOLDER)), IDNO, [&] { shown = Text(IDC_LOCATION); });
    Await(L"the page is still disabled", [&] { return IsWindowEnabled(Page()) != FALSE; });
    Look([&] {
        EXPECT_EQ(Text(IDC_LOCATION), shown);
        EXPECT_EQ(shown.CompareNoCase(picked), 0) << Utf8(shown);
        EXPECT_TRUE(Control(IDC_NEXT).IsEnabled());
    });
    ShowAndLeave();
}

TEST_F(BeginBrowse, ARefusedFolderEmptiesTheEdit)
{
    for (const int type : {0, 4}) {
        host.manager.locationType = type;
        Pick(picked);
        ExpectLocation(L"");
        Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()); });
        ShowAndLeave();
    }
}

TEST_F(BeginBrowse, AFolderThatFailsTheLocationCheckIsReportedAndNotShownToTheHost)
{
    Press(IDC_LOCATION_BROWSE);
    Step(L"select the folder in the picker", [&] { return SelectPickerFolder(picked); });
    Step(L"put a file in the folder's place", [&] {
        RemoveTree(picked);
        WriteFileBytes(picked, "no folder");
        return AcceptPicker();
    });
    Answer(ErrorBox(ResourceText(IDS_LOCATION_UNUSABLE, Canonical())), IDOK);
    ExpectLocation(picked);
    ShowAndLeave();
    EXPECT_EQ(host.log.Of(L"CheckForDeploymentLocation"), Calls());
}

TEST_F(BeginBrowse, WithoutDeploymentsALocalFolderIsAskedAbout)
{
    host.manager.m_bHasDeployments = false;
    Pick(picked);
    Answer(QuestionBox(ResourceText(IDS_LOCATION_NOT_NETWORK)), IDNO);
    Await(L"the page is still disabled", [&] { return IsWindowEnabled(Page()) != FALSE; });
    ShowAndLeave();
    EXPECT_EQ(host.log.Of(L"CheckForDeploymentLocation"), Calls());
}

} // namespace
