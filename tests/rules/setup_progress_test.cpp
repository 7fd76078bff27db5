#include "setup/progress_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <limits>

namespace {

constexpr std::uint64_t LARGEST = std::numeric_limits<std::uint64_t>::max();

TEST(SetupProgress, TheShareIsCutAtItsEnds)
{
    EXPECT_EQ(DoneInThousand(0, 0), 0);
    EXPECT_EQ(DoneInThousand(1, 2), 500);
    EXPECT_EQ(DoneInThousand(3, 2), 1000);
    EXPECT_EQ(DoneInThousand(LARGEST, LARGEST), 1000);
}

TEST(SetupProgress, OnlyTheWholeIsAThousand)
{
    EXPECT_EQ(DoneInThousand(999'999, 1'000'000), 999);
}

TEST(SetupProgress, ByteCountsStepAt1024)
{
    EXPECT_EQ(ByteCountText(0, L'.'), CString(L"0 bytes"));
    EXPECT_EQ(ByteCountText(1023, L'.'), CString(L"1023 bytes"));
    EXPECT_EQ(ByteCountText(1024, L'.'), CString(L"1.0 KB"));
    EXPECT_EQ(ByteCountText(1536, L','), CString(L"1,5 KB"));
    EXPECT_EQ(ByteCountText(10 * 1024, L'.'), CString(L"10 KB"));
    EXPECT_EQ(ByteCountText(1024 * 1024 - 1, L'.'), CString(L"1.0 MB"));
    EXPECT_EQ(ByteCountText(500'000'000, L'.'), CString(L"477 MB"));
    EXPECT_EQ(ByteCountText(LARGEST, L'.'), CString(L"16777216 TB"));
}

TEST(SetupProgress, TheTimeLeftIsUnknownAtFirst)
{
    EXPECT_EQ(EstimateTimeLeft(1999, 50, 100).kind, TimeLeftKind::Unknown);
    EXPECT_EQ(EstimateTimeLeft(5000, 0, 100).kind, TimeLeftKind::Unknown);
    EXPECT_EQ(EstimateTimeLeft(5000, 9, 1000).kind, TimeLeftKind::Unknown);
    EXPECT_EQ(EstimateTimeLeft(5000, 100, 100).kind, TimeLeftKind::Unknown);
    EXPECT_EQ(EstimateTimeLeft(5000, 5, 0).kind, TimeLeftKind::Unknown);
}

TEST(SetupProgress, TheTimeLeftFollowsTheSpeedSoFar)
{
    const TimeLeft left = EstimateTimeLeft(10'000, 50, 100);
    EXPECT_EQ(left.kind, TimeLeftKind::Seconds);
    EXPECT_EQ(left.count, 15); // 10 seconds and the one that has begun, in fives
}

TEST(SetupProgress, LongTimesAreWrittenInMinutesAndHours)
{
    const TimeLeft minutes = EstimateTimeLeft(100'000, 25, 100);
    EXPECT_EQ(minutes.kind, TimeLeftKind::Minutes);
    EXPECT_EQ(minutes.count, 5);
    const TimeLeft hours = EstimateTimeLeft(3'600'000, 20, 100);
    EXPECT_EQ(hours.kind, TimeLeftKind::Hours);
    EXPECT_EQ(hours.count, 4);
}

TEST(SetupProgress, AHopelessEstimateIsNotShown)
{
    EXPECT_EQ(EstimateTimeLeft(LARGEST, LARGEST / 100 + 1, LARGEST).kind, TimeLeftKind::Unknown);
}

} // namespace
