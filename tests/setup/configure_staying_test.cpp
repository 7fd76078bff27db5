// When the dialog must not be left: a page is at work, or has disabled the ways out.
#include "automation/picture.h"
#include "setup/texts.h"
#include "tests/setup/configure_fixture.h"

namespace {

class ConfigureStaying : public ConfigureTest
{
protected:
    void SavePicture(const wchar_t* name)
    {
        wchar_t folder[MAX_PATH] = L"";
        GetTempPathW(MAX_PATH, folder);
        (void)SaveWindowPicture(Dialog(), CString(folder) + name); // for who wants to look
    }
    void DisableWaysOutUnderBox()
    {
        Step(L"disable the ways out under the box", [this] {
            if (!FindMessageBox()) {
                return StepOutcome::NotYet(L"no box is up");
            }
            SendMessageW(Page(0), TEST_MESSAGE_ENABLE_LEAVING, FALSE, 0);
            return StepOutcome::Done();
        });
    }
};

// Such a box leaves the dialog enabled, and the page's handler lost its window under it.
TEST_F(ConfigureStaying, ItStaysWhileAPageIsAtWorkBehindABoxWithoutAnOwner)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    Type(L"own keys");
    for (const bool byKey : {false, true}) {
        if (byKey) {
            Key(VK_F2);
        } else {
            Do([this] { PostMessageW(Page(0), TEST_MESSAGE_BOX, 0, 0); });
        }
        Step(L"leave the dialog under the box", [this] {
            if (!FindMessageBox()) {
                return StepOutcome::NotYet(L"no box is up");
            }
            for (const UINT command : {IDC_CONFIGURE_NEXT, IDC_CONFIGURE_BACK, IDC_CONFIGURE_CANCEL}) {
                SendMessageW(Dialog(), WM_COMMAND, command, 0);
            }
            SendMessageW(Dialog(), WM_CLOSE, 0, 0);
            EXPECT_FALSE(Dialog().GoTo(1));
            return StepOutcome::Done();
        });
        Answer(IDOK, L"Without an owner");
        Look([&] {
            EXPECT_EQ(Dialog().GetFront(), 0);
            EXPECT_EQ(record.alive, 1);
            EXPECT_TRUE(record.stored.empty());
        });
    }
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

// The way of its neighbour had made it anew, and destroyed it under its own handler.
TEST_F(ConfigureStaying, APageAtWorkIsNotMadeAnewByTheWayOfItsNeighbor)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    HWND atWork = nullptr;
    Do([&] {
        atWork = Page(0);
        PostMessageW(atWork, TEST_MESSAGE_BOX, 0, 0);
    });
    Step(L"go to the page under the box", [this] {
        if (!FindMessageBox()) {
            return StepOutcome::NotYet(L"no box is up");
        }
        SendMessageW(Page(1), WM_COMMAND, MAKEWPARAM(IDC_PREVIOUS_TAB, BN_CLICKED),
                     reinterpret_cast<LPARAM>(GetDlgItem(Page(1), IDC_PREVIOUS_TAB)));
        return StepOutcome::Done();
    });
    Answer(IDOK, L"Without an owner");
    Look([&] {
        EXPECT_EQ(Dialog().GetFront(), 0);
        EXPECT_EQ(Page(0), atWork);
        EXPECT_EQ(record.created, (std::vector<int>{0, 1}));
    });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

// ---- a page that can't be left now

TEST_F(ConfigureStaying, ItIsNotLeftWhileThePageHasDisabledTheWaysOut)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    Step(L"focus Continue", [this] { return InDialog(IDC_CONFIGURE_NEXT).Focus(); });
    Do([this] { SendMessageW(Page(0), TEST_MESSAGE_ENABLE_LEAVING, FALSE, 0); });
    Look([this] {
        for (const int button : {IDC_CONFIGURE_NEXT, IDC_CONFIGURE_BACK, IDC_CONFIGURE_CANCEL}) {
            EXPECT_FALSE(InDialog(button).IsEnabled()) << button;
        }
        EXPECT_TRUE(OnPage(IDC_TEST_EDIT).HasFocus()) << "the keys go nowhere";
        SavePicture(L"configure-page-that-stays.png");
    });
    Key(VK_ESCAPE);
    Key(VK_RETURN);
    Key(VK_TAB, KeyModifier::Control);
    Do([this] {
        for (const UINT command : {IDC_CONFIGURE_NEXT, IDC_CONFIGURE_BACK, IDC_CONFIGURE_CANCEL}) {
            SendMessageW(Dialog(), WM_COMMAND, command, 0);
        }
        SendMessageW(Dialog(), WM_CLOSE, 0, 0);
        EXPECT_FALSE(Dialog().GoTo(1));
        const HWND tabs = GetDlgItem(Dialog(), IDC_CONFIGURE_TABS);
        NMHDR leaving = {tabs, IDC_CONFIGURE_TABS, static_cast<UINT>(TCN_SELCHANGING)};
        EXPECT_NE(SendMessageW(Dialog(), WM_NOTIFY, IDC_CONFIGURE_TABS, reinterpret_cast<LPARAM>(&leaving)),
                  0);
    });
    Look([&] {
        EXPECT_EQ(Dialog().GetFront(), 0);
        EXPECT_EQ(Stores(), std::vector<PageMessage>());
        EXPECT_TRUE(record.stored.empty());
        SendMessageW(Page(0), TEST_MESSAGE_ENABLE_LEAVING, TRUE, 0);
    });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureStaying, BackStaysOffBehindAPageThatCanBeLeftAgain)
{
    options.bCanGoBack = false;
    AddProduct(L"Zolt");
    AddTabs(1);
    Do([this] {
        SendMessageW(Page(0), TEST_MESSAGE_ENABLE_LEAVING, FALSE, 0);
        SendMessageW(Page(0), TEST_MESSAGE_ENABLE_LEAVING, TRUE, 0);
    });
    Look([this] { EXPECT_FALSE(InDialog(IDC_CONFIGURE_BACK).IsEnabled()); });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

// A page may begin its work while the dialog's own box is up.
TEST_F(ConfigureStaying, CancelStaysWhenThePageHasDisabledTheWaysOutUnderTheQuestion)
{
    AddProduct(L"Zolt");
    AddTabs(1);
    options.bLosesChoices = true;
    Press(IDC_CONFIGURE_CANCEL);
    DisableWaysOutUnderBox();
    Answer(IDYES, SetupText(IDS_CONFIGURE_CANCEL_QUESTION));
    Look([this] {
        EXPECT_EQ(host.manager.m_exitCode, 0u);
        EXPECT_EQ(host.log.Of(L"EnableCancelling").back(), CString(L"EnableCancelling(true)"));
        SendMessageW(Page(0), TEST_MESSAGE_ENABLE_LEAVING, TRUE, 0);
    });
    Press(IDC_CONFIGURE_CANCEL);
    Answer(IDYES, SetupText(IDS_CONFIGURE_CANCEL_QUESTION));
    EXPECT_EQ(Run(), NAVIGATION_CANCEL);
}

TEST_F(ConfigureStaying, BackAndTabsStayWhenThePageHasDisabledTheWaysOutUnderABox)
{
    bool silent = false;
    options.checkDatabase = [&silent](CProduct&) { return silent ? CString(L"gone") : CString(); };
    AddProduct(L"Zolt");
    AddTabs(2);
    for (const bool byTab : {true, false}) {
        Do([&silent] { silent = true; });
        if (byTab) {
            GoTo(1);
        } else {
            Press(IDC_CONFIGURE_BACK);
        }
        DisableWaysOutUnderBox();
        Answer(IDOK, SetupText(IDS_CONFIGURE_NO_DATABASE, {L"Zolt", L"gone"}));
        Look([&] {
            EXPECT_EQ(Dialog().GetFront(), 0);
            silent = false;
            SendMessageW(Page(0), TEST_MESSAGE_ENABLE_LEAVING, TRUE, 0);
            EXPECT_TRUE(Dialog().GoTo(1)) << "a silence that is over is told anew";
            EXPECT_TRUE(Dialog().GoTo(0));
        });
    }
    Press(IDC_CONFIGURE_BACK);
    EXPECT_EQ(Run(), NAVIGATION_BACK);
}

TEST_F(ConfigureStaying, APageThatGoesWhileItCannotBeLeftLeavesTheWaysOutOpen)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    Do([this] {
        SendMessageW(Page(0), TEST_MESSAGE_ENABLE_LEAVING, FALSE, 0);
        DestroyWindow(Page(0));
    });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

TEST_F(ConfigureStaying, APageThatGoesKeepsTheWaysOutClosedThatAnotherOneHasDisabled)
{
    AddProduct(L"Zolt");
    AddTabs(2);
    GoTo(1);
    Do([this] {
        SendMessageW(Page(0), TEST_MESSAGE_ENABLE_LEAVING, FALSE, 0);
        DestroyWindow(Page(1));
    });
    Look([this] {
        EXPECT_FALSE(InDialog(IDC_CONFIGURE_NEXT).IsEnabled());
        EXPECT_FALSE(Dialog().GoTo(0));
        SendMessageW(Page(0), TEST_MESSAGE_ENABLE_LEAVING, TRUE, 0);
    });
    Press(IDC_CONFIGURE_NEXT);
    EXPECT_EQ(Run(), NAVIGATION_NEXT);
}

} // namespace
