// Runs without a person through the configure dialog: which page a box is blamed on, and with which code the run ends.
#include "msi/msi_property.h"
#include "setup/exit_codes.h"
#include "setup/text_forms.h"
#include "setup/texts.h"
#include "tests/setup/configure_fixture.h"

namespace {

TestHost* g_host = nullptr; // of the running test, for its hooks

class ConfigureUnattended : public ConfigureTest
{
protected:
    ConfigureUnattended()
    {
        g_host = &host;
        options.strPlaceKey.Empty();
    }

    void RunToItsFailure()
    {
        static_cast<void>(RunUnattended(m_pages));
        ASSERT_TRUE(m_pages.GetFailure()) << "the run went through";
        outcome = *m_pages.GetFailure();
    }

    int RunToItsEnd()
    {
        const int result = RunUnattended(m_pages);
        EXPECT_FALSE(m_pages.GetFailure()) << Utf8(m_pages.GetFailure()->strCause);
        return result;
    }

    RunOutcome outcome;

private:
    CRunLog m_log{false, CString()};
    CAnswers m_answers;
    CPagePictures m_pictures{CString(), m_log};
    CUnattendedPages m_pages{m_answers, m_pictures, m_log};
};

TEST_F(ConfigureUnattended, APageThatRefusesIsBlamedItself)
{
    TestProduct& zolt = AddProduct(L"Zolt");
    AddTabs(2);
    WriteProperty(zolt.database, L"TEST_VALUE_0", L"bad");
    RunToItsFailure();
    EXPECT_EQ(outcome.exitCode, static_cast<unsigned int>(SETUP_ANSWER_REFUSED));
    EXPECT_EQ(outcome.strCause, CString(L"Test0Page: Page 0 refuses"));
}

TEST_F(ConfigureUnattended, OfSeveralProductsTheOneWhosePageRefusesIsNamed)
{
    AddProduct(L"Zolt");
    TestProduct& volt = AddProduct(L"Volt");
    AddTabs(1);
    WriteProperty(volt.database, L"TEST_VALUE_0", L"bad");
    RunToItsFailure();
    EXPECT_EQ(outcome.strCause, CString(L"Test0Page: Volt: Page 0 refuses"));
}

TEST_F(ConfigureUnattended, OfSeveralProductsTheOneWhosePageCantBeMadeIsNamed)
{
    leaveHooks = {[](PageContext*) {
        g_host->language.wizTextPath = L"C:\\no such folder\\";
        return 1;
    }};
    AddProduct(L"Zolt");
    AddProduct(L"Volt");
    AddTabs(1);
    RunToItsFailure();
    EXPECT_EQ(outcome.strCause,
              CString(L"The page Test0Page of Volt can't be shown in the configure dialog. Failed to load "
                      L"C:\\no such folder\\WizText.dll"));
}

// It ended with 22, and the page before was blamed.
TEST_F(ConfigureUnattended, ALaterPageThatCantBeMadeFailsTheRunUnderItsOwnName)
{
    leaveHooks = {[](PageContext*) {
        g_host->language.wizTextPath = L"C:\\no such folder\\";
        return 1;
    }};
    AddProduct(L"Zolt");
    AddTabs(2);
    RunToItsFailure();
    EXPECT_EQ(outcome.exitCode, static_cast<unsigned int>(SETUP_FAILED));
    EXPECT_EQ(outcome.strCause,
              CString(L"The page Test1Page can't be shown in the configure dialog. Failed to load "
                      L"C:\\no such folder\\WizText.dll"));
}

// It was refused at once, for an answer that was missing or empty.
TEST_F(ConfigureUnattended, ContinueIsAwaitedWhileAPageHasDisabledTheWaysOut)
{
    static int ticks;
    ticks = 0;
    postInitHooks = {[](PageContext* context) {
        SendMessageW(context->hParent, TEST_MESSAGE_ENABLE_LEAVING, FALSE, 0);
        SetTimer(context->hParent, 1, 100, [](HWND page, UINT, UINT_PTR timer, DWORD) {
            if (++ticks == 10) {
                KillTimer(page, timer);
                SendMessageW(page, TEST_MESSAGE_ENABLE_LEAVING, TRUE, 0);
            }
        });
        return 1;
    }};
    AddProduct(L"Zolt");
    AddTabs(1);
    EXPECT_EQ(RunToItsEnd(), NAVIGATION_NEXT);
    EXPECT_EQ(ticks, 10);
}

// So it did for a database that no longer answers.
TEST_F(ConfigureUnattended, ADatabaseThatGoesFailsTheRunAndIsNoRefusalOfAPage)
{
    options.checkDatabase = [asked = 0](CProduct&) mutable {
        return ++asked > 1 ? CString(L"gone") : CString();
    };
    AddProduct(L"Zolt");
    AddTabs(2);
    RunToItsFailure();
    EXPECT_EQ(outcome.exitCode, static_cast<unsigned int>(SETUP_FAILED));
    EXPECT_EQ(outcome.strCause, OneLine(SetupText(IDS_CONFIGURE_NO_DATABASE, {L"Zolt", L"gone"})));
}

} // namespace
