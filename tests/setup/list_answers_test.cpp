// Lists and trees entered without a person: what the page holds when it is left, in both shapes.
#include "setup/exit_codes.h"
#include "tests/setup/list_answers_fixture.h"

namespace {

class ListAnswers : public ListAnswersTest
{
};

INSTANTIATE_TEST_SUITE_P(Shapes, ListAnswers, testing::Values(PageShape::Walked, PageShape::Tab),
                         [](const auto& shape) {
                             return shape.param == PageShape::Walked ? "Walked" : "Tab";
                         });

TEST_P(ListAnswers, LinesAreEnteredInTheirOrder)
{
    const CString one = AddFile(L"one.txt");
    const CString two = AddFile(L"two.txt");
    const std::vector<ListLine> lines = {Folder(L"Zeta"),
                                         Folder(L"Inner", L"<Installation Directory>\\Zeta"),
                                         Folder(L"Alpha"),
                                         File(two, L"<Installation Directory>\\Zeta\\Inner"),
                                         File(one),
                                         {L"download", {L"Update 2"}},
                                         {L"download", {L"Update 1"}}};
    UseAnswers(Text(lines));
    RunToItsEnd();
    EXPECT_EQ(Held(), lines);
}

TEST_P(ListAnswers, ClearingEmptiesThePageBeforeItsFirstLine)
{
    page.folders = {L"Old", L"Older"};
    page.rows = {{L"<Installation Directory>\\Old", L"C:\\old.txt"}, {LIST_ROOT, L"C:\\older.txt"}};
    UseAnswers(L"[things]\nfolder = \"<Installation Directory>\", \"New\"\nclear = yes\n"
               L"on_question.delete = yes\n");
    RunToItsEnd();
    EXPECT_EQ(Held(), std::vector<ListLine>{Folder(L"New")});
}

TEST_P(ListAnswers, WithoutClearingTheLinesComeBehindThoseThatAreThere)
{
    page.folders = {L"Old"};
    UseAnswers(L"[things]\nclear = no\nfolder = \"<Installation Directory>\", \"New\"\n");
    RunToItsEnd();
    EXPECT_EQ(Held(), (std::vector<ListLine>{Folder(L"Old"), Folder(L"New")}));
}

TEST_P(ListAnswers, WhatWasReadIsEnteredAndReadAgainInAnyScript)
{
    std::vector<ListLine> lines;
    for (const wchar_t* name :
         {L"Müller & Söhne", L"Отдел продаж", L"東京支社", L"عربي", L"say \"hello\", twice", L"\"", L", ",
          L"  blanks  ", L"#no comment", L"100 %", L"a = b", L"[begin]", L"😀 face", L"\t"}) {
        lines.push_back(Folder(name));
    }
    // Folders are read with what is in them.
    lines.push_back(Folder(L"in", L"<Installation Directory>\\\t"));
    for (const wchar_t* name : {L"план.txt", L"a, b.txt", L"two  blanks.txt", L"100 %.txt", L"日本語.txt"}) {
        lines.push_back(File(AddFile(name), L"<Installation Directory>\\say \"hello\", twice"));
    }
    UseAnswers(Text(lines));
    RunToItsEnd();
    EXPECT_EQ(Held(), lines);
}

TEST_P(ListAnswers, AQuestionAboutALineIsAnswered)
{
    const CString file = AddFile(L"one.txt");
    page.rows = {{LIST_ROOT, file}};
    UseAnswers(L"[things]\non_question.twice = yes\nfile = \"<Installation Directory>\", \"" + file +
               L"\"\n");
    RunToItsEnd();
    EXPECT_EQ(Held(), (std::vector<ListLine>{File(file), File(file)}));
}

TEST_P(ListAnswers, AKeptValueIsEnteredWhileItsFeatureIsOffAndStaysOff)
{
    UseAnswers(L"[things]\nbanner_text.kept = Welcome\n");
    RunToItsEnd();
    EXPECT_EQ(bannerText, CString(L"Welcome"));
    EXPECT_FALSE(banner);
}

TEST_P(ListAnswers, AKeptValueIsEnteredBeforeItsFeatureIsSwitchedOff)
{
    page.bBanner = true;
    UseAnswers(L"[things]\nbanner = no\nbanner_text.kept = Welcome\n");
    RunToItsEnd();
    EXPECT_EQ(bannerText, CString(L"Welcome"));
    EXPECT_FALSE(banner);
}

TEST_P(ListAnswers, WorkThatTheLastLineHasBegunIsAwaitedBeforeThePageIsLeft)
{
    page.downloadMilliseconds = 700; // the limit is a second
    UseAnswers(L"[things]\ndownload = \"Update\"\n");
    RunToItsEnd();
    EXPECT_EQ(Held(), (std::vector<ListLine>{{L"download", {L"Update"}}}));
}

TEST_P(ListAnswers, WorkIsAwaitedBehindEachLine)
{
    page.downloadMilliseconds = 400; // together longer than the limit
    UseAnswers(L"[things]\ndownload = \"1\"\ndownload = \"2\"\ndownload = \"3\"\n");
    RunToItsEnd();
    EXPECT_EQ(page.downloads, 3);
    EXPECT_EQ(Held().size(), 3u);
}

TEST_P(ListAnswers, AWorkLimitOfTheAnswersWinsOverThePagesOwn)
{
    page.downloadMilliseconds = 1500;
    UseAnswers(L"[things]\ndownload = \"Update\"\nlimit = 30\n");
    RunToItsEnd();
    EXPECT_EQ(Held(), (std::vector<ListLine>{{L"download", {L"Update"}}}));
}

class ListTabs : public ListAnswersTest
{
};

INSTANTIATE_TEST_SUITE_P(Shapes, ListTabs, testing::Values(PageShape::Tab));

TEST_P(ListTabs, ATabThatIsNotToBeShownIsNotGoneTo)
{
    hasTabs = true;
    TestProduct& zolt = AddProduct(L"Zolt");
    AddTab(0, zolt);
    AddListTab(zolt);
    AddTab(1, zolt);
    UseAnswers(L"[things]\nshow = no\n");
    Run();
    EXPECT_FALSE(failure);
    EXPECT_EQ(record.created, (std::vector<int>{0, 1}));
    EXPECT_TRUE(held.empty());
}

// They were ignored without a word.
TEST_P(ListTabs, AnswersForATabThatIsNotToBeShownAreRefused)
{
    hasTabs = true;
    AddListTab(AddProduct(L"Zolt"));
    AddTab(0, AddProduct(L"Volt"));
    UseAnswers(L"[things]\nshow = no\ncaption = never entered\n");
    Run();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->exitCode, static_cast<unsigned int>(SETUP_PAGE_NOT_REACHED));
    EXPECT_GE(failure->strCause.Find(L"things.caption: "), 0) << Utf8(failure->strCause);
    EXPECT_EQ(record.created, (std::vector<int>{}));
}

// It counted as a page that can't be made.
TEST_P(ListTabs, AQuestionThatATabAsksWhileItIsBeingMadeIsAnsweredByItsOwnSection)
{
    static int answer;
    answer = 0;
    hasTabs = true;
    TestProduct& zolt = AddProduct(L"Zolt");
    AddTab(0, zolt);
    postInitHooks = {[](PageContext* context) {
        return answer =
                   MessageBoxW(context->hParent, L"Delete the folder Old with its files?", L"", MB_YESNO);
    }};
    AddListTab(zolt);
    UseAnswers(L"[things]\non_question.delete = yes\n");
    Run();
    EXPECT_FALSE(failure);
    EXPECT_EQ(answer, IDYES);
}

TEST_P(ListTabs, EachProductsPageIsGivenItsOwnAnswers)
{
    hasTabs = true;
    AddListTab(AddProduct(L"Zolt"));
    AddListTab(AddProduct(L"Volt"));
    UseAnswers(L"[things]\nfolder = \"<Installation Directory>\", \"any\"\ncaption = any\n"
               L"[things \"volt\"]\nfolder = \"<Installation Directory>\", \"own\"\n");
    RunToItsEnd();
    ASSERT_GE(held.size(), 2u);
    EXPECT_EQ(held[0], std::vector<ListLine>{Folder(L"any")});
    EXPECT_EQ(held[1], std::vector<ListLine>{Folder(L"own")});
    EXPECT_EQ(caption, CString(L"any"));
}

TEST_P(ListTabs, ATabIsLeftOnlyWhenItsWorkIsDone)
{
    hasTabs = true;
    TestProduct& zolt = AddProduct(L"Zolt");
    AddListTab(zolt);
    AddTab(0, zolt);
    page.downloadMilliseconds = 500;
    UseAnswers(L"[things]\ndownload = \"Update\"\n");
    RunToItsEnd();
    EXPECT_EQ(Held().size(), 1u);
}

} // namespace
