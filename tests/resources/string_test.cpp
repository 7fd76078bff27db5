#include "tests/resources/resource_library_fixture.h"

namespace {

// A text, and the placeholders that the pages fill in: each must be there once, and no other.
struct TextRow
{
    UINT id;
    std::vector<const wchar_t*> placeholders;
};

const TextRow TEXTS[] = {
    {IDS_OTHER_PRODUCTS_DEPLOYMENT, {}},
    {IDS_LOCATION_MISSING, {}},
    {IDS_PATH_TOO_LONG, {}},
    {IDS_PLATFORM_NOT_ALLOWED, {L"%s"}},
    {IDS_BANNER_PREFIX, {}},
    {IDS_PDF_NO_VIEWER_TITLE, {}},
    {IDS_PDF_NO_VIEWER, {}},
    {IDS_PAGE_COUNTER, {L"[%INDEX]", L"[%TOTAL]"}},
    {IDS_CANCEL_TEMPLATE, {L"%1"}},
    {IDS_ERROR_TITLE, {}},
    {IDS_CONFIRM_FOLDER, {}},
    {IDS_NAME_INVALID, {}},
    {IDS_COMPLETE_LINE1, {}},
    {IDS_FAILURE, {L"[Reason]", L"[LogPath]"}},
    {IDS_LOCATION_NOT_NETWORK, {}},
    {IDS_LOCATION_UNUSABLE, {L"%s"}},
    {IDS_CANCEL_OTHER, {}},
    {IDS_CANCEL_INSTALL, {}},
    {IDS_CANCEL_MAINTAIN, {}},
    {IDS_CANCEL_DEPLOYMENT, {}},
    {IDS_COMPLETE_LINE2, {}},
    {IDS_COMPLETE_TEXT, {}},
    {IDS_REPLACE_DEPLOYMENT, {L"%s"}},
    {IDS_LOCATION_ACCESS_DENIED, {L"%s"}},
    {IDS_BROWSE_LOCATION, {}},
    {IDS_STEP, {L"%s"}},
};

// What looks like a placeholder: a percent sign, or a word in brackets.
int CountMarks(const CString& text)
{
    int count = 0;
    for (int index = 0; index < text.GetLength(); ++index) {
        const bool isPercent = text[index] == L'%' && (index == 0 || text[index - 1] != L'[');
        count += isPercent || (text[index] == L'[' && text.Find(L']', index) > 0);
    }
    return count;
}

bool FileExists(const CString& path)
{
    return GetFileAttributesW(path) != INVALID_FILE_ATTRIBUTES;
}

CString ReadTextFile(const CString& path)
{
    FILE* file = _wfopen(path, L"rb");
    std::string bytes;
    for (int character = file ? fgetc(file) : EOF; character != EOF; character = fgetc(file)) {
        bytes.push_back(static_cast<char>(character));
    }
    if (file) {
        fclose(file);
    }
    return TextFromUtf8(bytes.data(), bytes.size());
}

using ResourceStrings = ResourceLibraryTest;

} // namespace

TEST_P(ResourceStrings, EveryTextIsThereWithExactlyItsPlaceholders)
{
    for (const TextRow& row : TEXTS) {
        const CString text = Text(row.id);
        EXPECT_FALSE(text.IsEmpty()) << row.id;
        EXPECT_EQ(CountMarks(text), static_cast<int>(row.placeholders.size()))
            << row.id << ": " << Utf8(text);
        for (const wchar_t* placeholder : row.placeholders) {
            EXPECT_GE(text.Find(placeholder), 0) << row.id << " lacks " << Utf8(placeholder);
        }
    }
}

TEST_P(ResourceStrings, TheSetupHasItsOwnWordsForTheResultsThatAdministratorsMeet)
{
    for (const UINT code :
         {1601u, 1602u, 1603u, 1605u, 1612u, 1614u, 1618u, 1619u, 1620u, 1622u, 1641u, 3010u}) {
        EXPECT_FALSE(Text(IDS_EXIT_CODE_FIRST | code).IsEmpty()) << code;
    }
}

TEST_P(ResourceStrings, EachPageHasItsHelpAndAllLinksLeadSomewhere)
{
    const CString folder = LanguagesFolder() + GetParam() + L"\\";
    for (const wchar_t* page : {L"BeginDeployment.html", L"ProductContact.html", L"DeploymentComplete.html",
                                L"DeploymentFailed.html", L"Locations.html"}) {
        EXPECT_TRUE(FileExists(folder + page)) << Utf8(page);
        const CString html = ReadTextFile(folder + page);
        const CString mark = L"href=\"";
        for (int at = html.Find(mark); at >= 0; at = html.Find(mark, at + 1)) {
            const int from = at + mark.GetLength();
            const CString target = html.Mid(from, html.Find(L'"', from) - from);
            EXPECT_TRUE(FileExists(folder + target)) << Utf8(page) << " leads to " << Utf8(target);
        }
    }
}

TEST_P(ResourceStrings, TheIconHasTheSizesThatWindowsAsksFor)
{
    for (const int size : {16, 32, 48, 256}) {
        const HANDLE icon = LoadImageW(m_library, MAKEINTRESOURCEW(IDI_SETUP), IMAGE_ICON, size, size, 0);
        EXPECT_NE(icon, nullptr) << size;
        DestroyIcon(static_cast<HICON>(icon));
    }
}

INSTANTIATE_TEST_SUITE_P(OfEachLanguage, ResourceStrings, testing::ValuesIn(Languages()));
