// The review before the build by the keyboard alone: back to the pages from its lines, and away from it.
#include "automation/window_finder.h"
#include "base/files.h"
#include "include/resource_ids.h"
#include "setup/resource.h"
#include "tests/by_hand/by_hand_fixture.h"

#include <commctrl.h>

namespace {

class ReviewByHand : public ByHandTest
{
protected:
    HWND StartAndWalkToReview()
    {
        Start(SampleMedia());
        EnterFirstPage(L"Office");
        ConfirmLocalLocation();
        return WalkToReview();
    }

    static CString LineOf(HWND review) { return WindowText(GetDlgItem(review, IDC_REVIEW_LINE)); }

    // The next line that is this one, by the arrow key.
    void GoToLine(HWND review, const CString& line)
    {
        WaitForFocus(review, IDC_REVIEW_TREE);
        while (LineOf(review) != line) {
            const CString before = LineOf(review);
            StrikeKey(VK_DOWN);
            WaitUntil(L"the line behind \"" + before + L"\" on the way to \"" + line + L"\"",
                      [&] { return LineOf(review) != before; });
        }
    }

    // From a line to the page of it.
    HWND VisitFrom(HWND review, const CString& line, Shown page)
    {
        GoToLine(review, line);
        StrikeKey('G', {VK_MENU});
        return WaitFor(page);
    }

    // On to the end of the run.
    void BuildFromReview()
    {
        StrikeKey(VK_RETURN);
        WaitFor(Shown::CompletePage);
        StrikeKey(VK_RETURN);
        EXPECT_EQ(WaitForEnd(), 0u);
    }

    CString BuiltAnswers(const wchar_t* name)
    {
        std::string bytes;
        EXPECT_EQ(ReadWholeFile(Deployment(name) + L"\\Answers.txt", 1 << 20, bytes), 0u);
        return TextFromUtf8(bytes.data(), bytes.size());
    }
};

TEST_F(ReviewByHand, WhatIsChangedOnAVisitedPageStandsInTheReviewAndIsBuilt)
{
    HWND review = StartAndWalkToReview();
    EXPECT_EQ(WindowText(review), CString(L"Review of Office"));
    EXPECT_EQ(LineOf(review), CString(L"This can be built. Nothing has been built yet."));
    GoToLine(review, L"Zolt Viewer 2027");
    HWND page = VisitFrom(review, L"Online resources", Shown::ResourcesPage);
    EXPECT_EQ(WindowText(GetDlgItem(page, IDC_STEP_LABEL)),
              CString(L"Zolt 2027 deployment - Zolt Viewer 2027"));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(page, IDC_BACK)));
    ClickOn(GetDlgItem(page, IDC_PARTS_BAY));
    WaitUntil(L"the box without its mark", [&] { return IsDlgButtonChecked(page, IDC_PARTS_BAY) == 0; });
    StrikeKey('N', {VK_MENU});
    review = WaitFor(Shown::Review);
    EXPECT_EQ(LineOf(review), CString(L"Online resources"));
    StrikeKey(VK_DOWN);
    WaitUntil(L"the changed line", [&] { return LineOf(review) == L"Parts bay: no"; });
    StrikeKey('G', {VK_MENU});
    page = WaitFor(Shown::ResourcesPage);
    StrikeKey('N', {VK_MENU});
    review = WaitFor(Shown::Review);
    BuildFromReview();
    const CString answers = BuiltAnswers(L"Office");
    const int second = answers.Find(L"[resources \"Zolt Viewer 2027\"]");
    ASSERT_GE(second, 0) << Utf8(answers);
    EXPECT_HOLDS(answers.Mid(second), CString(L"\nparts_bay = no"));
    EXPECT_HOLDS(answers.Left(second), CString(L"\nparts_bay = yes"));
}

TEST_F(ReviewByHand, ADeploymentIsRenamedFromTheReview)
{
    HWND page = VisitFrom(StartAndWalkToReview(), L"Name: \"Office\"", Shown::FirstPage);
    StrikeKey('A', {VK_MENU});
    Type(page, IDC_NAME, L"Lab");
    StrikeKey(VK_RETURN);
    ConfirmLocalLocation();
    HWND review = WaitFor(Shown::Review);
    EXPECT_EQ(WindowText(review), CString(L"Review of Lab"));
    BuildFromReview();
    EXPECT_EQ(ListLocation(), Lines{L"Lab"});
}

// Its products are opened anew, so that nothing of what was chosen for them is left.
TEST_F(ReviewByHand, AnotherPlatformLeadsThroughThePagesAgain)
{
    HWND page = VisitFrom(StartAndWalkToReview(), L"Platform: x64", Shown::FirstPage);
    StrikeKey('3', {VK_MENU});
    WaitUntil(L"the other platform", [&] { return IsDlgButtonChecked(page, IDC_PLATFORM_X86) != 0; });
    StrikeKey('N', {VK_MENU});
    ConfirmLocalLocation();
    HWND review = WalkToReview();
    GoToLine(review, L"Platform: x86");
    StrikeKey(VK_ESCAPE);
    AnswerBox('Y');
    EXPECT_EQ(WaitForEnd(), 1602u);
}

TEST_F(ReviewByHand, BackLeadsToTheLastPageAndFromThereToTheReview)
{
    HWND review = StartAndWalkToReview();
    StrikeKey('K', {VK_MENU});
    WaitFor(Shown::ContactPage);
    StrikeKey('B', {VK_MENU});
    WaitFor(Shown::ServicePackPage);
    StrikeKey(VK_RETURN);
    WaitFor(Shown::ContactPage);
    StrikeKey(VK_RETURN);
    review = WaitFor(Shown::Review);
    EXPECT_EQ(LineOf(review), CString(L"This can be built. Nothing has been built yet."));
    StrikeKey(VK_ESCAPE);
    AnswerBox('Y');
    EXPECT_EQ(WaitForEnd(), 1602u);
}

TEST_F(ReviewByHand, CancelAsksAndLeavesNothing)
{
    StartAndWalkToReview();
    StrikeKey(VK_ESCAPE);
    AnswerBox(VK_RETURN); // No is the default
    CloseByBox(WaitFor(Shown::Review));
    AnswerBox('Y');
    const CString question = ProgramText(IDS_REVIEW_CANCEL_QUESTION);
    ExpectEnd(1602, Join({LogOfOpening(), LogOfMode(L"Office"), {LogOfCancel()}}),
              {LocalLocationQuestion(), question, question});
    EXPECT_EQ(ListLocation(), Lines());
}

TEST_F(ReviewByHand, CancelOnAVisitedPageLeavesNothing)
{
    VisitFrom(StartAndWalkToReview(), L"Deployment settings", Shown::SettingsPage);
    StrikeKey(VK_ESCAPE);
    AnswerCancelQuestion('Y');
    ExpectEnd(1602, Join({LogOfOpening(), LogOfMode(L"Office"), LogOfCanceledPage()}),
              {LocalLocationQuestion(), CancelQuestion()});
    EXPECT_EQ(ListLocation(), Lines());
}

TEST_F(ReviewByHand, WhatCannotBeBuiltCanBeChangedFromThere)
{
    const CString media = CopyOfMedia();
    Start(media);
    EnterFirstPage(L"Office");
    ConfirmLocalLocation();
    WaitFor(Shown::SettingsPage);
    const CString cabinet = media + L"\\x64\\Zolt\\Data1.cab";
    ASSERT_TRUE(MoveFileW(cabinet, cabinet + L".away"));
    HWND review = WalkToReview();
    EXPECT_HOLDS(LineOf(review), CString(L"This can't be built (code "));
    EXPECT_HOLDS(LineOf(review), CString(L"Data1.cab"));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(review, IDOK)));
    StrikeKey(VK_RETURN); // Back is the default button
    WaitFor(Shown::ContactPage);
    ASSERT_TRUE(MoveFileW(cabinet + L".away", cabinet));
    StrikeKey(VK_RETURN);
    review = WaitFor(Shown::Review);
    EXPECT_EQ(LineOf(review), CString(L"This can be built. Nothing has been built yet."));
    BuildFromReview();
}

// The box behind the build said once more what had been read in the review.
TEST_F(ReviewByHand, AWarningOfTheReviewIsNotShownAgainBehindTheBuild)
{
    Start(SampleMedia());
    EnterFirstPage(L"Office");
    ConfirmLocalLocation();
    HWND page = WaitFor(Shown::SettingsPage);
    ClickOn(GetDlgItem(page, IDC_NETWORK_LOG));
    WaitUntil(L"the log folder's field", [&] { return IsWindowEnabled(GetDlgItem(page, IDC_LOG_FOLDER)); });
    StrikeKey(VK_TAB);
    Type(page, IDC_LOG_FOLDER, L"\\\\nobody\\logs");
    StrikeKey(VK_RETURN);
    AnswerBox('Y');
    for (const Shown behind : PagesBehindFirst()) {
        if (behind != Shown::SettingsPage) {
            WaitFor(behind);
            StrikeKey(VK_RETURN);
        }
    }
    HWND review = WaitFor(Shown::Review);
    WaitForFocus(review, IDC_REVIEW_TREE);
    StrikeKey(VK_END);
    const CString warning = L"The log folder \"\\\\nobody\\logs\\\" can't be written to";
    WaitUntil(L"the warning", [&] { return LineOf(review).Find(warning) == 0; });
    StrikeKey(VK_RETURN);
    WaitFor(Shown::CompletePage); // no box before it
    StrikeKey(VK_RETURN);
    EXPECT_EQ(WaitForEnd(), 0u);
    EXPECT_HOLDS(ReadLog(), L"Warning: " + warning);
}

// Where a deployment is modified the pages stand together, and the visit opens the one of the line.
TEST_F(ReviewByHand, ALineLeadsToItsTabOfAModifiedDeployment)
{
    BuildByAnswers(GetLocation(), L"Office");
    Start(Deployment(L"Office") + L"\\Image");
    WaitFor(Shown::FirstPage);
    StrikeKey(VK_RETURN);
    WaitFor(Shown::SettingsPage);
    StrikeKey(VK_RETURN);
    WaitFor(Shown::ConfigureDialog);
    StrikeKey('O', {VK_MENU});
    WaitFor(Shown::ContactPage);
    StrikeKey(VK_RETURN);
    HWND review = WaitFor(Shown::Review);
    GoToLine(review, L"Zolt Viewer 2027");
    HWND dialog = VisitFrom(review, L"Online resources", Shown::ConfigureDialog);
    const HWND tabs = GetDlgItem(dialog, IDC_CONFIGURE_TABS);
    const int front = static_cast<int>(SendMessageW(tabs, TCM_GETCURSEL, 0, 0));
    EXPECT_EQ(front, 9) << "not the fourth page of the second product";
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(dialog, IDC_CONFIGURE_BACK)));
    StrikeKey('O', {VK_MENU});
    review = WaitFor(Shown::Review);
    BuildFromReview();
}

TEST_F(ReviewByHand, APlanByHandEndsBehindTheReviewWithTheFileAndNoDeployment)
{
    const CString plan = InFolder(L"plan.txt");
    Start(SampleMedia(), L"--plan \"" + plan + L"\"");
    EnterFirstPage(L"Office");
    ConfirmLocalLocation();
    HWND review = WalkToReview();
    EXPECT_EQ(WindowText(GetDlgItem(review, IDOK)), ProgramText(IDS_REVIEW_FINISH));
    StrikeKey(VK_RETURN);
    EXPECT_EQ(AnswerBox(VK_RETURN), ProgramText(IDS_PLAN_WRITTEN, {plan}));
    EXPECT_EQ(WaitForEnd(), 0u);
    std::string bytes;
    EXPECT_EQ(ReadWholeFile(plan, 1 << 20, bytes), 0u);
    EXPECT_NE(bytes.find("This can be built. Nothing has been built yet."), std::string::npos);
    EXPECT_EQ(ListLocation(), Lines());
}

// Whatever changes behind the window: a plan is what was read and agreed to.
TEST_F(ReviewByHand, APlanByHandIsTheReviewThatWasShown)
{
    const CString media = CopyOfMedia();
    const CString plan = InFolder(L"plan.txt");
    Start(media, L"--plan \"" + plan + L"\"");
    EnterFirstPage(L"Office");
    ConfirmLocalLocation();
    HWND review = WalkToReview();
    EXPECT_EQ(LineOf(review), CString(L"This can be built. Nothing has been built yet."));
    const CString cabinet = media + L"\\x64\\Zolt\\Data1.cab";
    ASSERT_TRUE(MoveFileW(cabinet, cabinet + L".away"));
    StrikeKey(VK_RETURN);
    EXPECT_EQ(AnswerBox(VK_RETURN), ProgramText(IDS_PLAN_WRITTEN, {plan}));
    EXPECT_EQ(WaitForEnd(), 0u);
    std::string bytes;
    EXPECT_EQ(ReadWholeFile(plan, 1 << 20, bytes), 0u);
    EXPECT_NE(bytes.find("This can be built. Nothing has been built yet."), std::string::npos);
}

} // namespace
