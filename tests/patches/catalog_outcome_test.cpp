// What an answer of the service makes of the page: at its entry, and when the user tries again.
#include "tests/patches/service_pack_page.h"

namespace {

struct Outcome
{
    unsigned int errorCode;
    int patchCount;
    const wchar_t* stage;
};

class CatalogOutcome : public PatchPage
{
protected:
    // The page opens with a failure on show, and the next query answers this.
    void TryAgain(const Outcome& outcome)
    {
        WithAnswer(12002, 0);
        Look([this, outcome] {
            EXPECT_EQ(Stage(), CString(L"timed out"));
            answer.ErrorCode = outcome.errorCode;
            answer.PatchCount = outcome.patchCount;
        });
        Act();
        Await(L"the service was not asked again", [this] { return queries.size() == 2; });
        AwaitStage(outcome.stage);
        // A product whose patch is on offer can't be left before it is downloaded.
        if (CString(outcome.stage) == L"available") {
            Choose(IDC_PATCH_NONE);
        }
        ShowAndGoBack();
        queries.clear();
        WithChoice(-1);
    }
};
INSTANTIATE_BOTH_SHAPES(CatalogOutcome);

} // namespace

TEST_P(CatalogOutcome, EachAnswerAtEntryHasItsStage)
{
    const Outcome rows[] = {
        {0, 0, L"up to date"},
        {0, 1, L"available"},
        {0, 7, L"available"},
        {0, -1, L"no service"},
        {0, -2147483647, L"no service"},
        {12017, 0, L"connect failed"},
        {12017, 5, L"connect failed"},
        {12002, 0, L"timed out"},
        {12002, -1, L"timed out"},
        {12029, 0, L"no service"},
        {12007, 1, L"no service"},
        {1, 0, L"no service"},
        {ANSWER_UNSET, 0, L"no service"},
        {ANSWER_UNSET, 1, L"no service"},
    };
    for (const Outcome& row : rows) {
        SCOPED_TRACE(testing::Message() << row.errorCode << ", " << row.patchCount);
        WithChoice(-1);
        WithAnswer(row.errorCode, row.patchCount);
        Look([this, row] { EXPECT_EQ(Stage(), CString(row.stage)); });
        if (CString(row.stage) == L"available") {
            Choose(IDC_PATCH_NONE);
        }
        ShowAndGoBack();
    }
}

TEST_P(CatalogOutcome, EachAnswerAtARetryHasItsStage)
{
    const Outcome rows[] = {
        {0, 1, L"available"},          {0, 9, L"available"},          {0, 0, L"up to date"},
        {0, -1, L"up to date"},        {12002, 0, L"timed out"},      {12002, 1, L"timed out"},
        {12017, 0, L"connect failed"}, {12029, 3, L"connect failed"}, {ANSWER_UNSET, 1, L"connect failed"},
    };
    for (const Outcome& row : rows) {
        SCOPED_TRACE(testing::Message() << row.errorCode << ", " << row.patchCount);
        TryAgain(row);
    }
}

TEST_P(CatalogOutcome, WithoutTheQueryLibraryThereIsNoServiceAtEntry)
{
    WithOffer();
    UseLibrary(L"FixMgr.dll", nullptr);
    Look([this] { EXPECT_EQ(Stage(), CString(L"no service")); });
    ShowAndGoBack();
    UseLibrary(L"FixMgr.dll", L"without_query");
    Look([this] { EXPECT_EQ(Stage(), CString(L"no service")); });
    ShowAndGoBack();
    EXPECT_EQ(queries.size(), 0u);
}

TEST_P(CatalogOutcome, AQueryLibraryThatIsGoneAtARetryShowsTheFormerOutcomeOnly)
{
    WithAnswer(12002, 0);
    Look([this] { UseLibrary(L"FixMgr.dll", nullptr); });
    Act();
    // The record still has what the first query left.
    Await(L"the page does not offer to try again",
          [this] { return Stage() == L"timed out" && Control(IDC_PATCH_ACTION).IsUsable(); });
    Look([this] { EXPECT_EQ(queries.size(), 1u); });
    ShowAndGoBack();
}

TEST_P(CatalogOutcome, AnOfferIsCheckedWhileNoChoiceWasMadeAndOnlyThen)
{
    const std::pair<int, int> rows[] = {
        {-1, IDC_PATCH_OFFERED}, {0, IDC_PATCH_NONE}, {1, IDC_PATCH_OFFERED}, {2, IDC_PATCH_LISTED}};
    for (const auto& [choice, checked] : rows) {
        SCOPED_TRACE(choice);
        WithOffer();
        WithChoice(choice);
        Look([this, checked = checked] {
            for (const int radio : {IDC_PATCH_NONE, IDC_PATCH_OFFERED, IDC_PATCH_LISTED}) {
                EXPECT_EQ(IsChecked(radio), radio == checked) << radio;
            }
            EXPECT_TRUE(Control(IDC_PATCH_OFFERED).IsEnabled());
        });
        Choose(IDC_PATCH_NONE);
        ShowAndGoBack();
    }
}

TEST_P(CatalogOutcome, EachRetryAsksTheServiceAnew)
{
    WithAnswer(12017, 0);
    for (std::size_t asked = 2; asked < 5; ++asked) {
        Act();
        Await(L"the service was not asked again", [this, asked] { return queries.size() == asked; });
    }
    ShowAndGoBack();
}

// The default stays with the page, and overrides are read at its entry alone.
TEST_P(CatalogOutcome, ARetryAsksAtTheSameAddressForTheSameIdentity)
{
    WithAnswer(12017, 0);
    Look([this] { identity = L"another"; });
    Act();
    Await(L"the service was not asked again", [this] { return queries.size() == 2; });
    ShowAndGoBack();
    EXPECT_EQ(queries.at(1).address, queries.at(0).address);
    EXPECT_EQ(queries.at(1).identity, CString(L"zolt-identity"));
    EXPECT_EQ(libraryCalls.size(), 2u) << "the identity was asked for again";
}
