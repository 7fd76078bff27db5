// Properties and tables of a database.
#include "installer/database.h"

#include "installer/missing_tables.h"
#include "installer/query.h"
#include "tests/installer/database_fixture.h"
#include "tests/installer/refusal.h"

namespace {

class PropertyRowTest : public DatabaseTest
{
protected:
    Rows Properties() { return Select(L"SELECT `Property`,`Value` FROM `Property`"); }
};

} // namespace

TEST_F(PropertyRowTest, AValueIsInsertedChangedAndDeleted)
{
    EXPECT_EQ(WritePropertyRow(Database(), L"A", L"it's"), 0u);
    EXPECT_EQ(Properties(), (Rows{{L"A", L"it's"}}));
    EXPECT_EQ(WritePropertyRow(Database(), L"A", L"2"), 0u);
    EXPECT_EQ(Properties(), (Rows{{L"A", L"2"}}));
    EXPECT_EQ(WritePropertyRow(Database(), L"A", CString()), 0u);
    EXPECT_EQ(Properties(), Rows());
}

TEST_F(PropertyRowTest, ARowIsReadByItsWholeName)
{
    ASSERT_EQ(WritePropertyRow(Database(), L"it's A", L"1"), 0u);
    CString value;
    EXPECT_TRUE(ReadPropertyRow(Database(), L"it's A", value));
    EXPECT_EQ(value, CString(L"1"));
    EXPECT_FALSE(ReadPropertyRow(Database(), L"it's", value));
}

TEST_F(PropertyRowTest, WithoutTheTableNothingIsReadAndAWriteGivesTheCode)
{
    Run(L"DROP TABLE `Property`");
    CString value;
    EXPECT_FALSE(ReadPropertyRow(Database(), L"A", value));
    EXPECT_EQ(WritePropertyRow(Database(), L"A", L"1"), UINT{ERROR_BAD_QUERY_SYNTAX});
}

TEST_F(PropertyRowTest, AWriteThatDoesNotRunGivesTheCode)
{
    const Refusal refusal("MsiViewExecute", RefuseToRun);
    EXPECT_EQ(WritePropertyRow(Database(), L"A", L"1"), UINT{ERROR_FUNCTION_FAILED});
}

using MissingTablesTest = DatabaseTest;

TEST_F(MissingTablesTest, ATableThatIsThereKeepsItsRows)
{
    Run(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('A','1')");
    Run(L"DROP TABLE `TarnCustomFile`");
    ASSERT_FALSE(HasTable(Database(), L"TarnCustomFile"));
    CString failed;
    EXPECT_EQ(AddMissingTables(Database(), failed), 0u);
    EXPECT_TRUE(HasTable(Database(), L"TarnCustomFile"));
    EXPECT_EQ(Select(L"SELECT `Property` FROM `Property`"), (Rows{{L"A"}}));
}

TEST_F(MissingTablesTest, TheTableThatCanNotBeMadeIsNamed)
{
    Run(L"DROP TABLE `Shortcut`");
    const Refusal refusal("MsiViewExecute", RefuseToRun);
    CString failed;
    EXPECT_EQ(AddMissingTables(Database(), failed), UINT{ERROR_FUNCTION_FAILED});
    EXPECT_EQ(failed, CString(L"Shortcut"));
}
