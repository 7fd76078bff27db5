// What all exports have in common: the resource library, the results, what they leave behind.
#include "include/page_table.h"
#include "tests/support/page_test.h"

#include <cstring>
#include <set>

namespace {

template <class Function>
struct Export
{
    CString name;
    Function function; // null when the library doesn't have it
};
using WizardExports = std::vector<Export<int (*)(PageContext*)>>;
using TabExports = std::vector<Export<TabFunction>>;

template <class Function>
void PrintTo(const Export<Function>& page, std::ostream* stream)
{
    *stream << Utf8(page.name);
}

template <class Function>
Export<Function> FindExport(const CString& name)
{
    const FARPROC address = GetProcAddress(GetModuleHandleW(L"RolloutUi.dll"), Utf8(name).c_str());
    return {name, reinterpret_cast<Function>(reinterpret_cast<void*>(address))};
}

WizardExports FindWizardPages()
{
    WizardExports pages;
    for (const PageRow& page : PAGE_TABLE) {
        if (page.IsWritten()) {
            pages.push_back(FindExport<int (*)(PageContext*)>(WizardExport(page)));
        }
    }
    return pages;
}

TabExports FindTabPages()
{
    TabExports pages;
    for (const PageRow& page : PAGE_TABLE) {
        if (page.IsWritten() && page.bTab) {
            pages.push_back(FindExport<TabFunction>(TabExport(page)));
        }
    }
    return pages;
}

// The names that the page library exports.
std::set<CString> ExportedPages()
{
    const auto* base = reinterpret_cast<const char*>(GetModuleHandleW(L"RolloutUi.dll"));
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* header = reinterpret_cast<const IMAGE_NT_HEADERS64*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& place = header->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    const auto* directory = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + place.VirtualAddress);
    const auto* names = reinterpret_cast<const DWORD*>(base + directory->AddressOfNames);
    std::set<CString> pages;
    for (DWORD index = 0; index < directory->NumberOfNames; ++index) {
        const char* name = base + names[index];
        const CString text = TextFromUtf8(name, std::strlen(name));
        if (text.Right(6) == CString(L"Dialog") || text.Right(4) == CString(L"Page")) {
            pages.insert(text);
        }
    }
    return pages;
}

TEST(ExportList, ThePagesOfTheLibraryAreTheWrittenOnesOfTheTable)
{
    std::set<CString> written;
    for (const auto& page : FindWizardPages()) {
        written.insert(page.name);
    }
    for (const auto& page : FindTabPages()) {
        written.insert(page.name);
    }
    EXPECT_EQ(ExportedPages(), written);
}

// What any page can be shown with.
class AnyPage : public PageTest
{
protected:
    AnyPage()
    {
        context.pProduct = &host.AddProduct(L"zolt.msi", L"Zolt");
        FillCaches();
    }

private:
    // What the system makes for a drop-down list it keeps.
    void FillCaches()
    {
        static bool done = false;
        if (done) {
            return;
        }
        done = true;
        for (const auto& page : FindWizardPages()) {
            Key(VK_ESCAPE); // not every page shows its Cancel button
            AnswerCancelQuestion(IDNO);
            Press(IDC_BACK);
            EXPECT_EQ(Show(page.function), NAVIGATION_BACK);
        }
        host.log.Clear();
        host.ui.saved = false;
        host.ui.stored.clear();
        host.manager.m_hCurrentPage = nullptr;
        context.hResource = nullptr;
        CountFromHere();
    }
};

class EachExport : public AnyPage, public testing::WithParamInterface<WizardExports::value_type>
{
};

TEST_P(EachExport, GoesBackWith1001)
{
    Press(IDC_BACK);
    EXPECT_EQ(Show(GetParam().function), 1001);
}

// The outcome pages don't show their Cancel button.
TEST_P(EachExport, EscCancelsWith2)
{
    Key(VK_ESCAPE);
    AnswerCancelQuestion(IDYES);
    EXPECT_EQ(Show(GetParam().function), 2);
    EXPECT_EQ(host.manager.m_exitCode, 1602u);
}

TEST_P(EachExport, ResetsWith1278)
{
    host.ui.m_bResetAllowed1 = host.ui.m_bResetAllowed2 = true;
    Press(IDC_RESET);
    EXPECT_EQ(Show(GetParam().function), 1278);
}

TEST_P(EachExport, WithoutTheResourceLibraryGives1603AfterOneBox)
{
    host.language.wizTextPath = L"C:\\nowhere\\";
    Answer(PlainBox(L"Failed to load C:\\nowhere\\WizText.dll").Titled(L"Error").WithoutOwner(), IDOK);
    EXPECT_EQ(Show(GetParam().function), 1603);
    EXPECT_EQ(context.hResource, nullptr);
    EXPECT_EQ(host.manager.m_hCurrentPage, nullptr) << "a page was made";
}

TEST_P(EachExport, PassesTheHostItsWindowAndTheResourceLibrary)
{
    Look([&] {
        EXPECT_EQ(host.manager.m_hCurrentPage, Page());
        EXPECT_EQ(context.hResource, GetModuleHandleW(L"WizText.dll"));
        EXPECT_NE(context.hResource, nullptr);
    });
    Press(IDC_BACK);
    EXPECT_EQ(Show(GetParam().function), NAVIGATION_BACK);
}

TEST_P(EachExport, IsATopLevelWindowWithoutOwner)
{
    context.hParent = GetDesktopWindow();
    Look([&] {
        EXPECT_EQ(GetWindow(Page(), GW_OWNER), nullptr);
        EXPECT_EQ(GetAncestor(Page(), GA_ROOT), Page());
    });
    Press(IDC_BACK);
    EXPECT_EQ(Show(GetParam().function), NAVIGATION_BACK);
}

TEST_P(EachExport, HasNextAsDefaultButton)
{
    Look([&] {
        EXPECT_EQ(LOWORD(SendMessageW(Page(), DM_GETDEFID, 0, 0)), IDC_NEXT);
        EXPECT_EQ(HIWORD(SendMessageW(Page(), DM_GETDEFID, 0, 0)), DC_HASDEFID);
    });
    Press(IDC_BACK);
    EXPECT_EQ(Show(GetParam().function), NAVIGATION_BACK);
}

INSTANTIATE_TEST_SUITE_P(OfThePageLibrary, EachExport, testing::ValuesIn(FindWizardPages()));

// ---- tab pages

class EachTabExport : public AnyPage, public testing::WithParamInterface<TabExports::value_type>
{
};

TEST_P(EachTabExport, WithoutTheResourceLibraryGivesNoWindowAfterOneBox)
{
    host.language.wizTextPath = L"C:\\nowhere\\";
    Answer(PlainBox(L"Failed to load C:\\nowhere\\WizText.dll").Titled(L"Error").WithoutOwner(), IDOK);
    script.Start();
    context.hParent = GetDesktopWindow();
    const CTabPage page = GetParam().function(&context);
    EXPECT_EQ(page.hWnd, nullptr);
    EXPECT_EQ(page.pFilter, nullptr);
    script.Stop();
    EXPECT_EQ(script.GetFailure(), CString());
    EXPECT_TRUE(script.IsFinished());
}

TEST_P(EachTabExport, IsAChildOfTheContextsParentWithNextAsDefaultButton)
{
    Look([&] {
        EXPECT_EQ(GetParent(Page()), context.hParent);
        EXPECT_TRUE(GetWindowLongW(Page(), GWL_STYLE) & WS_CHILD);
        EXPECT_EQ(LOWORD(SendMessageW(Page(), DM_GETDEFID, 0, 0)), IDC_NEXT_TAB);
        EXPECT_EQ(host.manager.m_hCurrentPage, nullptr) << "that is for wizard pages";
    });
    Press(IDC_PREVIOUS_TAB);
    EXPECT_EQ(ShowTab(GetParam().function), static_cast<UINT>(PAGE_MESSAGE_PREVIOUS_TAB));
}

INSTANTIATE_TEST_SUITE_P(OfThePageLibrary, EachTabExport, testing::ValuesIn(FindTabPages()));

using Languages = PageTest;

TEST_F(Languages, ShowLanguagesReturnsWhatWasSetLast)
{
    host.language.SetShowLanguages(true);
    EXPECT_TRUE(host.language.ShowLanguages());
    host.language.SetShowLanguages(false);
    EXPECT_FALSE(host.language.ShowLanguages());
    host.language.SetShowLanguages(true);
    EXPECT_TRUE(host.language.ShowLanguages());
}

// ---- 300 openings

constexpr int openings = 300;

constexpr long long spareBytes = 16;

class ManyOpenings : public AnyPage, public testing::WithParamInterface<WizardExports::value_type>
{
protected:
    void OpenAndClose(int times)
    {
        for (int time = 0; time < times; ++time) {
            Press(IDC_BACK);
            ASSERT_EQ(Show(GetParam().function), NAVIGATION_BACK);
            host.ui.stored.clear(); // what the host noted is not the page's memory
            host.log.Clear();
        }
    }
};

TEST_P(ManyOpenings, LeaveNothingBehindAndNeedNoMoreMemory)
{
    context.strHelpFile = L"BeginDeployment.html";
    OpenAndClose(openings / 10); // caches of the system fill
    const ProcessState before = ReadProcessState();
    const long long bytesBefore = AllocatedBytes();
    OpenAndClose(openings);
    EXPECT_EQ(DescribeChange(before, ReadProcessState()), CString());
    const long long bytesEach = (AllocatedBytes() - bytesBefore) / openings;
    EXPECT_LT(bytesEach, spareBytes) << "bytes that each opening left allocated";
    RecordProperty("bytes_each", static_cast<int>(bytesEach));
}

INSTANTIATE_TEST_SUITE_P(OfThePageLibrary, ManyOpenings, testing::ValuesIn(FindWizardPages()));

} // namespace
