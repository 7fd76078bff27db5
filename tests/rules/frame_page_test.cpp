#include "frame/page_rules.h"
#include "include/resource_ids.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <ostream>

static void PrintTo(const ScreenRectangle& rectangle, std::ostream* stream)
{
    *stream << rectangle.left << ',' << rectangle.top << ',' << rectangle.right << ',' << rectangle.bottom;
}

TEST(PlaceTest, AnOddDifferenceLeavesTheNewPageOnePixelSmaller)
{
    const ScreenRectangle placed = ResizeAroundMiddle({100, 100, 600, 400}, 503, 300);
    EXPECT_EQ(placed, (ScreenRectangle{99, 100, 601, 400}));
    EXPECT_EQ(placed.Width(), 502);
}

TEST(PlaceTest, ASmallerPageOpensCentredOnTheFormerOne)
{
    EXPECT_EQ(ResizeAroundMiddle({100, 100, 600, 400}, 400, 201), (ScreenRectangle{150, 149, 550, 351}));
}

TEST(TitleTest, TheDeploymentsNameFollowsInDeploymentModes)
{
    for (const auto mode : {Setup::SETUPMODE_CREATE_DEPLOYMENT, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT,
                            Setup::SETUPMODE_MODIFY_DEPLOYMENT}) {
        EXPECT_EQ(PageTitle(L"Zolt", mode, L"Office"), CString(L"Zolt - Office"));
    }
}

TEST(TitleTest, TheProductStandsAloneOtherwise)
{
    EXPECT_EQ(PageTitle(L"Zolt", Setup::SETUPMODE_INSTALL, L"Office"), CString(L"Zolt"));
    EXPECT_EQ(PageTitle(L"Zolt", Setup::SETUPMODE_CREATE_DEPLOYMENT, L""), CString(L"Zolt"));
    EXPECT_EQ(PageTitle(L"Zolt", Setup::SETUPMODE_CREATE_DEPLOYMENT, nullptr), CString(L"Zolt"));
    EXPECT_EQ(PageTitle(nullptr, Setup::SETUPMODE_INSTALL, nullptr), CString());
}

TEST(CancelTest, TheModePicksTheQuestion)
{
    EXPECT_EQ(CancelQuestionId(Setup::SETUPMODE_INSTALL), 418u);
    EXPECT_EQ(CancelQuestionId(Setup::SETUPMODE_MAINTAIN), 419u);
    EXPECT_EQ(CancelQuestionId(Setup::SETUPMODE_CREATE_DEPLOYMENT), 420u);
    EXPECT_EQ(CancelQuestionId(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT), 420u);
    EXPECT_EQ(CancelQuestionId(Setup::SETUPMODE_MODIFY_DEPLOYMENT), 420u);
    EXPECT_EQ(CancelQuestionId(static_cast<Setup::tagSETUPMODE>(1)), 379u);
    EXPECT_EQ(CancelQuestionId(static_cast<Setup::tagSETUPMODE>(7)), 379u);
}

TEST(CounterTest, PagesAreCountedFromOne)
{
    EXPECT_EQ(PageCounterText(L"Page [%INDEX] of [%TOTAL]", 0, 1), CString(L"Page 1 of 1"));
    EXPECT_EQ(PageCounterText(L"[%TOTAL]/[%INDEX]", 4, 6), CString(L"6/5"));
}

TEST(CounterTest, OnlyTheButtonsAtTheEndsAreDisabled)
{
    EXPECT_TRUE(ButtonsToDisable(0, 3).bDisablePrevious);
    EXPECT_FALSE(ButtonsToDisable(0, 3).bDisableNext);
    EXPECT_FALSE(ButtonsToDisable(1, 3).bDisablePrevious);
    EXPECT_FALSE(ButtonsToDisable(1, 3).bDisableNext);
    EXPECT_FALSE(ButtonsToDisable(2, 3).bDisablePrevious);
    EXPECT_TRUE(ButtonsToDisable(2, 3).bDisableNext);
}

TEST(CounterTest, ASinglePageHasNoNeighbours)
{
    EXPECT_TRUE(ButtonsToDisable(0, 1).bDisablePrevious);
    EXPECT_TRUE(ButtonsToDisable(0, 1).bDisableNext);
}

TEST(LinkTest, ATargetOf2084CharactersIsIgnored)
{
    EXPECT_EQ(LinkFile(CString(L'a', 2083)).GetLength(), 2083);
    EXPECT_EQ(LinkFile(CString(L'a', 2084)), CString());
    EXPECT_EQ(LinkFile(nullptr), CString());
}

TEST(LinkTest, TheExtensionDecidesTheKindInAnyCase)
{
    EXPECT_EQ(KindOfLink(L".PDF"), LinkKind::Document);
    EXPECT_EQ(KindOfLink(L".html"), LinkKind::Html);
    EXPECT_EQ(KindOfLink(L".Htm"), LinkKind::Html);
    EXPECT_EQ(KindOfLink(L".exe"), LinkKind::Unknown);
    EXPECT_EQ(KindOfLink(L""), LinkKind::Unknown);
}
