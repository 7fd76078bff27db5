// The configure dialog on test pages: real windows, a real installer database for each product, and a script of steps
// that are played while the dialog runs.
//
//     Type(L"hello");
//     GoTo(3);
//     Look([&] { EXPECT_EQ(Dialog().GetFront(), 3); });
//     Press(IDC_CONFIGURE_NEXT);
//     EXPECT_EQ(Run(), NAVIGATION_NEXT);
//
// After each test no window, GDI object, menu, icon or installer handle may be left over.
#pragma once

#include "automation/control.h"
#include "automation/keyboard.h"
#include "automation/message_box.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "base/handle.h"
#include "include/navigation.h"
#include "include/resource_ids.h"
#include "setup/configure_dialog.h"
#include "setup/unattended_pages.h"
#include "tests/setup/tab_pages/tab_page_ids.h"
#include "tests/setup/tab_pages/tab_pages.h"
#include "tests/support/leftovers.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_host.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <msi.h>

#include <functional>
#include <memory>
#include <vector>

// Where the tests' dialogs remember their place; taken away after each test.
constexpr wchar_t TEST_PLACE_KEY[] = L"Software\\Velkmora\\RolloutTest";

class ConfigureTest : public testing::Test
{
protected:
    static void SetUpTestSuite();

    ConfigureTest();
    ~ConfigureTest() override;
    void TearDown() override;

    // ---- before Run

    // A product with a database of its own.
    TestProduct& AddProduct(const wchar_t* name);
    // Tabs with the pages 0 to `count` - 1 of each product.
    void AddTabs(int count);
    // `name`: the export under which the page is known; null: its own.
    void AddTab(int page, TestProduct& product, const wchar_t* name = nullptr);
    // One of an export by its name.
    void AddTab(const wchar_t* page, TabPageFunction create, TestProduct& product);
    void AddTabWithoutProduct(int page);
    ConfigureOptions options;
    PageHookList leaveHooks;    // of the tabs that are added from then on
    PageHookList postInitHooks; // likewise

    // ---- steps, in the order of their noting

    void Step(const wchar_t* name, CScript::Step step);
    // Once the dialog is up and no box hides it.
    void Do(std::function<void()> act);
    void Look(std::function<void()> look) { Do(std::move(look)); }
    void Await(const wchar_t* what, std::function<bool()> condition);
    void Type(const wchar_t* text);
    void GoTo(int tab);
    void Press(int button);
    void PressOnPage(int button);
    void Key(WORD virtualKey, KeyModifier modifier = KeyModifier::None);
    // A key that closes the dialog.
    void LastKey(WORD virtualKey);
    void Answer(int button, const CString& text);

    // Shows the dialog and plays the steps; its result.
    int Run();
    // The same without steps or a person.
    int RunUnattended(CUnattendedPages& pages);

    // ---- looks

    CConfigureDialog& Dialog() { return *m_dialog; }
    HWND Page(int tab) { return m_dialog->GetPage(tab); }
    HWND FrontPage() { return Page(m_dialog->GetFront()); }
    CControl OnPage(int id) { return CControl(FrontPage(), id); }
    CControl InDialog(int id) { return CControl(m_dialog->m_hWnd, id); }
    int VisiblePages();
    // Messages of the contract that the pages got, without the counter.
    std::vector<PageMessage> Stores() const;
    CString Property(TestProduct& product, const wchar_t* name) const;
    void CloseDatabase(TestProduct& product);

    // Runs what makes the system fill caches of its own, and begins the test behind that.
    void BeginBehind(const std::function<void()>& warmUp);

    TestHost host;
    PagesRecord& record;
    CScript script;

    // `unattended`: null for a run by steps.
    virtual int ShowDialog(CConfigureDialog& dialog, CUnattendedPages* unattended);

private:
    void WarmUp();
    void Forget();

    ProcessState m_before;
    CTestFolder m_folder;
    std::vector<MSIHANDLE> m_databases;
    std::vector<TestProduct*> m_products;
    std::vector<ConfigureTab> m_tabs;
    std::unique_ptr<CConfigureDialog> m_dialog;
};
