// What the service can refuse, for rows: each failure is plain false, and no handle stays open. Each test of this file ends
// with the fixture's count of open handles.
#include "installer/query.h"
#include "msi/msi_property.h"
#include "msi/msi_rows.h"
#include "tests/installer/database_fixture.h"
#include "tests/installer/refusal.h"
#include "tests/msi/row_kinds.h"
#include "tests/support/test_folder.h"

#include <string>

namespace {

constexpr MsiRowAction ACTIONS[] = {MsiRowAction::Insert, MsiRowAction::Update, MsiRowAction::Delete};

class RowFailureTest : public DatabaseTest, public testing::WithParamInterface<RowKind>
{
protected:
    // The actions that come out true, of a fresh row each.
    std::string Successes(InstallerHandle database, const wchar_t* key = L"key")
    {
        std::string names;
        for (const MsiRowAction action : ACTIONS) {
            if (Execute(*GetParam().make(key), action, database)) {
                names += action == MsiRowAction::Insert   ? "insert "
                         : action == MsiRowAction::Update ? "update "
                                                          : "delete ";
            }
        }
        return names;
    }
    CString Table() const { return GetParam().Table(); }
};

INSTANTIATE_TEST_SUITE_P(Rows, RowFailureTest, testing::ValuesIn(RowKinds()), NameOf);

} // namespace

// The other tests would prove nothing if this one failed.
TEST_P(RowFailureTest, OnAGoodDatabaseAnInsertSucceeds)
{
    EXPECT_NE(Successes(Database()).find("insert"), std::string::npos);
}

TEST_P(RowFailureTest, NoActionSucceedsOnHandleZero)
{
    EXPECT_EQ(Successes(0), "");
}

TEST_P(RowFailureTest, NoActionSucceedsOnAClosedDatabase)
{
    CInstallerHandle database;
    const CTestFolder folder;
    ASSERT_EQ(MsiOpenDatabaseW(folder / L"Zolt.msi", MSIDBOPEN_CREATE, database.put()), 0u);
    const InstallerHandle closed = database.get();
    database.reset();
    EXPECT_EQ(Successes(closed), "");
}

TEST_P(RowFailureTest, NoActionSucceedsOnAHandleThatIsNoDatabase)
{
    const CInstallerHandle record(MsiCreateRecord(1));
    EXPECT_EQ(Successes(record.get()), "");
}

TEST_P(RowFailureTest, NoActionSucceedsWithoutTheTable)
{
    Run(L"DROP TABLE `" + Table() + L"`");
    EXPECT_EQ(Successes(Database()), "");
}

TEST_P(RowFailureTest, NoActionSucceedsWithoutTheColumn)
{
    Run(L"DROP TABLE `" + Table() + L"`");
    Run(L"CREATE TABLE `" + Table() + L"` (`Other` CHAR(72) NOT NULL PRIMARY KEY `Other`)");
    EXPECT_EQ(Successes(Database()), "");
    EXPECT_EQ(Select(L"SELECT * FROM `" + Table() + L"`"), ::Rows());
}

TEST_P(RowFailureTest, NoActionSucceedsWithAnApostropheInTheKey)
{
    EXPECT_EQ(Successes(Database(), L"it's"), "");
    EXPECT_EQ(Select(L"SELECT * FROM `" + Table() + L"`"), ::Rows());
}

// Wine takes the row into its memory and says so; Windows refuses it.
TEST_P(RowFailureTest, OnAReadOnlyDatabaseAnInsertGivesWhatTheServiceGives)
{
    ReopenReadOnly();
    const bool serviceTakesIt =
        RunStatement(Database(), L"INSERT INTO `TarnDirectoryMap` (`Directory_`) VALUES ('x')") == 0;
    EXPECT_EQ(Successes(Database()).find("insert") == 0, serviceTakesIt);
}

TEST_P(RowFailureTest, NothingThatWasDoneToAReadOnlyDatabaseIsInItsFile)
{
    ReopenReadOnly();
    static_cast<void>(Successes(Database()));
    ReopenFile();
    EXPECT_EQ(Select(L"SELECT * FROM `" + Table() + L"`"), ::Rows());
}

// ---- walking -----------------------------------------------------------------------------------------------------

namespace {

class CursorFailureTest : public DatabaseTest
{
protected:
    bool Walks(InstallerHandle database, const wchar_t* query)
    {
        MsiRowCursor cursor(database, query, 7);
        TarnDirectoryMapData row;
        return cursor.Next(row) || cursor.Next(row); // the second must be harmless
    }
};

constexpr const wchar_t* MAP_QUERY = L"SELECT * FROM `TarnDirectoryMap`";

} // namespace

TEST_F(CursorFailureTest, AQueryOnHandleZeroHasNoRows)
{
    EXPECT_FALSE(Walks(0, MAP_QUERY));
}

TEST_F(CursorFailureTest, AQueryOnAMissingTableHasNoRows)
{
    Run(L"DROP TABLE `TarnDirectoryMap`");
    EXPECT_FALSE(Walks(Database(), MAP_QUERY));
}

TEST_F(CursorFailureTest, AQueryOfABadColumnHasNoRows)
{
    EXPECT_FALSE(Walks(Database(), L"SELECT `Nothing` FROM `TarnDirectoryMap`"));
}

TEST_F(CursorFailureTest, AQueryThatIsNoneHasNoRows)
{
    EXPECT_FALSE(Walks(Database(), L"SELEKT"));
}

TEST_F(CursorFailureTest, AWalkThatIsLeftEarlyClosesItsViewAndRecord)
{
    Run(L"INSERT INTO `TarnDirectoryMap` (`Directory_`,`Flags`) VALUES ('a',0)");
    Run(L"INSERT INTO `TarnDirectoryMap` (`Directory_`,`Flags`) VALUES ('b',0)");
    MsiRowCursor cursor(Database(), MAP_QUERY, 7);
    TarnDirectoryMapData row;
    EXPECT_TRUE(cursor.Next(row));
}

// ---- calls that the service seldom refuses ---------------------------------------------------------------------------

namespace {

class RefusalTest : public CursorFailureTest
{
protected:
    // Rows with a bound value and the property: none may be written, and no handle may stay open.
    void ExpectNoBoundValue()
    {
        for (const RowKind& kind : RowKinds()) {
            if (kind.boundByInsert) {
                const auto row = kind.make(L"key");
                InstallerHandle record = 12345;
                EXPECT_FALSE(row->BuildRecord(record)) << kind.statements.table;
                EXPECT_EQ(record, 0u) << kind.statements.table;
                EXPECT_FALSE(row->Execute(Database())) << kind.statements.table;
            }
        }
        EXPECT_FALSE(WriteProperty(Database(), L"A", L"1"));
    }
};

} // namespace

TEST_F(RefusalTest, ARecordThatIsNotMadeFailsTheRow)
{
    const Refusal refusal("MsiCreateRecord", NoRecord);
    ExpectNoBoundValue();
}

TEST_F(RefusalTest, ARecordThatTakesNoTextFailsTheRowAndIsClosed)
{
    const Refusal refusal("MsiRecordSetStringW", RefuseText);
    ExpectNoBoundValue();
}

TEST_F(RefusalTest, AStatementThatOpensAndDoesNotRunFailsTheRow)
{
    const Refusal refusal("MsiViewExecute", RefuseToRun);
    for (const RowKind& kind : RowKinds()) {
        EXPECT_FALSE(kind.make(L"key")->Execute(Database())) << kind.statements.table;
    }
    EXPECT_FALSE(WriteProperty(Database(), L"A", L"1"));
    MsiRowCursor cursor(Database(), MAP_QUERY, 7);
    TarnDirectoryMapData row;
    EXPECT_FALSE(cursor.Next(row));
}

TEST_F(RefusalTest, AQueryWhoseFirstRowCanNotBeFetchedHasNoRows)
{
    Run(L"INSERT INTO `TarnDirectoryMap` (`Directory_`,`Flags`) VALUES ('a',0)");
    const Refusal refusal("MsiViewFetch", RefuseToFetch);
    EXPECT_FALSE(Walks(Database(), MAP_QUERY));
}

TEST_F(RefusalTest, AWalkEndsAtARowThatCanNotBeFetchedAndKeepsWhatItReadLast)
{
    Run(L"INSERT INTO `TarnDirectoryMap` (`Directory_`,`Flags`) VALUES ('a',0)");
    Run(L"INSERT INTO `TarnDirectoryMap` (`Directory_`,`Flags`) VALUES ('b',0)");
    MsiRowCursor cursor(Database(), MAP_QUERY, 7);
    TarnDirectoryMapData row;
    ASSERT_TRUE(cursor.Next(row));
    const CString last = row.Directory_;
    const Refusal refusal("MsiViewFetch", RefuseToFetch);
    EXPECT_FALSE(cursor.Next(row));
    EXPECT_EQ(row.Directory_, last);
}

namespace {

// A record of a text, another and a number.
CInstallerHandle TextTextNumber()
{
    CInstallerHandle record(MsiCreateRecord(3));
    MsiRecordSetStringW(record.get(), 1, L"first");
    MsiRecordSetStringW(record.get(), 2, L"second");
    MsiRecordSetInteger(record.get(), 3, 7);
    return record;
}

} // namespace

TEST_F(RefusalTest, ATextThatCanNotBeReadFailsTheRow)
{
    const CInstallerHandle record = TextTextNumber();
    const Refusal refusal("MsiRecordGetStringW", RefuseToRead);
    DirectoryData row;
    EXPECT_FALSE(row.Read(Database(), record.get(), 3));
}

// The text is the column that failed, so the number comes from the one behind it.
TEST_F(RefusalTest, ANumberBehindATextThatCanNotBeReadMakesUpForIt)
{
    CInstallerHandle record(MsiCreateRecord(2));
    MsiRecordSetStringW(record.get(), 1, L"first");
    MsiRecordSetInteger(record.get(), 2, 7);
    const Refusal refusal("MsiRecordGetStringW", RefuseToRead);
    CustomFileData row;
    EXPECT_TRUE(row.Read(Database(), record.get(), 1 | 4));
    EXPECT_EQ(row.Flags, 7);
}

// The second text is skipped and its column not counted: the number is then looked for in a text, and isn't there.
TEST_F(RefusalTest, ATextBehindOneThatCanNotBeReadIsSkippedWithItsColumn)
{
    const CInstallerHandle record = TextTextNumber();
    const Refusal refusal("MsiRecordGetStringW", RefuseToRead);
    CustomFileData row;
    EXPECT_FALSE(row.Read(Database(), record.get(), 7));
    EXPECT_EQ(row.Flags, static_cast<int>(MSI_NULL_INTEGER));
}

TEST_F(RefusalTest, ADescriptionThatCanNotBeReadIsExpandedAllTheSame)
{
    const CInstallerHandle record = TextTextNumber();
    const Refusal refusal("MsiRecordGetStringW", RefuseToRead);
    FeatureData row;
    row.Description = L"a [Unknown] b";
    EXPECT_FALSE(row.Read(Database(), record.get(), 8));
    EXPECT_EQ(row.Description, CString(L"a  b"));
}
