// A build that fails, and the way from its page back to the first one.
#include "automation/window_finder.h"
#include "base/handle.h"
#include "include/resource_ids.h"
#include "tests/by_hand/by_hand_fixture.h"

namespace {

class FailedBuildByHand : public ByHandTest
{
protected:
    // Somebody has a cabinet of the media open while it is copied.
    HWND WalkToFailedPage()
    {
        const CString media = CopyOfMedia();
        Start(media);
        EnterFirstPage(L"Office");
        ConfirmLocalLocation();
        WaitFor(Shown::SettingsPage);
        *m_cabinet.put() = CreateFileW(media + L"\\x64\\Zolt\\Data1.cab", GENERIC_READ, 0, nullptr,
                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        EXPECT_TRUE(m_cabinet);
        WalkToBuild();
        return WaitFor(Shown::FailedPage);
    }

    static void StartOver(HWND failed)
    {
        HWND button = GetDlgItem(failed, IDC_RESET);
        ASSERT_TRUE(IsWindowVisible(button) && IsWindowEnabled(button));
        StrikeKey('O', {VK_MENU});
    }

    Lines LogOfFailure()
    {
        Lines build = LogOfBuild(L"Office");
        build.resize(5);
        build.push_back(L"Build ended with code 32. " + m_cause);
        build.push_back(L"Answers <folder>\\setup.answers.txt");
        return Join({LogOfOpening(), build});
    }

    const CString m_cause = L"Opening \"<folder>\\media\\x64\\Zolt\\Data1.cab\" failed: Sharing violation "
                            L"(code 32). Another program or "
                            L"computer has the file open. Close it there, and start the build again.";
    CFileOwner m_cabinet;
};

TEST_F(FailedBuildByHand, StartOverLeadsToTheFirstPageWhereCancelAsksAgain)
{
    StartOver(WalkToFailedPage());
    HWND page = WaitFor(Shown::FirstPage);
    EXPECT_EQ(WindowText(GetDlgItem(page, IDC_NAME)), CString());
    EXPECT_EQ(WindowText(GetDlgItem(page, IDC_LOCATION)), CString());
    EXPECT_FALSE(IsWindowVisible(GetDlgItem(page, IDC_RESET)));
    StrikeKey(VK_ESCAPE);
    AnswerCancelQuestion('Y');
    ExpectEnd(1602, Join({LogOfFailure(), LogOfCanceledPage()}), {LocalLocationQuestion(), CancelQuestion()});
    EXPECT_EQ(ListLocation(), Lines{L"Office.Build.log"});
}

TEST_F(FailedBuildByHand, ASecondBuildEndsWithoutTheCauseOfTheFirst)
{
    StartOver(WalkToFailedPage());
    m_cabinet.reset();
    WalkFromFirstPageToBuild(L"Lab");
    WaitFor(Shown::CompletePage);
    StrikeKey(VK_RETURN);
    ExpectEnd(0, Join({LogOfFailure(), LogOfBuild(L"Lab"), {L"Exit code 0"}}),
              {LocalLocationQuestion(), LocalLocationQuestion()});
    EXPECT_EQ(ListLocation(), (Lines{L"Lab", L"Office.Build.log"}));
}

TEST_F(FailedBuildByHand, LeavingItsPageEndsWithTheCause)
{
    WalkToFailedPage();
    StrikeKey(VK_ESCAPE);
    ExpectEnd(1603, Join({LogOfFailure(), {L"Exit code 1603: " + m_cause}}), {LocalLocationQuestion()});
    EXPECT_EQ(ListLocation(), Lines{L"Office.Build.log"});
}

} // namespace
