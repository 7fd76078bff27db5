// What is recorded of the tabs of the configure dialog, by hand and without a person.
#include "msi/msi_property.h"
#include "setup/answers_recorder.h"
#include "setup/texts.h"
#include "tests/setup/configure_fixture.h"
#include "tests/setup/recorded_text.h"
#include "tests/setup/recorder_table.h"

namespace {

class ConfigureRecording : public ConfigureTest
{
protected:
    ConfigureRecording()
    {
        PageContext hooked;
        recorder.AddTabHooks(hooked);
        leaveHooks = hooked.leaveHooks;
        options.pageMade = [this](const ConfigureTab& tab, HWND page) {
            recorder.WatchTab(page, tab.strPage, tab.context.pProduct);
        };
    }

    // The pages 0 and 1, as those of the product.
    void AddTwoTabs(TestProduct& product)
    {
        AddTab(0, product, L"OnlineResourcesPage");
        AddTab(1, product, L"NoticeDeskFeedBoardPage");
    }

    int ShowDialog(CConfigureDialog& dialog, CUnattendedPages* unattended) override
    {
        recorder.BeginTabs(dialog);
        const int result = ConfigureTest::ShowDialog(dialog, unattended);
        recorder.EndTabs();
        return result;
    }

    CString Recorded() const { return RecordedText(recorder.GetPages()); }

    CAnswersRecorder recorder{RecorderTable::TABLES, RecorderTable::LISTS};
};

TEST_F(ConfigureRecording, WhatWasEnteredOnATabIsRecordedAndATabNeverGoneToAsSuch)
{
    AddTwoTabs(AddProduct(L"Zolt"));
    Type(L"entered");
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Recorded(), CString(L"resources/Zolt: (check=no), value=entered, (choice=one)\n"
                                  L"notices/Zolt: not shown"));
}

TEST_F(ConfigureRecording, ATabGoneToInALaterRunOfTheDialogIsShown)
{
    AddTwoTabs(AddProduct(L"Zolt"));
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
    GoTo(1);
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Recorded(), CString(L"resources/Zolt: (check=no), (value=), (choice=one)\n"
                                  L"notices/Zolt: (check=no), (value=), (choice=one)"));
}

// The page then starts from what it has stored.
TEST_F(ConfigureRecording, APageMadeAnewKeepsWhatItProposedFirst)
{
    AddTwoTabs(AddProduct(L"Zolt"));
    Type(L"entered");
    GoTo(1);
    GoTo(0);
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(record.created, (std::vector<int>{0, 1, 0}));
    EXPECT_EQ(RecordedText(recorder.GetPages().front()),
              CString(L"resources/Zolt: (check=no), value=entered, (choice=one)"));
}

TEST_F(ConfigureRecording, TheTabsOfTwoProductsAreApart)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    TestProduct& volt = AddProduct(L"Volt");
    AddTab(1, zolt, L"NoticeDeskFeedBoardPage");
    AddTab(1, volt, L"NoticeDeskFeedBoardPage");
    WriteProperty(volt.database, L"TEST_VALUE_1", L"of Volt");
    Type(L"entered");
    GoTo(1);
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Recorded(), CString(L"notices/Zolt: (check=no), value=entered, (choice=one)\n"
                                  L"notices/Volt: (check=no), (value=of Volt), (choice=one)"));
}

TEST_F(ConfigureRecording, AQuestionBelongsToThePageThatIsAskedToStore)
{
    AddTwoTabs(AddProduct(L"Zolt"));
    GoTo(1);
    Type(L"doubtful");
    PressOnPage(IDC_PREVIOUS_TAB); // which stores unchecked
    Await(L"the tab before", [this] { return Dialog().GetFront() == 0; });
    Press(IDC_CONFIGURE_NEXT);
    Answer(IDYES, L"Page 1 asks");
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(Recorded(), CString(L"resources/Zolt: (check=no), (value=), (choice=one)\n"
                                  L"notices/Zolt: (check=no), value=doubtful, (choice=one), ?sure=yes"));
}

// A page that was accepted isn't asked again.
TEST_F(ConfigureRecording, TheAnswerOfATabThatWasLeftStays)
{
    AddTwoTabs(AddProduct(L"Zolt"));
    Type(L"doubtful");
    GoTo(1);
    Answer(IDYES, L"Page 0 asks");
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(RecordedText(recorder.GetPages().front()),
              CString(L"resources/Zolt: (check=no), value=doubtful, (choice=one), ?sure=yes"));
}

TEST_F(ConfigureRecording, AnEarlierAttemptOfATabDoesNotCount)
{
    AddTwoTabs(AddProduct(L"Zolt"));
    Type(L"doubtful");
    Press(IDC_CONFIGURE_NEXT);
    Answer(IDNO, L"Page 0 asks");
    Type(L"certain");
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    EXPECT_EQ(RecordedText(recorder.GetPages().front()),
              CString(L"resources/Zolt: (check=no), value=certain, (choice=one)"));
}

TEST_F(ConfigureRecording, AQuestionOfTheDialogsOwnIsNoPages)
{
    AddTab(1, AddProduct(L"Zolt"), L"BeginDeploymentDialog"); // which takes every question for its own
    options.bLosesChoices = true;
    Press(IDC_CONFIGURE_CANCEL);
    Answer(IDYES, SetupText(IDS_CONFIGURE_CANCEL_QUESTION));
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
    EXPECT_EQ(Recorded(), CString(L"begin: (check=no), (value=), (choice=one)"));
}

class SameRecord : public ConfigureRecording
{
protected:
    CString RunWithAnswers(const std::string& text)
    {
        AnswerSources sources;
        AnswersError error;
        EXPECT_TRUE(ParseAnswersFile(text.data(), text.size(), sources.file, error)) << Utf8(error.Text());
        sources.strFile = L"C:\\answers.txt";
        sources.strFileFolder = L"C:\\";
        sources.strCurrentFolder = L"C:\\";
        sources.tables = RecorderTable::TABLES;
        CAnswers answers;
        EXPECT_TRUE(JoinAnswers(sources, answers, error)) << Utf8(error.Text());
        CRunLog log{false, CString()};
        CPagePictures pictures{CString(), log};
        CUnattendedPages pages{answers, pictures, log, RecorderTable::TABLES, RecorderTable::LISTS};
        EXPECT_EQ(RunUnattended(pages), NAVIGATION_NEXT);
        EXPECT_FALSE(pages.GetFailure()) << Utf8(pages.GetFailure()->strCause);
        return Recorded();
    }
};

TEST_F(SameRecord, ARunWithoutAPersonGivesTheRecordOfTheRunByHand)
{
    AddTwoTabs(AddProduct(L"Zolt"));
    Type(L"doubtful");
    PressOnPage(IDC_TEST_CHOICE2);
    GoTo(1);
    Answer(IDYES, L"Page 0 asks");
    PressOnPage(IDC_TEST_CHECK);
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
    const CString byHand = Recorded();
    EXPECT_EQ(byHand, CString(L"resources/Zolt: (check=no), value=doubtful, choice=two, ?sure=yes\n"
                              L"notices/Zolt: check=yes, (value=), (choice=one)"));
    recorder.Forget();
    WriteProperty(host.products.front()->GetMsiHandle(), L"TEST_VALUE_0", L"");
    EXPECT_EQ(RunWithAnswers("rollout-answers 1\n[resources]\nvalue = doubtful\nchoice = two\n"
                             "on_question.sure = yes\n[notices]\ncheck = yes\n"),
              byHand);
}

TEST_F(SameRecord, ATabThatAnswersLeaveOutIsRecordedAsNotShown)
{
    AddTwoTabs(AddProduct(L"Zolt"));
    EXPECT_EQ(RunWithAnswers("rollout-answers 1\n[notices]\nshow = no\n"),
              CString(L"resources/Zolt: (check=no), (value=), (choice=one)\nnotices/Zolt: not shown"));
}

} // namespace
