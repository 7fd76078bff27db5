// What a build has decided, counted and put into words.
#include "builder/build_review.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

RowDifference Row(const wchar_t* table, RowChange change)
{
    RowDifference row;
    row.strTable = table;
    row.change = change;
    return row;
}

BuildReview Amounts(std::uint64_t megabytes, std::size_t files)
{
    BuildReview review;
    review.bytesNeeded = megabytes << 20;
    review.filesInAll = files;
    return review;
}

TEST(BuildReviewRules, RowsAreCountedByTableAndKind)
{
    const std::vector<TableReview> tables =
        CountByTable({Row(L"Component", RowChange::Added), Row(L"File", RowChange::Removed),
                      Row(L"File", RowChange::Added), Row(L"File", RowChange::Added),
                      Row(L"Property", RowChange::Changed)});
    const std::vector<TableReview> expected = {
        {L"Component", 1, 0, 0}, {L"File", 2, 0, 1}, {L"Property", 0, 1, 0}};
    EXPECT_TRUE(tables == expected);
    EXPECT_TRUE(CountByTable({}).empty());
}

TEST(BuildReviewRules, AnEstimateGrowsWithBytesFilesPackingRowsAndTheNetwork)
{
    EXPECT_EQ(EstimateSeconds({}), 0u);
    EXPECT_EQ(EstimateSeconds(Amounts(5000, 0)), 100u);
    EXPECT_EQ(EstimateSeconds(Amounts(0, 20000)), 60u);
    BuildReview review = Amounts(5000, 20000);
    EXPECT_EQ(EstimateSeconds(review), 160u);
    review.bReplaces = true;
    EXPECT_EQ(EstimateSeconds(review), 320u) << "the old deployment is read too";
    review.bReplaces = false;
    review.bOverNetwork = true;
    EXPECT_EQ(EstimateSeconds(review), 500u);
    review.bOverNetwork = false;
    review.bytesPacked = 100u << 20;
    EXPECT_EQ(EstimateSeconds(review), 175u);
    DatabaseReview copied;
    copied.rowsToWrite = 1000000;
    DatabaseReview written = copied;
    written.bWritten = true;
    review.databases = {copied};
    EXPECT_EQ(EstimateSeconds(review), 175u) << "nobody reads the rows of one that is copied";
    review.databases = {written, written};
    EXPECT_EQ(EstimateSeconds(review), 257u);
}

TEST(BuildReviewRules, ADurationIsSaidAsRoughlyAsItIsKnown)
{
    const struct
    {
        std::uint64_t seconds;
        const wchar_t* words;
    } rows[] = {
        {0, L"less than a minute"},   {59, L"less than a minute"}, {60, L"about a minute"},
        {89, L"about a minute"},      {90, L"about 2 minutes"},    {125, L"about 2 minutes"},
        {5369, L"about 89 minutes"},  {5370, L"about an hour"},    {5399, L"about an hour"},
        {5400, L"about 2 hours"},     {8999, L"about 2 hours"},    {9000, L"about 3 hours"},
        {360000, L"about 100 hours"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(DurationInWords(row.seconds), CString(row.words)) << row.seconds;
    }
}

} // namespace
