// Every statement as the code builds it, compared with its whole text.
#include "msi/statement_text.h"
#include "tests/msi/row_statement_table.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr MsiRowAction INSERT = MsiRowAction::Insert;
constexpr MsiRowAction DELETE_ROW = MsiRowAction::Delete;

class RowStatementTest : public testing::TestWithParam<RowStatements>
{
};

INSTANTIATE_TEST_SUITE_P(Tables, RowStatementTest, testing::ValuesIn(ROW_STATEMENTS),
                         [](const auto& information) { return std::string(information.param.table); });

} // namespace

TEST_P(RowStatementTest, AnInsertIsBuiltAsItStands)
{
    EXPECT_EQ(GetParam().build(MsiRowAction::Insert), CString(GetParam().insert));
}

TEST_P(RowStatementTest, AnUpdateIsBuiltAsItStands)
{
    EXPECT_EQ(GetParam().build(MsiRowAction::Update), CString(GetParam().update));
}

TEST_P(RowStatementTest, ADeleteIsBuiltAsItStands)
{
    EXPECT_EQ(GetParam().build(MsiRowAction::Delete), CString(GetParam().remove));
}

TEST_P(RowStatementTest, AnUnknownActionHasNoStatement)
{
    EXPECT_EQ(GetParam().build(static_cast<MsiRowAction>(3)), CString());
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
