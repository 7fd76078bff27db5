// The pages that say what came of the deployment, and the contact page's own texts.
#include "base/handle.h"
#include "tests/support/page_test.h"

namespace {

class OutcomePage : public PageTest
{
protected:
    void ShowAndLeave(PageFunction page)
    {
        Press(IDC_BACK);
        EXPECT_EQ(Show(page), NAVIGATION_BACK);
    }
    // The label that shows for a static's text: "&&" shows as "&".
    static CString Doubled(CString text)
    {
        text.Replace(L"&", L"&&");
        return text;
    }
    static CString SystemMessage(DWORD code)
    {
        wchar_t text[2048] = {};
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code,
                       MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US), text, 2048, nullptr);
        return text;
    }
    CString FailureText(const CString& reason, const CString& logPath)
    {
        CString text = ResourceText(IDS_FAILURE);
        text.Replace(L"[Reason]", reason);
        text.Replace(L"[LogPath]", logPath);
        return text;
    }
};

using CompletePage = OutcomePage;
using FailedPage = OutcomePage;

TEST_F(CompletePage, NextClosesWithOne)
{
    Press(IDC_NEXT);
    EXPECT_EQ(Show(DeploymentCompleteDialog), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Changes(), Calls());
}

class OutcomeButtons : public OutcomePage, public testing::WithParamInterface<int (*)(PageContext*)>
{
};

INSTANTIATE_TEST_SUITE_P(Pages, OutcomeButtons,
                         testing::Values(DeploymentCompleteDialog, DeploymentFailedDialog));

TEST_P(OutcomeButtons, FinishAloneIsShown)
{
    Look([&] {
        EXPECT_TRUE(Control(IDC_NEXT).IsVisible());
        EXPECT_FALSE(Control(IDC_CANCEL).IsVisible());
    });
    ShowAndLeave(GetParam());
}

// Behind the build there is nothing left to cancel.
TEST_P(OutcomeButtons, EscDoesWhatFinishDoes)
{
    host.manager.m_uiStage = 4;
    Key(VK_ESCAPE);
    EXPECT_EQ(Show(GetParam()), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Changes(), Calls());
}

TEST_F(CompletePage, TheLinesAreTheStringsFollowedByTheHostsTexts)
{
    host.manager.m_strCompleteLine1 = L"Zolt 2027";
    host.manager.m_strCompleteLine2 = L"\\\\server\\share\\Alpha\\";
    Look([&] {
        EXPECT_EQ(Control(IDC_RESULT_LINE1).GetText(), ResourceText(IDS_COMPLETE_LINE1) + L"Zolt 2027");
        EXPECT_EQ(Control(IDC_RESULT_LINE2).GetText(),
                  ResourceText(IDS_COMPLETE_LINE2) + L"\\\\server\\share\\Alpha\\");
    });
    ShowAndLeave(DeploymentCompleteDialog);
}

TEST_F(CompletePage, AmpersandsAreDoubled)
{
    host.manager.m_strCompleteLine1 = L"Pen & Paper && Co";
    host.manager.m_strCompleteLine2 = L"R&D";
    Look([&] {
        EXPECT_EQ(Control(IDC_RESULT_LINE1).GetText(),
                  Doubled(ResourceText(IDS_COMPLETE_LINE1) + L"Pen & Paper && Co"));
        EXPECT_EQ(Control(IDC_RESULT_LINE2).GetText(), Doubled(ResourceText(IDS_COMPLETE_LINE2) + L"R&D"));
    });
    ShowAndLeave(DeploymentCompleteDialog);
}

TEST_F(CompletePage, TextsThatTheHostLacksAddNothing)
{
    Look([&] {
        EXPECT_EQ(Control(IDC_RESULT_LINE1).GetText(), Doubled(ResourceText(IDS_COMPLETE_LINE1)));
        EXPECT_EQ(Control(IDC_RESULT_LINE2).GetText(), Doubled(ResourceText(IDS_COMPLETE_LINE2)));
    });
    ShowAndLeave(DeploymentCompleteDialog);
}

TEST_F(CompletePage, TheResultLabelIsShownEnabledAndNotifies)
{
    Look([&] {
        const CControl label = Control(IDC_RESULT_LABEL);
        EXPECT_TRUE(label.IsVisible());
        EXPECT_TRUE(label.IsEnabled());
        EXPECT_TRUE(GetWindowLongW(label.GetWindow(), GWL_STYLE) & SS_NOTIFY);
        EXPECT_FALSE(label.GetText().IsEmpty());
        EXPECT_EQ(label.GetText().Find(L"<"), -1) << "markup shows: " << Utf8(label.GetText());
    });
    ShowAndLeave(DeploymentCompleteDialog);
}

TEST_F(FailedPage, NextClosesWithOne)
{
    Press(IDC_NEXT);
    EXPECT_EQ(Show(DeploymentFailedDialog), NAVIGATION_NEXT);
}

TEST_F(FailedPage, ACancelledSetupShowsTheSystemsText)
{
    host.manager.m_exitCode = 1602;
    host.manager.m_strLogPath = L"C:\\log & co.txt";
    ASSERT_FALSE(SystemMessage(1602).IsEmpty());
    Look([&] {
        EXPECT_EQ(Control(IDC_FAILURE_REASON).GetText(),
                  FailureText(SystemMessage(1602), L"C:\\log & co.txt"));
    });
    ShowAndLeave(DeploymentFailedDialog);
}

// A code for which the library has a text and the system has none.
DWORD CodeOfTheLibrary()
{
    const CModuleOwner library(
        LoadLibraryExW(BuiltLanguageFolder() + L"WizText.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE));
    wchar_t text[2048] = {};
    for (DWORD code = 1; code < 0x1000; ++code) {
        if (LoadStringW(library.get(), code | 0xF000, text, 2048) > 0 &&
            FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, code, 0x409,
                           text, 2048, nullptr) == 0)
            return code;
    }
    return 0;
}

TEST_F(FailedPage, ACodeThatOnlyTheLibraryKnowsShowsItsText)
{
    const DWORD code = CodeOfTheLibrary();
    ASSERT_NE(code, 0u) << "the resource library has no failure text of its own";
    host.manager.m_exitCode = code;
    host.manager.m_strLogPath = L"C:\\log.txt";
    Look([&] {
        EXPECT_EQ(Control(IDC_FAILURE_REASON).GetText(),
                  FailureText(ResourceText(code | 0xF000), L"C:\\log.txt"));
    });
    ShowAndLeave(DeploymentFailedDialog);
}

TEST_F(FailedPage, ACodeThatNobodyKnowsLeavesTheSentenceWithoutReason)
{
    host.manager.m_exitCode = 0x2FFFFFFF;
    host.manager.m_strLogPath = L"C:\\log.txt";
    Look([&] { EXPECT_EQ(Control(IDC_FAILURE_REASON).GetText(), FailureText(L"", L"C:\\log.txt")); });
    ShowAndLeave(DeploymentFailedDialog);
}

TEST_F(FailedPage, WithoutALogItsPathIsLeftOut)
{
    host.manager.m_exitCode = 1602;
    Look([&] { EXPECT_EQ(Control(IDC_FAILURE_REASON).GetText(), FailureText(SystemMessage(1602), L"")); });
    ShowAndLeave(DeploymentFailedDialog);
}

int hooksRun = 0;
int CountHook(PageContext*)
{
    return ++hooksRun;
}

TEST_F(OutcomePage, PostInitHooksRunOnEachPage)
{
    for (PageFunction page : {ProductContactDialog, DeploymentCompleteDialog, DeploymentFailedDialog}) {
        hooksRun = 0;
        context.postInitHooks = {CountHook};
        ShowAndLeave(page);
        EXPECT_EQ(hooksRun, 1);
    }
}

// The init's result leaves the focus to the dialog manager.
TEST_F(OutcomePage, AControlHasTheFocusWhenThePageOpens)
{
    for (PageFunction page : {ProductContactDialog, DeploymentCompleteDialog, DeploymentFailedDialog}) {
        Look([&] {
            EXPECT_TRUE(GetFocus() && IsChild(Page(), GetFocus())) << Utf8(DescribeWindow(GetFocus()));
        });
        ShowAndLeave(page);
    }
}

} // namespace
