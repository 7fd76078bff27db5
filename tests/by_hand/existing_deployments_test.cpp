// Runs from a deployment's image: what stands in the way of the choice on the first page, and modifying without a change.
#include "automation/message_box.h"
#include "automation/window_finder.h"
#include "base/files.h"
#include "include/resource_ids.h"
#include "setup/resource.h"
#include "tests/by_hand/by_hand_fixture.h"
#include "tests/support/resource_strings.h"

#include <algorithm>

namespace {

class ExistingDeploymentsByHand : public ByHandTest
{
protected:
    void StartFromOffice()
    {
        BuildByAnswers(GetLocation(), L"Office");
        Start(Deployment(L"Office") + L"\\Image");
    }

    // In another folder than the one whose deployments the page lists, with a file that no build made.
    void BuildMarkedLab()
    {
        m_other = InFolder(L"Other");
        ASSERT_TRUE(CreateDirectoryW(m_other, nullptr));
        BuildByAnswers(m_other, L"Lab");
        WriteFileBytes(m_other + L"\\Lab\\MARK.txt", "put here by hand");
    }

    void ExpectQuestion(const CString& question)
    {
        EXPECT_HOLDS(question, m_other + L"\\Lab");
        EXPECT_HOLDS(question, CString(L"MARK.txt"));
        EXPECT_HOLDS(question, ProgramText(IDS_REPLACE_QUESTION));
    }

    // A new deployment in another folder than the one whose deployments the page lists.
    void EnterNewDeployment(const CString& location, const wchar_t* name)
    {
        HWND page = WaitFor(Shown::FirstPage);
        StrikeKey('C', {VK_MENU});
        WaitUntil(L"the choice of a new deployment",
                  [&] { return IsDlgButtonChecked(page, IDC_MODE_CREATE) != 0; });
        StrikeKey('L', {VK_MENU});
        WaitForFocus(page, IDC_LOCATION);
        Type(page, IDC_LOCATION, location); // in place of what the key has selected
        StrikeKey('A', {VK_MENU});
        Type(page, IDC_NAME, name);
        StrikeKey(VK_RETURN);
    }

    void ChooseLab(HWND page)
    {
        StrikeKey('D', {VK_MENU});
        WaitForFocus(page, IDC_DEPLOYMENTS);
        StrikeKey(VK_HOME); // Lab stands before Office
        WaitUntil(L"the choice of Lab",
                  [&] { return SendDlgItemMessageW(page, IDC_DEPLOYMENTS, LB_GETCURSEL, 0, 0) == 0; });
    }

    Lines LogOfOpeningOffice() const
    {
        Lines lines = LogOfOpening();
        lines.insert(lines.begin() + 1, LogOfLoading(L"Office"));
        return lines;
    }

    static CString LogOfLoading(const wchar_t* name)
    {
        return CString(L"Settings of the deployment \"") + name + L"\" loaded from <folder>\\Deployments\\" +
               name + L"\\Deployment.xml";
    }

    // Of all files but the manifest, which has one line above theirs.
    CString LogOfCheck(const wchar_t* name) const
    {
        std::string manifest;
        EXPECT_EQ(ReadWholeFile(Deployment(name) + L"\\Manifest.txt", 1 << 20, manifest), 0u);
        const auto lines = std::count(manifest.begin(), manifest.end(), '\n');
        return CString(L"The deployment in \"<folder>\\Deployments\\") + name + L"\" is what was built (" +
               NumberText(static_cast<long long>(lines) - 1) + L" files).";
    }

    // The mode that was chosen, and the question in one line.
    Lines LogOfQuestion(const wchar_t* answer) const
    {
        CString question = GetBoxes().front();
        question = WithoutOwnPaths(question);
        for (const wchar_t* lineEnd : {L"\n\n", L"\n"}) {
            question.Replace(lineEnd, L" ");
        }
        return {L"Setup mode 4, platform 3, deployment \"Lab\" in <folder>\\Other\\, based on \"\"",
                L"Question \"" + question + L"\" = " + answer};
    }

    CString m_other;
};

// The question about a deployment that the page didn't list, by Enter, which is No.
TEST_F(ExistingDeploymentsByHand, AnUnlistedDeploymentIsKeptOnNoAndTheFirstPageComesBack)
{
    BuildMarkedLab();
    StartFromOffice();
    EnterNewDeployment(m_other, L"Lab");
    ExpectQuestion(AnswerBox(VK_RETURN));
    HWND page = WaitFor(Shown::FirstPage);
    EXPECT_EQ(WindowText(GetDlgItem(page, IDC_NAME)), CString(L"Lab"));
    EXPECT_EQ(WindowText(GetDlgItem(page, IDC_LOCATION)), m_other + L"\\");
    StrikeKey(VK_ESCAPE);
    AnswerCancelQuestion('Y');
    ExpectEnd(1602, Join({LogOfOpeningOffice(), LogOfQuestion(L"no"), LogOfCanceledPage()}),
              {GetBoxes().front(), CancelQuestion()});
    EXPECT_TRUE(FileExists(m_other + L"\\Lab\\MARK.txt"));
}

TEST_F(ExistingDeploymentsByHand, AnUnlistedDeploymentIsReplacedOnYesAndTheWarningNamesWhatIsKept)
{
    BuildMarkedLab();
    StartFromOffice();
    EnterNewDeployment(m_other, L"Lab");
    ExpectQuestion(AnswerBox('Y'));
    WalkToBuild();
    AnswerBox(VK_RETURN);
    WaitFor(Shown::CompletePage);
    StrikeKey(VK_RETURN);
    ASSERT_EQ(ListFolder(m_other).size(), 2u);
    const CString kept = m_other + L"\\" + ListFolder(m_other).back() + L"\\Lab";
    const CString warning = L"Files that were added to the old deployment or changed in it were kept in \"" +
                            kept + L"\": \"MARK.txt\".";
    Lines build = LogOfBuild(L"Lab");
    build.erase(build.begin()); // the mode, which is logged before the question
    build.insert(build.end() - 4, L"  Checking Lab for added or changed files");
    build.back() = L"Deployment <folder>\\Other\\Lab\\";
    build.insert(build.end() - 1, L"Warning: " + WithoutOwnPaths(warning));
    ExpectEnd(0, Join({LogOfOpeningOffice(), LogOfQuestion(L"yes"), build, {L"Exit code 0"}}),
              {GetBoxes().front(), ProgramText(IDS_BUILD_WARNINGS, {L"\n\n" + warning})});
    EXPECT_TRUE(FileExists(kept + L"\\MARK.txt"));
    EXPECT_TRUE(FileExists(m_other + L"\\Lab\\Deployment.xml"));
    EXPECT_FALSE(FileExists(m_other + L"\\Lab\\MARK.txt"));
}

TEST_F(ExistingDeploymentsByHand, ABaseThatHasGoneLeadsBackToTheFirstPageWithTheReason)
{
    BuildByAnswers(GetLocation(), L"Lab");
    StartFromOffice();
    HWND page = WaitFor(Shown::FirstPage);
    ChooseLab(page);
    ASSERT_TRUE(DeleteFileW(Deployment(L"Lab") + L"\\Deployment.xml"));
    StrikeKey(VK_RETURN);
    const CString reason = AnswerBox(VK_RETURN);
    HWND again = WaitFor(Shown::FirstPage);
    EXPECT_NE(again, page);
    EXPECT_TRUE(IsWindowEnabled(GetDlgItem(again, IDC_NEXT)));
    StrikeKey(VK_ESCAPE);
    AnswerCancelQuestion('Y');
    const CString logged = WithoutOwnPaths(reason);
    EXPECT_HOLDS(logged, CString(L"\"Lab\""));
    ExpectEnd(1602,
              Join({LogOfOpeningOffice(),
                    {logged, logged, LogOfLoading(L"Office")}, // the page loads it, and enters the mode
                    LogOfCanceledPage()}),
              {reason, CancelQuestion()});
}

TEST_F(ExistingDeploymentsByHand, ModifyingWithoutAChangeIsCanceledWithoutAQuestion)
{
    BuildByAnswers(GetLocation(), L"Lab");
    StartFromOffice();
    HWND page = WaitFor(Shown::FirstPage);
    ChooseLab(page);
    StrikeKey('L', {VK_MENU});
    Type(page, IDC_LOCATION,
         GetLocation()); // without the backslash: which deployment is meant is no change of it
    StrikeKey(VK_RETURN);
    WaitFor(Shown::SettingsPage);
    StrikeKey(VK_RETURN);
    WaitFor(Shown::ConfigureDialog);
    StrikeKey(VK_ESCAPE);
    ExpectEnd(
        1602,
        Join({LogOfOpeningOffice(),
              {LogOfLoading(L"Lab"),
               L"Setup mode 6, platform 3, deployment \"Lab\" in <folder>\\Deployments\\, based on \"Lab\"",
               LogOfCheck(L"Lab")},
              LogOfCanceledPage()}),
        {});
}

TEST_F(ExistingDeploymentsByHand, ModifyingWithAChangeIsCanceledOnYesAlone)
{
    StartFromOffice();
    WaitFor(Shown::FirstPage);
    StrikeKey(VK_RETURN);
    HWND page = WaitFor(Shown::SettingsPage);
    StrikeKey('P', {VK_MENU});
    WaitUntil(L"the progress bar's choice",
              [&] { return IsDlgButtonChecked(page, IDC_INSTALL_PROGRESS) != 0; });
    StrikeKey(VK_RETURN);
    HWND dialog = WaitFor(Shown::ConfigureDialog);
    StrikeKey(VK_ESCAPE);
    AnswerBox(VK_RETURN); // No is the default
    EXPECT_EQ(WaitFor(Shown::ConfigureDialog), dialog);
    CloseByBox(dialog);
    AnswerBox('Y');
    const CString question = ProgramText(IDS_CONFIGURE_CANCEL_QUESTION);
    ExpectEnd(1602,
              Join({LogOfOpeningOffice(),
                    {L"Setup mode 6, platform 3, deployment \"Office\" in <folder>\\Deployments\\, based on "
                     L"\"Office\"",
                     LogOfCheck(L"Office")},
                    LogOfCanceledPage()}),
              {question, question});
}

TEST_F(ExistingDeploymentsByHand, StartOverForgetsWhatWasChanged)
{
    StartFromOffice();
    WaitFor(Shown::FirstPage);
    StrikeKey(VK_RETURN);
    HWND page = WaitFor(Shown::SettingsPage);
    StrikeKey('P', {VK_MENU});
    WaitUntil(L"the progress bar's choice",
              [&] { return IsDlgButtonChecked(page, IDC_INSTALL_PROGRESS) != 0; });
    StrikeKey('O', {VK_MENU});
    WaitFor(Shown::FirstPage);
    StrikeKey(VK_RETURN);
    page = WaitFor(Shown::SettingsPage);
    EXPECT_FALSE(IsDlgButtonChecked(page, IDC_INSTALL_PROGRESS));
    StrikeKey(VK_RETURN);
    WaitFor(Shown::ConfigureDialog);
    StrikeKey(VK_ESCAPE);
    const CString mode =
        L"Setup mode 6, platform 3, deployment \"Office\" in <folder>\\Deployments\\, based on \"Office\"";
    const CString check = LogOfCheck(L"Office"); // the products were opened anew
    ExpectEnd(
        1602,
        Join(
            {LogOfOpeningOffice(), {mode, check, LogOfLoading(L"Office"), mode, check}, LogOfCanceledPage()}),
        {});
}

TEST_F(ExistingDeploymentsByHand, ABaseThatIsNotWhatWasBuiltIsGoneOnWithOnYesAlone)
{
    BuildByAnswers(GetLocation(), L"Office");
    WriteFileBytes(Deployment(L"Office") + L"\\Image\\MARK.txt", "put here by hand");
    Start(Deployment(L"Office") + L"\\Image");
    WaitFor(Shown::FirstPage);
    StrikeKey(VK_RETURN);
    const CString question = AnswerBox(VK_RETURN); // No is the default
    EXPECT_HOLDS(question, CString(L"is not what was built: 1 added."));
    EXPECT_HOLDS(question, CString(L"\nAdded: Image\\MARK.txt\n"));
    WaitFor(Shown::FirstPage);
    StrikeKey(VK_RETURN);
    EXPECT_EQ(AnswerBox('Y'), question);
    WaitFor(Shown::SettingsPage);
    StrikeKey(VK_RETURN);
    WaitFor(Shown::ConfigureDialog);
    StrikeKey(VK_ESCAPE);
    const CString mode =
        L"Setup mode 6, platform 3, deployment \"Office\" in <folder>\\Deployments\\, based on \"Office\"";
    CString asked = WithoutOwnPaths(question);
    for (const wchar_t* lineEnd : {L"\n\n", L"\n"}) {
        asked.Replace(lineEnd, L" ");
    }
    const Lines found = {
        L"Warning: The deployment in \"<folder>\\Deployments\\Office\" is not what was built: 1 added.",
        L"  Added: Image\\MARK.txt"};
    ExpectEnd(1602,
              Join({LogOfOpeningOffice(),
                    {mode},
                    found,
                    {L"Question \"" + asked + L"\" = no", mode},
                    found,
                    {L"Question \"" + asked + L"\" = yes"},
                    LogOfCanceledPage()}),
              {question, question});
}

} // namespace
