#include "setup/run_end_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

CString StepAfter(std::initializer_list<const wchar_t*> lines)
{
    CRunSteps steps;
    for (const wchar_t* line : lines) {
        steps.Add(line);
    }
    return steps.Text();
}

TEST(SetupRunEnd, AFaultIsReportedByItsNameAndNumber)
{
    EXPECT_EQ(FaultText(0xC0000005), CString(L"access violation (0xC0000005)"));
    EXPECT_EQ(FaultText(0xC00000FD), CString(L"stack overflow (0xC00000FD)"));
    EXPECT_EQ(FaultText(0xC000013A), CString(L"Ctrl+C in the console (0xC000013A)"));
    EXPECT_EQ(FaultText(FAULT_ABORT), CString(L"abort (0x40000015)"));
}

TEST(SetupRunEnd, AnUnknownFaultIsReportedByItsNumberInEightDigits)
{
    EXPECT_EQ(FaultText(0), CString(L"code 0x00000000"));
    EXPECT_EQ(FaultText(0xFFFFFFFF), CString(L"code 0xFFFFFFFF"));
}

TEST(SetupRunEnd, APlaceIsCountedFromTheStartOfItsLibrary)
{
    EXPECT_EQ(PlaceText(L"msi.dll", 0x2E450), CString(L"msi.dll+0x2E450"));
}

TEST(SetupRunEnd, APlaceInNoLibraryIsReportedByItsAddress)
{
    EXPECT_EQ(PlaceText(L"", 0), CString(L"address 0x0"));
    EXPECT_EQ(PlaceText(L"", 0xFFFFFFFFFFFFFFFF), CString(L"address 0xFFFFFFFFFFFFFFFF"));
}

TEST(SetupRunEnd, AnIndentedLineBelongsToTheStepAboveIt)
{
    EXPECT_EQ(StepAfter({L"Page begin", L"  name = Office", L"  leave = next"}),
              CString(L"Page begin, leave = next"));
}

TEST(SetupRunEnd, AStepForgetsTheDetailsOfTheOneBefore)
{
    EXPECT_EQ(StepAfter({L"Page begin", L"  leave = next", L"Building Office"}), CString(L"Building Office"));
}

TEST(SetupRunEnd, ARunWithoutALineHasNoStep)
{
    EXPECT_EQ(StepAfter({}), CString());
}

TEST(SetupRunEnd, ARunIsOverdueWhenNothingChangesForTheLimit)
{
    CQuietWatch watch(1000);
    EXPECT_FALSE(watch.IsOverdue(5000, 7));
    EXPECT_FALSE(watch.IsOverdue(5999, 7));
    EXPECT_TRUE(watch.IsOverdue(6000, 7));
}

TEST(SetupRunEnd, AnySignOfLifePutsTheEndOff)
{
    CQuietWatch watch(1000);
    std::uint64_t now = 0;
    for (std::uint64_t signs = 0; signs < 100; ++signs, now += 999) {
        EXPECT_FALSE(watch.IsOverdue(now, signs)) << now;
    }
    EXPECT_TRUE(watch.IsOverdue(now + 1, 99));
}

// The system's counts may begin anew.
TEST(SetupRunEnd, SignsOfLifeThatGoBackCountToo)
{
    CQuietWatch watch(1000);
    EXPECT_FALSE(watch.IsOverdue(0, 9));
    EXPECT_FALSE(watch.IsOverdue(1000, 3));
    EXPECT_FALSE(watch.IsOverdue(1999, 3));
}

} // namespace

// A laptop that slept longer than the limit had its run ended on waking.
TEST(SetupRunEnd, TimeInWhichNobodyLookedDoesNotCount)
{
    CQuietWatch watch(600000);
    EXPECT_FALSE(watch.IsOverdue(1000, 5));
    EXPECT_FALSE(watch.IsOverdue(1000 + 3600000, 5));
    std::uint64_t now = 1000 + 3600000;
    for (int look = 0; look < 599; ++look) {
        EXPECT_FALSE(watch.IsOverdue(now += 1000, 5));
    }
    EXPECT_TRUE(watch.IsOverdue(now += 1000, 5));
}
