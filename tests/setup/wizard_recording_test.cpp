// What is recorded of whole runs with the real pages, by a person and without one.
#include "tests/setup/wizard_fixture.h"

namespace {

class WizardRecording : public Wizard
{
protected:
    void Type(int page, int control, const wchar_t* text)
    {
        OnPage(page, [control, text](HWND window) { return CControl(window, control).SetText(text); });
    }
    // A click on a check box or a radio, also on a page in the dialog, and its effect.
    void Set(int page, int control, bool checked)
    {
        OnPage(page, [control, checked](HWND window) { return Below(window, control).SetChecked(checked); });
        OnPage(page, [control, checked](HWND window) {
            return Until(Below(window, control).IsChecked() == checked, L"the click has no effect yet");
        });
    }
    // The lines of the record from the second on: the first page's holds folders of this test.
    CString BehindFirstPage() const
    {
        const int end = recorded.Find(L"\n");
        return end < 0 ? CString() : recorded.Mid(end + 1);
    }
    CString FirstPage() const
    {
        const int end = recorded.Find(L"\n");
        return end < 0 ? recorded : recorded.Left(end);
    }
};

// The feed is entered, and the channel then switched off again: the page keeps it.
TEST_F(WizardRecording, ARunWithoutAPersonGivesTheRecordOfTheRunByHand)
{
    Begin(L"Office");
    Set(IDC_NETWORK_LOG, IDC_INSTALL_PROGRESS, true);
    Press(IDC_NETWORK_LOG, IDC_NEXT);
    Press(IDC_SHORTCUTS, IDC_NEXT);
    Press(IDC_PATH_TREE, IDC_NEXT);
    Press(IDC_FILES_TREE, IDC_NEXT);
    Set(IDC_PARTS_BAY, IDC_PARTS_BAY, false);
    Press(IDC_PARTS_BAY, IDC_NEXT);
    Set(IDC_UPDATES, IDC_SITE_CHANNEL, true);
    Type(IDC_UPDATES, IDC_FEED_LOCATION, L"\\\\server\\share\\feed.xml");
    Set(IDC_UPDATES, IDC_SITE_CHANNEL, false);
    Cancel(IDC_UPDATES);
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    const CString byHand = recorded;
    const CString pathsByHand = recordedPaths;
    EXPECT_EQ(pathsByHand.Find(L"paths/Zolt 2027: (support_path=Support Files), (support_path=Fonts), ("), 0)
        << Utf8(pathsByHand);
    EXPECT_EQ(
        byHand,
        L"begin: location=" + location +
            L", name=Office, (platform=x64), ?local_location=yes\n"
            L"settings: (network_log=no), (keep_copy=no), install_mode=progress\n"
            L"workstation/Zolt 2027: (desktop_shortcut=yes), (shortcut=)\n"
            L"resources/Zolt 2027: parts_bay=no, (member_bay=yes), (round_trip=yes), "
            L"(send_computer_name=no), (search_locations=yes)\n"
            L"notices/Zolt 2027: (updates=yes), (update_source=maker), (channel_notices=yes), "
            L"(site_channel=no), ~site_feed=\\\\server\\share\\feed.xml, (feeds=yes), (custom_feeds=yes)");
    EXPECT_EQ(titles,
              (std::vector<CString>{L"Begin deployment", L"Deployment settings", L"Workstations", L"Paths",
                                    L"Additional files", L"Online resources", L"Notices and feeds"}));
    const RunOutcome outcome = RunWith({{L"begin", L"location", location},
                                        {L"begin", L"name", L"Office"},
                                        {L"begin", L"on_question.local_location", L"yes"},
                                        {L"settings", L"install_mode", L"progress"},
                                        {L"resources", L"parts_bay", L"no"},
                                        {L"notices", L"site_channel", L"no"},
                                        {L"notices", L"site_feed.kept", L"\\\\server\\share\\feed.xml"},
                                        {L"notices", L"leave", L"cancel"}});
    EXPECT_EQ(outcome.exitCode, static_cast<unsigned int>(SETUP_CANCELLED)) << Utf8(outcome.strCause);
    EXPECT_EQ(recorded, byHand);
    EXPECT_EQ(recordedPaths, pathsByHand);
}

// The run says no to it so that nothing happens, which nobody has answered.
TEST_F(WizardRecording, AQuestionThatTheAnswersDoNotKnowIsNotRecorded)
{
    const RunOutcome outcome = RunWith({{L"begin", L"location", location}, {L"begin", L"name", L"Office"}});
    EXPECT_EQ(outcome.exitCode, static_cast<unsigned int>(SETUP_UNANSWERED_BOX)) << Utf8(outcome.strCause);
    EXPECT_EQ(recorded, L"begin: location=" + location + L", name=Office, (platform=x64)");
}

TEST_F(WizardRecording, AQuestionThatTheAnswersDenyIsRecorded)
{
    const RunOutcome outcome = RunWith({{L"begin", L"location", location},
                                        {L"begin", L"name", L"Office"},
                                        {L"begin", L"on_question.local_location", L"no"}});
    EXPECT_EQ(outcome.exitCode, static_cast<unsigned int>(SETUP_ANSWER_REFUSED)) << Utf8(outcome.strCause);
    EXPECT_EQ(recorded,
              L"begin: location=" + location + L", name=Office, (platform=x64), ?local_location=no");
}

TEST_F(WizardRecording, APageGoneBackToKeepsWhatItProposedFirst)
{
    Begin(L"Office");
    Press(IDC_NETWORK_LOG, IDC_NEXT);
    Press(IDC_SHORTCUTS, IDC_NEXT);
    Press(IDC_PATH_TREE, IDC_NEXT);
    Press(IDC_FILES_TREE, IDC_NEXT);
    Set(IDC_PARTS_BAY, IDC_PARTS_BAY, false);
    Press(IDC_PARTS_BAY, IDC_NEXT);
    Press(IDC_UPDATES, IDC_BACK);
    Cancel(IDC_PARTS_BAY);
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_GE(recorded.Find(L"resources/Zolt 2027: parts_bay=no, ("), 0) << Utf8(recorded);
}

TEST_F(WizardRecording, AnswersOfAnEarlierAttemptOfTheFirstPageDoNotCount)
{
    OnPage(IDC_LOCATION, [this](HWND page) { return CControl(page, IDC_LOCATION).SetText(location); });
    Type(IDC_LOCATION, IDC_NAME, L"Office");
    Press(IDC_LOCATION, IDC_NEXT);
    AnswerBox(IDNO);
    Press(IDC_LOCATION, IDC_NEXT);
    AnswerBox(IDYES);
    Cancel(IDC_NETWORK_LOG);
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_EQ(FirstPage().Right(21), CString(L", ?local_location=yes")) << Utf8(recorded);
}

TEST_F(WizardRecording, StartingOverForgetsThePagesOfTheRunBefore)
{
    Begin(L"Office");
    BuildThatFails();
    OnPage(IDC_FAILURE_REASON, [this](HWND) {
        CopyFromSample(CABINET); // or the package could not be opened anew
        return StepOutcome::Done();
    });
    Press(IDC_FAILURE_REASON, IDC_RESET);
    Cancel(IDC_LOCATION);
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_EQ(BehindFirstPage(), CString()) << Utf8(recorded);
    EXPECT_EQ(recorded.Left(6), CString(L"begin:"));
}

// In the dialog for a deployment that is modified, which tells the tabs that were gone to from the others.
TEST_F(WizardRecording, TheTabsOfADeploymentThatIsModifiedAreRecorded)
{
    BuildBase(L"Base");
    Press(IDC_LOCATION, IDC_NEXT);
    Press(IDC_NETWORK_LOG, IDC_NEXT);
    GoToNextTab(IDC_PATH_TREE);
    GoToNextTab(IDC_FILES_TREE);
    GoToNextTab(IDC_PARTS_BAY);
    Set(IDC_CONFIGURE_TABS, IDC_PARTS_BAY, false);
    CancelDialog();
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_EQ(BehindFirstPage(),
              CString(L"settings: (network_log=no), (keep_copy=no), (install_mode=silent)\n"
                      L"workstation/Zolt 2027: (desktop_shortcut=yes), (shortcut=), (browser_required=yes), "
                      L"(sheet_format=yes), (profile=Default)\n"
                      L"resources/Zolt 2027: parts_bay=no, (member_bay=yes), (round_trip=yes), "
                      L"(send_computer_name=no), (search_locations=yes)\n"
                      L"notices/Zolt 2027: not shown\n"
                      L"service_pack/Zolt 2027: not shown"));
}

// Also what it kept before: a deployment that isn't built upon this one would keep something else.
TEST_F(WizardRecording, OfADeploymentThatIsModifiedAllThatAPageKeepsIsRecorded)
{
    BuildBase(L"Base");
    Press(IDC_LOCATION, IDC_NEXT);
    Press(IDC_NETWORK_LOG, IDC_NEXT);
    GoToNextTab(IDC_PATH_TREE);
    GoToNextTab(IDC_FILES_TREE);
    GoToNextTab(IDC_PARTS_BAY);
    GoToNextTab(IDC_SITE_CHANNEL);
    CancelDialog();
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_GE(recorded.Find(L"(site_channel=no), (~site_feed=), (~site_name="), 0) << Utf8(recorded);
}

TEST_F(WizardRecording, GoingBackToTheFirstPageAndOnAgainKeepsWhatWasRecorded)
{
    BuildBase(L"Base");
    Press(IDC_LOCATION, IDC_NEXT);
    Press(IDC_NETWORK_LOG, IDC_NEXT);
    GoToNextTab(IDC_PATH_TREE);
    GoToNextTab(IDC_FILES_TREE);
    GoToNextTab(IDC_PARTS_BAY);
    Set(IDC_CONFIGURE_TABS, IDC_PARTS_BAY, false);
    Press(IDC_CONFIGURE_TABS, IDC_CONFIGURE_BACK);
    Press(IDC_NETWORK_LOG, IDC_BACK);
    Press(IDC_LOCATION, IDC_NEXT);
    Press(IDC_NETWORK_LOG, IDC_NEXT);
    CancelDialog();
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_GE(recorded.Find(L"resources/Zolt 2027: parts_bay=no, (member_bay=yes)"), 0) << Utf8(recorded);
}

// The products' databases are opened anew then, and hold nothing of what was entered.
TEST_F(WizardRecording, AnotherModeForgetsWhatWasRecordedOfTheProducts)
{
    BuildBase(L"Base");
    Press(IDC_LOCATION, IDC_NEXT);
    Press(IDC_NETWORK_LOG, IDC_NEXT);
    GoToNextTab(IDC_PATH_TREE);
    GoToNextTab(IDC_FILES_TREE);
    GoToNextTab(IDC_PARTS_BAY);
    Set(IDC_CONFIGURE_TABS, IDC_PARTS_BAY, false);
    Press(IDC_CONFIGURE_TABS, IDC_CONFIGURE_BACK);
    Press(IDC_NETWORK_LOG, IDC_BACK);
    Set(IDC_LOCATION, IDC_MODE_CREATE, true);
    Type(IDC_LOCATION, IDC_NAME, L"New");
    Press(IDC_LOCATION, IDC_NEXT);
    Press(IDC_NETWORK_LOG, IDC_NEXT);
    Press(IDC_SHORTCUTS, IDC_NEXT);
    Press(IDC_PATH_TREE, IDC_NEXT);
    Press(IDC_FILES_TREE, IDC_NEXT);
    Cancel(IDC_PARTS_BAY);
    EXPECT_EQ(Run().exitCode, static_cast<unsigned int>(SETUP_CANCELLED));
    EXPECT_EQ(BehindFirstPage(),
              CString(L"settings: (network_log=no), (keep_copy=no), (install_mode=silent)\n"
                      L"workstation/Zolt 2027: (desktop_shortcut=yes), (shortcut=)\n"
                      L"resources/Zolt 2027: (parts_bay=yes), (member_bay=yes), (round_trip=yes), "
                      L"(send_computer_name=no), (search_locations=yes)"));
}

} // namespace
