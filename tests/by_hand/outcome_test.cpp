// A whole walk, and the ways to leave the page behind the build: what is built stays, so none of them asks.
#include "include/resource_ids.h"
#include "tests/by_hand/by_hand_fixture.h"

namespace {

class OutcomeByHand : public ByHandTest
{
protected:
    HWND WalkToCompletePage()
    {
        Start(SampleMedia());
        WalkFromFirstPageToBuild(L"Office");
        return WaitFor(Shown::CompletePage);
    }

    void ExpectFinished()
    {
        ExpectEnd(0, Join({LogOfOpening(), LogOfBuild(L"Office"), {L"Exit code 0"}}),
                  {LocalLocationQuestion()});
        EXPECT_EQ(ListLocation(), std::vector<CString>{L"Office"});
        EXPECT_TRUE(FileExists(Deployment(L"Office") + L"\\Deployment.xml"));
    }
};

TEST_F(OutcomeByHand, AWalkByEnterAloneBuildsTheDeployment)
{
    WalkToCompletePage();
    StrikeKey(VK_RETURN);
    ExpectFinished();
}

TEST_F(OutcomeByHand, EscapeBehindTheBuildAsksNothing)
{
    WalkToCompletePage();
    StrikeKey(VK_ESCAPE);
    ExpectFinished();
}

TEST_F(OutcomeByHand, TheCloseBoxBehindTheBuildAsksNothing)
{
    CloseByBox(WalkToCompletePage());
    ExpectFinished();
}

TEST_F(OutcomeByHand, TheMouseOnTheLastButtonBehindTheBuildAsksNothing)
{
    HWND page = WalkToCompletePage();
    ClickOn(GetDlgItem(page, IDC_NEXT));
    ExpectFinished();
}

} // namespace
