// What the page of additional files shows of additions that can't go along: with real boxes over a window that stands for the
// page, whose hooks are called as the page calls them.
#include "automation/message_box.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "include/navigation.h"
#include "setup/addition_texts.h"
#include "setup/addition_watch.h"
#include "tests/setup/stub_host.h"
#include "tests/support/empty_product.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

namespace {

class Product final : public EmptyProduct
{
public:
    bool GetProperty(const wchar_t*, wchar_t* buffer, int* size) override
    {
        const int capacity = *size;
        *size = notAdded.GetLength();
        if (!buffer || capacity <= *size) {
            return false;
        }
        std::copy_n(notAdded.GetString(), *size + 1, buffer);
        return true;
    }
    void SetProperty(const wchar_t*, const wchar_t* value) override { notAdded = value; }

    CString notAdded; // ADDITIONAL_FILES_NOT_ADDED
};

class AdditionWatch : public testing::Test
{
protected:
    AdditionWatch()
    {
        m_log.UseHost(&m_host);
        // Answers each box that comes up, for as long as the test runs.
        m_script.Add(L"answer boxes", [this] {
            const std::optional<MessageBoxView> box = FindMessageBox();
            if (box && box->window != m_answered) {
                m_answered = box->window;
                boxes.push_back(box->text);
                static_cast<void>(AnswerMessageBox(*box, IDOK));
            } else if (!box) {
                m_answered = nullptr;
            }
            return StepOutcome::NotYet(L"the test is running");
        });
        m_script.SetFailureHandler([] {
            while (CloseFrontWindow()) {
            }
        });
        m_script.Start();
    }
    ~AdditionWatch() override
    {
        m_script.Stop();
        ClosePage();
        m_log.UseHost(nullptr);
    }

    void UseWatch(bool isUnattended)
    {
        m_watch.emplace(
            [this](CProduct& asked, SourceLook look) {
                EXPECT_EQ(&asked, &product);
                looks.push_back(look);
                return findings;
            },
            m_log, isUnattended);
    }

    // A wizard page: its hooks don't name the product.
    void OpenPage(const CString& page = L"AddAdditionalFilesDialog")
    {
        m_shown = PageContext();
        m_shown.pProduct = &product;
        m_watch->Watch(m_shown, page);
        m_page = CreateWindowExW(0, L"STATIC", L"page", WS_OVERLAPPEDWINDOW, 0, 0, 300, 200, nullptr, nullptr,
                                 nullptr, nullptr);
        RunPostInitHooks();
        ShowWindow(m_page, SW_SHOW);
    }
    void ClosePage()
    {
        if (m_page) {
            DestroyWindow(m_page);
            m_page = nullptr;
        }
    }
    void RunPostInitHooks()
    {
        PageContext context;
        context.hParent = m_page;
        for (const PageHook hook : m_shown.postInitHooks) {
            hook(&context);
        }
    }
    int Leave()
    {
        PageContext context;
        int result = 1;
        for (const PageHook hook : m_shown.leaveHooks) {
            result = hook(&context);
        }
        return result;
    }
    void PumpUntilBox()
    {
        const ULONGLONG end = GetTickCount64() + 10000;
        MSG message = {};
        while (boxes.empty() && GetTickCount64() < end) {
            MsgWaitForMultipleObjects(0, nullptr, FALSE, 100, QS_ALLINPUT);
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                DispatchMessageW(&message);
            }
        }
    }

    static AdditionFinding Refused(const CString& name)
    {
        return {2, L"<Installation Directory>\\" + name, L"C:\\x\\" + name,
                L"The file \"" + name + L"\" is gone."};
    }
    static AdditionFinding Noted(const CString& name)
    {
        AdditionFinding finding = Refused(name);
        finding.code = 0;
        return finding;
    }

    Product product;
    std::vector<AdditionFinding> findings;
    std::vector<SourceLook> looks;
    std::vector<CString> boxes;
    StubHost m_host;

private:
    CRunLog m_log{false, CString()};
    std::optional<CAdditionWatch> m_watch;
    PageContext m_shown;
    HWND m_page = nullptr;
    HWND m_answered = nullptr;
    CScript m_script;
};

} // namespace

TEST_F(AdditionWatch, WhatWasAddedIsShownAtOnceAndOnce)
{
    UseWatch(false);
    OpenPage();
    findings = {Refused(L"a.txt"), Noted(L"b.txt")};
    RunPostInitHooks();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(
        boxes[0],
        L"The deployment can't be created with these additional files:\n\n<Installation Directory>\\a.txt\n"
        L"The file \"a.txt\" is gone.\n\nNote the following about the additional files:\n\n"
        L"<Installation Directory>\\b.txt\nThe file \"b.txt\" is gone.");
    RunPostInitHooks();
    EXPECT_EQ(boxes.size(), 1u) << "known by now";
    findings.push_back(Refused(L"c.txt"));
    RunPostInitHooks();
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_LT(boxes[1].Find(L"a.txt"), 0) << Utf8(boxes[1]);
    EXPECT_HOLDS(boxes[1], L"c.txt");
    EXPECT_EQ(looks,
              (std::vector<SourceLook>{SourceLook::All, SourceLook::New, SourceLook::New, SourceLook::New}));
}

TEST_F(AdditionWatch, OneThatComesBackIsShownAgain)
{
    UseWatch(false);
    OpenPage();
    findings = {Refused(L"a.txt")};
    RunPostInitHooks();
    findings.clear();
    RunPostInitHooks();
    EXPECT_EQ(boxes.size(), 1u);
    findings = {Refused(L"a.txt")};
    RunPostInitHooks();
    EXPECT_EQ(boxes.size(), 2u);
}

TEST_F(AdditionWatch, ThePageStaysWhileABuildWouldBeRefused)
{
    UseWatch(false);
    OpenPage();
    EXPECT_NE(Leave(), HOOK_VETO);
    findings = {Refused(L"a.txt")};
    EXPECT_EQ(Leave(), HOOK_VETO);
    EXPECT_EQ(Leave(), HOOK_VETO);
    EXPECT_EQ(boxes.size(), 2u) << "each try says why";
    findings.clear();
    EXPECT_NE(Leave(), HOOK_VETO);
    EXPECT_EQ(boxes.size(), 2u);
    EXPECT_EQ(looks.back(), SourceLook::All);
}

TEST_F(AdditionWatch, WhatIsOnlyToBeNotedIsShownOnceAndKeepsNoPage)
{
    UseWatch(false);
    OpenPage();
    findings = {Noted(L"a.txt")};
    EXPECT_NE(Leave(), HOOK_VETO);
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].Find(L"Note the following"), 0) << Utf8(boxes[0]);
    EXPECT_NE(Leave(), HOOK_VETO);
    EXPECT_EQ(boxes.size(), 1u);
}

TEST_F(AdditionWatch, WhatThePageOpensWithIsShownOnlyWhereABuildWouldBeRefused)
{
    UseWatch(false);
    findings = {Refused(L"a.txt"), Noted(L"b.txt")};
    OpenPage();
    EXPECT_TRUE(boxes.empty()) << "nobody sees the page yet";
    PumpUntilBox();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_HOLDS(boxes[0], L"a.txt");
    EXPECT_LT(boxes[0].Find(L"b.txt"), 0) << Utf8(boxes[0]);
    RunPostInitHooks();
    EXPECT_EQ(boxes.size(), 1u) << "nothing of it is new";
}

TEST_F(AdditionWatch, AnotherVisitKnowsNothingOfTheOneBefore)
{
    UseWatch(false);
    OpenPage();
    findings = {Refused(L"a.txt")};
    RunPostInitHooks();
    ClosePage();
    findings.clear();
    OpenPage();
    findings = {Refused(L"a.txt")};
    RunPostInitHooks();
    EXPECT_EQ(boxes.size(), 2u);
}

TEST_F(AdditionWatch, EveryFindingStandsInTheLogAndABoxNamesTheFirstEight)
{
    UseWatch(false);
    OpenPage();
    for (int number = 1; number <= 1000; ++number) {
        findings.push_back(Refused(L"file " + NumberText(number) + L".txt"));
    }
    RunPostInitHooks();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_HOLDS(boxes[0], L"file 8.txt");
    EXPECT_LT(boxes[0].Find(L"file 9.txt"), 0) << Utf8(boxes[0]);
    EXPECT_HOLDS(boxes[0], L"The log has 992 more.");
    EXPECT_EQ(m_host.logged.size(), 1000u);
    EXPECT_HOLDS(m_host.logged.back(), L"<Installation Directory>\\file 1000.txt: The file");
}

TEST_F(AdditionWatch, FilesThatThePageCouldNotAddAreNamedOnceAndKeepNobody)
{
    UseWatch(false);
    OpenPage();
    product.notAdded = L"C:\\a\\two.bin|C:\\b\\long.txt";
    RunPostInitHooks();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_HOLDS(boxes[0], L"C:\\a\\two.bin\nThis file was not added");
    EXPECT_HOLDS(boxes[0], L"C:\\b\\long.txt\nThis file was not added");
    EXPECT_EQ(m_host.logged.size(), 2u);
    EXPECT_TRUE(product.notAdded.IsEmpty());
    RunPostInitHooks();
    EXPECT_EQ(boxes.size(), 1u);
    EXPECT_NE(Leave(), HOOK_VETO);
}

TEST_F(AdditionWatch, WithoutAPersonOnlyWhatRefusesABuildIsShown)
{
    UseWatch(true);
    findings = {Refused(L"old.txt")};
    OpenPage();
    findings.push_back(Noted(L"a.txt"));
    RunPostInitHooks();
    EXPECT_TRUE(boxes.empty()) << "the answers may be about to remove it";
    findings.push_back(Refused(L"b.txt"));
    RunPostInitHooks();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_HOLDS(boxes[0], L"b.txt");
    EXPECT_LT(boxes[0].Find(L"old.txt"), 0) << Utf8(boxes[0]);
    EXPECT_EQ(Leave(), HOOK_VETO);
    EXPECT_EQ(boxes.size(), 2u);
    EXPECT_EQ(m_host.logged.size(), 3u);
}

TEST_F(AdditionWatch, OtherPagesAreLeftAlone)
{
    UseWatch(false);
    findings = {Refused(L"a.txt")};
    OpenPage(L"PathCustomizationDialog");
    EXPECT_TRUE(looks.empty());
    EXPECT_NE(Leave(), HOOK_VETO);
}
