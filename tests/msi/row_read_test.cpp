// Reading rows from records, by mask, and walking queries.
#include "msi/msi_rows.h"
#include "tests/installer/database_fixture.h"

#include <algorithm>
#include <functional>
#include <initializer_list>
#include <variant>

namespace {

// A field of a record to make: a text, a number, or nothing for null.
using Field = std::variant<std::monostate, CString, int>;

CInstallerHandle MakeRecord(std::initializer_list<Field> fields)
{
    CInstallerHandle record(MsiCreateRecord(static_cast<UINT>(fields.size())));
    UINT column = 0;
    for (const Field& field : fields) {
        ++column;
        if (const CString* text = std::get_if<CString>(&field)) {
            EXPECT_EQ(MsiRecordSetStringW(record.get(), column, *text), 0u);
        } else if (const int* number = std::get_if<int>(&field)) {
            EXPECT_EQ(MsiRecordSetInteger(record.get(), column, *number), 0u);
        }
    }
    return record;
}

Field T(const wchar_t* text)
{
    return CString(text);
}

const Field NOTHING;

class RowReadTest : public DatabaseTest
{
protected:
    template <class Data>
    bool Read(Data& row, unsigned int mask, std::initializer_list<Field> fields)
    {
        const CInstallerHandle record = MakeRecord(fields);
        return row.Read(Database(), record.get(), mask);
    }
    // The first field of a record of one, read by one bit of the mask.
    template <class Data>
    Data ReadText(unsigned int bit)
    {
        Data row;
        EXPECT_TRUE(Read(row, bit, {T(L"value")})) << bit;
        return row;
    }
    template <class Data>
    Data ReadNumber(unsigned int bit)
    {
        Data row;
        EXPECT_TRUE(Read(row, bit, {77})) << bit;
        return row;
    }
};

const CString VALUE = L"value";

} // namespace

// ---- a bit a column ----------------------------------------------------------------------------------------------

TEST_F(RowReadTest, ComponentWithMask4TakesDirectoryFromTheFirstColumn)
{
    ComponentData row;
    EXPECT_TRUE(Read(row, 4, {T(L"INSTALLDIR"), T(L"second")}));
    EXPECT_EQ(row.Directory_, CString(L"INSTALLDIR"));
    EXPECT_EQ(row.Component, CString());
}

TEST_F(RowReadTest, BitsOfComponent)
{
    EXPECT_EQ(ReadText<ComponentData>(1).Component, VALUE);
    EXPECT_EQ(ReadText<ComponentData>(2).ComponentId, VALUE);
    EXPECT_EQ(ReadText<ComponentData>(4).Directory_, VALUE);
    EXPECT_EQ(ReadNumber<ComponentData>(8).Attributes, 77);
    EXPECT_EQ(ReadText<ComponentData>(16).Condition, VALUE);
    EXPECT_EQ(ReadText<ComponentData>(32).KeyPath, VALUE);
}

TEST_F(RowReadTest, BitsOfDirectory)
{
    EXPECT_EQ(ReadText<DirectoryData>(1).Directory, VALUE);
    EXPECT_EQ(ReadText<DirectoryData>(2).Directory_Parent, VALUE);
    EXPECT_EQ(ReadText<DirectoryData>(4).DefaultDir, VALUE);
}

TEST_F(RowReadTest, BitsOfCreateFolderAreCrossed)
{
    EXPECT_EQ(ReadText<CreateFolderData>(1).Component_, VALUE);
    EXPECT_EQ(ReadText<CreateFolderData>(2).Directory_, VALUE);
}

TEST_F(RowReadTest, BitsOfFeature)
{
    EXPECT_EQ(ReadText<FeatureData>(1).Feature, VALUE);
    EXPECT_EQ(ReadText<FeatureData>(2).Feature_Parent, VALUE);
    EXPECT_EQ(ReadText<FeatureData>(4).Title, VALUE);
    EXPECT_EQ(ReadText<FeatureData>(8).Description, VALUE);
    EXPECT_EQ(ReadNumber<FeatureData>(16).Display, 77);
    EXPECT_EQ(ReadNumber<FeatureData>(32).Level, 77);
    EXPECT_EQ(ReadText<FeatureData>(64).Directory_, VALUE);
    EXPECT_EQ(ReadNumber<FeatureData>(128).Attributes, 77);
}

TEST_F(RowReadTest, BitsOfFeatureComponents)
{
    EXPECT_EQ(ReadText<FeatureComponentsData>(1).Feature_, VALUE);
    EXPECT_EQ(ReadText<FeatureComponentsData>(2).Component_, VALUE);
}

TEST_F(RowReadTest, BitsOfFile)
{
    EXPECT_EQ(ReadText<FileData>(1).File, VALUE);
    EXPECT_EQ(ReadText<FileData>(2).Component_, VALUE);
    EXPECT_EQ(ReadText<FileData>(4).FileName, VALUE);
    EXPECT_EQ(ReadNumber<FileData>(8).FileSize, 77);
    EXPECT_EQ(ReadText<FileData>(16).Version, VALUE);
    EXPECT_EQ(ReadText<FileData>(32).Language, VALUE);
    EXPECT_EQ(ReadNumber<FileData>(64).Attributes, 77);
    EXPECT_EQ(ReadNumber<FileData>(128).Sequence, 77);
}

TEST_F(RowReadTest, BitsOfShortcut)
{
    EXPECT_EQ(ReadText<ShortcutData>(1).Shortcut, VALUE);
    EXPECT_EQ(ReadText<ShortcutData>(2).Directory_, VALUE);
    EXPECT_EQ(ReadText<ShortcutData>(4).Name, VALUE);
    EXPECT_EQ(ReadText<ShortcutData>(8).Component_, VALUE);
    EXPECT_EQ(ReadText<ShortcutData>(16).Target, VALUE);
    EXPECT_EQ(ReadText<ShortcutData>(32).Arguments, VALUE);
    EXPECT_EQ(ReadText<ShortcutData>(64).Description, VALUE);
    EXPECT_EQ(ReadNumber<ShortcutData>(128).Hotkey, 77);
    EXPECT_EQ(ReadText<ShortcutData>(256).Icon_, VALUE);
    EXPECT_EQ(ReadNumber<ShortcutData>(512).IconIndex, 77);
    EXPECT_EQ(ReadNumber<ShortcutData>(1024).ShowCmd, 77);
    EXPECT_EQ(ReadText<ShortcutData>(2048).WkDir, VALUE);
}

TEST_F(RowReadTest, BitsOfCustomFile)
{
    EXPECT_EQ(ReadText<CustomFileData>(1).Component_, VALUE);
    EXPECT_EQ(ReadText<CustomFileData>(2).SourceFileName, VALUE);
    EXPECT_EQ(ReadNumber<CustomFileData>(4).Flags, 77);
}

TEST_F(RowReadTest, BitsOfCustomAction)
{
    EXPECT_EQ(ReadText<CustomActionData>(1).Action, VALUE);
    EXPECT_EQ(ReadNumber<CustomActionData>(2).Type, 77);
    EXPECT_EQ(ReadText<CustomActionData>(4).Source, VALUE);
    EXPECT_EQ(ReadText<CustomActionData>(8).Target, VALUE);
}

TEST_F(RowReadTest, BitsOfInstallExecuteSequence)
{
    EXPECT_EQ(ReadText<InstallExecuteSequenceData>(1).Action, VALUE);
    EXPECT_EQ(ReadText<InstallExecuteSequenceData>(2).Condition, VALUE);
    EXPECT_EQ(ReadNumber<InstallExecuteSequenceData>(4).Sequence, 77);
}

TEST_F(RowReadTest, BitsOfTarnDirectoryMap)
{
    EXPECT_EQ(ReadText<TarnDirectoryMapData>(1).Directory_, VALUE);
    EXPECT_EQ(ReadText<TarnDirectoryMapData>(2).LocalString, VALUE);
    EXPECT_EQ(ReadNumber<TarnDirectoryMapData>(4).Flags, 77);
}

// ---- whole records -----------------------------------------------------------------------------------------------

TEST_F(RowReadTest, AWholeComponentIsReadInTheOrderOfItsFields)
{
    ComponentData row;
    EXPECT_TRUE(Read(row, 63, {T(L"a"), T(L"b"), T(L"c"), 4, T(L"e"), T(L"f")}));
    EXPECT_EQ(row.BuildStatement(),
              CString(L"INSERT INTO `Component` (`Component`,`ComponentId`,`Directory_`,`Attributes`,"
                      L"`Condition`,`KeyPath`) VALUES ('a','b','c','4','e','f')"));
}

TEST_F(RowReadTest, AWholeFileIsReadInTheOrderOfItsFields)
{
    FileData row;
    EXPECT_TRUE(Read(row, 255, {T(L"a"), T(L"b"), T(L"c"), 4, T(L"e"), T(L"f"), 7, 8}));
    EXPECT_EQ(row.FileName, CString(L"c"));
    EXPECT_EQ(row.BuildStatement(), CString(L"INSERT INTO `File` (`FileName`,`File`,`Component_`,`FileSize`,"
                                            L"`Version`,`Language`,`Attributes`,`Sequence`) VALUES (?, "
                                            L"'a','b','4','e','f','7','8')"));
}

TEST_F(RowReadTest, AWholeShortcutIsReadInTheOrderOfItsFields)
{
    ShortcutData row;
    EXPECT_TRUE(
        Read(row, 4095,
             {T(L"a"), T(L"b"), T(L"c"), T(L"d"), T(L"e"), T(L"f"), T(L"g"), 8, T(L"i"), 10, 11, T(L"l")}));
    EXPECT_EQ(row.Hotkey, 8);
    EXPECT_EQ(row.IconIndex, 10);
    EXPECT_EQ(row.ShowCmd, 11);
    EXPECT_EQ(row.BuildStatement(),
              CString(L"INSERT INTO `Shortcut` (`Name`,`Shortcut`,`Directory_`,`Component_`,`Target`,"
                      L"`Arguments`,`Description`,`Hotkey`,`Icon_`,`IconIndex`,`ShowCmd`,`WkDir`) VALUES "
                      L"(?,'a','b','d','e','f','g',Null,'i',Null,Null,'l')"));
}

TEST_F(RowReadTest, ColumnsOutsideTheMaskKeepTheirFields)
{
    ComponentData row;
    row.ComponentId = L"kept";
    row.Attributes = 5;
    EXPECT_TRUE(Read(row, 1 | 4, {T(L"comp"), T(L"dir")}));
    EXPECT_EQ(row.Component, CString(L"comp"));
    EXPECT_EQ(row.Directory_, CString(L"dir"));
    EXPECT_EQ(row.ComponentId, CString(L"kept"));
    EXPECT_EQ(row.Attributes, 5);
}

TEST_F(RowReadTest, AnEmptyMaskReadsNothingAndSucceeds)
{
    FileData row;
    EXPECT_TRUE(Read(row, 0, {T(L"a")}));
    EXPECT_EQ(row.File, CString());
}

TEST_F(RowReadTest, BitsBeyondTheFieldsAreIgnored)
{
    DirectoryData row;
    EXPECT_TRUE(Read(row, 0xFFFFFFFF, {T(L"a"), T(L"b"), T(L"c")}));
    EXPECT_EQ(row.DefaultDir, CString(L"c"));
}

// ---- nulls and failures ------------------------------------------------------------------------------------------

TEST_F(RowReadTest, ANullTypeFailsACustomActionWhoseActionWasReadWell)
{
    CustomActionData row;
    EXPECT_FALSE(Read(row, 15, {T(L"act"), NOTHING, T(L"src"), T(L"tgt")}));
    EXPECT_EQ(row.Action, CString(L"act"));
}

TEST_F(RowReadTest, TextsBehindANullNumberAreSkipped)
{
    CustomActionData row;
    EXPECT_FALSE(Read(row, 15, {T(L"act"), NOTHING, T(L"src"), T(L"tgt")}));
    EXPECT_EQ(row.Source, CString());
    EXPECT_EQ(row.Target, CString());
}

TEST_F(RowReadTest, ALaterNumberMakesUpForAnEarlierFailure)
{
    FeatureData row; // Display is null, Level is not
    EXPECT_TRUE(Read(row, 16 | 32, {NOTHING, 3}));
    EXPECT_EQ(row.Level, 3);
}

TEST_F(RowReadTest, ALaterNullNumberFailsWhatWentWell)
{
    FeatureData row;
    EXPECT_FALSE(Read(row, 16 | 32, {2, NOTHING}));
    EXPECT_EQ(row.Display, 2);
}

// Version and Language are skipped, and Attributes is then taken from the column behind FileSize.
TEST_F(RowReadTest, ASkippedTextDoesNotMoveTheColumns)
{
    FileData row;
    EXPECT_TRUE(Read(row, 8 | 16 | 32 | 64, {NOTHING, 512, T(L"not read"), 9}));
    EXPECT_EQ(row.Attributes, 512);
    EXPECT_EQ(row.Version, CString());
}

TEST_F(RowReadTest, AShortcutWhoseThreeNumbersAreNullReadsWell)
{
    ShortcutData row;
    EXPECT_TRUE(Read(row, 4095,
                     {T(L"a"), T(L"b"), T(L"c"), T(L"d"), T(L"e"), T(L"f"), T(L"g"), NOTHING, T(L"i"),
                      NOTHING, NOTHING, T(L"l")}));
    EXPECT_EQ(row.Icon_, CString(L"i"));
    EXPECT_EQ(row.WkDir, CString(L"l"));
}

TEST_F(RowReadTest, ANullTextKeepsThePreviousRowsValue)
{
    DirectoryData row;
    row.Directory_Parent = L"of the row before";
    EXPECT_TRUE(Read(row, 7, {T(L"TARGETDIR"), NOTHING, T(L"SourceDir")}));
    EXPECT_EQ(row.Directory_Parent, CString(L"of the row before"));
    EXPECT_EQ(row.DefaultDir, CString(L"SourceDir"));
}

TEST_F(RowReadTest, ATextOf70000CharactersIsReadWhole)
{
    const CString text(L'x', 70000);
    CustomFileData row;
    EXPECT_TRUE(Read(row, 3, {T(L"comp"), text}));
    EXPECT_EQ(row.SourceFileName.GetLength(), 70000);
    EXPECT_TRUE(row.SourceFileName == text);
}

// ---- property references -----------------------------------------------------------------------------------------

TEST_F(RowReadTest, DescriptionsOfFeaturesAndShortcutsAreExpanded)
{
    Run(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('ProductName','Zolt 2027')");
    FeatureData feature;
    EXPECT_TRUE(Read(feature, 8, {T(L"Files of [ProductName].")}));
    EXPECT_EQ(feature.Description, CString(L"Files of Zolt 2027."));
    ShortcutData shortcut;
    EXPECT_TRUE(Read(shortcut, 64, {T(L"Starts [ProductName]")}));
    EXPECT_EQ(shortcut.Description, CString(L"Starts Zolt 2027"));
}

TEST_F(RowReadTest, OtherTextsAreNotExpanded)
{
    Run(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('INSTALLDIR','C:\\x')");
    ShortcutData row;
    EXPECT_TRUE(Read(row, 16 | 32, {T(L"[INSTALLDIR]"), T(L"[INSTALLDIR]")}));
    EXPECT_EQ(row.Target, CString(L"[INSTALLDIR]"));
    EXPECT_EQ(row.Arguments, CString(L"[INSTALLDIR]"));
}

TEST_F(RowReadTest, ANullDescriptionExpandsWhatTheFieldHeld)
{
    Run(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('A','x')");
    FeatureData row;
    row.Description = L"[A]";
    EXPECT_TRUE(Read(row, 8, {NOTHING}));
    EXPECT_EQ(row.Description, CString(L"x"));
}

TEST_F(RowReadTest, AReferenceWithAnApostropheBecomesNothing)
{
    FeatureData row;
    EXPECT_TRUE(Read(row, 8, {T(L"a [it's] b")}));
    EXPECT_EQ(row.Description, CString(L"a  b"));
}

TEST_F(RowReadTest, AReferenceOf5000CharactersBecomesNothing)
{
    FeatureData row;
    EXPECT_TRUE(Read(row, 8, {L"a [" + CString(L'n', 5000) + L"] b"}));
    EXPECT_EQ(row.Description, CString(L"a  b"));
}

// ---- walking a query ---------------------------------------------------------------------------------------------

namespace {

class CursorTest : public RowReadTest
{
protected:
    void SetUp() override
    {
        RowReadTest::SetUp();
        for (const wchar_t* row : {L"'INSTALLDIR','Program',4", L"'FONTS','Fonts',2", L"'HELP',Null,0"}) {
            Run(CString(L"INSERT INTO `TarnDirectoryMap` (`Directory_`,`LocalString`,`Flags`) VALUES (") +
                row + L")");
        }
        for (const wchar_t* row : {L"'c1','INSTALLDIR'", L"'c2','FONTS'", L"'c3','INSTALLDIR'"}) {
            Run(CString(L"INSERT INTO `Component` (`Component`,`Directory_`,`Attributes`) VALUES (") + row +
                L",0)");
        }
        Run(L"INSERT INTO `TarnCustomFile` (`Component_`,`SourceFileName`,`Flags`) VALUES ('c1','C:\\a',0)");
        Run(L"INSERT INTO `TarnCustomFile` (`Component_`,`SourceFileName`,`Flags`) VALUES ('c2','folder',2)");
    }

    // One field of every row of the query, sorted.
    template <class Data>
    std::vector<CString> Walk(const wchar_t* query, unsigned int mask, CString Data::*field)
    {
        std::vector<CString> texts;
        MsiRowCursor cursor(Database(), query, mask);
        for (Data row; cursor.Next(row); row = {}) {
            texts.push_back(row.*field);
        }
        std::sort(texts.begin(), texts.end());
        return texts;
    }
};

using Texts = std::vector<CString>;

} // namespace

TEST_F(CursorTest, TheWholeDirectoryMapByMask7)
{
    const Texts keys = Walk<TarnDirectoryMapData>(
        L"SELECT * FROM `TarnDirectoryMap`", 7,
        static_cast<CString TarnDirectoryMapData::*>(&TarnDirectoryMapColumns::Directory_));
    EXPECT_EQ(keys, (Texts{L"FONTS", L"HELP", L"INSTALLDIR"}));
}

TEST_F(CursorTest, TheFlagsOfTheDirectoryMapByMask5)
{
    int all = 0;
    MsiRowCursor cursor(Database(), L"SELECT `Directory_`, `Flags` FROM `TarnDirectoryMap`", 5);
    for (TarnDirectoryMapData row; cursor.Next(row); row = {}) {
        all += row.Flags;
        EXPECT_NE(row.Directory_, CString());
        EXPECT_EQ(row.LocalString, CString());
    }
    EXPECT_EQ(all, 6);
}

TEST_F(CursorTest, OneTextOfTheDirectoryMapByMask2)
{
    MsiRowCursor cursor(Database(),
                        L"SELECT `LocalString` FROM `TarnDirectoryMap` where `Directory_`='FONTS'", 2);
    TarnDirectoryMapData row;
    EXPECT_TRUE(cursor.Next(row));
    EXPECT_EQ(row.LocalString, CString(L"Fonts"));
    EXPECT_FALSE(cursor.Next(row));
}

TEST_F(CursorTest, TheDirectoriesOfAllComponentsOnceEachByMask4)
{
    EXPECT_EQ(Walk<ComponentData>(L"SELECT DISTINCT `Directory_` FROM `Component`", 4,
                                  static_cast<CString ComponentData::*>(&ComponentColumns::Directory_)),
              (Texts{L"FONTS", L"INSTALLDIR"}));
}

TEST_F(CursorTest, TheDirectoryOfOneComponentByMask4)
{
    EXPECT_EQ(Walk<ComponentData>(L"SELECT `Directory_` FROM `Component` WHERE `Component`='c2'", 4,
                                  static_cast<CString ComponentData::*>(&ComponentColumns::Directory_)),
              (Texts{L"FONTS"}));
}

TEST_F(CursorTest, TheCustomFilesByMask3)
{
    EXPECT_EQ(
        Walk<CustomFileData>(L"SELECT * FROM `TarnCustomFile` WHERE `Flags`=0", 3,
                             static_cast<CString CustomFileData::*>(&CustomFileColumns::SourceFileName)),
        (Texts{L"C:\\a"}));
}

// The two joins by which a user's additions are found again.
TEST_F(CursorTest, TheDrivesOfAUserByAJoinOfTwoTablesAndMask7)
{
    for (const wchar_t* row :
         {L"'TARN_1','TARGETDIR','DRIVE_D'", L"'OTHER','TARGETDIR','x'", L"'SUB','OTHER','y'"}) {
        Run(CString(L"INSERT INTO `Directory` (`Directory`,`Directory_Parent`,`DefaultDir`) VALUES (") + row +
            L")");
    }
    Run(L"INSERT INTO `CustomAction` (`Action`,`Type`,`Source`,`Target`) VALUES ('TARN_1',51,'TARN_1','D:')");
    Run(L"INSERT INTO `CustomAction` (`Action`,`Type`,`Source`,`Target`) VALUES ('SUB',51,'SUB','D:')");
    MsiRowCursor cursor(
        Database(),
        L"SELECT `Directory`.`Directory`,`Directory`.`Directory_Parent`,`Directory`.`DefaultDir` "
        L"FROM `Directory`,`CustomAction` "
        L"WHERE `CustomAction`.`Action`=`Directory`.`Directory` AND `Directory`.`Directory_Parent` = "
        L"'TARGETDIR'",
        7);
    DirectoryData row;
    ASSERT_TRUE(cursor.Next(row));
    EXPECT_EQ(row.Directory, CString(L"TARN_1"));
    EXPECT_EQ(row.Directory_Parent, CString(L"TARGETDIR"));
    EXPECT_EQ(row.DefaultDir, CString(L"DRIVE_D"));
    EXPECT_FALSE(cursor.Next(row));
}

TEST_F(CursorTest, TheFoldersOfAUserByAJoinOfThreeTablesAndMask7)
{
    Run(L"INSERT INTO `Directory` (`Directory`,`Directory_Parent`,`DefaultDir`) VALUES "
        L"('INSTALLDIR','P','x')");
    Run(L"INSERT INTO `Directory` (`Directory`,`Directory_Parent`,`DefaultDir`) VALUES ('FONTS','P','f')");
    EXPECT_EQ(Walk<DirectoryData>(
                  L"SELECT `Directory`.`Directory`,`Directory`.`Directory_Parent`,`Directory`.`DefaultDir` "
                  L"FROM `Directory`,`Component`,`TarnCustomFile` "
                  L"WHERE `TarnCustomFile`.`Component_`=`Component`.`Component` "
                  L"AND `Component`.`Directory_`=`Directory`.`Directory`",
                  7, static_cast<CString DirectoryData::*>(&DirectoryColumns::Directory)),
              (Texts{L"FONTS", L"INSTALLDIR"})); // of c2 and c1; nobody added c3
}

TEST_F(CursorTest, ANullFlagEndsTheWalkLikeTheEndOfTheRows)
{
    Run(L"DELETE FROM `TarnDirectoryMap` WHERE `Directory_`='INSTALLDIR'");
    Run(L"DELETE FROM `TarnDirectoryMap` WHERE `Directory_`='FONTS'");
    Run(L"UPDATE `TarnDirectoryMap` SET `Flags`=Null");
    MsiRowCursor cursor(Database(), L"SELECT * FROM `TarnDirectoryMap`", 7);
    TarnDirectoryMapData row;
    EXPECT_FALSE(cursor.Next(row));
    EXPECT_EQ(row.Directory_, CString(L"HELP"));
}

TEST_F(CursorTest, ANullQueryHasNoRows)
{
    MsiRowCursor cursor(Database(), nullptr, 7);
    TarnDirectoryMapData row;
    EXPECT_FALSE(cursor.Next(row));
}

TEST_F(CursorTest, AfterTheEndItStaysAtTheEnd)
{
    MsiRowCursor cursor(Database(), L"SELECT `LocalString` FROM `TarnDirectoryMap` WHERE `Directory_`='X'",
                        2);
    TarnDirectoryMapData row;
    EXPECT_FALSE(cursor.Next(row));
    EXPECT_FALSE(cursor.Next(row));
}

// What a view holds is settled when it is run: the row that the walk writes doesn't come up in it.
TEST_F(CursorTest, RowsMayBeWrittenWhileAQueryIsWalked)
{
    int count = 0;
    MsiRowCursor cursor(Database(), L"SELECT `Component` FROM `Component`", 1);
    for (ComponentData row; count < 10 && cursor.Next(row); row = {}) {
        ++count;
        FeatureComponentsData written;
        written.Feature_ = L"feat";
        written.Component_ = row.Component;
        EXPECT_TRUE(written.Execute(Database()));
    }
    EXPECT_EQ(count, 3);
    EXPECT_EQ(Select(L"SELECT * FROM `FeatureComponents`").size(), 3u);
}
