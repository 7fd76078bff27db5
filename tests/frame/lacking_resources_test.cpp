// A resource library of another version may lack what a page asks for. The administrator must learn which thing is
// missing, and nothing may be left behind.
#include "tests/frame/frame_fixture.h"

namespace {

class CPageWithoutDialog : public CWizardPageImpl<CPageWithoutDialog>
{
public:
    enum
    {
        IDD = 9999
    };
    using CWizardPageImpl::CWizardPageImpl;
    LRESULT OnInitDialog() { return TRUE; }
};

class CTabWithoutDialog : public CTabPageImpl<CTabWithoutDialog>
{
public:
    enum
    {
        IDD = 9998
    };
    using CTabPageImpl::CTabPageImpl;
    LRESULT OnInitDialog() { return TRUE; }
};

class LackingResourcesTest : public FrameTest
{
};

} // namespace

TEST_F(LackingResourcesTest, AMissingDialogIsNamedAndGives1603)
{
    const HINSTANCE before = _Module.GetResourceInstance();
    CString reported;
    Step(L"close the box", [&reported] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        if (!box) {
            return StepOutcome::NotYet(L"no box is up");
        }
        reported = box->text;
        return AnswerMessageBox(*box, IDOK);
    });
    EXPECT_EQ(Show<CPageWithoutDialog>(), NAVIGATION_LOAD_FAILED);
    EXPECT_GE(reported.Find(L"9999"), 0) << Utf8(reported);
    EXPECT_EQ(_Module.GetResourceInstance(), before);
    EXPECT_EQ(_Module.GetMessageLoop(), nullptr);
}

// Both the routine and its dialog load the library; the second box said the same once more.
TEST_F(LackingResourcesTest, ALibraryThatIsMissingWhenTheUserCancelsIsReportedInOneBox)
{
    OnPage([this](HWND) { host.language.wizTextPath = L"C:\\no such folder\\"; });
    Press(IDC_CANCEL);
    AnswerBox(IDOK, L"Failed to load C:\\no such folder\\WizText.dll");
    AnswerQuestion(IDYES, L"Leave? deployment deployment deployment"); // by the page's own texts
    EXPECT_EQ(Show<CTestWizardPage>(), NAVIGATION_CANCEL);
}

TEST_F(LackingResourcesTest, ATabPageWithoutDialogLeavesTheResourceModuleAsItWas)
{
    const HINSTANCE before = _Module.GetResourceInstance();
    CString reported;
    Step(L"close the box", [&reported] {
        const std::optional<MessageBoxView> box = FindMessageBox();
        if (!box) {
            return StepOutcome::NotYet(L"no box is up");
        }
        reported = box->text;
        return AnswerMessageBox(*box, IDOK);
    });
    script.Start();
    const CTabPage tab = CreateTabPage<CTabWithoutDialog>(&context);
    EXPECT_EQ(tab.hWnd, nullptr);
    EXPECT_EQ(tab.pFilter, nullptr);
    EXPECT_GE(reported.Find(L"9998"), 0) << Utf8(reported);
    EXPECT_EQ(_Module.GetResourceInstance(), before);
    EXPECT_EQ(::GetModuleHandleW(L"WizText.dll"), nullptr) << "the library is still held";
}
