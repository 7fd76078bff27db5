// Browsing for the list and for the site manager's feed in the system's file dialog.
#include "tests/online/online_page.h"

#include <commdlg.h>
#include <dlgs.h>
#include <shlobj.h>

#include <algorithm>

namespace {

constexpr int FILE_KINDS = cmb1; // the dialog's controls have the system's ids
constexpr int FILE_PLACES = cmb2;

struct BrowseKind
{
    int button;
    int edit;
    unsigned int filter;
    unsigned int wrongKind;
    const wchar_t* extension;
};
constexpr BrowseKind LIST = {IDC_LIST_BROWSE, IDC_LIST_LOCATION, IDS_LIST_FILTER, IDS_LIST_BROWSED_WRONG_KIND,
                             L"npl"};
constexpr BrowseKind FEED = {IDC_FEED_BROWSE, IDC_FEED_LOCATION, IDS_FEED_FILTER, IDS_FEED_BROWSED_WRONG_KIND,
                             L"rdf"};

class NoticeBrowse : public NoticePage
{
protected:
    NoticeBrowse() { WithStoredPage(); }
    // The shell's view of the folder fetches icons whenever it gets to them, and the system keeps them: what is left
    // over can't be distinguished from that.
    void TearDown() override
    {
        CountFromHere();
        NoticePage::TearDown();
    }

    void OpenDialog(const BrowseKind& kind) { Press(kind.button); }

    void OnDialog(std::function<StepOutcome(HWND)> act)
    {
        Step(L"act on the file dialog", [act = std::move(act)] {
            HWND dialog = FindWindowWithControls({FILE_KINDS, FILE_PLACES});
            return dialog ? act(dialog) : StepOutcome::NotYet(L"the file dialog isn't up");
        });
    }

    // The name's edit stands within a combo box.
    static StepOutcome TypeName(HWND dialog, const CString& path)
    {
        for (HWND child : ChildWindows(dialog)) {
            if (GetDlgCtrlID(child) == cmb13 && WindowClass(child) == L"Edit") {
                return CControl(child).SetText(path);
            }
        }
        return StepOutcome::Failed(L"the dialog has no field for the name");
    }

    void Pick(const BrowseKind& kind, const CString& path)
    {
        OpenDialog(kind);
        OnDialog([path](HWND dialog) { return TypeName(dialog, path); });
        OnDialog([](HWND dialog) { return CControl(dialog, IDOK).Click(); });
    }

    // The path stands in the field, with the focus and the caret at its end.
    void ExpectTaken(const BrowseKind& kind, const CString& path)
    {
        Await(L"the path was not taken", [this, kind, path] { return Text(kind.edit) == path; });
        AwaitFocus();
        Look([this, kind, path] {
            DWORD first = 0;
            DWORD end = 0;
            SendDlgItemMessageW(Page(), kind.edit, EM_GETSEL, reinterpret_cast<WPARAM>(&first),
                                reinterpret_cast<LPARAM>(&end));
            EXPECT_EQ(first, end) << "nothing is selected";
            EXPECT_EQ(static_cast<int>(end), path.GetLength());
            EXPECT_TRUE(HasFocus(kind.edit));
        });
        ShowAndGoBack();
    }
};
INSTANTIATE_BOTH_SHAPES(NoticeBrowse);

} // namespace

TEST_P(NoticeBrowse, AListFileIsTaken)
{
    const CString path = folder.AddFile(L"picked.npl", "");
    Pick(LIST, path);
    ExpectTaken(LIST, path);
}

TEST_P(NoticeBrowse, AListFileWithTheExtensionInCapitalsIsTaken)
{
    const CString path = folder.AddFile(L"PICKED.NPL", "");
    Pick(LIST, path);
    ExpectTaken(LIST, path);
}

TEST_P(NoticeBrowse, AFeedOfEitherKindIsTaken)
{
    for (const wchar_t* name : {L"picked.xml", L"picked.Rdf"}) {
        const CString path = folder.AddFile(name, "");
        Pick(FEED, path);
        ExpectTaken(FEED, path);
    }
}

TEST_P(NoticeBrowse, AFileOfAnotherKindIsReportedAndTheFieldKeepsItsText)
{
    const CString path = folder.AddFile(L"picked.txt", "");
    for (const BrowseKind& kind : {LIST, FEED}) {
        CString before;
        Look([&] { before = Text(kind.edit); });
        Pick(kind, path);
        Answer(WarningBox(ResourceText(kind.wrongKind)).Titled(ResourceText(IDS_ERROR_TITLE)), IDOK);
        Look([&] { EXPECT_EQ(Text(kind.edit), before); });
        ShowAndGoBack();
    }
}

TEST_P(NoticeBrowse, TheOtherFieldsKindIsTheWrongKind)
{
    const CString list = folder.AddFile(L"picked.npl", "");
    Pick(FEED, list);
    Answer(WarningBox(ResourceText(IDS_FEED_BROWSED_WRONG_KIND)).Titled(ResourceText(IDS_ERROR_TITLE)), IDOK);
    ShowAndGoBack();
}

TEST_P(NoticeBrowse, CancellingChangesNothing)
{
    for (const BrowseKind& kind : {LIST, FEED}) {
        CString before;
        Look([&] { before = Text(kind.edit); });
        OpenDialog(kind);
        OnDialog([](HWND dialog) { return CControl(dialog, IDCANCEL).Click(); });
        Await(L"the dialog is still up", [] { return !FindWindowWithControls({FILE_KINDS, FILE_PLACES}); });
        Look([&] { EXPECT_EQ(Text(kind.edit), before); });
        ShowAndGoBack();
    }
}

TEST_P(NoticeBrowse, TheDialogNamesTheProductOffersTheKindAndAllFilesAndBeginsInTheDocuments)
{
    for (const BrowseKind& kind : {LIST, FEED}) {
        OpenDialog(kind);
        OnDialog([kind](HWND dialog) {
            EXPECT_EQ(WindowText(dialog), ResourceText(IDS_BROWSE_FILE_TITLE, L"Zolt Drafting"));
            EXPECT_EQ(CListControl(dialog, FILE_KINDS).GetLines(),
                      (std::vector<CString>{ResourceText(kind.filter), ResourceText(IDS_ALL_FILES_FILTER)}));
            wchar_t shown[MAX_PATH] = {};
            wchar_t documents[MAX_PATH] = {};
            SendMessageW(dialog, CDM_GETFOLDERPATH, MAX_PATH, reinterpret_cast<LPARAM>(shown));
            SHGetSpecialFolderPathW(nullptr, documents, CSIDL_PERSONAL, FALSE);
            EXPECT_EQ(CString(shown), CString(documents));
            return CControl(dialog, IDCANCEL).Click();
        });
        ShowAndGoBack();
    }
}

TEST_P(NoticeBrowse, TheDialogHidesTheReadOnlyBoxAndTakesOnlyFilesThatExist)
{
    const CString missing = folder / L"missing.npl";
    OpenDialog(LIST);
    OnDialog([missing](HWND dialog) {
        EXPECT_FALSE(CControl(dialog, chx1).IsVisible());
        return TypeName(dialog, missing);
    });
    OnDialog([](HWND dialog) { return CControl(dialog, IDOK).Click(); });
    Step(L"answer that there is no such file", [] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        return box ? AnswerMessageBox(*box, IDOK) : StepOutcome::NotYet(L"no box is up");
    });
    OnDialog([](HWND dialog) { return CControl(dialog, IDCANCEL).Click(); });
    ShowAndGoBack();
    EXPECT_EQ(Property(L"ZOLT_PATCHRELAY_LISTLOCACTION"), CString(L"\\\\site\\lists\\on.npl"));
}

TEST_P(NoticeBrowse, TheCurrentFolderStaysWhatItWas)
{
    const auto currentFolder = [] {
        wchar_t current[MAX_PATH] = {};
        GetCurrentDirectoryW(MAX_PATH, current);
        return CString(current);
    };
    const CString before = currentFolder();
    Pick(LIST, folder.AddFile(L"picked.npl", ""));
    Await(L"the path was not taken", [&] { return Text(IDC_LIST_LOCATION).Find(L"picked.npl") >= 0; });
    ShowAndGoBack();
    EXPECT_EQ(currentFolder(), before);
}
