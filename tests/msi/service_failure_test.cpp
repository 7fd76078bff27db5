// What the service can refuse, for rows: each failure is plain false, and no handle stays open. Each test of this file ends
// with the fixture's count of open handles.
#include "installer/query.h"
#include "msi/msi_property.h"
#include "msi/msi_rows.h"
#include "tests/host/package_maker.h"
#include "tests/installer/database_fixture.h"
#include "tests/installer/refusal.h"

#include <memory>
#include <string>

namespace {

struct RowKind
{
    const char* name;
    const wchar_t* table;
    std::unique_ptr<IMsiWriter> (*make)(const wchar_t* key);
};

std::unique_ptr<IMsiWriter> MakeComponent(const wchar_t* key)
{
    auto row = std::make_unique<ComponentData>();
    row->Component = key;
    row->Directory_ = L"dir";
    return row;
}
std::unique_ptr<IMsiWriter> MakeDirectory(const wchar_t* key)
{
    auto row = std::make_unique<DirectoryData>();
    row->Directory = key;
    row->DefaultDir = L"name";
    return row;
}
std::unique_ptr<IMsiWriter> MakeCreateFolder(const wchar_t* key)
{
    auto row = std::make_unique<CreateFolderData>();
    row->Directory_ = key;
    row->Component_ = L"comp";
    return row;
}
std::unique_ptr<IMsiWriter> MakeFeature(const wchar_t* key)
{
    auto row = std::make_unique<FeatureData>();
    row->Feature = key;
    return row;
}
std::unique_ptr<IMsiWriter> MakeFeatureComponents(const wchar_t* key)
{
    auto row = std::make_unique<FeatureComponentsData>();
    row->Feature_ = key;
    row->Component_ = L"comp";
    return row;
}
std::unique_ptr<IMsiWriter> MakeFile(const wchar_t* key)
{
    auto row = std::make_unique<FileData>();
    row->File = key;
    row->Component_ = L"comp";
    row->FileName = L"name";
    return row;
}
std::unique_ptr<IMsiWriter> MakeShortcut(const wchar_t* key)
{
    auto row = std::make_unique<ShortcutData>();
    row->Shortcut = key;
    row->Directory_ = L"dir";
    row->Component_ = L"comp";
    row->Target = L"target";
    row->Name = L"name";
    return row;
}
std::unique_ptr<IMsiWriter> MakeCustomFile(const wchar_t* key)
{
    auto row = std::make_unique<CustomFileData>();
    row->Component_ = key;
    row->SourceFileName = L"name";
    return row;
}
std::unique_ptr<IMsiWriter> MakeCustomAction(const wchar_t* key)
{
    auto row = std::make_unique<CustomActionData>();
    row->Action = key;
    return row;
}
std::unique_ptr<IMsiWriter> MakeSequence(const wchar_t* key)
{
    auto row = std::make_unique<InstallExecuteSequenceData>();
    row->Action = key;
    return row;
}

const RowKind KINDS[] = {
    {"Component", L"Component", MakeComponent},
    {"Directory", L"Directory", MakeDirectory},
    {"CreateFolder", L"CreateFolder", MakeCreateFolder},
    {"Feature", L"Feature", MakeFeature},
    {"FeatureComponents", L"FeatureComponents", MakeFeatureComponents},
    {"File", L"File", MakeFile},
    {"Shortcut", L"Shortcut", MakeShortcut},
    {"TarnCustomFile", L"TarnCustomFile", MakeCustomFile},
    {"CustomAction", L"CustomAction", MakeCustomAction},
    {"InstallExecuteSequence", L"InstallExecuteSequence", MakeSequence},
};

void PrintTo(const RowKind& kind, std::ostream* stream)
{
    *stream << kind.name;
}

constexpr MsiRowAction ACTIONS[] = {MsiRowAction::Insert, MsiRowAction::Update, MsiRowAction::Delete};

class RowFailureTest : public DatabaseTest, public testing::WithParamInterface<RowKind>
{
protected:
    // The actions that come out true, of a fresh row each.
    std::string Successes(InstallerHandle database, const wchar_t* key = L"key")
    {
        std::string names;
        for (const MsiRowAction action : ACTIONS) {
            const auto row = GetParam().make(key);
            row->m_action = action;
            if (row->Execute(database)) {
                names += action == MsiRowAction::Insert   ? "insert "
                         : action == MsiRowAction::Update ? "update "
                                                          : "delete ";
            }
        }
        return names;
    }
    CString Table() const { return GetParam().table; }
};

INSTANTIATE_TEST_SUITE_P(Rows, RowFailureTest, testing::ValuesIn(KINDS),
                         [](const auto& information) { return std::string(information.param.name); });

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
    const ScratchFolder folder(L"closed");
    ASSERT_EQ(MsiOpenDatabaseW(folder + L"Zolt.msi", MSIDBOPEN_CREATE, database.put()), 0u);
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
        RunSql(Database(), L"INSERT INTO `TarnDirectoryMap` (`Directory_`) VALUES ('x')") == 0;
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
        for (const auto& make : {MakeDirectory, MakeFile, MakeShortcut, MakeCustomFile}) {
            const auto row = make(L"key");
            InstallerHandle record = 12345;
            EXPECT_FALSE(row->BuildRecord(record)) << Utf8(row->m_strStatement);
            EXPECT_EQ(record, 0u);
            EXPECT_FALSE(row->Execute(Database()));
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
    EXPECT_FALSE(MakeFile(L"key")->Execute(Database()));
    EXPECT_FALSE(MakeComponent(L"key")->Execute(Database()));
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
