// The list of patch files: what is admitted with which message, how lines are named, what the installer's word removes, and what
// a removal takes along. The patches are judged by the platform's own installer.
#include "tests/patches/service_pack_page.h"

#include "automation/file_picker.h"
#include "base/system_text.h"

#include <msi.h>

#include <commdlg.h>

namespace {

int g_judgements = 0;
UINT g_judgementAnswer = 0;
bool g_bRealJudgement = true;
std::vector<MSIPATCHSEQUENCEINFOW> g_judged;

UINT WINAPI NoteJudgement(const wchar_t* package, DWORD count, MSIPATCHSEQUENCEINFOW* patches)
{
    ++g_judgements;
    g_judged.assign(patches, patches + count);
    return g_bRealJudgement ? MsiDetermineApplicablePatchesW(package, count, patches) : g_judgementAnswer;
}

class PatchList : public PatchPage
{
protected:
    PatchList() { WithChoice(2); }
    void TearDown() override
    {
        m_judge.reset();
        PatchPage::TearDown();
    }
    void WatchJudgements()
    {
        g_judgements = 0;
        g_bRealJudgement = true;
        m_judge.reset(); // before the next one finds it in place
        m_judge = std::make_unique<CImportRedirect>(L"RolloutUi.dll", "MsiDetermineApplicablePatchesW",
                                                    reinterpret_cast<void*>(NoteJudgement));
        ASSERT_TRUE(m_judge->IsInPlace());
    }
    void FailJudgements(UINT code)
    {
        WatchJudgements();
        g_bRealJudgement = false;
        g_judgementAnswer = code;
    }
    void ExpectBox(unsigned int text, const CString& argument)
    {
        Answer(ErrorBox(ResourceText(text, argument)), IDOK);
    }
    void ExpectRemoved(const Lines& files)
    {
        CString paths;
        for (const CString& file : files) {
            paths += file + L"\n";
        }
        AnswerAtEntry(ResourceText(IDS_PATCHES_NOT_APPLICABLE, paths), MB_ICONERROR);
    }
    // The system's words for the code, and the package.
    ExpectedBox JudgementBox(UINT code) const { return ErrorBox(SystemMessage(code) + PackageFile()); }
    static CString SystemMessage(UINT code)
    {
        wchar_t words[1024] = L"";
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                       MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), words, ARRAYSIZE(words), nullptr);
        return words;
    }
    void Remove(int line)
    {
        SelectPatch(line);
        Await(L"the patch can't be removed", [this] { return Control(IDC_PATCH_REMOVE).IsUsable(); });
        Press(IDC_PATCH_REMOVE);
    }
    void AwaitLines(std::size_t count)
    {
        Await(L"the list has another number of lines", [this, count] { return BoxLines().size() == count; });
    }

private:
    std::unique_ptr<CImportRedirect> m_judge;
};
INSTANTIATE_BOTH_SHAPES(PatchList);

} // namespace

// ---- names

TEST_P(PatchList, ALineIsNamedByThePatchsMetadata)
{
    const PatchForm rows[] = {
        {PATCHED_PRODUCT, L"{1}", L"Zolt Drafting", L"Service Pack 1"},
        {PATCHED_PRODUCT, L"{2}", L"", L"Service Pack 2"},
        {PATCHED_PRODUCT, L"{3}", L"Zolt Drafting", L""}, // the blank stands at the end
        {PATCHED_PRODUCT, L"{4}", L"", L""},
        {PATCHED_PRODUCT, L"{5}", L"", L"", false},
    };
    Lines files;
    int number = 0;
    for (const PatchForm& row : rows) {
        files.push_back(AddPatch(host.Keep(L"named" + NumberText(++number) + L".msp"), row));
    }
    WithListed(files);
    ExpectList({L"Zolt Drafting Service Pack 1", L"Service Pack 2", L"Zolt Drafting ", files[3], files[4]});
    ShowAndGoBack();
}

// The table's values are read into 260 characters, of which one closes them.
TEST_P(PatchList, ANameOf259CharactersIsShownAndALongerOneIsNotRead)
{
    const CString longest(L'n', 259);
    const CString first = AddPatch(L"longest.msp", {PATCHED_PRODUCT, L"{1}", L"", longest});
    const CString second = AddPatch(L"longer.msp", {PATCHED_PRODUCT, L"{2}", L"", longest + L"n"});
    WithListed({first, second});
    Look([&] {
        ASSERT_EQ(BoxLines().size(), 2u);
        EXPECT_EQ(BoxLines().at(0), longest);
        EXPECT_TRUE(BoxLines().at(1) == second || BoxLines().at(1) == longest) << Utf8(BoxLines().at(1));
    });
    ShowAndGoBack();
}

TEST_P(PatchList, LinesKeepTheOrderOfTheProductsList)
{
    const CString z = AddPatch(L"z.msp", 1, L"Zebra"), a = AddPatch(L"a.msp", 2, L"Apple");
    WithListed({z, a});
    ExpectList({L"Zebra", L"Apple"});
    ShowAndGoBack();
}

// ---- admission

TEST_P(PatchList, ABrowsedPatchGoesToTheEndOfTheList)
{
    WithListed({AddPatch(L"z.msp", 1, L"Zebra")});
    Browse(AddPatch(L"a.msp", 2, L"Apple"));
    AwaitLines(2);
    ExpectList({L"Zebra", L"Apple"});
    ShowAndGoBack();
}

TEST_P(PatchList, ACanceledPickerChangesNothing)
{
    WatchJudgements();
    Browse(L"");
    Look([] { EXPECT_EQ(g_judgements, 0); });
    ExpectList({});
    ShowAndGoBack();
}

TEST_P(PatchList, AFileThatIsGoneIsRefused)
{
    const CString gone = folder / L"files\\gone.msp";
    Browse(gone);
    ExpectBox(IDS_PATCH_UNUSABLE, gone);
    ExpectList({});
    ShowAndGoBack();
}

// The targets can't be read, which comes before the code.
TEST_P(PatchList, AFileThatIsNoPatchIsRefusedAsOneOfAnotherProduct)
{
    const CString junk = folder.AddFile(L"files\\junk.msp", "no patch at all");
    const CString empty = folder.AddFile(L"files\\empty.msp", "");
    for (const CString& file : {junk, empty}) {
        Browse(file);
        ExpectBox(IDS_PATCH_OF_OTHER_PRODUCT, file);
    }
    ExpectList({});
    ShowAndGoBack();
}

TEST_P(PatchList, APatchOfAnotherProductIsRefused)
{
    const CString other = AddPatch(L"other.msp", {OTHER_PRODUCT, L"{1}", L"", L"Other"});
    Browse(other);
    ExpectBox(IDS_PATCH_OF_OTHER_PRODUCT, other);
    ExpectList({});
    ShowAndGoBack();
}

TEST_P(PatchList, TargetsAreComparedWithRegardToCase)
{
    const CString lower =
        AddPatch(L"lower.msp", {CString(PATCHED_PRODUCT).MakeLower(), L"{1}", L"", L"Lower"});
    Browse(lower);
    ExpectBox(IDS_PATCH_OF_OTHER_PRODUCT, lower);
    ExpectList({});
    ShowAndGoBack();
}

TEST_P(PatchList, AProductAmongOtherTargetsIsFound)
{
    Browse(AddPatch(L"many.msp", {CString(OTHER_PRODUCT) + L";" + PATCHED_PRODUCT, L"{1}", L"", L"Many"}));
    AwaitLines(1);
    ExpectList({L"Many"});
    ShowAndGoBack();
}

// The page looks for the code as a part of the text; whether the patch applies is the installer's word.
TEST_P(PatchList, ACodeWithinALongerTextPassesThePage)
{
    const CString odd = AddPatch(L"odd.msp", {CString(L"x") + PATCHED_PRODUCT + L"x", L"{1}", L"", L"Odd"});
    Browse(odd);
    ExpectBox(IDS_PATCHES_NOT_APPLICABLE, odd + L"\n");
    ExpectList({});
    ShowAndGoBack();
}

TEST_P(PatchList, TargetsOfAnyLengthAreReadWhole)
{
    CString targets;
    for (int number = 0; number < 300; ++number) { // 39 characters each, more than 4,096 by far
        targets += CString(OTHER_PRODUCT) + L";";
    }
    Browse(AddPatch(L"long.msp", {targets + PATCHED_PRODUCT, L"{1}", L"", L"Long"}));
    AwaitLines(1);
    ExpectList({L"Long"});
    ShowAndGoBack();
}

TEST_P(PatchList, ACodeThatIsListedAlreadyIsRefused)
{
    const CString first = AddPatch(L"first.msp", 1, L"First"), copy = AddPatch(L"copy.msp", 1, L"Copy");
    WithListed({first});
    Browse(copy);
    ExpectBox(IDS_PATCH_LISTED_ALREADY, copy);
    Browse(first);
    ExpectBox(IDS_PATCH_LISTED_ALREADY, first);
    ExpectList({L"First"});
    ShowAndGoBack();
}

TEST_P(PatchList, CodesAreComparedWithRegardToCase)
{
    WithListed({AddPatch(L"first.msp", {PATCHED_PRODUCT, L"{A}", L"", L"First"})});
    Browse(AddPatch(L"second.msp", {PATCHED_PRODUCT, L"{a}", L"", L"Second"}));
    AwaitLines(2);
    ShowAndGoBack();
}

TEST_P(PatchList, ThePathInAMessageStandsAsItIs)
{
    const CString odd = folder / L"files\\100%s %d [x] \x00E4.msp";
    Browse(odd);
    ExpectBox(IDS_PATCH_UNUSABLE, odd);
    ShowAndGoBack();
}

// ---- the installer's word

TEST_P(PatchList, PatchesThatDoNotApplyLeaveTheListAtEntryWithOneMessage)
{
    const CString good = AddPatch(L"good.msp", 1, L"Good");
    const CString other = AddPatch(L"other.msp", {OTHER_PRODUCT, L"{2}"});
    const CString gone = folder / L"files\\gone.msp";
    WithListed({other, good, gone});
    ExpectRemoved({other, gone});
    ExpectList({L"Good"});
    ShowAndGoBack();
    EXPECT_EQ(product.m_patchFiles.size(), 3u) << "the product's own list changes on Next alone";
}

TEST_P(PatchList, MergedPatchesComeFirstAndAreNotJudged)
{
    WatchJudgements();
    const CString good = AddPatch(L"good.msp", 1, L"Good"), last = AddPatch(L"last.msp", 2, L"Last");
    const CString merged = AddPatch(L"merged.msp", {OTHER_PRODUCT, L"{3}", L"", L"Merged"});
    product.mergedPatches = {merged};
    WithListed({good, merged, last});
    ExpectList({L"Merged", L"Good", L"Last"});
    Look([&] {
        EXPECT_EQ(g_judgements, 1);
        ASSERT_EQ(g_judged.size(), 2u);
        EXPECT_EQ(CString(g_judged.at(0).szPatchData), good);
        EXPECT_EQ(g_judged.at(0).ePatchDataType, MSIPATCH_DATATYPE_PATCHFILE);
        EXPECT_EQ(CString(g_judged.at(1).szPatchData), last);
    });
    ShowAndGoBack();
}

TEST_P(PatchList, WhenAllAreMergedTheInstallerIsNotAsked)
{
    WatchJudgements();
    const CString merged = folder / L"files\\merged and gone.msp";
    product.mergedPatches = {merged};
    WithListed({merged});
    ExpectList({merged});
    Look([] { EXPECT_EQ(g_judgements, 0); });
    ShowAndGoBack();
}

TEST_P(PatchList, AnEmptyListIsNotJudged)
{
    WatchJudgements();
    Look([] { EXPECT_EQ(g_judgements, 0); });
    ShowAndGoBack();
}

TEST_P(PatchList, TwoFilesWithOneCodeStayWhenTheHostListsThem)
{
    WithListed({AddPatch(L"first.msp", 1, L"First"), AddPatch(L"copy.msp", 1, L"Copy")});
    ExpectList({L"First", L"Copy"});
    Browse(AddPatch(L"third.msp", 1, L"Third"));
    ExpectBox(IDS_PATCH_LISTED_ALREADY, folder / L"files\\third.msp");
    ShowAndGoBack();
}

TEST_P(PatchList, AFailedJudgementAtEntryIsSaidAndKeepsTheList)
{
    FailJudgements(ERROR_INSTALL_PACKAGE_OPEN_FAILED);
    const CString first = AddPatch(L"first.msp", 1, L"First");
    WithListed({first});
    AnswerAtEntry(SystemMessage(ERROR_INSTALL_PACKAGE_OPEN_FAILED) + PackageFile(), MB_ICONERROR);
    ExpectList({L"First"});
    ShowAndGoBack();
}

TEST_P(PatchList, AFailedJudgementAtBrowsingGivesTwoBoxesAndKeepsTheList)
{
    WithListed({AddPatch(L"first.msp", 1, L"First")});
    const CString second = AddPatch(L"second.msp", 2, L"Second");
    Look([this] { FailJudgements(ERROR_INSTALL_PACKAGE_OPEN_FAILED); });
    Browse(second);
    Answer(JudgementBox(ERROR_INSTALL_PACKAGE_OPEN_FAILED), IDOK);
    ExpectBox(IDS_PATCH_UNUSABLE, second);
    ExpectList({L"First"});
    Look([this] { WatchJudgements(); });
    Browse(second); // its code was not kept
    AwaitLines(2);
    ShowAndGoBack();
}

TEST_P(PatchList, APackageThatIsGoneIsSaidByTheSystemsWords)
{
    WithListed({AddPatch(L"first.msp", 1, L"First")});
    product.m_strMsiFile = L"gone.msi";
    AnswerAtEntry(SystemMessage(ERROR_FILE_NOT_FOUND) + Media(L"gone.msi"), MB_ICONERROR);
    ExpectList({L"First"});
    ShowAndGoBack();
}

// ---- removal

TEST_P(PatchList, ARemovedLineIsGoneAndItsCodeCanComeBack)
{
    const CString first = AddPatch(L"first.msp", 1, L"First");
    WithListed({first, AddPatch(L"second.msp", 2, L"Second")});
    Remove(0);
    AwaitLines(1);
    ExpectList({L"Second"});
    Look([this] { EXPECT_TRUE(Control(IDC_PATCH_REMOVE).IsEnabled()); });
    Browse(first);
    AwaitLines(2);
    ExpectList({L"Second", L"First"});
    ShowAndGoBack();
}

TEST_P(PatchList, RemovingTheLastLineDisablesTheButton)
{
    WithListed({AddPatch(L"first.msp", 1, L"First")});
    Remove(0);
    AwaitLines(0);
    Look([this] { EXPECT_FALSE(Control(IDC_PATCH_REMOVE).IsEnabled()); });
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(product.m_patchFiles, Lines());
}

TEST_P(PatchList, RemovingWithoutASelectionRemovesNothing)
{
    WithListed({AddPatch(L"first.msp", 1, L"First")});
    Press(IDC_PATCH_REMOVE);
    Look([this] { EXPECT_TRUE(Control(IDC_PATCH_REMOVE).IsEnabled()); });
    ExpectList({L"First"});
    ShowAndGoBack();
}

TEST_P(PatchList, ARemovalRemovesWhatNoLongerApplies)
{
    const CString third = AddPatch(L"third.msp", 3, L"Third");
    WithListed({AddPatch(L"first.msp", 1, L"First"), AddPatch(L"second.msp", 2, L"Second"), third});
    Look([third] { DeleteFileW(third); });
    Remove(0);
    ExpectBox(IDS_PATCHES_NOT_APPLICABLE, third + L"\n");
    AwaitLines(1);
    ExpectList({L"Second"});
    ShowAndGoBack();
}

// The line is gone from the list before the installer is asked, and the box is filled from the list.
TEST_P(PatchList, AFailedJudgementAtRemovalIsSaidAndTheRestStays)
{
    WithListed({AddPatch(L"first.msp", 1, L"First"), AddPatch(L"second.msp", 2, L"Second")});
    Look([this] { FailJudgements(ERROR_INSTALL_PACKAGE_OPEN_FAILED); });
    Remove(0);
    Answer(JudgementBox(ERROR_INSTALL_PACKAGE_OPEN_FAILED), IDOK);
    AwaitLines(1);
    ExpectList({L"Second"});
    ShowAndGoBack();
}

TEST_P(PatchList, AMergedLineCannotBeRemoved)
{
    const CString merged = AddPatch(L"merged.msp", 1, L"Merged");
    product.mergedPatches = {merged};
    WithListed({merged, AddPatch(L"second.msp", 2, L"Second")});
    SelectPatch(0);
    Await(L"the merged patch can be removed", [this] { return !Control(IDC_PATCH_REMOVE).IsEnabled(); });
    SelectPatch(1);
    Await(L"the other patch can't be removed", [this] { return Control(IDC_PATCH_REMOVE).IsEnabled(); });
    ShowAndGoBack();
}

TEST_P(PatchList, SelectingALineChoosesNoFileAnew)
{
    const CString merged = AddPatch(L"merged.msp", 1, L"Merged");
    product.mergedPatches = {merged};
    WithListed({merged, AddPatch(L"second.msp", 2, L"Second")});
    Look([this] { EXPECT_EQ(product.mergedQuestions, 2) << "once for each file of the list"; });
    SelectPatch(0);
    Await(L"the merged patch can be removed", [this] { return !Control(IDC_PATCH_REMOVE).IsEnabled(); });
    SelectPatch(1);
    Await(L"the other patch can't be removed", [this] { return Control(IDC_PATCH_REMOVE).IsEnabled(); });
    Look([this] { EXPECT_EQ(product.mergedQuestions, 2) << "the host takes a question for a choice"; });
    ShowAndGoBack();
}

// ---- the picker

namespace {

OPENFILENAMEW g_call;
CString g_filter; // bars for zeros
CString g_ending;

BOOL WINAPI NotePicker(OPENFILENAMEW* dialog)
{
    g_call = *dialog;
    g_ending = dialog->lpstrDefExt;
    g_filter.Empty();
    for (const wchar_t* part = dialog->lpstrFilter; *part; part += wcslen(part) + 1) {
        g_filter += CString(part) + L"|";
    }
    return FALSE;
}

} // namespace

TEST_P(PatchList, ThePickerIsAskedForPatchFilesOrAll)
{
    std::unique_ptr<CImportRedirect> redirect;
    Look([&] {
        redirect = std::make_unique<CImportRedirect>(L"RolloutUi.dll", "GetOpenFileNameW",
                                                     reinterpret_cast<void*>(NotePicker));
    });
    g_call = {};
    Press(IDC_PATCH_BROWSE);
    Await(L"the picker was not asked for", [] { return g_call.lStructSize != 0; });
    Look([&] {
        EXPECT_EQ(g_call.Flags, 0x880020u);
        EXPECT_NE(g_call.lpfnHook, nullptr);
        EXPECT_EQ(g_call.nMaxFile, 260u);
        EXPECT_EQ(g_call.nMaxFileTitle, 256u);
        EXPECT_EQ(g_call.hwndOwner, Page());
        EXPECT_EQ(g_ending, ResourceText(IDS_PATCH_FILTER_PATTERN));
        EXPECT_EQ(g_filter, ResourceText(IDS_PATCH_FILTER) + L"|" + ResourceText(IDS_PATCH_FILTER_PATTERN) +
                                L"|" + ResourceText(IDS_ALL_FILES_FILTER) + L"|" +
                                ResourceText(IDS_ALL_FILES_FILTER_PATTERN) + L"|");
        redirect.reset();
    });
    ShowAndGoBack();
}
