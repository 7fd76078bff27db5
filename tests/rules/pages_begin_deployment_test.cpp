#include "pages/begin_deployment_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

const std::vector<CString> NAMES{L"First", L"Second", L"second"};

} // namespace

TEST(NameSearchTest, TheFirstNameThatEqualsInAnyCaseIsFound)
{
    EXPECT_EQ(FindDeploymentName(NAMES, L"SECOND"), CString(L"Second"));
}

TEST(NameSearchTest, AnUnknownOrEmptyNameGivesTheFirst)
{
    EXPECT_EQ(FindDeploymentName(NAMES, L"Third"), CString(L"First"));
    EXPECT_EQ(FindDeploymentName(NAMES, L""), CString(L"First"));
    EXPECT_EQ(FindDeploymentName({L"First", L""}, L""), CString(L"First"));
}

TEST(NameSearchTest, AnEmptyListGivesNothing)
{
    EXPECT_EQ(FindDeploymentName({}, L"First"), CString());
}

TEST(PathLengthTest, TheMediaFileCountsWithoutTheResourceFolder)
{
    // 100 + 10 + 5 + 20 + 4 = 139; 139 + 150 - 31 + 1 = 259
    PathLengths lengths{100, 10, 5, 20, 150, 31};
    EXPECT_FALSE(ArePathsShortEnough(lengths, {}));
    lengths.resourceFolder = 32;
    EXPECT_TRUE(ArePathsShortEnough(lengths, {}));
}

TEST(PathLengthTest, EachProductsInstallerFileCounts)
{
    const PathLengths lengths{100, 10, 5, 20, 0, 0};
    EXPECT_TRUE(ArePathsShortEnough(lengths, {{100, 18}}));
    EXPECT_FALSE(ArePathsShortEnough(lengths, {{10, 10}, {100, 19}}));
}

TEST(LayoutTest, WithoutDeploymentsTheLayoutIsPlainInEveryMode)
{
    for (int mode = 0; mode < 8; ++mode) {
        EXPECT_EQ(LayoutFor(false, static_cast<Setup::tagSETUPMODE>(mode)), BeginLayout::Plain);
    }
}

TEST(LayoutTest, WithDeploymentsTheModeDecides)
{
    EXPECT_EQ(LayoutFor(true, Setup::SETUPMODE_CREATE_DEPLOYMENT), BeginLayout::Create);
    EXPECT_EQ(LayoutFor(true, Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT), BeginLayout::CreateFrom);
    EXPECT_EQ(LayoutFor(true, Setup::SETUPMODE_MODIFY_DEPLOYMENT), BeginLayout::Modify);
    EXPECT_EQ(LayoutFor(true, Setup::SETUPMODE_INSTALL), BeginLayout::None);
}

TEST(NextTest, TheListNeedsASelectionWhereItIsShown)
{
    EXPECT_FALSE(IsChoiceComplete(BeginLayout::CreateFrom, false, L"C:\\a", L"n"));
    EXPECT_FALSE(IsChoiceComplete(BeginLayout::Modify, false, L"C:\\a", L"n"));
    EXPECT_TRUE(IsChoiceComplete(BeginLayout::CreateFrom, true, L"C:\\a", L"n"));
    EXPECT_TRUE(IsChoiceComplete(BeginLayout::Create, false, L"C:\\a", L"n"));
    EXPECT_TRUE(IsChoiceComplete(BeginLayout::Plain, false, L"C:\\a", L"n"));
}

TEST(NextTest, LocationAndNameMustNotBeEmpty)
{
    for (const auto layout :
         {BeginLayout::Plain, BeginLayout::Create, BeginLayout::CreateFrom, BeginLayout::Modify}) {
        EXPECT_FALSE(IsChoiceComplete(layout, true, L"", L"n"));
        EXPECT_FALSE(IsChoiceComplete(layout, true, L"C:\\a", L""));
    }
}

TEST(DeploymentNameTest, ASemicolonIsRefusedWhateverElseStandsThere)
{
    EXPECT_FALSE(IsDeploymentNameValid(L"a;b"));
    EXPECT_TRUE(IsDeploymentNameValid(L"a b"));
}

TEST(DeploymentNameTest, TheNameMustBeAFileName)
{
    EXPECT_FALSE(IsDeploymentNameValid(L""));
    EXPECT_FALSE(IsDeploymentNameValid(L"a\\b"));
    EXPECT_FALSE(IsDeploymentNameValid(L"a?"));
}

TEST(LocationTest, FreeUsedAndRootFoldersAreUsable)
{
    for (int result = PCR_OK; result <= PCR_IS_ROOT; ++result) {
        const bool usable = result == 0 || result == 6 || result == 10;
        EXPECT_EQ(IsLocationUsable(static_cast<PathCheckResult>(result)), usable) << result;
    }
}

TEST(LocationTest, TheResultPicksTheError)
{
    EXPECT_EQ(LocationErrorId(PCR_EMPTY), 27u);
    EXPECT_EQ(LocationErrorId(PCR_ACCESS_DENIED), 524u);
    for (const auto result :
         {PCR_TOO_LONG, PCR_NO_DRIVE, PCR_BAD_DRIVE_KIND, PCR_FAILED, PCR_NETWORK_FAILED}) {
        EXPECT_EQ(LocationErrorId(result), 373u) << result;
    }
}
