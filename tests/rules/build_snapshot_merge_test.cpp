// Differences of two databases, applied to a third one.
#include "builder/snapshot_merge.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

using Rows = std::vector<std::pair<const wchar_t*, const wchar_t*>>;

DatabaseSnapshot Properties(const Rows& rows)
{
    DatabaseSnapshot database;
    TableSnapshot& table = database[L"Property"];
    table = {{L"Property", L"Value"}, {L"s72", L"l0"}, 1, {}};
    for (const auto& [name, value] : rows) {
        table.rows[{name}] = {name, value};
    }
    return database;
}

std::string Shown(const DatabaseSnapshot& database)
{
    std::string text;
    for (const auto& [name, table] : database) {
        for (const auto& [key, row] : table.rows) {
            for (const CString& cell : row) {
                text += Utf8(cell) + " ";
            }
            text += "| ";
        }
    }
    return text;
}

} // namespace

TEST(SnapshotMerge, CarriesRowsThatComeChangeAndGo)
{
    DatabaseSnapshot database = Properties({{L"A", L"1"}, {L"B", L"1"}, {L"Own", L"1"}});
    CarryDifferences(Properties({{L"A", L"1"}, {L"B", L"1"}}), Properties({{L"B", L"2"}, {L"C", L"3"}}),
                     database);
    EXPECT_EQ(Shown(database), "B 2 | C 3 | Own 1 | ");
}

TEST(SnapshotMerge, LeavesCellsThatDoNotDiffer)
{
    DatabaseSnapshot before = Properties({{L"A", L"1"}});
    before[L"Property"].columns.push_back(L"More");
    before[L"Property"].columnTypes.push_back(L"L0");
    before[L"Property"].rows[{L"A"}].push_back(L"x");
    DatabaseSnapshot after = before;
    after[L"Property"].rows[{L"A"}][1] = L"2";
    DatabaseSnapshot database = before;
    database[L"Property"].rows[{L"A"}][2] = L"own";
    CarryDifferences(before, after, database);
    EXPECT_EQ(Shown(database), "A 2 own | ");
}

TEST(SnapshotMerge, DropsAChangeOfARowThatIsGone)
{
    DatabaseSnapshot database = Properties({});
    const std::vector<RowDifference> met =
        CarryDifferences(Properties({{L"A", L"1"}}), Properties({{L"A", L"2"}}), database);
    EXPECT_EQ(Shown(database), "");
    ASSERT_EQ(met.size(), 1u);
    EXPECT_EQ(met[0].change, RowChange::Changed);
    EXPECT_EQ(met[0].key, std::vector<CString>{L"A"});
}

TEST(SnapshotMerge, ReplacesARowThatIsThereByANewOne)
{
    DatabaseSnapshot database = Properties({{L"A", L"own"}});
    const std::vector<RowDifference> met =
        CarryDifferences(Properties({}), Properties({{L"A", L"1"}}), database);
    EXPECT_EQ(Shown(database), "A 1 | ");
    ASSERT_EQ(met.size(), 1u);
    EXPECT_EQ(met[0].change, RowChange::Added);
    EXPECT_TRUE(CarryDifferences(Properties({}), Properties({{L"A", L"1"}}), database).empty())
        << "the same row";
}

TEST(SnapshotMerge, BringsTablesAndColumnsAndDropsTables)
{
    DatabaseSnapshot before = Properties({{L"A", L"1"}});
    before[L"Old"] = {{L"Key"}, {L"s72"}, 1, {{{L"k"}, {L"k"}}}};
    DatabaseSnapshot after = Properties({{L"A", L"1"}});
    after[L"Property"].columns.push_back(L"More");
    after[L"Property"].columnTypes.push_back(L"L0");
    after[L"Property"].rows[{L"A"}].push_back(L"m");
    after[L"New"] = {{L"Key"}, {L"s72"}, 1, {{{L"n"}, {L"n"}}}};
    DatabaseSnapshot database = before;
    CarryDifferences(before, after, database);
    EXPECT_EQ(Shown(database), "n | A 1 m | ");
    EXPECT_EQ(database.count(L"Old"), 0u);
    EXPECT_EQ(database.at(L"New").keyColumns, 1);
}
