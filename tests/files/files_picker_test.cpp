// The system's file picker as the page asks for it: how it is asked, and what comes of one, of several, and of a cancel.
#include "automation/file_picker.h"
#include "tests/files/files_page.h"

#include <commdlg.h>

namespace {

OPENFILENAMEW g_call;
CString g_title;
CString g_filter; // bars for zeros
bool g_answersItself = false;
std::vector<wchar_t> g_result;

BOOL WINAPI NotePicker(OPENFILENAMEW* dialog)
{
    g_call = *dialog;
    g_title = dialog->lpstrTitle;
    g_filter.Empty();
    for (const wchar_t* part = dialog->lpstrFilter; *part; part += wcslen(part) + 1) {
        g_filter += CString(part) + L"|";
    }
    if (!g_answersItself) {
        return GetOpenFileNameW(dialog);
    }
    EXPECT_LE(g_result.size(), dialog->nMaxFile);
    std::copy(g_result.begin(), g_result.end(), dialog->lpstrFile);
    return TRUE;
}

class FilesPicker : public FilesPage
{
protected:
    FilesPicker()
    {
        UseSystemPicker();
        m_picker = std::make_unique<CImportRedirect>(L"RolloutUi.dll", "GetOpenFileNameW",
                                                     reinterpret_cast<void*>(NotePicker));
        g_answersItself = false;
    }
    // The shell fetches icons whenever it gets to them, and keeps them.
    void TearDown() override
    {
        m_picker.reset();
        CountFromHere();
        FilesPage::TearDown();
    }
    void Pick(const Lines& paths)
    {
        SelectNode(L"~\\Fonts");
        Press(IDC_FILES_ADD);
        if (paths.empty()) {
            Step(L"cancel the picker", [] { return CancelFilePicker(); });
        } else {
            Step(L"enter the files", [paths] { return EnterPickerFiles(paths); });
            Step(L"press Open", [] { return AcceptFilePicker(); });
        }
        Step(L"see the picker go", [] { return Until(!FindFilePicker(), L"the picker is still up"); });
    }

private:
    std::unique_ptr<CImportRedirect> m_picker;
};
INSTANTIATE_BOTH_SHAPES(FilesPicker);

} // namespace

TEST_P(FilesPicker, IsAskedForManyFilesThatExistWithTitleFilterAndARoomyBuffer)
{
    Pick({});
    Look([this] {
        EXPECT_EQ(g_call.Flags, 8912934u | 0x101200u);
        EXPECT_EQ(g_call.nMaxFile, 260000u);
        EXPECT_EQ(g_title, ResourceText(IDS_FILES_PICKER_TITLE));
        EXPECT_EQ(g_filter, ResourceText(IDS_FILES_PICKER_FILTER));
        EXPECT_EQ(g_call.hwndOwner, GetAncestor(Page(), GA_ROOT));
    });
    ExpectTree(OWN_FOLDERS);
    ShowAndGoBack();
}

TEST_P(FilesPicker, OneChosenFileGivesOneItem)
{
    const CString source = Source(L"it's a plan.txt");
    Pick({source});
    Await(L"the file isn't there", [this] { return Node(L"~\\Fonts\\it's a plan.txt") != nullptr; });
    Look([this, source] {
        EXPECT_EQ(Data(L"~\\Fonts\\it's a plan.txt")->SourcePath.CompareNoCase(source), 0);
        EXPECT_EQ(Count(L"TarnCustomFile"), 1);
    });
    ShowAndGoBack();
}

TEST_P(FilesPicker, ThreeChosenFilesGiveThreeItems)
{
    Pick({Source(L"a b.txt"), Source(L"\x00E4.txt"), Source(L"c")});
    Await(L"the files aren't there", [this] { return Node(L"~\\Fonts\\c") != nullptr; });
    ExpectTree(
        {L"<Zolt>", L"  Fonts", L"    a b.txt*", L"    \x00E4.txt*", L"    c*", L"  Samples", L"    Deep"});
    ShowAndGoBack();
}

TEST_P(FilesPicker, TheCurrentFolderStaysWhatItWas)
{
    wchar_t before[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, before);
    Pick({Source(L"a.txt"), Source(L"b.txt")});
    Await(L"the files aren't there", [this] { return Node(L"~\\Fonts\\b.txt") != nullptr; });
    Look([before = CString(before)] {
        wchar_t after[MAX_PATH] = L"";
        GetCurrentDirectoryW(MAX_PATH, after);
        EXPECT_EQ(CString(after), before);
    });
    ShowAndGoBack();
}

TEST_P(FilesPicker, AResultThatFillsTheBufferIsAddedToItsLastFile)
{
    // As many names as fit of files that aren't there but for the last: one message each would take for ever, so the
    // names repeat one file that is.
    const CString source = Source(L"same.txt");
    CString text = source.Left(source.ReverseFind(L'\\'));
    while (text.GetLength() + 9 + 9 < 260000 - 2) {
        text += L'\0';
        text += L"same.txt";
    }
    Source(L"last.txt");
    text += L'\0';
    text += L"last.txt";
    g_result.assign(text.GetString(), text.GetString() + text.GetLength());
    g_result.insert(g_result.end(), 2, L'\0');
    ASSERT_GT(g_result.size(), 259980u);
    g_answersItself = true;
    SelectNode(L"~\\Fonts");
    Press(IDC_FILES_ADD);
    Await(L"the last file",
          [this] { return Node(L"~\\Fonts\\last.txt") && IsWindowEnabled(GetAncestor(Page(), GA_ROOT)); });
    ExpectTree({L"<Zolt>", L"  Fonts", L"    last.txt*", L"    same.txt*", L"  Samples", L"    Deep"});
    ShowAndGoBack();
    EXPECT_EQ(Count(L"TarnCustomFile"), 2);
}
