// The helpers that all pages share, where they stand on the system: error texts, boxes, the picker, names, GUIDs.
#include "base/guid_text.h"
#include "frame/shared_helpers.h"

#include "automation/folder_picker.h"
#include "automation/message_box.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "include/resource_ids.h"
#include "tests/support/import_redirect.h"
#include "tests/support/resource_strings.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_host.h"
#include "tests/support/text.h"
#include "window/module.h"

#include <gtest/gtest.h>

#include <shlobj.h>

#include <set>

namespace {

class SharedHelpers : public testing::Test
{
protected:
    SharedHelpers()
    {
        host.language.wizTextPath = BuiltLanguageFolder();
        EXPECT_TRUE(library.Load(BuiltLanguageFolder() + L"WizText.dll"));
        resources.emplace(library.GetModule());
        script.SetFailureHandler([] { CloseFrontWindow(); });
    }
    ~SharedHelpers() override { EXPECT_EQ(script.GetFailure(), CString()); }

    void AnswerBox()
    {
        script.Add(L"answer the box", [this] {
            box = FindMessageBox();
            return box ? AnswerMessageBox(*box, IDOK) : StepOutcome::NotYet(L"no message box is up");
        });
        script.Start();
    }
    static CString SystemText(DWORD code, DWORD language)
    {
        wchar_t text[2048] = {};
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, language,
                       text, 2048, nullptr);
        return text;
    }

    TestHost host;
    CResourceLibrary library;
    std::optional<CResourceInstanceSwap> resources;
    CScript script;
    std::optional<MessageBoxView> box;
};

// ---- error texts

TEST_F(SharedHelpers, ASystemCodeHasTheSystemsTextInTheSetupsLanguage)
{
    for (const DWORD code : {5u, 1602u, 1603u}) {
        const CString text = SystemText(code, 0x409);
        ASSERT_FALSE(text.IsEmpty()) << code;
        EXPECT_EQ(MessageForCode(code), text);
    }
    host.language.language = L"de-DE";
    ASSERT_FALSE(SystemText(5, 0x407) == SystemText(5, 0x409)) << "the system has no German texts";
    EXPECT_EQ(MessageForCode(5), SystemText(5, 0x407));
}

TEST_F(SharedHelpers, ACodeThatTheSystemDoesNotKnowHasTheLibrarysText)
{
    int found = 0;
    for (DWORD code = 1; code < 0x1000; ++code) {
        wchar_t text[2048] = {};
        if (LoadStringW(library.GetModule(), code | 0xF000, text, 2048) > 0 &&
            SystemText(code, 0x409).IsEmpty()) {
            ++found;
            EXPECT_EQ(MessageForCode(code), CString(text)) << code;
        }
    }
    EXPECT_GT(found, 0) << "the library has no failure text of its own";
}

TEST_F(SharedHelpers, ACodeThatNobodyKnowsHasNoText)
{
    EXPECT_EQ(MessageForCode(0x2FFFFFFF), CString());
}

// ---- the error box

TEST_F(SharedHelpers, TheErrorBoxJoinsTheCodesTextAndTheWords)
{
    AnswerBox();
    ShowErrorBox(5, L"Words.", L"Title", nullptr);
    ASSERT_TRUE(box);
    // A box shows line ends as they come, but its text has no blank line at the end.
    EXPECT_EQ(box->text, SystemText(5, 0x409) + L"Words.");
    EXPECT_EQ(box->title, CString(L"Title"));
    EXPECT_EQ(box->icon, static_cast<UINT>(MB_ICONERROR));
    EXPECT_EQ(box->buttons, static_cast<UINT>(MB_OK));
    EXPECT_EQ(box->owner, nullptr);
}

TEST_F(SharedHelpers, WithoutACodeTheErrorBoxHasTheWordsAlone)
{
    AnswerBox();
    ShowErrorBox(0, L"Words.", L"Title", nullptr);
    ASSERT_TRUE(box);
    EXPECT_EQ(box->text, CString(L"Words."));
}

TEST_F(SharedHelpers, WithoutATitleTheErrorBoxHasTheLibrarys)
{
    AnswerBox();
    ShowErrorBox(0, L"Words.", nullptr, nullptr);
    ASSERT_TRUE(box);
    EXPECT_EQ(box->title, ResourceText(IDS_ERROR_TITLE));
}

TEST_F(SharedHelpers, TheErrorBoxIsOwnedByAWindowAndByNothingElse)
{
    HWND owner = CreateWindowW(L"Static", L"owner", WS_OVERLAPPEDWINDOW, 0, 0, 100, 100, nullptr, nullptr,
                               nullptr, nullptr);
    AnswerBox();
    ShowErrorBox(0, L"Words.", L"Title", owner);
    ASSERT_TRUE(box);
    EXPECT_EQ(box->owner, owner);
    DestroyWindow(owner);
    AnswerBox();
    ShowErrorBox(0, L"Words.", L"Title", owner);
    EXPECT_EQ(box->owner, nullptr) << "the owner is no window any more";
}

// ---- the folder picker

TEST_F(SharedHelpers, ThePickerGivesThePickedFolder)
{
    OleInitialize(nullptr);
    {
        const CTestFolder folder;
        const CString picked = folder.AddFolder(L"picked");
        script.Add(L"select", [&] { return SelectPickerFolder(picked); });
        script.Add(L"accept", [] { return AcceptPicker(); });
        script.Start();
        CString path = L"C:\\";
        EXPECT_TRUE(BrowseForFolder(nullptr, path, L"Title", false));
        EXPECT_EQ(path.CompareNoCase(picked), 0) << Utf8(path);
    }
    OleUninitialize();
}

TEST_F(SharedHelpers, ThePickerBeginsAtThePath)
{
    OleInitialize(nullptr);
    {
        const CTestFolder folder;
        CString path = folder.AddFolder(L"first");
        const CString first = path;
        script.Add(L"accept", [] { return AcceptPicker(); });
        script.Start();
        EXPECT_TRUE(BrowseForFolder(nullptr, path, L"Title", false));
        EXPECT_EQ(path.CompareNoCase(first), 0) << Utf8(path);
    }
    OleUninitialize();
}

TEST_F(SharedHelpers, ACancelledPickerGivesNothingAndLeavesThePath)
{
    OleInitialize(nullptr);
    for (const bool network : {false, true}) {
        script.Add(L"cancel", [] { return CancelPicker(); });
        script.Start();
        CString path = L"C:\\former";
        EXPECT_FALSE(BrowseForFolder(nullptr, path, L"Title", network));
        EXPECT_EQ(path, CString(L"C:\\former"));
    }
    OleUninitialize();
}

// ---- names

// What stands below the network root need not have a path of the file system: its folder knows its name.
CString g_pickedFolder;
int g_pathAsked = 0;

LPITEMIDLIST WINAPI PickFolder(BROWSEINFOW*)
{
    LPITEMIDLIST item = nullptr;
    EXPECT_EQ(SHParseDisplayName(g_pickedFolder, nullptr, &item, 0, nullptr), S_OK);
    return item;
}

BOOL WINAPI HasNoPath(LPCITEMIDLIST, LPWSTR)
{
    ++g_pathAsked;
    return FALSE;
}

TEST_F(SharedHelpers, APickedItemWithoutAPathIsNamedByItsFolder)
{
    const CTestFolder folder;
    g_pickedFolder = folder.AddFolder(L"picked");
    g_pathAsked = 0;
    const CImportRedirect pick(nullptr, "SHBrowseForFolderW", reinterpret_cast<void*>(PickFolder));
    const CImportRedirect noPath(nullptr, "SHGetPathFromIDListW", reinterpret_cast<void*>(HasNoPath));
    ASSERT_TRUE(pick.IsInPlace());
    ASSERT_TRUE(noPath.IsInPlace());
    CString path;
    EXPECT_TRUE(BrowseForFolder(nullptr, path, L"Title", true));
    EXPECT_EQ(path.CompareNoCase(g_pickedFolder), 0) << Utf8(path);
    EXPECT_EQ(g_pathAsked, 1);
}

TEST_F(SharedHelpers, ANameOfFifteenCharactersIsResolvedWhole)
{
    const CString host15 = L"127.000.000.001";
    ASSERT_EQ(host15.GetLength(), 15);
    EXPECT_TRUE(IsHostResolvable(host15));
    EXPECT_FALSE(IsHostResolvable(L"127.000.000.256")) << "without its last digit it would be an address";
    EXPECT_TRUE(IsHostResolvable(L"localhost"));
    EXPECT_FALSE(IsHostResolvable(L"no.such.invalid"));
}

// Kept on purpose: what stands behind the fifteenth character isn't looked at.
TEST_F(SharedHelpers, ALongerNameIsCut)
{
    const CString host16 = L"127.000.000.001x";
    ASSERT_EQ(host16.GetLength(), 16);
    EXPECT_TRUE(IsHostResolvable(host16));
    EXPECT_TRUE(IsHostResolvable(L"127.000.000.001.invalid"));
}

// ---- GUIDs

TEST_F(SharedHelpers, NewGuidsAreUpperCaseTextsOf36CharactersAndDiffer)
{
    std::set<CString> seen;
    for (int count = 0; count < 100; ++count) {
        const CString guid = NewGuidText();
        CString upper = guid;
        EXPECT_EQ(guid, upper.MakeUpper());
        EXPECT_EQ(guid.GetLength(), 36);
        EXPECT_TRUE(IsGuidText(guid)) << Utf8(guid);
        EXPECT_TRUE(seen.insert(guid).second) << Utf8(guid) << " came twice";
    }
}

TEST_F(SharedHelpers, AllBracesAroundAGuidAreTakenOff)
{
    const CString guid = L"6B29FC40-CA47-1067-B31D-00DD010662DA";
    for (const CString& text : {guid, L"{" + guid + L"}", L"{{" + guid, guid + L"}}}"})
        EXPECT_TRUE(IsGuidText(text)) << Utf8(text);
    for (const CString& text : {CString(), CString(L"{}"), L"}" + guid, guid + L"0", guid.Left(35)})
        EXPECT_FALSE(IsGuidText(text)) << Utf8(text);
    EXPECT_FALSE(IsGuidText(nullptr));
}

TEST_F(SharedHelpers, AUsersKeyIsThePrefixAndAGuidWithUnderscoresOrHyphens)
{
    EXPECT_TRUE(IsTarnGuidKey(L"TARN_6B29FC40_CA47_1067_B31D_00DD010662DA"));
    EXPECT_TRUE(IsTarnGuidKey(L"TARN_6B29FC40-CA47-1067-B31D-00DD010662DA"));
    for (const wchar_t* text :
         {L"6B29FC40_CA47_1067_B31D_00DD010662DA", L"TARN_", L"TARN_x", L"",
          L"xTARN_6B29FC40_CA47_1067_B31D_00DD010662DA", L"tarn_6B29FC40_CA47_1067_B31D_00DD010662DA"})
        EXPECT_FALSE(IsTarnGuidKey(text)) << Utf8(text);
}

// ---- the resource library's owner

TEST_F(SharedHelpers, TheSamePathInAnotherCaseKeepsTheModule)
{
    HMODULE held = library.GetModule();
    CString path = BuiltLanguageFolder() + L"WizText.dll";
    EXPECT_TRUE(library.Load(path.MakeUpper()));
    EXPECT_EQ(library.GetModule(), held);
}

TEST_F(SharedHelpers, ALibraryThatIsLoadedIsNotReadAgain)
{
    const CTestFolder folder;
    const CString path = folder / L"Text.dll";
    ASSERT_TRUE(CopyFileW(BuiltLanguageFolder() + L"WizText.dll", path, FALSE));
    CResourceLibrary other;
    ASSERT_TRUE(other.Load(path));
    ASSERT_TRUE(MoveFileW(path, folder / L"Moved.dll"));
    AnswerBox(); // that it can't be loaded
    EXPECT_TRUE(other.Load(path));
    script.Stop();
}

TEST_F(SharedHelpers, AFailedLoadFreesTheFormerModuleAfterOneBox)
{
    resources.reset();
    AnswerBox();
    EXPECT_FALSE(library.Load(L"C:\\nowhere\\WizText.dll"));
    EXPECT_EQ(library.GetModule(), nullptr);
    EXPECT_EQ(GetModuleHandleW(L"WizText.dll"), nullptr);
    ASSERT_TRUE(box);
    EXPECT_EQ(box->Describe(), CString(L"\"Error\": \"Failed to load C:\\nowhere\\WizText.dll\" [OK]"));
}

} // namespace
