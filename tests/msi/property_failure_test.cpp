// What the service can refuse, for properties and the texts of records: nothing is read or written, and no handle stays
// open. Each test of this file ends with the fixture's count of open handles.
#include "installer/query.h"
#include "msi/msi_property.h"
#include "tests/installer/database_fixture.h"
#include "tests/installer/refusal.h"

#include <algorithm>

namespace {

class PropertyFailureTest : public DatabaseTest
{
protected:
    bool ReadsTable(InstallerHandle database, const wchar_t* table, const wchar_t* key)
    {
        wchar_t buffer[100] = L"";
        return ReadTableValue(database, table, key, buffer, 100);
    }
    // The table then has a row of the property A, and no column for its value.
    void DropTheColumn()
    {
        Run(L"DROP TABLE `Property`");
        Run(L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Other` CHAR(72) PRIMARY KEY "
            L"`Property`)");
        Run(L"INSERT INTO `Property` (`Property`,`Other`) VALUES ('A','x')");
    }
    // All three at once: none may succeed or give anything.
    void ExpectNothing(InstallerHandle database, const wchar_t* name)
    {
        EXPECT_FALSE(ReadsTable(database, L"Property", name));
        EXPECT_EQ(ReadProperty(database, name), CString());
        EXPECT_FALSE(WriteProperty(database, name, L"value"));
    }
};

// As a service that fills the whole buffer with what it cuts, without an end.
UINT WINAPI CutWithoutAnEnd(MSIHANDLE, UINT, LPWSTR buffer, LPDWORD size)
{
    std::fill_n(buffer, *size, L'x');
    *size += 10;
    return ERROR_MORE_DATA;
}

} // namespace

TEST_F(PropertyFailureTest, HandleZeroGivesNothing)
{
    ExpectNothing(0, L"A");
}

TEST_F(PropertyFailureTest, AClosedDatabaseGivesNothing)
{
    CInstallerHandle database;
    const CTestFolder folder;
    ASSERT_EQ(MsiOpenDatabaseW(folder / L"Zolt.msi", MSIDBOPEN_CREATE, database.put()), 0u);
    const InstallerHandle closed = database.get();
    database.reset();
    ExpectNothing(closed, L"A");
}

TEST_F(PropertyFailureTest, AHandleThatIsNoDatabaseGivesNothing)
{
    const CInstallerHandle record(MsiCreateRecord(1));
    ExpectNothing(record.get(), L"A");
}

TEST_F(PropertyFailureTest, ADatabaseWithoutTheTableGivesNothing)
{
    Run(L"DROP TABLE `Property`");
    ExpectNothing(Database(), L"A");
}

TEST_F(PropertyFailureTest, ATableWithoutTheColumnGivesNothing)
{
    DropTheColumn();
    EXPECT_FALSE(ReadsTable(Database(), L"Property", L"A"));
    EXPECT_EQ(ReadProperty(Database(), L"A"), CString());
    EXPECT_FALSE(WriteProperty(Database(), L"A", L"value"));
}

// The delete needs no more than the key, so it runs, and then the insert can't be opened.
TEST_F(PropertyFailureTest, AWriteIntoATableWithoutTheColumnHasDeletedTheOldRow)
{
    DropTheColumn();
    EXPECT_FALSE(WriteProperty(Database(), L"A", L"value"));
    EXPECT_EQ(Select(L"SELECT * FROM `Property`"), Rows());
}

TEST_F(PropertyFailureTest, AValueThatTheServiceCutsWithoutAnEndIsEnded)
{
    ASSERT_TRUE(WriteProperty(Database(), L"A", L"1"));
    const Refusal cut("MsiRecordGetStringW", CutWithoutAnEnd);
    wchar_t buffer[] = L"123y";
    EXPECT_FALSE(ReadTableValue(Database(), L"Property", L"A", buffer, 3));
    EXPECT_EQ(CString(buffer), CString(L"xx"));
    EXPECT_EQ(buffer[3], L'y');
}

TEST_F(PropertyFailureTest, ANameWithAnApostropheGivesNothing)
{
    ExpectNothing(Database(), L"it's");
    EXPECT_EQ(Select(L"SELECT * FROM `Property`"), Rows());
}

TEST_F(PropertyFailureTest, ATableNameWithABackquoteGivesNothing)
{
    EXPECT_FALSE(ReadsTable(Database(), L"Property`", L"A"));
}

TEST_F(PropertyFailureTest, AReadOnlyDatabaseIsReadAndItsFileIsNotWritten)
{
    ASSERT_TRUE(WriteProperty(Database(), L"A", L"1"));
    ReopenReadOnly();
    EXPECT_EQ(ReadProperty(Database(), L"A"), CString(L"1"));
    const bool serviceTakesIt =
        RunStatement(Database(), L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('C','3')") == 0;
    EXPECT_EQ(WriteProperty(Database(), L"B", L"2"), serviceTakesIt); // in memory, on Wine
    ReopenFile();
    EXPECT_EQ(Select(L"SELECT * FROM `Property`"), (Rows{{L"A", L"1"}}));
}

// There is no way back once the old row is deleted.
TEST_F(PropertyFailureTest, AWriteThatFailsHasDeletedTheOldValue)
{
    ASSERT_TRUE(WriteProperty(Database(), L"A", L"1"));
    EXPECT_FALSE(WriteProperty(Database(), L"A", CString()));
    EXPECT_EQ(Select(L"SELECT * FROM `Property`"), Rows());
}

// ---- calls that the service seldom refuses ---------------------------------------------------------------------------

TEST_F(PropertyFailureTest, AStatementThatDoesNotRunGivesNothingAndKeepsTheRow)
{
    ASSERT_TRUE(WriteProperty(Database(), L"A", L"1"));
    {
        const Refusal refusal("MsiViewExecute", RefuseToRun);
        ExpectNothing(Database(), L"A");
    }
    EXPECT_EQ(Select(L"SELECT * FROM `Property`"), (Rows{{L"A", L"1"}}));
}

TEST_F(PropertyFailureTest, ARowThatCanNotBeFetchedIsNotRead)
{
    ASSERT_TRUE(WriteProperty(Database(), L"A", L"1"));
    const Refusal refusal("MsiViewFetch", RefuseToFetch);
    EXPECT_FALSE(ReadsTable(Database(), L"Property", L"A"));
    EXPECT_EQ(ReadProperty(Database(), L"A"), CString());
}

TEST_F(PropertyFailureTest, AValueThatCanNotBeReadIsNotRead)
{
    ASSERT_TRUE(WriteProperty(Database(), L"A", L"1"));
    const Refusal refusal("MsiRecordGetStringW", RefuseToRead);
    EXPECT_FALSE(ReadsTable(Database(), L"Property", L"A"));
    EXPECT_EQ(ReadProperty(Database(), L"A"), CString());
}

TEST_F(PropertyFailureTest, AColumnThatCanNotBeReadIsNotRead)
{
    const CInstallerHandle record(MsiCreateRecord(1));
    ASSERT_EQ(MsiRecordSetStringW(record.get(), 1, L"text"), 0u);
    const Refusal refusal("MsiRecordGetStringW", RefuseToRead);
    CString text;
    EXPECT_FALSE(ReadRecordText(record.get(), 1, text));
}

// ---- records ---------------------------------------------------------------------------------------------------------

TEST_F(PropertyFailureTest, AClosedRecordLeavesTheTargetAlone)
{
    CInstallerHandle record(MsiCreateRecord(1));
    ASSERT_EQ(MsiRecordSetStringW(record.get(), 1, L"text"), 0u);
    const InstallerHandle closed = record.get();
    record.reset();
    CString text = L"kept";
    EXPECT_TRUE(ReadRecordText(closed, 1, text)); // it has no data, as a null column has none
    EXPECT_EQ(text, CString(L"kept"));
}

// A stream has a size and is no text. Wine reads it as an empty one without a failure.
TEST_F(PropertyFailureTest, AStreamIsReadAsTheServiceAnswersAndEmpty)
{
    const CTestFolder folder;
    WriteFileBytes(folder / L"stream.bin", "12345678");
    const CInstallerHandle record(MsiCreateRecord(1));
    ASSERT_EQ(MsiRecordSetStreamW(record.get(), 1, folder / L"stream.bin"), 0u);
    ASSERT_GT(MsiRecordDataSize(record.get(), 1), 0u);
    wchar_t buffer[20] = L"";
    DWORD size = 20;
    const UINT answer = MsiRecordGetStringW(record.get(), 1, buffer, &size);
    CString text;
    EXPECT_EQ(ReadRecordText(record.get(), 1, text), answer == ERROR_SUCCESS);
    EXPECT_EQ(text, CString());
}
