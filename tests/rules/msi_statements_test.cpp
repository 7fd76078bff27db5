// Every statement as the code builds it, held against its whole text. The values are telling, so that two columns that
// changed places show.
#include "msi/row_statements.h"
#include "msi/statement_text.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

constexpr MsiRowAction INSERT = MsiRowAction::Insert;
constexpr MsiRowAction UPDATE = MsiRowAction::Update;
constexpr MsiRowAction DELETE_ROW = MsiRowAction::Delete;

const ComponentColumns COMPONENT = {L"comp", L"{GUID}", L"dir", 256, L"cond", L"kp"};
const DirectoryColumns DIRECTORY = {L"dir", L"parent", L"SHORT|Long"};
const CreateFolderColumns CREATE_FOLDER = {L"dir", L"comp"};
const FeatureColumns FEATURE = {L"feat", L"parent", L"title", L"desc", 2, 1, L"dir", 16};
const FeatureComponentsColumns FEATURE_COMPONENT = {L"feat", L"comp"};
const FileColumns USER_FILE = {L"file", L"comp", L"SHORT|Long", 1234, L"1.2.3.4", L"1033", 512, 7};
const ShortcutColumns SHORTCUT = {
    L"cut", L"dir", L"SHORT|Long", L"comp", L"[INSTALLDIR]z.exe", L"/a", L"tip", 11, L"icon",
    22,     33,     L"wkdir"};
const CustomFileColumns CUSTOM_FILE = {L"comp", L"C:\\source", 2};
const CustomActionColumns CUSTOM_ACTION = {L"act", 51, L"src", L"tgt"};
const InstallExecuteSequenceColumns SEQUENCE = {L"act", L"cond", 1};

} // namespace

TEST(StatementTest, InsertOfAComponent)
{
    EXPECT_EQ(BuildRowStatement(INSERT, COMPONENT),
              CString(L"INSERT INTO `Component` "
                      L"(`Component`,`ComponentId`,`Directory_`,`Attributes`,`Condition`,`KeyPath`) VALUES "
                      L"('comp','{GUID}','dir','256','cond','kp')"));
}

TEST(StatementTest, UpdateOfAComponentHasABackquoteTooManyAndABareNumber)
{
    EXPECT_EQ(BuildRowStatement(UPDATE, COMPONENT),
              CString(L"UPDATE `Component` SET `ComponentId`='{GUID}',`Directory_`='dir',`Attributes`=256,"
                      L"`Condition`='cond',`KeyPath`='kp'` WHERE `Component`='comp'"));
}

TEST(StatementTest, DeleteOfAComponent)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, COMPONENT),
              CString(L"DELETE FROM `Component` WHERE `Component`='comp'"));
}

TEST(StatementTest, InsertOfACreatedFolder)
{
    EXPECT_EQ(BuildRowStatement(INSERT, CREATE_FOLDER),
              CString(L"INSERT INTO `CreateFolder` (`Directory_`,`Component_`) VALUES ('dir','comp')"));
}

TEST(StatementTest, UpdateOfACreatedFolderIsEmpty)
{
    EXPECT_EQ(BuildRowStatement(UPDATE, CREATE_FOLDER), CString());
}

TEST(StatementTest, DeleteOfACreatedFolder)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, CREATE_FOLDER),
              CString(L"DELETE FROM `CreateFolder` WHERE `Directory_`='dir' AND `Component_`='comp'"));
}

TEST(StatementTest, InsertOfADirectoryBindsDefaultDir)
{
    EXPECT_EQ(BuildRowStatement(INSERT, DIRECTORY),
              CString(L"INSERT INTO `Directory` (`DefaultDir`,`Directory`,`Directory_Parent`) VALUES "
                      L"(?,'dir','parent')"));
}

TEST(StatementTest, UpdateOfADirectoryBindsDefaultDir)
{
    EXPECT_EQ(BuildRowStatement(UPDATE, DIRECTORY),
              CString(L"UPDATE `Directory` SET `DefaultDir`=?, `Directory_Parent`='parent' WHERE "
                      L"`Directory` = 'dir'"));
}

TEST(StatementTest, DeleteOfADirectory)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, DIRECTORY),
              CString(L"DELETE FROM `Directory` WHERE `Directory`='dir'"));
}

TEST(StatementTest, InsertOfAFeatureEndsInABlank)
{
    EXPECT_EQ(BuildRowStatement(INSERT, FEATURE),
              CString(L"INSERT INTO `Feature` (`Feature`, `Feature_Parent`,`Title`,`Description`,`Display`,"
                      L"`Level`,`Directory_`,`Attributes`) VALUES( 'feat', 'parent', 'title', 'desc', '2', "
                      L"'1', 'dir', '16') "));
}

TEST(StatementTest, UpdateOfAFeature)
{
    EXPECT_EQ(BuildRowStatement(UPDATE, FEATURE),
              CString(L"UPDATE `Feature` SET `Feature_Parent`='parent',`Title`='title',`Description`='desc',"
                      L"`Display`='2',`Level`='1',`Directory_`='dir',`Attributes`='16' WHERE "
                      L"`Feature`='feat'"));
}

TEST(StatementTest, DeleteOfAFeatureIsEmpty)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, FEATURE), CString());
}

TEST(StatementTest, InsertOfAFeaturesComponent)
{
    EXPECT_EQ(BuildRowStatement(INSERT, FEATURE_COMPONENT),
              CString(L"INSERT INTO `FeatureComponents` (`Feature_`,`Component_`) VALUES ('feat','comp')"));
}

TEST(StatementTest, UpdateOfAFeaturesComponentIsEmpty)
{
    EXPECT_EQ(BuildRowStatement(UPDATE, FEATURE_COMPONENT), CString());
}

TEST(StatementTest, DeleteOfAFeaturesComponent)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, FEATURE_COMPONENT),
              CString(L"DELETE FROM `FeatureComponents` WHERE `Feature_`='feat' AND `Component_`='comp'"));
}

TEST(StatementTest, InsertOfAFileBindsFileName)
{
    EXPECT_EQ(BuildRowStatement(INSERT, USER_FILE),
              CString(L"INSERT INTO `File` (`FileName`,`File`,`Component_`,`FileSize`,`Version`,`Language`,"
                      L"`Attributes`,`Sequence`) VALUES (?, "
                      L"'file','comp','1234','1.2.3.4','1033','512','7')"));
}

TEST(StatementTest, UpdateOfAFileIsEmpty)
{
    EXPECT_EQ(BuildRowStatement(UPDATE, USER_FILE), CString());
}

TEST(StatementTest, DeleteOfAFile)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, USER_FILE), CString(L"DELETE FROM `File` WHERE `File`='file'"));
}

TEST(StatementTest, InsertOfAShortcutBindsNameAndNeverWritesItsNumbers)
{
    EXPECT_EQ(
        BuildRowStatement(INSERT, SHORTCUT),
        CString(L"INSERT INTO `Shortcut` (`Name`,`Shortcut`,`Directory_`,`Component_`,`Target`,"
                L"`Arguments`,`Description`,`Hotkey`,`Icon_`,`IconIndex`,`ShowCmd`,`WkDir`) VALUES "
                L"(?,'cut','dir','comp','[INSTALLDIR]z.exe','/a','tip',Null,'icon',Null,Null,'wkdir')"));
}

TEST(StatementTest, UpdateOfAShortcutChangesNameAndArgumentsAlone)
{
    EXPECT_EQ(BuildRowStatement(UPDATE, SHORTCUT),
              CString(L"UPDATE `Shortcut` SET `Name`=?,`Arguments`='/a' WHERE `Shortcut`='cut'"));
}

TEST(StatementTest, DeleteOfAShortcut)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, SHORTCUT),
              CString(L"DELETE FROM `Shortcut` WHERE `Shortcut`='cut'"));
}

TEST(StatementTest, InsertOfACustomFileBindsSourceFileName)
{
    EXPECT_EQ(BuildRowStatement(INSERT, CUSTOM_FILE),
              CString(L"INSERT INTO `TarnCustomFile` (`SourceFileName`,`Component_`,`Flags`) VALUES "
                      L"(?,'comp','2')"));
}

TEST(StatementTest, UpdateOfACustomFileEndsInABlank)
{
    EXPECT_EQ(BuildRowStatement(UPDATE, CUSTOM_FILE),
              CString(L"UPDATE `TarnCustomFile` SET `SourceFileName`=?, `Flags`='2' WHERE "
                      L"`Component_`='comp' "));
}

TEST(StatementTest, DeleteOfACustomFile)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, CUSTOM_FILE),
              CString(L"DELETE FROM `TarnCustomFile` WHERE `Component_`='comp'"));
}

TEST(StatementTest, InsertOfACustomAction)
{
    EXPECT_EQ(BuildRowStatement(INSERT, CUSTOM_ACTION),
              CString(L"INSERT INTO `CustomAction` (`Action`,`Type`,`Source`,`Target`) VALUES "
                      L"('act','51','src','tgt')"));
}

TEST(StatementTest, UpdateOfACustomActionEndsInABlank)
{
    EXPECT_EQ(BuildRowStatement(UPDATE, CUSTOM_ACTION),
              CString(L"UPDATE `CustomAction` SET `Type`='51', `Source`='src', `Target`='tgt' WHERE "
                      L"`Action`='act' "));
}

TEST(StatementTest, DeleteOfACustomAction)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, CUSTOM_ACTION),
              CString(L"DELETE FROM `CustomAction` WHERE `Action`='act'"));
}

TEST(StatementTest, InsertOfASequenceRow)
{
    EXPECT_EQ(BuildRowStatement(INSERT, SEQUENCE),
              CString(L"INSERT INTO `InstallExecuteSequence` (`Action`,`Condition`,`Sequence`) VALUES "
                      L"('act','cond','1')"));
}

TEST(StatementTest, UpdateOfASequenceRowWritesItsNumberInDigitsAndEndsInABlank)
{
    EXPECT_EQ(BuildRowStatement(UPDATE, SEQUENCE),
              CString(L"UPDATE `InstallExecuteSequence` SET `Condition`='cond',`Sequence`='1' WHERE "
                      L"`Action`='act' "));
}

TEST(StatementTest, DeleteOfASequenceRow)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, SEQUENCE),
              CString(L"DELETE FROM `InstallExecuteSequence` WHERE `Action`='act'"));
}

TEST(StatementTest, AnUnknownActionHasNoStatement)
{
    const auto unknown = static_cast<MsiRowAction>(3);
    EXPECT_EQ(BuildRowStatement(unknown, COMPONENT), CString());
    EXPECT_EQ(BuildRowStatement(unknown, DIRECTORY), CString());
    EXPECT_EQ(BuildRowStatement(unknown, CREATE_FOLDER), CString());
    EXPECT_EQ(BuildRowStatement(unknown, FEATURE), CString());
    EXPECT_EQ(BuildRowStatement(unknown, FEATURE_COMPONENT), CString());
    EXPECT_EQ(BuildRowStatement(unknown, USER_FILE), CString());
    EXPECT_EQ(BuildRowStatement(unknown, SHORTCUT), CString());
    EXPECT_EQ(BuildRowStatement(unknown, CUSTOM_FILE), CString());
    EXPECT_EQ(BuildRowStatement(unknown, CUSTOM_ACTION), CString());
    EXPECT_EQ(BuildRowStatement(unknown, SEQUENCE), CString());
}

TEST(StatementTest, AnEmptyTextIsTwoApostrophes)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, ComponentColumns()),
              CString(L"DELETE FROM `Component` WHERE `Component`=''"));
}

TEST(StatementTest, TheLeastAndTheGreatestNumberStandInDigits)
{
    FileColumns file;
    file.FileSize = -2147483647 - 1;
    file.Attributes = 2147483647;
    EXPECT_EQ(BuildRowStatement(INSERT, file),
              CString(L"INSERT INTO `File` (`FileName`,`File`,`Component_`,`FileSize`,`Version`,`Language`,"
                      L"`Attributes`,`Sequence`) VALUES (?, '','','-2147483648','','','2147483647','0')"));
}

TEST(StatementTest, ApostrophesAreNotEscaped)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, CustomActionColumns{L"it's", 0, L"", L""}),
              CString(L"DELETE FROM `CustomAction` WHERE `Action`='it's'"));
}

TEST(StatementTest, PlaceholdersInsideAValueStayAsTheyAre)
{
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, CreateFolderColumns{L"%s%d%n%%", L"%s"}),
              CString(L"DELETE FROM `CreateFolder` WHERE `Directory_`='%s%d%n%%' AND `Component_`='%s'"));
}

TEST(StatementTest, AValueOf70000CharactersGoesInWhole)
{
    const CString key(L'k', 70000);
    EXPECT_EQ(BuildRowStatement(DELETE_ROW, FileColumns{key, L"", L"", 0, L"", L"", 0, 0}),
              L"DELETE FROM `File` WHERE `File`='" + key + L"'");
}

TEST(FillTemplateTest, APlaceholderWithoutAValueStaysEmpty)
{
    EXPECT_EQ(FillTemplate(L"a%sb%dc", {CString(L"1")}), CString(L"a1bc"));
}

TEST(FillTemplateTest, ValuesWithoutAPlaceholderAreLeftOut)
{
    EXPECT_EQ(FillTemplate(L"a", {1, 2}), CString(L"a"));
}

TEST(FillTemplateTest, OtherPercentSignsStay)
{
    EXPECT_EQ(FillTemplate(L"100%, %x %", {1}), CString(L"100%, %x %"));
}

TEST(FillTemplateTest, ATextEndsAtItsFirstZero)
{
    EXPECT_EQ(FillTemplate(L"'%s'", {CString(L"ab\0cd", 5)}), CString(L"'ab'"));
}
