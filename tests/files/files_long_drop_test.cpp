// Long additions by dropping: the window that reports them, canceling, and thousands of files.
#include "tests/files/files_page.h"

namespace {

constexpr int HUGE_DROP = 2000; // files

// A clock that is a second further at each look: every addition is a long one, and its window is painted at each step.
ULONGLONG WINAPI HastyClock()
{
    static ULONGLONG now = GetTickCount64();
    return now += 1000;
}

class FilesLongDrop : public FilesPage
{
protected:
    void TearDown() override
    {
        m_clock.reset();
        CountFromHere(); // the animation of the bar keeps what it drew
        FilesPage::TearDown();
    }
    void UseHastyClock()
    {
        m_clock = std::make_unique<CImportRedirect>(L"RolloutUi.dll", "GetTickCount64",
                                                    reinterpret_cast<void*>(HastyClock));
        EXPECT_TRUE(m_clock->IsInPlace());
    }
    // A folder on the disk with files; its path.
    CString Tree(int files)
    {
        for (int number = 0; number < files; ++number) {
            Source(L"tree\\" + NumberText(1000 + number) + L".txt", "");
        }
        return folder.GetPath() + L"sources\\tree";
    }
    static int CountOf(const CString& progress)
    {
        return _wtoi(progress.Mid(ResourceText(IDS_FILES_PROGRESS, L"").GetLength()));
    }
    static HWND ProgressWindow() { return FindWindowWithControls({IDC_FILES_PROGRESS_TEXT, IDCANCEL}); }

private:
    std::unique_ptr<CImportRedirect> m_clock;
};
INSTANTIATE_BOTH_SHAPES(FilesLongDrop);

} // namespace

TEST_P(FilesLongDrop, CancelKeepsWhatWasAddedAndShowsIt)
{
    UseHastyClock();
    const CString tree = Tree(300);
    DropOnto(L"~\\Fonts", {tree});
    Step(L"cancel the addition", [this] {
        const HWND window = ProgressWindow();
        if (!window || CountOf(CControl(window, IDC_FILES_PROGRESS_TEXT).GetText()) == 0) {
            return StepOutcome::NotYet(L"no progress window with a file is up");
        }
        EXPECT_FALSE(IsWindowEnabled(GetAncestor(Page(), GA_ROOT)));
        return CControl(window, IDCANCEL).Click();
    });
    Step(L"see the window go", [] { return Until(!ProgressWindow(), L"the progress window is still up"); });
    Look([this] {
        EXPECT_TRUE(IsWindowEnabled(GetAncestor(Page(), GA_ROOT)));
        EXPECT_EQ(States({Next(), Back()}), CString(L"EE"));
        const int added = Count(L"File");
        EXPECT_GT(added, 0);
        EXPECT_LT(added, 300);
        const auto shown = static_cast<int>(TreeLines().size());
        EXPECT_EQ(shown, added + 1 + static_cast<int>(OWN_FOLDERS.size()));
    });
    ShowAndGoBack();
    EXPECT_EQ(Modified(), CString(L"1"));
}

TEST_P(FilesLongDrop, TheWindowReportsHowManyFilesCameAndFromWhere)
{
    UseHastyClock();
    const CString tree = Tree(100);
    DropOnto(L"~\\Fonts", {tree});
    Step(L"read the progress", [tree] {
        const HWND window = ProgressWindow();
        const CString text = window ? CControl(window, IDC_FILES_PROGRESS_TEXT).GetText() : CString();
        if (text.Find(tree) < 0) {
            return StepOutcome::NotYet(L"the folder isn't reported");
        }
        const int count = CountOf(text);
        EXPECT_EQ(text, ResourceText(IDS_FILES_PROGRESS, NumberText(count)) + L"\n" + tree);
        return StepOutcome::Done();
    });
    Step(L"see the window go", [] { return Until(!ProgressWindow(), L"the progress window is still up"); });
    Look([this] { EXPECT_EQ(Count(L"File"), 100); });
    ShowAndGoBack();
}

// Whichever comes last: the disk has an order of its own.
TEST_P(FilesLongDrop, AFileThatVanishesDuringTheAdditionIsReportedAtTheEnd)
{
    UseHastyClock();
    const CString tree = Tree(300);
    CString gone;
    DropOnto(L"~\\Fonts", {tree});
    Step(L"delete a file that isn't there yet", [this, tree, &gone] {
        const HWND window = ProgressWindow();
        const bool hasBegun = window && CountOf(CControl(window, IDC_FILES_PROGRESS_TEXT).GetText()) > 0;
        for (int number = 1000; hasBegun && number < 1300; ++number) {
            const CString name = NumberText(number) + L".txt";
            if (!Node(L"~\\Fonts\\tree\\" + name)) {
                gone = tree + L"\\" + name;
                return Until(DeleteFileW(gone) != FALSE, L"the file isn't deleted");
            }
        }
        return StepOutcome::NotYet(L"no progress window with a file is up");
    });
    Step(L"see the report", [&gone] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        if (!box) {
            return StepOutcome::NotYet(L"no box is up");
        }
        EXPECT_EQ(box->text,
                  ResourceText(IDS_FILES_NOT_ADDED, gone + L"\n" + ResourceText(IDS_FILES_REASON_GONE)));
        return AnswerMessageBox(*box, IDOK);
    });
    Look([this] { EXPECT_EQ(Count(L"File"), 299); });
    ShowAndGoBack();
}

TEST_P(FilesLongDrop, AShortAdditionShowsNoWindow)
{
    DropOnto(L"~\\Fonts", {Source(L"a.txt")});
    Look([this] {
        EXPECT_EQ(ProgressWindow(), nullptr);
        EXPECT_EQ(Count(L"File"), 1);
    });
    ShowAndGoBack();
}

TEST_P(FilesLongDrop, AQuestionDuringALongAdditionIsAnsweredAndTheRestFollows)
{
    UseHastyClock();
    const CString first = Source(L"one\\1050.txt");
    const CString tree = Tree(100);
    SelectNode(L"~");
    AddFolder(L"~\\Fonts", L"tree");
    AwaitNoEdit();
    SelectNode(L"~\\Fonts\\tree");
    AddFiles({first});
    DropOnto(L"~\\Fonts", {tree});
    Step(L"answer the question", [] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        if (!box) {
            return StepOutcome::NotYet(L"no question is up");
        }
        EXPECT_EQ(box->buttons, UINT{MB_YESNO});
        return AnswerMessageBox(*box, IDNO);
    });
    Step(L"see the window go", [] { return Until(!ProgressWindow(), L"the progress window is still up"); });
    Look([this, first] {
        EXPECT_EQ(Count(L"File"), 100);
        EXPECT_EQ(Data(L"~\\Fonts\\tree\\1050.txt")->SourcePath, first);
    });
    ShowAndGoBack();
}

// Once, as it takes a while.
class FilesHugeDrop : public FilesLongDrop
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, FilesHugeDrop, testing::Values(Shape::Wizard), ShapeName);

TEST_P(FilesHugeDrop, TwoThousandFilesAreAddedInOneDropAndSorted)
{
    Source(L"tree\\x");
    const CString tree = folder.GetPath() + L"sources\\tree";
    DeleteFileW(tree + L"\\x");
    for (int number = 0; number < HUGE_DROP; ++number) {
        WriteFileBytes(tree + L"\\" + NumberText(100000 + number) + L".txt", "");
    }
    script.SetDeadline(200000);
    DropOnto(L"~\\Fonts", {tree});
    Step(L"see the window go", [] { return Until(!ProgressWindow(), L"the progress window is still up"); });
    Look([this] {
        EXPECT_EQ(Count(L"File"), HUGE_DROP);
        const Lines lines = TreeLines();
        EXPECT_EQ(lines.size(), HUGE_DROP + 1 + OWN_FOLDERS.size());
        EXPECT_EQ(lines[3], CString(L"      100000.txt*"));
        EXPECT_EQ(lines[HUGE_DROP + 2], CString(L"      101999.txt*"));
    });
    ShowAndGoBack();
}
