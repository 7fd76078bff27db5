#include "include/navigation.h"
#include "setup/flow.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

const std::vector<FlowStep> PAGES = {{L"BeginDeploymentDialog"},
                                     {L"ProductContactDialog"},
                                     {L"DeploymentCompleteDialog"},
                                     {L"DeploymentFailedDialog"}};

// Pages 2, 3 and 5 exist as tabs too.
const std::vector<FlowStep> PAGES_WITH_TABS = {{L"BeginDeploymentDialog"},    {L"DeploymentSettingsDialog"},
                                               {L"PathDialog", true},         {L"OnlineDialog", true},
                                               {L"ProductContactDialog"},     {L"NoticeDialog", true},
                                               {L"DeploymentCompleteDialog"}, {L"DeploymentFailedDialog"}};

// Pages 1, 2 and 4 belong to a product, and 1 and 4 exist as tabs too.
const std::vector<FlowStep> PAGES_OF_PRODUCTS = {
    {L"BeginDeploymentDialog"}, {L"PathDialog", true, true},   {L"OnlineDialog", false, true},
    {L"ProductContactDialog"},  {L"NoticeDialog", true, true}, {L"DeploymentCompleteDialog"},
    {L"DeploymentFailedDialog"}};

void ExpectPage(const FlowMove& move, int page, int product = -1)
{
    EXPECT_EQ(move.act, FlowAct::ShowPage);
    EXPECT_EQ(move.nPage, page);
    EXPECT_EQ(move.nProduct, product);
}

struct ProductPage
{
    int page;
    int product;
};

void ExpectConfigure(const FlowMove& move)
{
    EXPECT_EQ(move.act, FlowAct::Configure);
}

void ExpectFinish(const FlowMove& move, unsigned int exitCode)
{
    EXPECT_EQ(move.act, FlowAct::Finish);
    EXPECT_EQ(move.exitCode, exitCode);
}

// A flow that stands before its build.
CWizardFlow AtBuild()
{
    CWizardFlow flow(PAGES, true);
    (void)flow.Start();
    (void)flow.AfterPage(NAVIGATION_NEXT);
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Build);
    return flow;
}

TEST(SetupFlow, NextWalksTheChoosingPagesAndThenBuilds)
{
    CWizardFlow flow(PAGES, true);
    ExpectPage(flow.Start(), 0);
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 1);
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Build);
}

TEST(SetupFlow, ACheckEndsWhereTheBuildWouldBegin)
{
    CWizardFlow flow(PAGES, false);
    (void)flow.Start();
    (void)flow.AfterPage(NAVIGATION_NEXT);
    ExpectFinish(flow.AfterPage(NAVIGATION_NEXT), 0);
}

TEST(SetupFlow, BackIsOffOnTheFirstPageAndOnTheOutcome)
{
    CWizardFlow flow(PAGES, true);
    (void)flow.Start();
    EXPECT_FALSE(flow.CanGoBack());
    (void)flow.AfterPage(NAVIGATION_NEXT);
    EXPECT_TRUE(flow.CanGoBack());
    (void)flow.AfterPage(NAVIGATION_NEXT);
    (void)flow.AfterBuild(0);
    EXPECT_FALSE(flow.CanGoBack());
}

TEST(SetupFlow, BackShowsThePageBefore)
{
    CWizardFlow flow(PAGES, true);
    (void)flow.Start();
    (void)flow.AfterPage(NAVIGATION_NEXT);
    ExpectPage(flow.AfterPage(NAVIGATION_BACK), 0);
    ExpectPage(flow.AfterPage(NAVIGATION_BACK), 0);
}

TEST(SetupFlow, ResetShowsTheFirstPage)
{
    CWizardFlow flow(PAGES, true);
    (void)flow.Start();
    (void)flow.AfterPage(NAVIGATION_NEXT);
    ExpectPage(flow.AfterPage(NAVIGATION_RESET), 0);
}

TEST(SetupFlow, ResetOnTheFailedPageStartsOverAndBuildsAgain)
{
    CWizardFlow flow = AtBuild();
    (void)flow.AfterBuild(112);
    ExpectPage(flow.AfterPage(NAVIGATION_RESET), 0);
    EXPECT_FALSE(flow.CanGoBack());
    (void)flow.AfterPage(NAVIGATION_NEXT);
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Build);
    ExpectPage(flow.AfterBuild(0), 2);
    ExpectFinish(flow.AfterPage(NAVIGATION_NEXT), 0);
}

TEST(SetupFlow, CancelEndsWith1602)
{
    CWizardFlow flow(PAGES, true);
    (void)flow.Start();
    ExpectFinish(flow.AfterPage(NAVIGATION_CANCEL), 1602);
}

TEST(SetupFlow, APageClosedFromOutsideCountsAsCancelled)
{
    CWizardFlow flow(PAGES, true);
    (void)flow.Start();
    ExpectFinish(flow.AfterPage(0), 1602);
}

TEST(SetupFlow, AMissingResourceLibraryEndsWith1603)
{
    CWizardFlow flow(PAGES, true);
    (void)flow.Start();
    ExpectFinish(flow.AfterPage(NAVIGATION_LOAD_FAILED), 1603);
}

TEST(SetupFlow, ABuildThatStandsShowsTheCompletePageAndEndsWith0)
{
    CWizardFlow flow = AtBuild();
    ExpectPage(flow.AfterBuild(0), 2);
    ExpectFinish(flow.AfterPage(NAVIGATION_NEXT), 0);
}

TEST(SetupFlow, CancelOnTheCompletePageDoesNotUndoTheDeployment)
{
    CWizardFlow flow = AtBuild();
    (void)flow.AfterBuild(0);
    ExpectFinish(flow.AfterPage(NAVIGATION_CANCEL), 0);
}

TEST(SetupFlow, AFailedBuildShowsTheFailedPageAndEndsWith1603WhateverItsCause)
{
    CWizardFlow flow = AtBuild();
    ExpectPage(flow.AfterBuild(112), 3);
    ExpectFinish(flow.AfterPage(NAVIGATION_NEXT), 1603);
}

TEST(SetupFlow, ACancelledBuildShowsTheFailedPageAndEndsWith1602)
{
    CWizardFlow flow = AtBuild();
    ExpectPage(flow.AfterBuild(1602), 3);
    ExpectFinish(flow.AfterPage(NAVIGATION_NEXT), 1602);
}

TEST(SetupFlow, WithoutOutcomePagesTheBuildEndsTheRun)
{
    CWizardFlow flow({{L"BeginDeploymentDialog"}}, true);
    (void)flow.Start();
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Build);
    ExpectFinish(flow.AfterBuild(0), 0);
}

TEST(SetupFlow, WithoutChoosingPagesNothingIsBuilt)
{
    CWizardFlow flow({{L"DeploymentCompleteDialog"}}, true);
    EXPECT_FALSE(flow.HasChoosingPage());
    ExpectFinish(flow.Start(), 1603);
}

TEST(SetupFlow, PagesThatNobodyKnowsAreChoosingPages)
{
    CWizardFlow flow({{L"BeginDeploymentDialog"}, {L"DeploymentFailedDialog"}, {L"SomethingNewDialog"}},
                     true);
    (void)flow.Start();
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 2);
}

TEST(SetupFlow, WithoutAnOfferPagesWithTabsAreWalkedOneByOne)
{
    CWizardFlow flow(PAGES_WITH_TABS, true);
    (void)flow.Start();
    for (const int page : {1, 2, 3, 4, 5}) {
        ExpectPage(flow.AfterPage(NAVIGATION_NEXT), page);
    }
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Build);
}

TEST(SetupFlow, TheConfigureDialogComesOnceInThePlaceOfTheFirstTab)
{
    CWizardFlow flow(PAGES_WITH_TABS, true);
    (void)flow.Start();
    flow.OfferConfigure(true);
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 1);
    ExpectConfigure(flow.AfterPage(NAVIGATION_NEXT));
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 4);
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Build);
}

TEST(SetupFlow, BackFromBehindTheTabsShowsTheConfigureDialogAgain)
{
    CWizardFlow flow(PAGES_WITH_TABS, true);
    flow.OfferConfigure(true);
    (void)flow.Start();
    (void)flow.AfterPage(NAVIGATION_NEXT);
    (void)flow.AfterPage(NAVIGATION_NEXT);
    (void)flow.AfterPage(NAVIGATION_NEXT);
    ExpectConfigure(flow.AfterPage(NAVIGATION_BACK));
    EXPECT_TRUE(flow.CanGoBack());
    ExpectPage(flow.AfterPage(NAVIGATION_BACK), 1);
}

TEST(SetupFlow, TheOfferMayChangeWhenTheFirstPageIsLeftAnew)
{
    CWizardFlow flow(PAGES_WITH_TABS, true);
    (void)flow.Start();
    flow.OfferConfigure(true);
    (void)flow.AfterPage(NAVIGATION_NEXT);
    ExpectConfigure(flow.AfterPage(NAVIGATION_NEXT));
    (void)flow.AfterPage(NAVIGATION_BACK);
    ExpectPage(flow.AfterPage(NAVIGATION_BACK), 0);
    flow.OfferConfigure(false);
    (void)flow.AfterPage(NAVIGATION_NEXT);
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 2);
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 3);
}

TEST(SetupFlow, AFlowOfTabsAloneBeginsWithTheConfigureDialog)
{
    CWizardFlow flow({{L"PathDialog", true}, {L"OnlineDialog", true}}, true);
    flow.OfferConfigure(true);
    ExpectConfigure(flow.Start());
    EXPECT_FALSE(flow.CanGoBack());
    ExpectConfigure(flow.AfterPage(NAVIGATION_BACK));
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Build);
}

TEST(SetupFlow, AConfigureDialogThatIsCancelledEndsWith1602)
{
    CWizardFlow flow({{L"PathDialog", true}}, true);
    flow.OfferConfigure(true);
    (void)flow.Start();
    ExpectFinish(flow.AfterPage(NAVIGATION_CANCEL), 1602);
}

TEST(SetupFlow, PagesOfAProductAreWalkedProductByProductAndAllOthersOnce)
{
    CWizardFlow flow(PAGES_OF_PRODUCTS, true);
    flow.UseProducts(3);
    ExpectPage(flow.Start(), 0);
    for (const ProductPage stop :
         {ProductPage{1, 0}, {2, 0}, {1, 1}, {2, 1}, {1, 2}, {2, 2}, {3, -1}, {4, 0}, {4, 1}, {4, 2}}) {
        ExpectPage(flow.AfterPage(NAVIGATION_NEXT), stop.page, stop.product);
    }
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Build);
    ExpectPage(flow.AfterBuild(0), 5);
}

TEST(SetupFlow, BackGoesThroughTheProductsTheOtherWayRound)
{
    CWizardFlow flow(PAGES_OF_PRODUCTS, true);
    flow.UseProducts(2);
    (void)flow.Start();
    for (int stop = 0; stop < 7; ++stop) {
        (void)flow.AfterPage(NAVIGATION_NEXT);
    }
    for (const ProductPage stop : {ProductPage{4, 0}, {3, -1}, {2, 1}, {1, 1}, {2, 0}, {1, 0}, {0, -1}}) {
        EXPECT_TRUE(flow.CanGoBack());
        ExpectPage(flow.AfterPage(NAVIGATION_BACK), stop.page, stop.product);
    }
    EXPECT_FALSE(flow.CanGoBack());
}

TEST(SetupFlow, OneProductIsWalkedAsIfThereWereNone)
{
    CWizardFlow flow(PAGES_OF_PRODUCTS, true);
    flow.UseProducts(1);
    (void)flow.Start();
    for (const ProductPage stop : {ProductPage{1, 0}, {2, 0}, {3, -1}, {4, 0}}) {
        ExpectPage(flow.AfterPage(NAVIGATION_NEXT), stop.page, stop.product);
    }
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Build);
}

TEST(SetupFlow, TheFirstPageMayChangeTheNumberOfProducts)
{
    CWizardFlow flow(PAGES_OF_PRODUCTS, true);
    flow.UseProducts(3);
    (void)flow.Start();
    flow.UseProducts(2);
    for (const ProductPage stop : {ProductPage{1, 0}, {2, 0}, {1, 1}, {2, 1}, {3, -1}}) {
        ExpectPage(flow.AfterPage(NAVIGATION_NEXT), stop.page, stop.product);
    }
    ExpectPage(flow.AfterPage(NAVIGATION_RESET), 0);
    flow.UseProducts(1);
    for (const ProductPage stop : {ProductPage{1, 0}, {2, 0}, {3, -1}, {4, 0}}) {
        ExpectPage(flow.AfterPage(NAVIGATION_NEXT), stop.page, stop.product);
    }
}

TEST(SetupFlow, APageBehindProductsStaysWhereItIsWhenTheirNumberChanges)
{
    CWizardFlow flow(PAGES_OF_PRODUCTS, true);
    (void)flow.Start();
    for (int stop = 0; stop < 3; ++stop) {
        (void)flow.AfterPage(NAVIGATION_NEXT);
    }
    flow.UseProducts(2); // on page 3
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 4, 0);
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 4, 1);
    ExpectPage(flow.AfterPage(NAVIGATION_BACK), 4, 0);
    ExpectPage(flow.AfterPage(NAVIGATION_BACK), 3);
    ExpectPage(flow.AfterPage(NAVIGATION_BACK), 2, 1);
}

// Its first page was passed over.
TEST(SetupFlow, TheWalkBeginsAnewWhenTheProductOfTheShownPageIsGone)
{
    for (const int stops : {3, 4, 7}) { // the second product's first, its second, its last
        CWizardFlow flow(PAGES_OF_PRODUCTS, true);
        flow.UseProducts(2);
        (void)flow.Start();
        for (int stop = 0; stop < stops; ++stop) {
            (void)flow.AfterPage(NAVIGATION_NEXT);
        }
        flow.UseProducts(1);
        EXPECT_FALSE(flow.CanGoBack());
        ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 0);
        for (const ProductPage stop : {ProductPage{1, 0}, {2, 0}, {3, -1}, {4, 0}}) {
            ExpectPage(flow.AfterPage(NAVIGATION_NEXT), stop.page, stop.product);
        }
        EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Build);
    }
}

TEST(SetupFlow, CancelOnAPageOfTheSecondProductEndsWith1602)
{
    CWizardFlow flow(PAGES_OF_PRODUCTS, true);
    flow.UseProducts(2);
    (void)flow.Start();
    for (int stop = 0; stop < 3; ++stop) {
        (void)flow.AfterPage(NAVIGATION_NEXT);
    }
    ExpectFinish(flow.AfterPage(NAVIGATION_CANCEL), 1602);
}

TEST(SetupFlow, TheConfigureDialogHoldsTheTabsOfAllProductsAndComesOnce)
{
    CWizardFlow flow({{L"BeginDeploymentDialog"},
                      {L"PathDialog", true, true},
                      {L"OnlineDialog", true, true},
                      {L"ProductContactDialog"},
                      {L"NoticeDialog", true, true}},
                     true);
    flow.UseProducts(2);
    flow.OfferConfigure(true);
    (void)flow.Start();
    ExpectConfigure(flow.AfterPage(NAVIGATION_NEXT));
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 3);
    ExpectConfigure(flow.AfterPage(NAVIGATION_BACK));
    ExpectPage(flow.AfterPage(NAVIGATION_BACK), 0);
    ExpectConfigure(flow.AfterPage(NAVIGATION_NEXT));
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 3);
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Build);
}

} // namespace

// ---- the review

namespace {

// A flow that stands before its review.
CWizardFlow AtReview(const std::vector<FlowStep>& pages, int products, bool builds = true)
{
    CWizardFlow flow(pages, builds);
    flow.OfferReview(true);
    flow.UseProducts(products);
    FlowMove move = flow.Start();
    while (move.act == FlowAct::ShowPage) {
        move = flow.AfterPage(NAVIGATION_NEXT);
    }
    EXPECT_EQ(move.act, FlowAct::Review);
    return flow;
}

} // namespace

TEST(SetupFlow, TheReviewStandsBehindTheLastChoosingPageAndLeadsToTheBuild)
{
    CWizardFlow flow(PAGES, true);
    flow.OfferReview(true);
    ExpectPage(flow.Start(), 0);
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 1);
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Review);
    EXPECT_EQ(flow.AfterReview(NAVIGATION_NEXT).act, FlowAct::Build);
}

TEST(SetupFlow, TheReviewOfACheckEndsTheRun)
{
    CWizardFlow flow = AtReview(PAGES, 1, false);
    ExpectFinish(flow.AfterReview(NAVIGATION_NEXT), 0);
}

TEST(SetupFlow, BackFromTheReviewShowsTheLastChoosingPage)
{
    CWizardFlow flow = AtReview(PAGES_OF_PRODUCTS, 2);
    ExpectPage(flow.AfterReview(NAVIGATION_BACK), 4, 1);
    EXPECT_TRUE(flow.CanGoBack());
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Review);
}

TEST(SetupFlow, AReviewThatIsCanceledOrCanNotBeShownEndsTheRun)
{
    CWizardFlow canceled = AtReview(PAGES, 1);
    ExpectFinish(canceled.AfterReview(NAVIGATION_CANCEL), 1602);
    CWizardFlow unshown = AtReview(PAGES, 1);
    ExpectFinish(unshown.AfterReview(NAVIGATION_LOAD_FAILED), 1603);
}

TEST(SetupFlow, AVisitedPageLeadsBackToTheReviewByNextAlone)
{
    CWizardFlow flow = AtReview(PAGES_OF_PRODUCTS, 2);
    ExpectPage(flow.VisitPage(L"OnlineDialog", 1), 2, 1);
    EXPECT_FALSE(flow.CanGoBack());
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Review);
    ExpectPage(flow.VisitPage(L"BeginDeploymentDialog", -1), 0);
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Review);
    EXPECT_EQ(flow.AfterReview(NAVIGATION_NEXT).act, FlowAct::Build);
}

TEST(SetupFlow, AVisitedPageIsNamedToTheReviewAndOneOfTheWalkIsNot)
{
    CWizardFlow flow = AtReview(PAGES_OF_PRODUCTS, 2);
    ExpectPage(flow.VisitPage(L"OnlineDialog", 1), 2, 1);
    FlowMove move = flow.AfterPage(NAVIGATION_NEXT);
    EXPECT_EQ(move.nPage, 2);
    EXPECT_EQ(move.nProduct, 1);
    move = flow.AfterReview(NAVIGATION_BACK);
    ASSERT_EQ(move.act, FlowAct::ShowPage);
    move = flow.AfterPage(NAVIGATION_NEXT);
    EXPECT_EQ(move.act, FlowAct::Review);
    EXPECT_EQ(move.nPage, -1) << "of a page that was no visit";
}

TEST(SetupFlow, CancelOnAVisitedPageEndsWith1602)
{
    CWizardFlow flow = AtReview(PAGES, 1);
    ExpectPage(flow.VisitPage(L"ProductContactDialog", -1), 1);
    ExpectFinish(flow.AfterPage(NAVIGATION_CANCEL), 1602);
}

TEST(SetupFlow, AVisitOfAPageThatIsNotThereStaysAtTheReview)
{
    CWizardFlow flow = AtReview(PAGES_OF_PRODUCTS, 2);
    EXPECT_EQ(flow.VisitPage(L"OnlineDialog", 2).act, FlowAct::Review);
    EXPECT_EQ(flow.VisitPage(L"OnlineDialog", -1).act, FlowAct::Review);
    EXPECT_EQ(flow.VisitPage(L"NobodysDialog", -1).act, FlowAct::Review);
    ExpectPage(flow.AfterReview(NAVIGATION_BACK), 4, 1);
}

// The visited page has opened other products: what the pages behind it had chosen is gone.
TEST(SetupFlow, AnEndedVisitGoesThroughThePagesBehindIt)
{
    CWizardFlow flow = AtReview(PAGES, 1);
    ExpectPage(flow.VisitPage(L"BeginDeploymentDialog", -1), 0);
    flow.EndVisit();
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 1);
    EXPECT_TRUE(flow.CanGoBack());
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Review);
}

TEST(SetupFlow, AVisitedPageOfTheConfigureDialogOpensItOnThePagesTab)
{
    CWizardFlow flow(PAGES_OF_PRODUCTS, true);
    flow.OfferReview(true);
    flow.OfferConfigure(true);
    flow.UseProducts(2);
    (void)flow.Start();
    FlowMove move = flow.AfterPage(NAVIGATION_NEXT);
    ExpectConfigure(move);
    EXPECT_EQ(move.nPage, 1);
    EXPECT_EQ(move.nProduct, -1);
    while (move.act != FlowAct::Review) {
        move = flow.AfterPage(NAVIGATION_NEXT);
    }
    move = flow.VisitPage(L"NoticeDialog", 1);
    ExpectConfigure(move);
    EXPECT_EQ(move.nPage, 4);
    EXPECT_EQ(move.nProduct, 1);
    EXPECT_FALSE(flow.CanGoBack());
    EXPECT_EQ(flow.AfterPage(NAVIGATION_NEXT).act, FlowAct::Review);
}

TEST(SetupFlow, AChoiceThatDoesNotHoldEndsTheVisit)
{
    CWizardFlow flow = AtReview(PAGES, 1);
    ExpectPage(flow.VisitPage(L"ProductContactDialog", -1), 1);
    ExpectPage(flow.StartAgain(), 0);
    ExpectPage(flow.AfterPage(NAVIGATION_NEXT), 1);
}
