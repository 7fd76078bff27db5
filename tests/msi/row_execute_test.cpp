// Each statement run on a database, and the table read back.
#include "msi/msi_rows.h"
#include "tests/host/package_maker.h"
#include "tests/installer/database_fixture.h"

namespace {

class RowExecuteTest : public DatabaseTest
{
protected:
    template <class Data>
    bool Execute(Data& row, MsiRowAction action)
    {
        row.m_action = action;
        return row.Execute(Database());
    }
};

template <class Data, class Columns>
Data RowOf(const Columns& columns)
{
    Data row;
    static_cast<Columns&>(row) = columns;
    return row;
}

ComponentData Component()
{
    return RowOf<ComponentData, ComponentColumns>({L"comp", L"{GUID}", L"dir", 256, L"cond", L"kp"});
}
DirectoryData Directory()
{
    return RowOf<DirectoryData, DirectoryColumns>({L"dir", L"parent", L"IT'S~1|It's long"});
}
CreateFolderData CreateFolder()
{
    return RowOf<CreateFolderData, CreateFolderColumns>({L"dir", L"comp"});
}
FeatureData Feature()
{
    return RowOf<FeatureData, FeatureColumns>({L"feat", L"parent", L"title", L"desc", 2, 1, L"dir", 16});
}
FeatureComponentsData FeatureComponent()
{
    return RowOf<FeatureComponentsData, FeatureComponentsColumns>({L"feat", L"comp"});
}
FileData File()
{
    return RowOf<FileData, FileColumns>(
        {L"file", L"comp", L"IT'S~1|It's long", 1234, L"1.2.3.4", L"1033", 512, 7});
}
ShortcutData Shortcut()
{
    return RowOf<ShortcutData, ShortcutColumns>({L"cut", L"dir", L"It's a name", L"comp",
                                                 L"[INSTALLDIR]z.exe", L"/a", L"tip", 11, L"icon", 22, 33,
                                                 L"wkdir"});
}
CustomFileData CustomFile()
{
    return RowOf<CustomFileData, CustomFileColumns>({L"comp", L"C:\\it's\\source", 2});
}
CustomActionData CustomAction()
{
    return RowOf<CustomActionData, CustomActionColumns>({L"act", 51, L"src", L"tgt"});
}
InstallExecuteSequenceData Sequence()
{
    return RowOf<InstallExecuteSequenceData, InstallExecuteSequenceColumns>({L"act", L"cond", 1});
}

constexpr MsiRowAction INSERT = MsiRowAction::Insert;
constexpr MsiRowAction UPDATE = MsiRowAction::Update;
constexpr MsiRowAction DELETE_ROW = MsiRowAction::Delete;

} // namespace

TEST_F(RowExecuteTest, AnInsertedComponentStandsInItsTable)
{
    auto row = Component();
    EXPECT_TRUE(Execute(row, INSERT));
    EXPECT_EQ(Select(L"SELECT * FROM `Component`"),
              (Rows{{L"comp", L"{GUID}", L"dir", L"256", L"cond", L"kp"}}));
}

TEST_F(RowExecuteTest, AnEmptyTextBecomesNull)
{
    auto row = Component();
    row.Condition.Empty();
    row.KeyPath.Empty();
    EXPECT_TRUE(Execute(row, INSERT));
    EXPECT_EQ(Select(L"SELECT `Condition`,`KeyPath` FROM `Component`"), (Rows{{NULL_VALUE, NULL_VALUE}}));
}

TEST_F(RowExecuteTest, UpdateOfAComponentFailsOnOpeningAndChangesNothing)
{
    auto row = Component();
    ASSERT_TRUE(Execute(row, INSERT));
    row.Directory_ = L"other";
    EXPECT_FALSE(Execute(row, UPDATE));
    EXPECT_NE(OpenResult(Database(), row.m_strStatement), 0u) << Utf8(row.m_strStatement);
    EXPECT_EQ(Select(L"SELECT `Directory_` FROM `Component`"), (Rows{{L"dir"}}));
}

// The one character that makes the difference.
TEST_F(RowExecuteTest, UpdateOfAComponentWithoutTheStrayBackquoteWouldOpen)
{
    auto row = Component();
    row.m_action = UPDATE;
    CString statement = row.BuildStatement();
    ASSERT_EQ(statement.Replace(L"'` WHERE", L"' WHERE"), 1);
    EXPECT_EQ(OpenResult(Database(), statement), 0u) << Utf8(statement);
}

TEST_F(RowExecuteTest, ADeletedComponentIsGoneAndOthersStay)
{
    auto row = Component();
    ASSERT_TRUE(Execute(row, INSERT));
    row.Component = L"comp2";
    ASSERT_TRUE(Execute(row, INSERT));
    EXPECT_TRUE(Execute(row, DELETE_ROW));
    EXPECT_EQ(Select(L"SELECT `Component` FROM `Component`"), (Rows{{L"comp"}}));
}

TEST_F(RowExecuteTest, AnInsertedDirectoryStandsInItsTable)
{
    auto row = Directory();
    EXPECT_TRUE(Execute(row, INSERT));
    EXPECT_EQ(Select(L"SELECT * FROM `Directory`"), (Rows{{L"dir", L"parent", L"IT'S~1|It's long"}}));
}

TEST_F(RowExecuteTest, AnUpdatedDirectoryHasItsNewNameAndParent)
{
    auto row = Directory();
    ASSERT_TRUE(Execute(row, INSERT));
    row.Directory_Parent = L"other";
    row.DefaultDir = L"new";
    EXPECT_TRUE(Execute(row, UPDATE));
    EXPECT_EQ(Select(L"SELECT * FROM `Directory`"), (Rows{{L"dir", L"other", L"new"}}));
}

TEST_F(RowExecuteTest, ADeletedDirectoryIsGone)
{
    auto row = Directory();
    ASSERT_TRUE(Execute(row, INSERT));
    EXPECT_TRUE(Execute(row, DELETE_ROW));
    EXPECT_EQ(Select(L"SELECT * FROM `Directory`"), Rows());
}

TEST_F(RowExecuteTest, AnInsertedCreateFolderStandsInItsTable)
{
    auto row = CreateFolder();
    EXPECT_TRUE(Execute(row, INSERT));
    EXPECT_EQ(Select(L"SELECT `Directory_`,`Component_` FROM `CreateFolder`"), (Rows{{L"dir", L"comp"}}));
}

TEST_F(RowExecuteTest, UpdateOfACreateFolderIsFalseAndTouchesNothing)
{
    auto row = CreateFolder();
    ASSERT_TRUE(Execute(row, INSERT));
    EXPECT_FALSE(Execute(row, UPDATE));
    EXPECT_EQ(Select(L"SELECT `Directory_`,`Component_` FROM `CreateFolder`"), (Rows{{L"dir", L"comp"}}));
}

TEST_F(RowExecuteTest, ADeletedCreateFolderIsGoneAndThatOfTheSameFolderStays)
{
    auto row = CreateFolder();
    ASSERT_TRUE(Execute(row, INSERT));
    row.Component_ = L"comp2";
    ASSERT_TRUE(Execute(row, INSERT));
    EXPECT_TRUE(Execute(row, DELETE_ROW));
    EXPECT_EQ(Select(L"SELECT `Component_` FROM `CreateFolder`"), (Rows{{L"comp"}}));
}

TEST_F(RowExecuteTest, AnInsertedFeatureStandsInItsTable)
{
    auto row = Feature();
    EXPECT_TRUE(Execute(row, INSERT));
    EXPECT_EQ(Select(L"SELECT * FROM `Feature`"),
              (Rows{{L"feat", L"parent", L"title", L"desc", L"2", L"1", L"dir", L"16"}}));
}

TEST_F(RowExecuteTest, AnUpdatedFeatureHasItsNewColumns)
{
    auto row = Feature();
    ASSERT_TRUE(Execute(row, INSERT));
    static_cast<FeatureColumns&>(row) = {L"feat", L"p2", L"t2", L"d2", 4, 3, L"dir2", 8};
    EXPECT_TRUE(Execute(row, UPDATE));
    EXPECT_EQ(Select(L"SELECT * FROM `Feature`"),
              (Rows{{L"feat", L"p2", L"t2", L"d2", L"4", L"3", L"dir2", L"8"}}));
}

TEST_F(RowExecuteTest, DeleteOfAFeatureIsFalseAndTouchesNothing)
{
    auto row = Feature();
    ASSERT_TRUE(Execute(row, INSERT));
    EXPECT_FALSE(Execute(row, DELETE_ROW));
    EXPECT_EQ(Select(L"SELECT `Feature` FROM `Feature`"), (Rows{{L"feat"}}));
}

TEST_F(RowExecuteTest, AnInsertedFeaturesComponentStandsInItsTable)
{
    auto row = FeatureComponent();
    EXPECT_TRUE(Execute(row, INSERT));
    EXPECT_EQ(Select(L"SELECT * FROM `FeatureComponents`"), (Rows{{L"feat", L"comp"}}));
}

TEST_F(RowExecuteTest, UpdateOfAFeaturesComponentIsFalseAndTouchesNothing)
{
    auto row = FeatureComponent();
    ASSERT_TRUE(Execute(row, INSERT));
    EXPECT_FALSE(Execute(row, UPDATE));
    EXPECT_EQ(Select(L"SELECT * FROM `FeatureComponents`"), (Rows{{L"feat", L"comp"}}));
}

TEST_F(RowExecuteTest, ADeletedFeaturesComponentIsGoneAndThatOfTheSameFeatureStays)
{
    auto row = FeatureComponent();
    ASSERT_TRUE(Execute(row, INSERT));
    row.Component_ = L"comp2";
    ASSERT_TRUE(Execute(row, INSERT));
    EXPECT_TRUE(Execute(row, DELETE_ROW));
    EXPECT_EQ(Select(L"SELECT * FROM `FeatureComponents`"), (Rows{{L"feat", L"comp"}}));
}

TEST_F(RowExecuteTest, AnInsertedFileStandsInItsTable)
{
    auto row = File();
    EXPECT_TRUE(Execute(row, INSERT));
    EXPECT_EQ(Select(L"SELECT * FROM `File`"),
              (Rows{{L"file", L"comp", L"IT'S~1|It's long", L"1234", L"1.2.3.4", L"1033", L"512", L"7"}}));
}

TEST_F(RowExecuteTest, UpdateOfAFileHasNoStatementIsFalseAndTouchesNothing)
{
    auto row = File();
    ASSERT_TRUE(Execute(row, INSERT));
    row.FileSize = 1;
    EXPECT_FALSE(Execute(row, UPDATE));
    EXPECT_EQ(row.m_strStatement, CString());
    EXPECT_EQ(Select(L"SELECT `File`,`FileSize` FROM `File`"), (Rows{{L"file", L"1234"}}));
}

TEST_F(RowExecuteTest, ADeletedFileIsGone)
{
    auto row = File();
    ASSERT_TRUE(Execute(row, INSERT));
    EXPECT_TRUE(Execute(row, DELETE_ROW));
    EXPECT_EQ(Select(L"SELECT * FROM `File`"), Rows());
}

TEST_F(RowExecuteTest, AnInsertedShortcutHasItsNameTwiceAndNoNumbers)
{
    auto row = Shortcut();
    EXPECT_TRUE(Execute(row, INSERT));
    EXPECT_EQ(Select(L"SELECT * FROM `Shortcut`"),
              (Rows{{L"cut", L"dir", L"It's a name|It's a name", L"comp", L"[INSTALLDIR]z.exe", L"/a", L"tip",
                     NULL_VALUE, L"icon", NULL_VALUE, NULL_VALUE, L"wkdir"}}));
}

TEST_F(RowExecuteTest, AnUpdatedShortcutHasItsNewNameAndArgumentsAndKeepsTheRest)
{
    auto row = Shortcut();
    ASSERT_TRUE(Execute(row, INSERT));
    auto changed = RowOf<ShortcutData, ShortcutColumns>(
        {L"cut", L"x", L"new", L"x", L"x", L"/new", L"x", 0, L"x", 0, 0, L"x"});
    EXPECT_TRUE(Execute(changed, UPDATE));
    EXPECT_EQ(Select(L"SELECT * FROM `Shortcut`"),
              (Rows{{L"cut", L"dir", L"new|new", L"comp", L"[INSTALLDIR]z.exe", L"/new", L"tip", NULL_VALUE,
                     L"icon", NULL_VALUE, NULL_VALUE, L"wkdir"}}));
}

TEST_F(RowExecuteTest, ADeletedShortcutIsGone)
{
    auto row = Shortcut();
    ASSERT_TRUE(Execute(row, INSERT));
    EXPECT_TRUE(Execute(row, DELETE_ROW));
    EXPECT_EQ(Select(L"SELECT * FROM `Shortcut`"), Rows());
}

TEST_F(RowExecuteTest, AnInsertedCustomFileStandsInItsTable)
{
    auto row = CustomFile();
    EXPECT_TRUE(Execute(row, INSERT));
    EXPECT_EQ(Select(L"SELECT * FROM `TarnCustomFile`"), (Rows{{L"comp", L"C:\\it's\\source", L"2"}}));
}

TEST_F(RowExecuteTest, AnUpdatedCustomFileHasItsNewSourceAndFlags)
{
    auto row = CustomFile();
    ASSERT_TRUE(Execute(row, INSERT));
    row.SourceFileName = L"new";
    row.Flags = 0;
    EXPECT_TRUE(Execute(row, UPDATE));
    EXPECT_EQ(Select(L"SELECT * FROM `TarnCustomFile`"), (Rows{{L"comp", L"new", L"0"}}));
}

TEST_F(RowExecuteTest, ADeletedCustomFileIsGone)
{
    auto row = CustomFile();
    ASSERT_TRUE(Execute(row, INSERT));
    EXPECT_TRUE(Execute(row, DELETE_ROW));
    EXPECT_EQ(Select(L"SELECT * FROM `TarnCustomFile`"), Rows());
}

TEST_F(RowExecuteTest, AnInsertedCustomActionStandsInItsTable)
{
    auto row = CustomAction();
    EXPECT_TRUE(Execute(row, INSERT));
    EXPECT_EQ(Select(L"SELECT * FROM `CustomAction`"), (Rows{{L"act", L"51", L"src", L"tgt"}}));
}

TEST_F(RowExecuteTest, AnUpdatedCustomActionHasItsNewColumns)
{
    auto row = CustomAction();
    ASSERT_TRUE(Execute(row, INSERT));
    static_cast<CustomActionColumns&>(row) = {L"act", 35, L"src2", L"tgt2"};
    EXPECT_TRUE(Execute(row, UPDATE));
    EXPECT_EQ(Select(L"SELECT * FROM `CustomAction`"), (Rows{{L"act", L"35", L"src2", L"tgt2"}}));
}

TEST_F(RowExecuteTest, ADeletedCustomActionIsGone)
{
    auto row = CustomAction();
    ASSERT_TRUE(Execute(row, INSERT));
    EXPECT_TRUE(Execute(row, DELETE_ROW));
    EXPECT_EQ(Select(L"SELECT * FROM `CustomAction`"), Rows());
}

TEST_F(RowExecuteTest, AnInsertedSequenceRowStandsInItsTable)
{
    auto row = Sequence();
    EXPECT_TRUE(Execute(row, INSERT));
    EXPECT_EQ(Select(L"SELECT * FROM `InstallExecuteSequence`"), (Rows{{L"act", L"cond", L"1"}}));
}

TEST_F(RowExecuteTest, AnUpdatedSequenceRowHasItsNewConditionAndNumber)
{
    auto row = Sequence();
    ASSERT_TRUE(Execute(row, INSERT));
    row.Condition = L"new";
    row.Sequence = 1402;
    EXPECT_TRUE(Execute(row, UPDATE));
    EXPECT_EQ(Select(L"SELECT * FROM `InstallExecuteSequence`"), (Rows{{L"act", L"new", L"1402"}}));
}

TEST_F(RowExecuteTest, ADeletedSequenceRowIsGone)
{
    auto row = Sequence();
    ASSERT_TRUE(Execute(row, INSERT));
    EXPECT_TRUE(Execute(row, DELETE_ROW));
    EXPECT_EQ(Select(L"SELECT * FROM `InstallExecuteSequence`"), Rows());
}

TEST_F(RowExecuteTest, TheStatementThatRanIsKept)
{
    auto row = CreateFolder();
    ASSERT_TRUE(Execute(row, DELETE_ROW));
    EXPECT_EQ(row.m_strStatement,
              CString(L"DELETE FROM `CreateFolder` WHERE `Directory_`='dir' AND `Component_`='comp'"));
}

TEST_F(RowExecuteTest, DeletingARowThatIsNotThereSucceeds)
{
    auto row = Component();
    EXPECT_TRUE(Execute(row, DELETE_ROW));
}

TEST_F(RowExecuteTest, InsertingAKeyTwiceFailsAndKeepsTheFirst)
{
    auto row = Component();
    ASSERT_TRUE(Execute(row, INSERT));
    row.Directory_ = L"other";
    EXPECT_FALSE(Execute(row, INSERT));
    EXPECT_EQ(Select(L"SELECT `Component`,`Directory_` FROM `Component`"), (Rows{{L"comp", L"dir"}}));
}

// ---- the name of a shortcut --------------------------------------------------------------------------------------

namespace {

// A file of the name in the current folder, gone with the object.
class FileInCurrentFolder
{
public:
    FileInCurrentFolder(const ScratchFolder& folder, const CString& name)
    {
        GetCurrentDirectoryW(MAX_PATH, m_before);
        WriteFileBytes(static_cast<const CString&>(folder) + name, "content");
        SetCurrentDirectoryW(static_cast<const CString&>(folder));
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
    const ScratchFolder folder(L"names");
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
    const ScratchFolder folder(L"names");
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

// The text that the row binds; "(no record)" when it makes none.
template <class Data>
CString BoundText(Data row, MsiRowAction action)
{
    row.m_action = action;
    InstallerHandle made = 12345;
    EXPECT_TRUE(row.BuildRecord(made));
    const CInstallerHandle record(made);
    if (!record) {
        return L"(no record)";
    }
    EXPECT_EQ(MsiRecordGetFieldCount(record.get()), 1u);
    wchar_t text[100] = L"";
    DWORD size = 100;
    MsiRecordGetStringW(record.get(), 1, text, &size);
    return text;
}

} // namespace

class RecordTest : public testing::Test
{
protected:
    void TearDown() override { EXPECT_EQ(MsiCloseAllHandles(), 0u) << "installer handles were left open"; }
};

TEST_F(RecordTest, DirectoriesBindDefaultDirUnlessTheyAreDeleted)
{
    EXPECT_EQ(BoundText(Directory(), INSERT), CString(L"IT'S~1|It's long"));
    EXPECT_EQ(BoundText(Directory(), UPDATE), CString(L"IT'S~1|It's long"));
    EXPECT_EQ(BoundText(Directory(), DELETE_ROW), CString(L"(no record)"));
}

TEST_F(RecordTest, ShortcutsBindNameUnlessTheyAreDeleted)
{
    EXPECT_EQ(BoundText(Shortcut(), INSERT), CString(L"It's a name"));
    EXPECT_EQ(BoundText(Shortcut(), UPDATE), CString(L"It's a name"));
    EXPECT_EQ(BoundText(Shortcut(), DELETE_ROW), CString(L"(no record)"));
}

TEST_F(RecordTest, CustomFilesBindSourceFileNameUnlessTheyAreDeleted)
{
    EXPECT_EQ(BoundText(CustomFile(), INSERT), CString(L"C:\\it's\\source"));
    EXPECT_EQ(BoundText(CustomFile(), UPDATE), CString(L"C:\\it's\\source"));
    EXPECT_EQ(BoundText(CustomFile(), DELETE_ROW), CString(L"(no record)"));
}

TEST_F(RecordTest, FilesBindFileNameOnInsertAlone)
{
    EXPECT_EQ(BoundText(File(), INSERT), CString(L"IT'S~1|It's long"));
    EXPECT_EQ(BoundText(File(), UPDATE), CString(L"(no record)"));
    EXPECT_EQ(BoundText(File(), DELETE_ROW), CString(L"(no record)"));
}

TEST_F(RecordTest, OtherRowsBindNothing)
{
    EXPECT_EQ(BoundText(Component(), INSERT), CString(L"(no record)"));
    EXPECT_EQ(BoundText(CreateFolder(), INSERT), CString(L"(no record)"));
    EXPECT_EQ(BoundText(Feature(), INSERT), CString(L"(no record)"));
    EXPECT_EQ(BoundText(FeatureComponent(), INSERT), CString(L"(no record)"));
    EXPECT_EQ(BoundText(CustomAction(), INSERT), CString(L"(no record)"));
    EXPECT_EQ(BoundText(Sequence(), INSERT), CString(L"(no record)"));
}
