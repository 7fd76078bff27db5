#include "paths/path_table.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <set>
#include <vector>

namespace {

struct Heading
{
    unsigned int label, text;
    int image;
};

struct Row
{
    Heading parent, heading;
    const wchar_t* property;
    std::uint32_t flags;
};

constexpr Heading TOP = {0, 0, 0};
constexpr Heading MENUS = {341, 348, 3};
constexpr Heading PRINTERS = {344, 351, 21};
constexpr Heading TEMPLATES = {462, 463, 21};
constexpr Heading ACTIONS = {247, 250, 21};

// The tree as the strings, pictures and flags of its nodes, in figures.
constexpr Row ROWS[] = {
    {TOP, {340, 443, 17}, L"ZOLTProfile_SupportPath", 0x172},
    {MENUS, {478, 447, 3}, L"ZOLTProfile_MenuFile", 0x24},
    {MENUS, {448, 449, 3}, L"ZOLTProfile_EnterpriseMenuFile", 0x24},
    {TOP, {450, 451, 10}, L"ZOLTProfile_CustomDictionary", 0x01000024},
    {TOP, {452, 453, 11}, L"ZOLTProfile_AltFont", 0x00040024},
    {TOP, {454, 455, 12}, L"ZOLTProfile_FontMapFile", 0x00004024},
    {PRINTERS, {345, 352, 5}, L"ZOLTProfile_PrinterConfigDir", 0x22},
    {PRINTERS, {347, 354, 5}, L"ZOLTProfile_PrinterDescDir", 0x22},
    {PRINTERS, {346, 353, 5}, L"ZOLTProfile_PrinterStyleSheetDir", 0x22},
    {TOP, {456, 457, 19}, L"ZOLTProfile_SaveFilePath", 0x22},
    {TOP, {458, 459, 17}, L"ZOLTProfile_ColorBookLocation", 0x172},
    {TOP, {460, 461, 19}, L"ZOLTProfile_DatabaseWorkSpacePath", 0x22},
    {TEMPLATES, {342, 349, 19}, L"ZOLTProfile_TemplatePath", 0x22},
    {TEMPLATES, {464, 465, 19}, L"ZOLTProfile_SheetSetTemplatePath", 0x22},
    {TEMPLATES, {466, 467, 30}, L"ZOLTProfile_QnewTemplate", 0x10000024},
    {TEMPLATES, {468, 469, 30}, L"ZOLTProfile_AlternativePageSetUpsTemplate", 0x10000024},
    {TOP, {470, 471, 17}, L"ZOLTProfile_ToolPaletteFolder", 0x172},
    {TOP, {472, 446, 19}, L"ZOLTProfile_LogFilePath", 0x22},
    {TOP, {473, 445, 19}, L"ZOLTProfile_PlotLogPath", 0x22},
    {TOP, {474, 444, 19}, L"ZOLTProfile_TempDirectory", 0x22},
    {TOP, {343, 350, 19}, L"ZOLTProfile_XrefTempDir", 0x22},
    {TOP, {475, 476, 17}, L"ZOLTProfile_TEXMAPS", 0x172},
    {TOP, {477, 355, 19}, L"ZOLTProfile_WebGrabDir", 0x22},
    {ACTIONS, {248, 627, 19}, L"ZOLTProfile_ActionsRecordingFilePath", 0x22},
    {ACTIONS, {249, 628, 19}, L"ZOLTProfile_AdditionalActionsFileLocation", 0x22},
    {TOP, {18, 19, 19}, L"ZOLTProfile_DGNMappingPath", 0x22},
};

std::vector<CString> NamesOf(const wchar_t* spaced)
{
    std::vector<CString> names;
    CString rest(spaced);
    while (!rest.IsEmpty()) {
        const int blank = rest.Find(L' ');
        names.push_back(L"ZOLTProfile_" + (blank < 0 ? rest : rest.Left(blank)));
        rest = blank < 0 ? CString() : rest.Mid(blank + 1);
    }
    return names;
}

void ExpectHeading(const PathHeading& heading, const Heading& expected)
{
    EXPECT_EQ(heading.label, expected.label);
    EXPECT_EQ(heading.text, expected.text);
    EXPECT_EQ(heading.image, expected.image);
}

} // namespace

TEST(PathTableTest, EveryRowOfTheTreeHasItsParentHeadingPropertyAndFlags)
{
    ASSERT_EQ(std::size(ROWS), 26u);
    ASSERT_EQ(PATH_TABLE.size(), 26u);
    for (int index = 0; index < 26; ++index) {
        SCOPED_TRACE(Utf8(ROWS[index].property));
        const PathRow& row = PATH_TABLE[index];
        ExpectHeading(row.parent, ROWS[index].parent);
        ExpectHeading(row.heading, ROWS[index].heading);
        EXPECT_EQ(CString(PathPropertyName(row.property)), CString(ROWS[index].property));
        EXPECT_EQ(row.valueFlags, ROWS[index].flags);
        EXPECT_EQ(row.HasParent(), ROWS[index].parent.label != 0);
        EXPECT_EQ(row.IsList(), ROWS[index].flags == 0x172);
        EXPECT_EQ(row.GetHeadingFlags(), ROWS[index].flags == 0x172 ? 0x111u : 0x1u);
    }
}

TEST(PathTableTest, TheTreeHas19NodesOnTopAndEachPathOnce)
{
    int onTop = 0;
    std::set<PathProperty> shown;
    unsigned int parentBefore = 0;
    for (const PathRow& row : PATH_TABLE) {
        const bool sharesTheNodeBefore = row.HasParent() && row.parent.label == parentBefore;
        onTop += sharesTheNodeBefore ? 0 : 1;
        parentBefore = row.parent.label;
        shown.insert(row.property);
    }
    EXPECT_EQ(onTop, 19);
    EXPECT_EQ(shown.size(), 26u);
}

TEST(PathTableTest, TheDeclaredOrderIsThatOfTheProperties)
{
    const std::vector<CString> names =
        NamesOf(L"MenuFile EnterpriseMenuFile SupportPath PrinterConfigDir PrinterDescDir "
                L"PrinterStyleSheetDir TemplatePath TempDirectory XrefTempDir ToolPaletteFolder "
                L"CustomDictionary AltFont QnewTemplate WebGrabDir FontMapFile SaveFilePath LogFilePath "
                L"PlotLogPath ColorBookLocation DatabaseWorkSpacePath SheetSetTemplatePath "
                L"AlternativePageSetUpsTemplate TEXMAPS ActionsRecordingFilePath "
                L"AdditionalActionsFileLocation DGNMappingPath");
    ASSERT_EQ(names.size(), static_cast<std::size_t>(PATH_COUNT));
    for (int index = 0; index < PATH_COUNT; ++index) {
        EXPECT_EQ(CString(PathPropertyName(static_cast<PathProperty>(index))), names[index]);
    }
}

TEST(PathTableTest, ReadingAndStoringGoInAnOrderOfTheirOwn)
{
    const std::vector<CString> names =
        NamesOf(L"SupportPath MenuFile EnterpriseMenuFile PrinterConfigDir PrinterDescDir "
                L"PrinterStyleSheetDir TemplatePath TempDirectory XrefTempDir CustomDictionary FontMapFile "
                L"AltFont QnewTemplate WebGrabDir ToolPaletteFolder SaveFilePath LogFilePath PlotLogPath "
                L"ColorBookLocation DatabaseWorkSpacePath SheetSetTemplatePath AlternativePageSetUpsTemplate "
                L"TEXMAPS ActionsRecordingFilePath AdditionalActionsFileLocation DGNMappingPath");
    std::vector<CString> stored;
    for (const PathProperty property : PATH_STORE_ORDER) {
        stored.push_back(PathPropertyName(property));
    }
    EXPECT_EQ(stored, names);
}

TEST(PathTableTest, EveryFlagHasTheValueThatNodesKeep)
{
    EXPECT_EQ(PNF_GROUP, 0x1u);
    EXPECT_EQ(PNF_FOLDER, 0x2u);
    EXPECT_EQ(PNF_FILE, 0x4u);
    EXPECT_EQ(PNF_ADDABLE, 0x10u);
    EXPECT_EQ(PNF_REMOVABLE, 0x20u);
    EXPECT_EQ(PNF_MOVABLE, 0x40u);
    EXPECT_EQ(PNF_LIST_ENTRY, 0x100u);
    EXPECT_EQ(PNF_FONTMAP, 0x4000u);
    EXPECT_EQ(PNF_NO_EXIST_CHECK, 0x40000u);
    EXPECT_EQ(PNF_READ_ONLY_A, 0x200000u);
    EXPECT_EQ(PNF_READ_ONLY_B, 0x400000u);
    EXPECT_EQ(PNF_DICTIONARY, 0x1000000u);
    EXPECT_EQ(PNF_URL, 0x8000000u);
    EXPECT_EQ(PNF_TEMPLATE, 0x10000000u);
}

TEST(PathTableTest, NoRowIsReadOnlyOrAnAddressAndOnlyTheAlternateFontMayBeMissing)
{
    for (const PathRow& row : PATH_TABLE) {
        EXPECT_EQ(row.valueFlags & (PNF_READ_ONLY_A | PNF_READ_ONLY_B | PNF_URL | PNF_GROUP), 0u);
        EXPECT_EQ((row.valueFlags & PNF_NO_EXIST_CHECK) != 0, row.property == PATH_ALT_FONT)
            << Utf8(PathPropertyName(row.property));
    }
}

TEST(PathTableTest, AValueHasThePictureOfValues)
{
    EXPECT_EQ(PATH_VALUE_IMAGE, 29);
}
