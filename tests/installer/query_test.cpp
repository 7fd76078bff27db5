// Statements and walks over rows.
#include "installer/query.h"

#include "installer/record.h"
#include "tests/installer/database_fixture.h"
#include "tests/installer/refusal.h"

namespace {

constexpr const wchar_t* ALL = L"SELECT `Property`,`Value` FROM `Property`";

class QueryTest : public DatabaseTest
{
protected:
    void SetUp() override
    {
        DatabaseTest::SetUp();
        Run(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('A','1')");
        Run(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('B','2')");
    }
    Rows Properties() { return Select(ALL); }

    const Rows both = {{L"A", L"1"}, {L"B", L"2"}};
};

} // namespace

TEST_F(QueryTest, AWalkGivesEachRowAndThenTheEnd)
{
    CQuery query;
    ASSERT_EQ(query.Run(Database(), ALL), 0u);
    CInstallerHandle row;
    EXPECT_EQ(query.Fetch(row), 0u);
    EXPECT_EQ(RecordText(row.get(), 1), CString(L"A"));
    EXPECT_EQ(query.Fetch(row), 0u);
    EXPECT_EQ(RecordText(row.get(), 1), CString(L"B"));
    EXPECT_EQ(query.Fetch(row), UINT{ERROR_NO_MORE_ITEMS});
    EXPECT_FALSE(row);
}

TEST_F(QueryTest, ARowThatCanNotBeFetchedGivesTheCodeAndNoRow)
{
    CQuery query;
    ASSERT_EQ(query.Run(Database(), ALL), 0u);
    const Refusal refusal("MsiViewFetch", RefuseToFetch);
    CInstallerHandle row(MsiCreateRecord(1));
    EXPECT_EQ(query.Fetch(row), UINT{ERROR_FUNCTION_FAILED});
    EXPECT_FALSE(row);
}

TEST_F(QueryTest, AStatementThatIsNoneGivesTheCodeOfOpening)
{
    CQuery query;
    EXPECT_EQ(query.Run(Database(), L"SELEKT"), UINT{ERROR_BAD_QUERY_SYNTAX});
    EXPECT_FALSE(query.IsOpen());
}

TEST_F(QueryTest, AStatementThatOpensAndDoesNotRunGivesTheCode)
{
    const Refusal refusal("MsiViewExecute", RefuseToRun);
    CQuery query;
    EXPECT_EQ(query.Run(Database(), ALL), UINT{ERROR_FUNCTION_FAILED});
    EXPECT_TRUE(query.IsOpen());
}

TEST_F(QueryTest, AStatementRunsAsOftenAsItIsExecuted)
{
    CQuery insert;
    ASSERT_EQ(insert.Open(Database(), L"INSERT INTO `Property` (`Property`,`Value`) VALUES (?,?)"), 0u);
    for (const wchar_t* name : {L"C", L"D"}) {
        CInstallerHandle values;
        ASSERT_EQ(MakeTextRecord({name, L"new"}, values), 0u);
        EXPECT_EQ(insert.Execute(values.get()), 0u);
        EXPECT_EQ(insert.Close(), 0u);
    }
    EXPECT_EQ(Properties(), (Rows{{L"A", L"1"}, {L"B", L"2"}, {L"C", L"new"}, {L"D", L"new"}}));
}

TEST_F(QueryTest, ARowThatWasChangedIsWritten)
{
    CQuery query;
    ASSERT_EQ(query.Run(Database(), ALL), 0u);
    CInstallerHandle row;
    ASSERT_EQ(query.Fetch(row), 0u);
    ASSERT_EQ(MsiRecordSetStringW(row.get(), 2, L"it's new"), 0u);
    EXPECT_EQ(query.Update(row), 0u);
    EXPECT_EQ(Properties(), (Rows{{L"A", L"it's new"}, {L"B", L"2"}}));
}

TEST_F(QueryTest, TheColumnsHaveTheirNamesAndTypes)
{
    CQuery query;
    ASSERT_EQ(query.Run(Database(), L"SELECT * FROM `Property`"), 0u);
    CInstallerHandle columns;
    EXPECT_EQ(query.ReadColumns(MSICOLINFO_NAMES, columns), 0u);
    EXPECT_EQ(RecordText(columns.get(), 2), CString(L"Value"));
    EXPECT_EQ(query.ReadColumns(MSICOLINFO_TYPES, columns), 0u);
    EXPECT_EQ(RecordText(columns.get(), 1), CString(L"s72"));
}

TEST_F(QueryTest, AnApostropheInATextIsJustALetter)
{
    EXPECT_EQ(
        RunStatement(Database(), L"UPDATE `Property` SET `Value`=? WHERE `Property`=?", {L"it's", L"B"}), 0u);
    EXPECT_EQ(Properties(), (Rows{{L"A", L"1"}, {L"B", L"it's"}}));
}

// It ran with the record's null in place of the text, and emptied the column.
TEST_F(QueryTest, AStatementWhoseTextIsRefusedDoesNotRun)
{
    Run(L"INSERT INTO `TarnCustomFile` (`Component_`,`SourceFileName`) VALUES ('comp','name')");
    {
        const Refusal refusal("MsiRecordSetStringW", RefuseText);
        EXPECT_EQ(RunStatement(Database(), L"UPDATE `TarnCustomFile` SET `SourceFileName`=?", {L"new"}),
                  UINT{ERROR_FUNCTION_FAILED});
    }
    EXPECT_EQ(Select(L"SELECT `SourceFileName` FROM `TarnCustomFile`"), (Rows{{L"name"}}));
}

TEST_F(QueryTest, EachRowIsHandedOut)
{
    Rows rows;
    EXPECT_EQ(ForEachRow(Database(), ALL, {},
                         [&](MSIHANDLE record) {
                             rows.push_back({RecordText(record, 1), RecordText(record, 2)});
                             return true;
                         }),
              0u);
    EXPECT_EQ(rows, both);
}

TEST_F(QueryTest, AFalseAnswerEndsTheWalkWithoutAFailure)
{
    int rows = 0;
    EXPECT_EQ(ForEachRow(Database(), ALL, {},
                         [&](MSIHANDLE) {
                             ++rows;
                             return false;
                         }),
              0u);
    EXPECT_EQ(rows, 1);
}

TEST_F(QueryTest, AWalkThatFailsOnTheWayIsAFailure)
{
    int rows = 0;
    const Refusal refusal("MsiViewFetch", RefuseToFetch);
    EXPECT_EQ(ForEachRow(Database(), ALL, {},
                         [&](MSIHANDLE) {
                             ++rows;
                             return true;
                         }),
              UINT{ERROR_FUNCTION_FAILED});
    EXPECT_EQ(rows, 0);
}

TEST_F(QueryTest, AnExceptionThatLeavesTheWalkClosesItsHandles)
{
    EXPECT_THROW(static_cast<void>(ForEachRow(Database(), ALL, {}, [](MSIHANDLE) -> bool { throw 1; })), int);
}
