// What a person or a log hears of a deployment that is modified or built upon, with real boxes and windows.
#include "automation/control.h"
#include "automation/message_box.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "setup/base_check.h"
#include "setup/resource.h"
#include "tests/setup/stub_host.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <atomic>

namespace {

class BaseCheck : public testing::Test
{
protected:
    BaseCheck()
    {
        host.baseFolder = L"\\\\server\\share\\Office & Lab";
        found.strFolder = host.baseFolder;
        found.bIsDeployment = true;
        found.verdict = VerifyVerdict::AsBuilt;
        log.UseHost(&host);
        m_script.SetFailureHandler([] {
            while (CloseFrontWindow()) {
            }
        });
    }
    ~BaseCheck() override { log.UseHost(nullptr); }

    void FindDamage(int count)
    {
        found.verdict = VerifyVerdict::Differs;
        for (int index = 0; index < count; ++index) {
            found.findings.push_back({FindingKind::Added, L"file" + NumberText(index), {}, {}, {}, {}});
        }
    }

    void AnswerBox(int button)
    {
        m_script.Add(L"answer the box", [this, button] {
            const auto box = FindMessageBox();
            if (!box) {
                return StepOutcome::NotYet(L"there is no box");
            }
            question = box->text;
            return AnswerMessageBox(*box, button);
        });
    }

    bool Check(bool unattended = false)
    {
        CBaseCheck check(Verify(), log, unattended);
        return Check(check);
    }
    bool Check(CBaseCheck& check)
    {
        m_script.Start();
        const bool goesOn = check.Check(host);
        EXPECT_FALSE(m_script.HasFailed()) << Utf8(m_script.GetFailure());
        return goesOn;
    }
    CBaseCheck::VerifyFunction Verify()
    {
        return [this](const CString&, IBuildProgress& progress, VerifyResult& result) {
            ++verified;
            progress.OnStep(L"Checking the files");
            while (isHeld && progress.OnProgress(1 << 20, 2 << 20, L"Image\\Zolt.msi")) {
                SwitchToThread();
            }
            result = found;
            result.bCancelled = isHeld;
            return complaint;
        };
    }

    static HWND Window() { return FindWindowWithControls({IDC_BUILD_STEP, IDC_BUILD_BAR}); }

    StubHost host;
    CRunLog log{false, CString()};
    VerifyResult found;
    CString complaint;
    CString question;
    std::atomic<bool> isHeld = false;
    int verified = 0;
    CScript m_script;
};

} // namespace

TEST_F(BaseCheck, AGoodBaseIsGoneOnWithAndStandsInTheLog)
{
    EXPECT_TRUE(Check());
    ASSERT_EQ(host.logged.size(), 1u);
    EXPECT_HOLDS(host.logged[0], L"is what was built");
}

// One of an earlier version: nobody is asked, and the log says what nobody could look at.
TEST_F(BaseCheck, WhatAGoodBaseDoesNotRecordStandsInTheLogAlone)
{
    found.unrecorded = {L"codes of the databases, as the deployment has no Changes.json"};
    EXPECT_TRUE(Check());
    ASSERT_EQ(host.logged.size(), 2u);
    EXPECT_EQ(host.logged[1],
              CString(L"  Not checked: codes of the databases, as the deployment has no Changes.json"));
}

TEST_F(BaseCheck, ANewDeploymentHasNothingToCheck)
{
    host.baseFolder.Empty();
    EXPECT_TRUE(Check());
    EXPECT_EQ(verified, 0);
}

TEST_F(BaseCheck, ABaseIsCheckedOnceUnlessNobodyWentOnWithIt)
{
    FindDamage(1);
    CBaseCheck check(Verify(), log, false);
    AnswerBox(IDNO);
    EXPECT_FALSE(Check(check));
    AnswerBox(IDYES);
    EXPECT_TRUE(Check(check));
    EXPECT_TRUE(Check(check));
    EXPECT_EQ(verified, 2);
}

TEST_F(BaseCheck, APersonIsAskedWithTheFirstFindingsAndHowManyMore)
{
    FindDamage(12);
    AnswerBox(IDYES);
    EXPECT_TRUE(Check());
    EXPECT_HOLDS(question, L"is not what was built: 12 added.");
    EXPECT_HOLDS(question, L"\nAdded: file0\n");
    EXPECT_HOLDS(question, L"\nAdded: file9\nand 2 more\n");
    ASSERT_EQ(host.logged.size(), 14u);
    EXPECT_HOLDS(host.logged[0], L"Warning: The deployment in \"");
    EXPECT_HOLDS(host.logged[12], L"  Added: file11");
    EXPECT_HOLDS(host.logged[13], L"= yes");
}

TEST_F(BaseCheck, AnUnattendedRunGoesOnWithAWarning)
{
    FindDamage(101);
    EXPECT_TRUE(Check(true));
    ASSERT_EQ(host.logged.size(), 102u);
    EXPECT_HOLDS(host.logged[0], L"Warning: The deployment in \"");
    EXPECT_HOLDS(host.logged[101], L"--verify names all 101.");
}

TEST_F(BaseCheck, WhatCannotBeDeterminedIsAskedAboutToo)
{
    complaint = L"The library is missing.";
    AnswerBox(IDNO);
    EXPECT_FALSE(Check());
    EXPECT_HOLDS(question, L"The library is missing.");
}

TEST_F(BaseCheck, ALongCheckShowsHowFarItIsAndIsCanceledOnYes)
{
    isHeld = true;
    m_script.Add(L"wait for the window's file", [] {
        const HWND window = Window();
        return Until(window && CControl(window, IDC_BUILD_FILE).GetText() == L"Image\\Zolt.msi" &&
                         CControl(window, IDC_BUILD_STEP).GetText() == L"Checking the files",
                     L"it isn't there");
    });
    m_script.Add(L"cancel", [] { return CControl(Window(), IDCANCEL).Click(); });
    AnswerBox(IDYES);
    EXPECT_FALSE(Check());
    EXPECT_HOLDS(question, L"stop checking");
    EXPECT_TRUE(host.logged.empty());
}
