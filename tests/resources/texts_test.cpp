// The strings and the icon of every language, and what stands in each for what the pages put in.
#include "include/resource_ids.h"
#include "tests/resources/language_library.h"
#include "tests/support/text.h"
#include "window/drawing_handles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

namespace {

class Texts : public testing::TestWithParam<std::string>
{
protected:
    CLanguageLibrary m_library{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Languages, Texts, testing::ValuesIn(BuiltLanguages()), TestNameOfLanguage);

using Placeholders = std::vector<std::string>;

// What the pages put into which string. All others go to the screen as they stand.
const std::map<int, Placeholders> expectedPlaceholders = {
    {IDS_PLATFORM_NOT_ALLOWED, {"%s"}},
    {IDS_BROWSE_FILE_TITLE, {"%s"}},
    {IDS_PAGE_COUNTER, {"[%INDEX]", "[%TOTAL]"}},
    {IDS_CANCEL_TEMPLATE, {"%1"}},
    {IDS_FAILURE, {"[LogPath]", "[Reason]"}},
    {IDS_LOCATION_UNUSABLE, {"%s"}},
    {IDS_LOG_FOLDER_UNUSABLE, {"%s"}},
    {IDS_REPLACE_DEPLOYMENT, {"%s"}},
    {IDS_STEP, {"%s"}},
    {IDS_LOCATION_ACCESS_DENIED, {"%s"}},
    {IDS_SUPPORT_PATH_TEXT, {"[ProductName]"}},
    {IDS_MENU_FILES_TEXT, {"[ProductName]"}},
    {IDS_MENU_FILE_TEXT, {"[ProductName]"}},
    {IDS_CUSTOM_DICTIONARY_TEXT, {"[ProductName]"}},
    {IDS_PRINTER_FOLDERS_TEXT, {"[ProductName]"}},
    {IDS_PRINTER_CONFIG_TEXT, {"[ProductName]"}},
    {IDS_SAVE_FILE_TEXT, {"[ProductName]"}},
    {IDS_COLOR_BOOK_TEXT, {"[ProductName]"}},
    {IDS_TEMPLATES_TEXT, {"[ProductName]"}},
    {IDS_TEMPLATE_FOLDER_TEXT, {"[ProductName]"}},
    {IDS_SHEET_SET_TEMPLATE_TEXT, {"[ProductName]"}},
    {IDS_QNEW_TEMPLATE_TEXT, {"[ProductName]"}},
    {IDS_TOOL_PALETTE_TEXT, {"[ProductName]"}},
    {IDS_LOG_FILE_TEXT, {"[ProductName]"}},
    {IDS_PLOT_LOG_TEXT, {"[ProductName]"}},
    {IDS_TEMP_TEXT, {"[ProductName]"}},
    {IDS_XREF_TEMP_TEXT, {"[ProductName]"}},
    {IDS_TEXMAPS_TEXT, {"[ProductName]"}},
    {IDS_WEB_GRAB_TEXT, {"[ProductName]"}},
    {IDS_ACTIONS_TEXT, {"[ProductName]"}},
    {IDS_DGN_MAPPING_TEXT, {"[ProductName]"}},
    {IDS_ACTION_PATH_EMPTY, {"%s"}},
    {IDS_PATH_FOLDER_INVALID, {"%s"}},
    {IDS_PATH_FILE_INVALID, {"%s"}},
    {IDS_PATH_MISSING, {"%s"}},
    {IDS_PATH_UNC, {"%s"}},
    {IDS_FILES_MISSING, {"%s"}},
    {IDS_PATCH_UNUSABLE, {"%s"}},
    {IDS_PATCH_LISTED_ALREADY, {"%s"}},
    {IDS_PATCHES_NOT_APPLICABLE, {"%s"}},
    {IDS_PATCH_OF_OTHER_PRODUCT, {"%s"}},
    {IDS_PATCH_CHANGED, {"%s"}},
    {IDS_PATCH_MARK, {"%d", "%d", "%s"}},
    {IDS_FILES_REPLACE, {"%1", "%2", "%3"}},
    {IDS_NEW_FOLDER_NUMBERED, {"%d"}},
    {IDS_FILES_ADDED_FILE, {"%s"}},
    {IDS_FILES_SOURCE_GONE, {"%s"}},
    {IDS_FILES_PROGRESS, {"%s"}},
    {IDS_FILES_NOT_ADDED, {"%s"}},
    {IDS_FILES_NOT_ADDED_MORE, {"%s"}},
};

// "[...]" and "%" with the character behind it, sorted.
Placeholders FindPlaceholders(const CString& text)
{
    Placeholders found;
    for (int index = 0; index < text.GetLength(); ++index) {
        const int close = text[index] == L'[' ? text.Find(L']', index) : -1;
        if (close > 0) {
            found.push_back(Utf8(text.Mid(index, close + 1 - index)));
            index = close;
        } else if (text[index] == L'%') {
            found.push_back(Utf8(text.Mid(index++, 2)));
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

std::string Join(const Placeholders& placeholders)
{
    std::string line;
    for (const std::string& placeholder : placeholders) {
        line += placeholder + " ";
    }
    return line;
}

bool IsFailureText(int id)
{
    return id >= IDS_EXIT_CODE_FIRST;
}

// The sizes of an icon group's images; 0 stands for 256.
std::vector<int> IconSizes(HMODULE library, int id)
{
    std::vector<int> sizes;
    const HRSRC resource = FindResourceW(library, MAKEINTRESOURCEW(id), RT_GROUP_ICON);
    const HGLOBAL loaded = resource ? LoadResource(library, resource) : nullptr;
    const auto* bytes = static_cast<const unsigned char*>(loaded ? LockResource(loaded) : nullptr);
    constexpr int headerLength = 6;
    constexpr int entryLength = 14;
    for (int index = 0; bytes && index < bytes[4]; ++index) {
        sizes.push_back(bytes[headerLength + index * entryLength]);
    }
    return sizes;
}

} // namespace

TEST_P(Texts, EveryStringIdHasAText)
{
    for (const ResourceId& id : AllResourceIds()) {
        if (id.IsKind("IDS_") && !IsFailureText(id.value)) {
            EXPECT_FALSE(m_library.GetText(id.value).IsEmpty()) << id.name;
        }
    }
}

TEST_P(Texts, EveryTextHasAnIdOrIsAFailure)
{
    for (const int id : m_library.GetTextIds()) {
        const bool bNamed =
            std::any_of(AllResourceIds().begin(), AllResourceIds().end(),
                        [id](const ResourceId& row) { return row.IsKind("IDS_") && row.value == id; });
        EXPECT_TRUE(bNamed || IsFailureText(id)) << id << ": " << Utf8(m_library.GetText(id));
    }
}

TEST_P(Texts, EveryTextHasExactlyThePlaceholdersThatThePagesFill)
{
    for (const int id : m_library.GetTextIds()) {
        const auto row = expectedPlaceholders.find(id);
        const Placeholders expected = row != expectedPlaceholders.end() ? row->second : Placeholders();
        EXPECT_EQ(Join(FindPlaceholders(m_library.GetText(id))), Join(expected))
            << id << ": " << Utf8(m_library.GetText(id));
    }
}

TEST_P(Texts, TheInstallersResultsHaveWordsOfTheSetupsOwn)
{
    for (const int code : {1601, 1602, 1603, 1605, 1612, 1614, 1618, 1619, 1622, 1641, 3010}) {
        EXPECT_FALSE(m_library.GetText(IDS_EXIT_CODE_FIRST | code).IsEmpty()) << code;
    }
}

// What follows a reason then starts in a new line, whoever gave the reason.
TEST_P(Texts, EveryFailureEndsInANewLineAsTheSystemsTextsDo)
{
    for (const int id : m_library.GetTextIds()) {
        const CString text = m_library.GetText(id);
        EXPECT_TRUE(!IsFailureText(id) || text.Right(2) == CString(L"\r\n")) << id << ": " << Utf8(text);
    }
}

TEST_P(Texts, TheResultTextIsReadableOnTheWhitePanel)
{
    const CString text = m_library.GetText(IDS_COMPLETE_TEXT);
    EXPECT_EQ(text.Find(L"<font color="), 0) << Utf8(text);
}

TEST_P(Texts, TheBannerPrefixGivesTheWhiteTextADarkGround)
{
    const CString text = m_library.GetText(IDS_BANNER_PREFIX);
    const int color = text.Find(L"bgcolor=\"#");
    ASSERT_GE(color, 0) << Utf8(text);
    // Each colour's first digit at most 7: the half that is nearer to black.
    for (int part = 0; part < 3; ++part) {
        EXPECT_LE(text[color + 10 + 2 * part], L'7') << Utf8(text);
    }
}

TEST_P(Texts, TheLinesBeforeAResultEndInABlank)
{
    for (const int id : {IDS_COMPLETE_LINE1, IDS_COMPLETE_LINE2}) {
        EXPECT_EQ(m_library.GetText(id).Right(1), CString(L" ")) << id;
    }
}

TEST_P(Texts, TheSetOfTextsIsThatOfEnglish)
{
    EXPECT_EQ(m_library.GetTextIds(), CLanguageLibrary("en-US").GetTextIds());
}

TEST_P(Texts, TheIconHasAllSizes)
{
    const std::vector<int> sizes = IconSizes(m_library.GetModule(), IDI_SETUP);
    for (const int size : {16, 20, 24, 32, 40, 48, 64, 256}) {
        EXPECT_NE(std::find(sizes.begin(), sizes.end(), size % 256), sizes.end()) << size;
    }
}

// Each is 20 pixels wide, and the last that the paths use is the one of a template file, 30.
TEST_P(Texts, ThePicturesOfThePathsAreThirtyOne)
{
    const CBitmapOwner pictures(static_cast<HBITMAP>(LoadImageW(
        m_library.GetModule(), MAKEINTRESOURCEW(IDB_PATH_IMAGES), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
    BITMAP size = {};
    ASSERT_NE(GetObjectW(pictures.get(), sizeof size, &size), 0);
    EXPECT_EQ(size.bmWidth, 31 * 20);
}

TEST_P(Texts, TheLibraryStatesItsVersion)
{
    EXPECT_NE(FindResourceW(m_library.GetModule(), MAKEINTRESOURCEW(VS_VERSION_INFO), RT_VERSION), nullptr);
}
