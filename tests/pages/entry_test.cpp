// What all exports have in common: the resource library, the results, what they leave behind.
#include "tests/support/page_test.h"

namespace {

struct Export
{
    const wchar_t* name;
    int (*show)(PageContext*);
};

void PrintTo(const Export& page, std::ostream* stream)
{
    *stream << Utf8(page.name);
}

const Export exports[] = {
    {L"BeginDeploymentDialog", BeginDeploymentDialog},
    {L"ProductContactDialog", ProductContactDialog},
    {L"DeploymentCompleteDialog", DeploymentCompleteDialog},
    {L"DeploymentFailedDialog", DeploymentFailedDialog},
};

class EachExport : public PageTest, public testing::WithParamInterface<Export>
{
};

TEST_P(EachExport, GoesBackWith1001)
{
    Press(IDC_BACK);
    EXPECT_EQ(Show(GetParam().show), 1001);
}

TEST_P(EachExport, CancelsWith2)
{
    Press(IDC_CANCEL);
    AnswerCancelQuestion(IDYES);
    EXPECT_EQ(Show(GetParam().show), 2);
    EXPECT_EQ(host.manager.m_exitCode, 1602u);
}

TEST_P(EachExport, ResetsWith1278)
{
    host.ui.m_bResetAllowed1 = host.ui.m_bResetAllowed2 = true;
    Press(IDC_RESET);
    EXPECT_EQ(Show(GetParam().show), 1278);
}

TEST_P(EachExport, WithoutTheResourceLibraryGives1603AfterOneBox)
{
    host.language.wizTextPath = L"C:\\nowhere\\";
    Answer(PlainBox(L"Failed to load C:\\nowhere\\WizText.dll").Titled(L"Error").WithoutOwner(), IDOK);
    EXPECT_EQ(Show(GetParam().show), 1603);
    EXPECT_EQ(context.hResource, nullptr);
    EXPECT_EQ(host.manager.m_hCurrentPage, nullptr) << "a page was made";
}

TEST_P(EachExport, TellsTheHostItsWindowAndTheResourceLibrary)
{
    Look([&] {
        EXPECT_EQ(host.manager.m_hCurrentPage, Page());
        EXPECT_EQ(context.hResource, GetModuleHandleW(L"WizText.dll"));
        EXPECT_NE(context.hResource, nullptr);
    });
    Press(IDC_BACK);
    EXPECT_EQ(Show(GetParam().show), NAVIGATION_BACK);
}

TEST_P(EachExport, IsATopLevelWindowWithoutOwner)
{
    context.hParent = GetDesktopWindow();
    Look([&] {
        EXPECT_EQ(GetWindow(Page(), GW_OWNER), nullptr);
        EXPECT_EQ(GetAncestor(Page(), GA_ROOT), Page());
    });
    Press(IDC_BACK);
    EXPECT_EQ(Show(GetParam().show), NAVIGATION_BACK);
}

TEST_P(EachExport, HasNextAsDefaultButton)
{
    Look([&] {
        EXPECT_EQ(LOWORD(SendMessageW(Page(), DM_GETDEFID, 0, 0)), IDC_NEXT);
        EXPECT_EQ(HIWORD(SendMessageW(Page(), DM_GETDEFID, 0, 0)), DC_HASDEFID);
    });
    Press(IDC_BACK);
    EXPECT_EQ(Show(GetParam().show), NAVIGATION_BACK);
}

INSTANTIATE_TEST_SUITE_P(OfThePageLibrary, EachExport, testing::ValuesIn(exports));

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

class ManyOpenings : public PageTest, public testing::WithParamInterface<Export>
{
protected:
    void OpenAndClose(int times)
    {
        for (int time = 0; time < times; ++time) {
            Press(IDC_BACK);
            ASSERT_EQ(Show(GetParam().show), NAVIGATION_BACK);
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
    EXPECT_LT(bytesEach, 16) << "bytes that each opening left allocated";
    RecordProperty("bytes_each", static_cast<int>(bytesEach));
}

INSTANTIATE_TEST_SUITE_P(OfThePageLibrary, ManyOpenings, testing::ValuesIn(exports));

} // namespace
