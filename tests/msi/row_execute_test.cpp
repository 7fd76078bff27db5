// Each statement run on a database, and the table read back. What is true of every kind of row stands over the table of
// row_kinds.h.
#include "installer/record.h"
#include "msi/msi_rows.h"
#include "tests/installer/database_fixture.h"
#include "tests/msi/row_kinds.h"
#include "tests/support/test_folder.h"

namespace {

constexpr MsiRowAction INSERT = MsiRowAction::Insert;
constexpr MsiRowAction UPDATE = MsiRowAction::Update;
constexpr MsiRowAction DELETE_ROW = MsiRowAction::Delete;
constexpr MsiRowAction ACTIONS[] = {INSERT, UPDATE, DELETE_ROW};

class RowExecuteTest : public DatabaseTest, public testing::WithParamInterface<RowKind>
{
protected:
    void InsertSample() { ASSERT_TRUE(Execute(*GetParam().make(nullptr), INSERT, Database())); }
    Rows Table() { return Select(L"SELECT * FROM `" + GetParam().Table() + L"`"); }
};

INSTANTIATE_TEST_SUITE_P(Rows, RowExecuteTest, testing::ValuesIn(RowKinds()), NameOf);

} // namespace

TEST_P(RowExecuteTest, AnInsertedRowStandsInItsTable)
{
    InsertSample();
    EXPECT_EQ(Table(), Rows{GetParam().inserted});
}

TEST_P(RowExecuteTest, AnUpdateChangesItsColumnsOrIsFalseAndChangesNothing)
{
    InsertSample();
    EXPECT_EQ(Execute(*GetParam().makeChanged(), UPDATE, Database()), GetParam().CanUpdate());
    EXPECT_EQ(Table(), Rows{GetParam().updated});
}

// The neighbor differs in the last column of the key alone.
TEST_P(RowExecuteTest, ADeletedRowIsGoneAndItsNeighborStays)
{
    InsertSample();
    ASSERT_TRUE(Execute(*GetParam().makeNeighbor(L"other"), INSERT, Database()));
    EXPECT_EQ(Execute(*GetParam().makeNeighbor(L"other"), DELETE_ROW, Database()), GetParam().CanDelete());
    EXPECT_EQ(Table().size(), GetParam().CanDelete() ? 1u : 2u);
    EXPECT_EQ(Table().front(), GetParam().inserted);
}

TEST_P(RowExecuteTest, DeletingARowThatIsNotThereSucceeds)
{
    EXPECT_EQ(Execute(*GetParam().make(nullptr), DELETE_ROW, Database()), GetParam().CanDelete());
}

TEST_P(RowExecuteTest, InsertingAKeyTwiceFailsAndKeepsTheFirst)
{
    InsertSample();
    EXPECT_FALSE(Execute(*GetParam().makeChanged(), INSERT, Database()));
    EXPECT_EQ(Table(), Rows{GetParam().inserted});
}

TEST_P(RowExecuteTest, TheStatementThatRanIsKept)
{
    for (const MsiRowAction action : ACTIONS) {
        const auto row = GetParam().make(nullptr);
        static_cast<void>(Execute(*row, action, Database()));
        EXPECT_EQ(row->m_strStatement, CString(GetParam().statements.Of(action)));
    }
}

// ---- a component -------------------------------------------------------------------------------------------------

namespace {

class ComponentTest : public DatabaseTest
{
protected:
    ComponentTest() { static_cast<ComponentColumns&>(row) = COMPONENT; }

    ComponentData row;
};

} // namespace

TEST_F(ComponentTest, AnEmptyTextBecomesNull)
{
    row.Condition.Empty();
    row.KeyPath.Empty();
    EXPECT_TRUE(Execute(row, INSERT, Database()));
    EXPECT_EQ(Select(L"SELECT `Condition`,`KeyPath` FROM `Component`"), (Rows{{NULL_VALUE, NULL_VALUE}}));
}

TEST_F(ComponentTest, AnUpdateFailsOnOpening)
{
    ASSERT_TRUE(Execute(row, INSERT, Database()));
    EXPECT_FALSE(Execute(row, UPDATE, Database()));
    EXPECT_NE(OpenResult(Database(), row.m_strStatement), 0u) << Utf8(row.m_strStatement);
}

// The one character that makes the difference.
TEST_F(ComponentTest, AnUpdateWithoutTheStrayBackquoteWouldOpen)
{
    row.m_action = UPDATE;
    CString statement = row.BuildStatement();
    ASSERT_EQ(statement.Replace(L"'` WHERE", L"' WHERE"), 1);
    EXPECT_EQ(OpenResult(Database(), statement), 0u) << Utf8(statement);
}

// ---- the name of a shortcut --------------------------------------------------------------------------------------

namespace {

// A file of the name in the current folder, gone with the object.
class FileInCurrentFolder
{
public:
    FileInCurrentFolder(const CTestFolder& folder, const CString& name)
    {
        GetCurrentDirectoryW(MAX_PATH, m_before);
        WriteFileBytes(folder / name, "content");
        SetCurrentDirectoryW(folder.GetPath());
    }
    ~FileInCurrentFolder() { SetCurrentDirectoryW(m_before); }
    FileInCurrentFolder(const FileInCurrentFolder&) = delete;
    FileInCurrentFolder& operator=(const FileInCurrentFolder&) = delete;

private:
    wchar_t m_before[MAX_PATH] = L"";
};

} // namespace

TEST(ShortcutNameTest, ANameWithoutAShortFormIsWrittenTwice)
{
    ShortcutData row;
    row.Name = L"No such file here";
    static_cast<void>(row.BuildStatement());
    EXPECT_EQ(row.Name, CString(L"No such file here|No such file here"));
}

TEST(ShortcutNameTest, EveryActionRewritesTheName)
{
    for (const MsiRowAction action : {INSERT, UPDATE, DELETE_ROW}) {
        ShortcutData row;
        row.m_action = action;
        row.Name = L"n";
        static_cast<void>(row.BuildStatement());
        EXPECT_EQ(row.Name, CString(L"n|n")) << static_cast<int>(action);
    }
}

TEST(ShortcutNameTest, ASecondBuildNestsTheName)
{
    ShortcutData row;
    row.Name = L"n";
    static_cast<void>(row.BuildStatement());
    static_cast<void>(row.BuildStatement());
    EXPECT_EQ(row.Name, CString(L"n|n|n|n"));
}

TEST(ShortcutNameTest, TheShortFormOfAFileOfThatNameStandsInFront)
{
    const CTestFolder folder;
    const CString name = L"A long shortcut name.text";
    const FileInCurrentFolder file(folder, name);
    wchar_t shortName[MAX_PATH] = L"";
    ASSERT_LT(GetShortPathNameW(name, shortName, MAX_PATH), static_cast<DWORD>(name.GetLength()));
    ShortcutData row;
    row.Name = name;
    static_cast<void>(row.BuildStatement());
    EXPECT_EQ(row.Name, CString(shortName) + L"|" + name);
}

// Its short form is itself and doesn't fit into the room for a shorter one.
TEST(ShortcutNameTest, AFileNameThatIsShortAlreadyIsWrittenTwice)
{
    const CTestFolder folder;
    const FileInCurrentFolder file(folder, L"SHORT.TXT");
    ShortcutData row;
    row.Name = L"SHORT.TXT";
    static_cast<void>(row.BuildStatement());
    EXPECT_EQ(row.Name, CString(L"SHORT.TXT|SHORT.TXT"));
}

TEST(ShortcutNameTest, AnEmptyNameBecomesABar)
{
    ShortcutData row;
    static_cast<void>(row.BuildStatement());
    EXPECT_EQ(row.Name, CString(L"|"));
}

// ---- records -----------------------------------------------------------------------------------------------------

namespace {

class RecordTest : public testing::TestWithParam<RowKind>
{
protected:
    void TearDown() override { EXPECT_EQ(MsiCloseAllHandles(), 0u) << "installer handles were left open"; }

    // The text that the row binds; "(no record)" when it makes none.
    static CString BoundText(MsiRowAction action)
    {
        const auto row = GetParam().make(nullptr);
        row->m_action = action;
        InstallerHandle made = 12345;
        EXPECT_TRUE(row->BuildRecord(made));
        const CInstallerHandle record(made);
        if (!record) {
            return NoRecord();
        }
        EXPECT_EQ(MsiRecordGetFieldCount(record.get()), 1u);
        return RecordText(record.get(), 1);
    }
    static CString NoRecord() { return L"(no record)"; }
    static CString Expected(const wchar_t* bound) { return bound ? CString(bound) : NoRecord(); }
};

INSTANTIATE_TEST_SUITE_P(Rows, RecordTest, testing::ValuesIn(RowKinds()), NameOf);

} // namespace

TEST_P(RecordTest, AnInsertBindsItsTextAlone)
{
    EXPECT_EQ(BoundText(INSERT), Expected(GetParam().boundByInsert));
}

TEST_P(RecordTest, AnUpdateBindsItsTextAlone)
{
    EXPECT_EQ(BoundText(UPDATE), Expected(GetParam().boundByUpdate));
}

TEST_P(RecordTest, ADeleteBindsNothing)
{
    EXPECT_EQ(BoundText(DELETE_ROW), NoRecord());
}
