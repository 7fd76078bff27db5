// What stands in the new deployment's place, asked about with real boxes.
#include "automation/message_box.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "setup/target_settling.h"
#include "tests/setup/stub_host.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

class TargetSettling : public testing::Test
{
protected:
    TargetSettling()
    {
        host.verdict.state = TargetVerdict::State::NeedsAnswer;
        host.verdict.strFolder = L"\\\\server\\share\\Office & Lab";
        host.verdict.strProduct = L"Zolt 2027 27.0.0";
        host.verdict.strStamp = L"stamp";
        const SYSTEMTIME built = {2026, 11, 6, 21, 12, 0, 0, 0};
        SystemTimeToFileTime(&built, &host.verdict.builtAt);
        m_script.SetFailureHandler([] {
            while (CloseFrontWindow()) {
            }
        });
    }

    void AnswerBox(int button)
    {
        m_script.Add(L"answer the box", [this, button] {
            const auto found = FindMessageBox();
            if (!found) {
                return StepOutcome::NotYet(L"there is no box");
            }
            box = *found;
            return AnswerMessageBox(*found, button);
        });
    }

    TargetSettled Settle()
    {
        m_script.Start();
        const TargetSettled settled = settling.Settle(host, false);
        EXPECT_FALSE(m_script.HasFailed()) << Utf8(m_script.GetFailure());
        return settled;
    }

    StubHost host;
    CAnswers answers;
    CRunLog log{false, CString()};
    std::vector<CString> noted;
    CTargetSettling::AnswerNote note = [this](const CString& section, const wchar_t* role, bool yes) {
        noted.push_back(section + L"." + role + (yes ? L"=yes" : L"=no"));
    };
    CTargetSettling settling{answers, log, note};
    MessageBoxView box; // the last one
    CScript m_script;
};

} // namespace

TEST_F(TargetSettling, TheQuestionNamesFolderProductDateAndFiles)
{
    host.verdict.ownFiles = {L"Image\\own.txt", L"Install.cmd"};
    AnswerBox(IDYES);
    Settle();
    for (const wchar_t* text : {L"\\\\server\\share\\Office & Lab", L"Zolt 2027 27.0.0", L"November 21, 2026",
                                L"Image\\own.txt\nInstall.cmd", L"kept in a folder beside"}) {
        EXPECT_GE(box.text.Find(text), 0) << Utf8(text) << " in " << Utf8(box.text);
    }
}

TEST_F(TargetSettling, TheQuestionNamesNoMoreThanTenFiles)
{
    for (int number = 1; number <= 1000; ++number) {
        host.verdict.ownFiles.push_back(L"own" + NumberText(number));
    }
    const CString question = ReplacementQuestion(host.verdict);
    EXPECT_GE(question.Find(L"own10\nand 990 more"), 0) << Utf8(question);
    EXPECT_LT(question.Find(L"own11"), 0) << Utf8(question);
}

TEST_F(TargetSettling, ADeploymentWithoutAManifestIsSaidToBeKeptWhole)
{
    EXPECT_LT(ReplacementQuestion(host.verdict).Find(L"kept"), 0);
    host.verdict.bKeptWhole = true;
    EXPECT_GE(ReplacementQuestion(host.verdict).Find(L"The whole folder will be kept"), 0);
}

TEST_F(TargetSettling, EnterInTheQuestionMeansNo)
{
    AnswerBox(IDNO);
    EXPECT_EQ(Settle(), TargetSettled::ChooseAgain);
    EXPECT_EQ(box.defaultButton, IDNO);
    EXPECT_EQ(box.buttons, static_cast<UINT>(MB_YESNO));
    EXPECT_EQ(box.icon, static_cast<UINT>(MB_ICONWARNING));
    EXPECT_EQ(host.allowedStamps, std::vector<CString>());
    EXPECT_EQ(host.declined, 1);
}

TEST_F(TargetSettling, YesAllowsTheDeploymentThatWasShown)
{
    AnswerBox(IDYES);
    EXPECT_EQ(Settle(), TargetSettled::GoOn);
    EXPECT_EQ(host.allowedStamps, std::vector<CString>{L"stamp"});
}

TEST_F(TargetSettling, ARefusalIsShownAndLeadsBack)
{
    host.verdict.state = TargetVerdict::State::Refused;
    host.verdict.message = L"The folder holds no deployment.";
    AnswerBox(IDOK);
    EXPECT_EQ(Settle(), TargetSettled::ChooseAgain);
    EXPECT_EQ(box.text, host.verdict.message);
    EXPECT_EQ(box.icon, static_cast<UINT>(MB_ICONERROR));
    EXPECT_EQ(host.allowedStamps, std::vector<CString>());
}

TEST_F(TargetSettling, AFreePlaceBringsNoBox)
{
    for (const auto state : {TargetVerdict::State::Free, TargetVerdict::State::MayBeReplaced}) {
        host.verdict.state = state;
        EXPECT_EQ(settling.Settle(host, false), TargetSettled::GoOn);
    }
}

TEST_F(TargetSettling, APersonsAnswerIsNoted)
{
    AnswerBox(IDNO);
    Settle();
    AnswerBox(IDYES);
    Settle();
    EXPECT_EQ(noted, (std::vector<CString>{L"begin.replace_unlisted=no", L"begin.replace_unlisted=yes"}));
}

TEST_F(TargetSettling, AnAnswerOfTheAnswersIsNotedToo)
{
    for (const bool yes : {true, false}) {
        PageAnswers section;
        section.pTable = FindAnswerTable(PageAnswerTables(), L"begin");
        section.questions.push_back({FindQuestion(*section.pTable, ROLE_REPLACE_UNLISTED), yes, {}});
        CAnswers given;
        given.fileSections.push_back(section);
        noted.clear();
        CTargetSettling unattended{given, log, note};
        EXPECT_EQ(unattended.Settle(host, true), yes ? TargetSettled::GoOn : TargetSettled::EndRun);
        EXPECT_EQ(noted, std::vector<CString>{CString(L"begin.replace_unlisted=") + (yes ? L"yes" : L"no")});
    }
}
