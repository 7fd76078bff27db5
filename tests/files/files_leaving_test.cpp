// Leaving the page of additional files: what the host learns, vetoes, edits under way, cancel, and coming back.
#include "tests/files/files_page.h"
#include "tests/rules/user_key.h"

namespace {

int g_leaveRuns = 0;
CString g_modifiedInHook;
TestProduct* g_product = nullptr;

int Veto(PageContext*)
{
    ++g_leaveRuns;
    return HOOK_VETO;
}

int Pass(PageContext*)
{
    ++g_leaveRuns;
    const auto found = g_product->properties.find(L"ADDITIONALFILES_MODIFIED");
    g_modifiedInHook = found == g_product->properties.end() ? CString(L"(none)") : found->second;
    return 0;
}

class FilesLeaving : public FilesPage
{
protected:
    FilesLeaving()
    {
        g_leaveRuns = 0;
        g_product = &product;
    }
    void ShowAndGoOn()
    {
        Press(Next());
        EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    }
    void BeginEdit(const wchar_t* text)
    {
        SelectNode(L"~\\Fonts\\mine");
        Key(VK_F2);
        AwaitEdit();
        TypeLabel(text);
    }
};
INSTANTIATE_BOTH_SHAPES(FilesLeaving);

class FilesTabStoring : public FilesLeaving
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, FilesTabStoring, testing::Values(Shape::Tab), ShapeName);

class FilesWizardLeaving : public FilesLeaving
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, FilesWizardLeaving, testing::Values(Shape::Wizard), ShapeName);

} // namespace

TEST_P(FilesLeaving, AddingAFileAndPressingBackAndThenNextShowsTheFileAndSetsOneEachTime)
{
    SelectNode(L"~\\Fonts");
    AddFiles({Source(L"plan.txt")});
    ShowAndGoBack();
    EXPECT_EQ(Modified(), CString(L"1"));
    product.properties.clear();
    ExpectTree({L"<Zolt>", L"  Fonts", L"    plan.txt*", L"  Samples", L"    Deep"});
    ShowAndGoOn();
    EXPECT_EQ(Modified(), CString(L"1"));
}

TEST_P(FilesLeaving, DeletingTheOnlyItemAndPressingNextSetsZero)
{
    WithFile(UserKey(1), L"FONTS", Source(L"a.txt"));
    ShowAndGoBack();
    EXPECT_EQ(Modified(), CString(L"1"));
    SelectNode(L"~\\Fonts\\a.txt");
    Press(IDC_FILES_DELETE);
    ShowAndGoOn();
    EXPECT_EQ(Modified(), CString(L"0"));
}

TEST_P(FilesLeaving, AnEmptyFolderOrADriveAloneIsAnAdditionToo)
{
    WithFolder(UserKey(1), L"FONTS", L"mine");
    ShowAndGoOn();
    EXPECT_EQ(Modified(), CString(L"1"));
    SelectNode(L"~\\Fonts\\mine");
    Press(IDC_FILES_DELETE);
    ShowAndGoOn();
    EXPECT_EQ(Modified(), CString(L"0"));
    WithDrive(UserKey(2), L"E:");
    ShowAndGoOn();
    EXPECT_EQ(Modified(), CString(L"1"));
}

TEST_P(FilesLeaving, AVetoOnNextLeavesThePropertyUntouched)
{
    context.leaveHooks = {Veto};
    WithFile(UserKey(1), L"FONTS", Source(L"a.txt"));
    Press(Next());
    Look([this] {
        EXPECT_EQ(g_leaveRuns, 1);
        EXPECT_EQ(Modified(), CString(L"(none)"));
    });
    ShowAndGoBack();
    EXPECT_EQ(g_leaveRuns, 1) << "the way back runs no hooks";
    EXPECT_EQ(Modified(), CString(L"1"));
}

TEST_P(FilesLeaving, HooksRunOnNextBeforeThePropertyIsSet)
{
    context.leaveHooks = {Pass};
    ShowAndGoOn();
    EXPECT_EQ(g_leaveRuns, 1);
    EXPECT_EQ(g_modifiedInHook, CString(L"(none)"));
    EXPECT_EQ(Modified(), CString(L"0"));
}

TEST_P(FilesLeaving, OnlyThePropertyOfTheHostsStoreIsSet)
{
    WithFile(UserKey(1), L"FONTS", Source(L"a.txt"));
    host.log.Clear();
    ShowAndGoOn();
    EXPECT_EQ(host.log.Of(L"Product.SetProperty"),
              (std::vector<CString>{L"Product.SetProperty(ADDITIONALFILES_MODIFIED, \"1\")"}));
    EXPECT_TRUE(host.log.Of(L"Product.SetMsiProperty").empty());
}

// ---- an edit under way

TEST_P(FilesLeaving, NextAcceptsTheNameUnderEdit)
{
    WithFolder(UserKey(1), L"FONTS", L"mine");
    BeginEdit(L"yours");
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(Select(L"SELECT `DefaultDir` FROM `Directory` WHERE `Directory`='" + UserKey(1) + L"'")[0][0],
              CString(L"yours"));
}

TEST_P(FilesLeaving, NextWithARefusedNameReportsItAndStaysInTheEdit)
{
    WithFolder(UserKey(1), L"FONTS", L"mine");
    BeginEdit(L"a*b");
    Press(Next());
    AnswerNameBox(IDS_FILES_NAME_INVALID);
    AwaitEdit();
    Look([this] { EXPECT_EQ(Modified(), CString(L"(none)")); });
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ShowAndGoBack();
}

TEST_P(FilesLeaving, BackWithARefusedNameReportsItAndGoesBack)
{
    WithFolder(UserKey(1), L"FONTS", L"mine");
    BeginEdit(L"a*b");
    Press(Back());
    AnswerNameBox(IDS_FILES_NAME_INVALID);
    EXPECT_EQ(ShowPage(), NAVIGATION_BACK);
    EXPECT_EQ(Modified(), CString(L"1"));
}

TEST_P(FilesLeaving, BackWithANewFolderUnderEditKeepsIt)
{
    SelectNode(L"~\\Fonts");
    Press(IDC_FILES_ADD_FOLDER);
    AwaitEdit();
    ShowAndGoBack();
    EXPECT_EQ(Modified(), CString(L"1"));
    Look([this] { EXPECT_NE(Node(L"~\\Fonts\\New folder"), nullptr); });
    ShowAndGoBack();
}

// ---- the other ways

TEST_P(FilesWizardLeaving, CancelingTheWizardAfterAddingAFileLeavesItsRowsAndSetsNoProperty)
{
    SelectNode(L"~\\Fonts");
    AddFiles({Source(L"plan.txt")});
    Press(IDC_CANCEL);
    AnswerCancelQuestion(IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_CANCEL);
    EXPECT_EQ(Modified(), CString(L"(none)"));
    EXPECT_EQ(Count(L"TarnCustomFile"), 1);
    EXPECT_EQ(Count(L"File"), 1);
}

TEST_P(FilesWizardLeaving, CancelWithARefusedNameUnderEditReportsItOnceAndAsksNothing)
{
    WithFolder(UserKey(1), L"FONTS", L"mine");
    BeginEdit(L"a*b");
    Press(IDC_CANCEL);
    AnswerNameBox(IDS_FILES_NAME_INVALID);
    AwaitEdit();
    Key(VK_ESCAPE);
    AwaitNoEdit();
    ShowAndGoBack();
}

TEST_P(FilesTabStoring, BothMessagesOfTheHostStoreAfterTheHooks)
{
    context.leaveHooks = {Pass};
    WithFile(UserKey(1), L"FONTS", Source(L"a.txt"));
    for (const UINT message : {UINT{1027}, UINT{1028}}) {
        Look([this, message] {
            product.properties.clear();
            g_leaveRuns = 0;
            EXPECT_NE(SendMessageW(Page(), message, 0, 0), 0) << message;
            EXPECT_EQ(g_leaveRuns, 1) << message;
            EXPECT_EQ(g_modifiedInHook, CString(L"(none)")) << message;
            EXPECT_EQ(Modified(), CString(L"1")) << message;
        });
    }
    ShowAndGoBack();
}

TEST_P(FilesTabStoring, BothMessagesOfTheHostAnswerAVetoWithZeroAndStoreNothing)
{
    context.leaveHooks = {Veto};
    for (const UINT message : {UINT{1027}, UINT{1028}}) {
        Look([this, message] {
            EXPECT_EQ(SendMessageW(Page(), message, 0, 0), 0) << message;
            EXPECT_EQ(Modified(), CString(L"(none)")) << message;
        });
    }
    ShowAndGoBack();
}
