// The three choices, append and merge, the list's selection, and what is stored when the page is left.
#include "tests/patches/service_pack_page.h"

namespace {

class PatchChoices : public PatchPage
{
protected:
    void GoNext()
    {
        Press(Next());
        EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    }
    void ExpectForms(std::initializer_list<std::pair<int, const wchar_t*>> forms)
    {
        Look([this, rows = std::vector(forms)] {
            for (const auto& [id, form] : rows) {
                EXPECT_EQ(Form(id), CString(form)) << id;
            }
        });
    }
    // Next and Back are refused with the warning, and the page stays usable.
    void ExpectRefused(int button)
    {
        Press(button);
        Answer(WarningBox(ResourceText(IDS_PATCH_NOT_DOWNLOADED)), IDOK);
        Await(L"the page can't be used after the warning",
              [this, button] { return Control(button).IsUsable(); });
    }
};
INSTANTIATE_BOTH_SHAPES(PatchChoices);

} // namespace

// ---- the radios

TEST_P(PatchChoices, EachRadioStoresItsChoice)
{
    WithOffer();
    WithChoice(0);
    Choose(IDC_PATCH_OFFERED);
    Choose(IDC_PATCH_LISTED);
    Choose(IDC_PATCH_NONE);
    ShowAndGoBack();
    EXPECT_EQ(IncludeCalls(),
              (Lines{L"Product.SetIncludeSP(1)", L"Product.SetIncludeSP(2)", L"Product.SetIncludeSP(0)"}));
}

TEST_P(PatchChoices, AnEntryStoresNoChoiceOfItsOwn)
{
    for (const int choice : {0, 2}) {
        WithChoice(choice);
        ShowAndGoBack();
    }
    WithChoice(-1);
    ShowAndGoBack();
    EXPECT_EQ(IncludeCalls(), Lines());
}

TEST_P(PatchChoices, AnOfferIsChosenOnceForAProductWithoutAChoice)
{
    WithOffer();
    Look([this] { EXPECT_EQ(IncludeCalls(), Lines{L"Product.SetIncludeSP(1)"}); });
    Choose(IDC_PATCH_NONE);
    ShowAndGoBack();
    for (const int choice : {0, 1, 2}) {
        host.log.Clear();
        WithChoice(choice);
        Look([this, choice] { EXPECT_EQ(IncludeCalls(), Lines()) << choice; });
        Choose(IDC_PATCH_NONE);
        ShowAndGoBack();
    }
}

TEST_P(PatchChoices, AFailureClearsTheChoiceOfTheServicesPatch)
{
    for (const unsigned int code : {12002u, 12017u}) {
        WithAnswer(code, 0);
        WithChoice(1);
        host.log.Clear();
        Look([this] {
            EXPECT_EQ(Form(IDC_PATCH_OFFERED), CString(L"SDU"));
            EXPECT_TRUE(IsChecked(IDC_PATCH_NONE));
        });
        ShowAndGoBack();
        EXPECT_EQ(IncludeCalls(), Lines{L"Product.SetIncludeSP(-1)"});
    }
}

TEST_P(PatchChoices, AFailureKeepsTheOtherChoices)
{
    WithAnswer(12002, 0);
    for (const int choice : {-1, 0, 2}) {
        WithChoice(choice);
        Look([this, choice] {
            EXPECT_EQ(Form(IDC_PATCH_OFFERED), CString(L"SDU"));
            EXPECT_EQ(IsChecked(IDC_PATCH_LISTED), choice == 2);
            EXPECT_EQ(IsChecked(IDC_PATCH_NONE), choice != 2);
        });
        ShowAndGoBack();
    }
    EXPECT_EQ(IncludeCalls(), Lines());
}

TEST_P(PatchChoices, AProductWithListedFilesKeepsThemWhenTheServiceHasAnOffer)
{
    WithOffer();
    WithChoice(2);
    Look([this] {
        EXPECT_EQ(Stage(), CString(L"available"));
        EXPECT_TRUE(IsChecked(IDC_PATCH_LISTED));
        EXPECT_TRUE(IsShown(IDC_PATCH_LINK));
    });
    ShowAndGoBack();
}

TEST_P(PatchChoices, EachChoiceEnablesWhatBelongsToIt)
{
    WithOffer();
    Choose(IDC_PATCH_NONE);
    ExpectForms({{IDC_PATCH_LIST, L"SD"},
                 {IDC_PATCH_BROWSE, L"SD"},
                 {IDC_PATCH_REMOVE, L"SD"},
                 {IDC_PATCH_ACTION, L"SD"},
                 {IDC_PATCH_APPEND, L"SDC"},
                 {IDC_PATCH_MERGE, L"SDU"}});
    Choose(IDC_PATCH_OFFERED);
    ExpectForms({{IDC_PATCH_LIST, L"SD"},
                 {IDC_PATCH_BROWSE, L"SD"},
                 {IDC_PATCH_REMOVE, L"SD"},
                 {IDC_PATCH_ACTION, L"SE"},
                 {IDC_PATCH_APPEND, L"SEC"},
                 {IDC_PATCH_MERGE, L"SEU"}});
    Choose(IDC_PATCH_LISTED);
    ExpectForms({{IDC_PATCH_LIST, L"SE"},
                 {IDC_PATCH_BROWSE, L"SE"},
                 {IDC_PATCH_ACTION, L"SD"},
                 {IDC_PATCH_APPEND, L"SEC"},
                 {IDC_PATCH_MERGE, L"SEU"}});
    ShowAndGoBack();
}

TEST_P(PatchChoices, ARetryStaysPossibleWhateverIsChosen)
{
    WithAnswer(12002, 0);
    Choose(IDC_PATCH_LISTED);
    ExpectForms({{IDC_PATCH_ACTION, L"SE"}, {IDC_PATCH_OFFERED, L"SDU"}});
    Choose(IDC_PATCH_NONE);
    ExpectForms({{IDC_PATCH_ACTION, L"SE"}, {IDC_PATCH_OFFERED, L"SDU"}});
    ShowAndGoBack();
}

TEST_P(PatchChoices, ADownloadedPatchIsNotDownloadedAgainWhateverIsChosen)
{
    WithDownloadedPatch(AddPatch(L"sp1.msp", 1));
    WithChoice(1);
    for (const int radio : {IDC_PATCH_LISTED, IDC_PATCH_OFFERED, IDC_PATCH_NONE, IDC_PATCH_OFFERED}) {
        Choose(radio);
        ExpectForms(
            {{IDC_PATCH_ACTION, L"SD"}, {IDC_PATCH_DOWNLOADED, radio == IDC_PATCH_OFFERED ? L"SE" : L"SD"}});
    }
    ShowAndGoBack();
}

// ---- append and merge

TEST_P(PatchChoices, AModifiedDeploymentDoesNotEnableTheWaysOnceTheyAreDisabled)
{
    InMode(6);
    Choose(IDC_PATCH_LISTED); // no patch was chosen at the entry, which disabled them
    ExpectForms({{IDC_PATCH_APPEND, L"SDC"}, {IDC_PATCH_MERGE, L"SDU"}});
    ShowAndGoBack();
    for (const int mode : {4, 5}) {
        InMode(mode);
        WithChoice(-1);
        Choose(IDC_PATCH_LISTED);
        ExpectForms({{IDC_PATCH_APPEND, L"SEC"}, {IDC_PATCH_MERGE, L"SEU"}});
        ShowAndGoBack();
    }
}

TEST_P(PatchChoices, TheStatesCheckTheWayAtEntry)
{
    const struct
    {
        int stored;
        int chosen;
        bool merge;
    } rows[] = {{0, 0, false}, {0, 1, true},  {0, 2, false}, {0, 3, false}, {0, 4, true},
                {0, 5, true},  {1, 0, false}, {2, 4, true},  {4, 2, false}, {3, 4, false},
                {3, 0, false}, {5, 2, true},  {5, 0, true}};
    InMode(6);
    WithChoice(2);
    for (const auto& row : rows) {
        product.msiPatchState = static_cast<Setup::tagPATCHSTATE>(row.stored);
        product.patchState = static_cast<Setup::tagPATCHSTATE>(row.chosen);
        const bool locked = row.stored == 3 || row.stored == 5;
        Look([this, row, locked] {
            EXPECT_EQ(Form(IDC_PATCH_MERGE), CString(locked ? L"SD" : L"SE") + (row.merge ? L"C" : L"U"))
                << row.stored << ", " << row.chosen;
            EXPECT_EQ(Form(IDC_PATCH_APPEND), CString(locked ? L"SD" : L"SE") + (row.merge ? L"U" : L"C"))
                << row.stored << ", " << row.chosen;
        });
        ShowAndGoBack();
    }
}

TEST_P(PatchChoices, MergedPatchesLockTheRemoveButtonUntilAnotherLineIsSelected)
{
    InMode(6);
    WithChoice(2);
    product.msiPatchState = Setup::PATCHSTATE_MERGED;
    const CString merged = AddPatch(L"merged.msp", 1, L"Merged");
    product.mergedPatches = {merged};
    WithListed({merged, AddPatch(L"new.msp", 2, L"New")});
    ExpectForms({{IDC_PATCH_REMOVE, L"SD"}});
    SelectPatch(1);
    ExpectForms({{IDC_PATCH_REMOVE, L"SE"}});
    SelectPatch(0);
    ExpectForms({{IDC_PATCH_REMOVE, L"SD"}});
    ShowAndGoBack();
}

TEST_P(PatchChoices, AnEmptyListDisablesTheRemoveButtonAndAFullOneDoesNot)
{
    WithChoice(2);
    ExpectForms({{IDC_PATCH_REMOVE, L"SD"}});
    ShowAndGoBack();
    WithListed({AddPatch(L"first.msp", 1)});
    ExpectForms({{IDC_PATCH_REMOVE, L"SE"}});
    ShowAndGoBack();
}

TEST_P(PatchChoices, GoingBackToTheListLeavesTheRemoveButtonToTheSelection)
{
    WithChoice(2);
    WithListed({AddPatch(L"first.msp", 1)});
    Choose(IDC_PATCH_NONE);
    Choose(IDC_PATCH_LISTED);
    ExpectForms({{IDC_PATCH_REMOVE, L"SD"}});
    SelectPatch(0);
    ExpectForms({{IDC_PATCH_REMOVE, L"SE"}});
    ShowAndGoBack();
}

// ---- leaving

TEST_P(PatchChoices, AnOfferThatIsNotDownloadedRefusesNextAndBack)
{
    WithOffer();
    ExpectRefused(Next());
    ExpectRefused(Back());
    Look([this] { EXPECT_EQ(Stage(), CString(L"available")); });
    Choose(IDC_PATCH_NONE);
    ShowAndGoBack();
    EXPECT_EQ(StateCalls(), Lines());
}

TEST_P(PatchChoices, WithAnotherChoiceTheOfferRefusesNothing)
{
    WithOffer();
    Choose(IDC_PATCH_LISTED);
    GoNext();
    Choose(IDC_PATCH_NONE);
    GoNext();
}

// The choice of the service's patch stays checked although it can't be seen.
TEST_P(PatchChoices, AChosenServicePatchRefusesToLeaveWhenTheServiceIsGone)
{
    WithChoice(1);
    Look([this] { EXPECT_EQ(Stage(), CString(L"no service")); });
    ExpectRefused(Next());
    ExpectRefused(Back());
    Choose(IDC_PATCH_NONE);
    GoNext();
}

TEST_P(PatchChoices, BackStoresNothing)
{
    const CString first = AddPatch(L"first.msp", 1);
    WithChoice(2);
    Browse(first);
    Await(L"the patch is not listed", [this] { return BoxLines().size() == 1; });
    ShowAndGoBack();
    EXPECT_EQ(product.m_patchFiles, Lines());
    EXPECT_EQ(StateCalls(), Lines());
}

TEST_P(PatchChoices, NextStoresTheList)
{
    const CString first = AddPatch(L"first.msp", 1), second = AddPatch(L"second.msp", 2);
    WithChoice(2);
    WithListed({first});
    Browse(second);
    Await(L"the patch is not listed", [this] { return BoxLines().size() == 2; });
    GoNext();
    EXPECT_EQ(product.m_patchFiles, (Lines{first, second}));
}

TEST_P(PatchChoices, NoPatchStoresItsStateAndKeepsTheProductsList)
{
    const Lines listed = {AddPatch(L"first.msp", 1)};
    for (const int state : {0, 2, 4, 5}) {
        host.log.Clear();
        WithChoice(0);
        WithListed(listed);
        product.patchState = static_cast<Setup::tagPATCHSTATE>(state);
        GoNext();
        EXPECT_EQ(StateCalls(), Lines{L"Product.SetPatchState(0)"}) << state;
        EXPECT_EQ(product.m_patchFiles, listed);
    }
}

TEST_P(PatchChoices, NextWritesTheStateThatListAndWayGive)
{
    const Lines listed = {AddPatch(L"first.msp", 1)};
    const struct
    {
        bool filled;
        int state;
        int way;
        const wchar_t* written;
    } rows[] = {
        {true, 5, IDC_PATCH_MERGE, nullptr}, {true, 5, IDC_PATCH_APPEND, nullptr},
        {true, 0, IDC_PATCH_MERGE, L"4"},    {true, 0, IDC_PATCH_APPEND, L"2"},
        {true, 4, IDC_PATCH_APPEND, L"2"},   {true, 2, IDC_PATCH_MERGE, L"4"},
        {false, 0, IDC_PATCH_MERGE, L"1"},   {false, 5, IDC_PATCH_MERGE, L"1"},
        {false, 0, IDC_PATCH_APPEND, L"0"},  {false, 5, IDC_PATCH_APPEND, L"0"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row.filled << ", " << row.state << ", " << row.way);
        host.log.Clear();
        WithChoice(2);
        WithListed(row.filled ? listed : Lines());
        product.patchState = static_cast<Setup::tagPATCHSTATE>(row.state);
        Choose(row.way);
        GoNext();
        EXPECT_EQ(StateCalls(),
                  row.written ? Lines{CString(L"Product.SetPatchState(") + row.written + L")"} : Lines());
        EXPECT_EQ(product.m_patchFiles, row.filled ? listed : Lines());
    }
}

TEST_P(PatchChoices, ADownloadedPatchTakesThePlaceOfTheListedFiles)
{
    const CString fetched = AddPatch(L"fetched.msp", 3);
    WithDownloadedPatch(fetched);
    WithChoice(1);
    WithListed({AddPatch(L"first.msp", 1), AddPatch(L"second.msp", 2)});
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines{fetched});
    EXPECT_EQ(StateCalls(), Lines{L"Product.SetPatchState(2)"});
}

TEST_P(PatchChoices, ADownloadedPatchThatDoesNotApplyLeavesAnEmptyListAfterItsMessage)
{
    const CString fetched =
        AddPatch(L"fetched.msp", {OTHER_PRODUCT, L"{5C0FFEE0-0000-4000-8000-000000000199}"});
    WithDownloadedPatch(fetched);
    WithChoice(1);
    WithListed({AddPatch(L"first.msp", 1)});
    Press(Next());
    Answer(ErrorBox(ResourceText(IDS_PATCHES_NOT_APPLICABLE, fetched + L"\n")), IDOK);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(product.m_patchFiles, Lines());
    EXPECT_EQ(StateCalls(), Lines{L"Product.SetPatchState(0)"});
}

TEST_P(PatchChoices, ADownloadedPatchWhoseFileIsGoneLeavesAnEmptyListQuietly)
{
    WithDownloadedPatch(folder / L"files\\gone.msp");
    WithChoice(1);
    WithListed({AddPatch(L"first.msp", 1)});
    GoNext();
    EXPECT_EQ(product.m_patchFiles, Lines());
}

TEST_P(PatchChoices, UpToDateCanBeLeftAndStoresThatNothingIsMerged)
{
    for (const bool filled : {false, true}) {
        host.log.Clear();
        WithAnswer(0, 0);
        WithChoice(-1);
        const Lines listed = filled ? Lines{AddPatch(L"first.msp", 1)} : Lines();
        WithListed(listed);
        GoNext();
        EXPECT_EQ(StateCalls(), Lines{filled ? L"Product.SetPatchState(2)" : L"Product.SetPatchState(0)"});
        EXPECT_EQ(product.m_patchFiles, listed);
        ShowAndGoBack();
    }
}

TEST_P(PatchChoices, TheActionDoesNothingInStagesWithoutOne)
{
    const auto expectNothing = [this](const wchar_t* stage) {
        Look([this] { SendMessageW(Page(), WM_COMMAND, MAKEWPARAM(IDC_PATCH_ACTION, BN_CLICKED), 0); });
        Look([this, stage, asked = queries.size()] {
            EXPECT_EQ(Stage(), CString(stage));
            EXPECT_LE(queries.size(), 1u);
        });
        ShowAndGoBack();
    };
    expectNothing(L"no service");
    WithAnswer(0, 0);
    expectNothing(L"up to date");
    queries.clear();
    WithDownloadedPatch(AddPatch(L"sp1.msp", 1));
    WithChoice(1);
    expectNothing(L"downloaded");
}
