// What the program says on the page of additional files, with the real page and the real host.
#include "automation/file_picker.h"
#include "automation/tree_control.h"
#include "tests/setup/wizard_fixture.h"

namespace {

class WizardAdditions : public Wizard
{
protected:
    WizardAdditions() { MakeSource(L"a.txt"); }

    CString MakeSource(const CString& name) const
    {
        const CString path = folder / name;
        const CFileOwner file(
            CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        EXPECT_TRUE(file) << Utf8(path);
        return path;
    }

    void GoToPage()
    {
        Begin(L"Office");
        Press(IDC_NETWORK_LOG, IDC_NEXT);
        Press(IDC_SHORTCUTS, IDC_NEXT);
        Press(IDC_PATH_TREE, IDC_NEXT);
    }

    int m_window = IDC_FILES_TREE; // a control of the window in which the page stands

    // By the page's own picker, into the product's folder, which is the tree's first.
    void Add(const CString& path)
    {
        OnPage(m_window, [](HWND window) {
            const CTreeControl tree(Below(window, IDC_FILES_TREE).GetWindow());
            return tree.Select({tree.GetChildren({}).front()});
        });
        OnPage(m_window, [](HWND window) { return Below(window, IDC_FILES_ADD).Click(); });
        Play(L"enter the file", [path] {
            return FindFilePicker() ? EnterPickerFiles({path}) : StepOutcome::NotYet(L"there is no picker");
        });
        Play(L"accept it", [] { return AcceptFilePicker(); });
        Play(L"wait for the picker's end", [] { return Until(!FindFilePicker(), L"it is still there"); });
    }

    void Delete(const CString& name)
    {
        OnPage(IDC_FILES_TREE, [name](HWND page) {
            const CTreeControl tree(page, IDC_FILES_TREE);
            return tree.Select({tree.GetChildren({}).front(), name});
        });
        Press(IDC_FILES_TREE, IDC_FILES_DELETE);
    }
};

TEST_F(WizardAdditions, ASourceThatHasGoneKeepsThePageUntilItIsRemoved)
{
    GoToPage();
    Add(folder / L"a.txt");
    OnPage(IDC_FILES_TREE, [this](HWND) {
        EXPECT_TRUE(DeleteFileW(folder / L"a.txt"));
        return StepOutcome::Done();
    });
    Press(IDC_FILES_TREE, IDC_NEXT);
    CString box;
    AnswerBox(IDOK, &box);
    Delete(L"a.txt");
    Press(IDC_FILES_TREE, IDC_NEXT);
    Cancel(IDC_PARTS_BAY);
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_EQ(box.Find(L"The deployment can't be created with these additional files:"), 0) << Utf8(box);
    EXPECT_HOLDS(box, L"\\a.txt\nThe file \"" + (folder / L"a.txt") + L"\"");
    EXPECT_HOLDS(box, L"is no longer there. Put it back, or remove it from the additional files.");
}

TEST_F(WizardAdditions, ANameThatTheDatabaseCannotHoldIsShownWhenItIsAdded)
{
    const CString source = MakeSource(L"\x0142\x00F3"
                                      L"d\x017A.txt");
    GoToPage();
    Add(source);
    CString atOnce;
    AnswerBox(IDOK, &atOnce);
    Press(IDC_FILES_TREE, IDC_NEXT);
    CString onNext;
    AnswerBox(IDOK, &onNext);
    Cancel(IDC_FILES_TREE);
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_HOLDS(atOnce, source);
    EXPECT_HOLDS(atOnce, L"letters that the database of the product can't hold");
    EXPECT_EQ(onNext, atOnce);
}

TEST_F(WizardAdditions, ASourceThatHasGoneKeepsTheTabsToo)
{
    BuildBase(L"Base");
    Press(IDC_LOCATION, IDC_NEXT);
    Press(IDC_NETWORK_LOG, IDC_NEXT);
    GoToNextTab(IDC_PATH_TREE);
    GoToNextTab(IDC_FILES_TREE);
    m_window = IDC_CONFIGURE_TABS;
    Add(folder / L"a.txt");
    OnPage(IDC_CONFIGURE_TABS, [this](HWND) {
        EXPECT_TRUE(DeleteFileW(folder / L"a.txt"));
        return StepOutcome::Done();
    });
    Press(IDC_CONFIGURE_TABS, IDC_CONFIGURE_NEXT);
    CString box;
    AnswerBox(IDOK, &box);
    CancelDialog();
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_HOLDS(box, L"The file \"" + (folder / L"a.txt") + L"\"");
}

TEST_F(WizardAdditions, AFileThatCanGoAlongIsAddedWithoutAWord)
{
    GoToPage();
    Add(folder / L"a.txt");
    Press(IDC_FILES_TREE, IDC_NEXT);
    Cancel(IDC_PARTS_BAY);
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
}

} // namespace
