// The page of online resources on a real installer database.
#include "installer/handle.h"
#include "msi/msi_property.h"
#include "tests/online/online_page.h"
#include "tests/support/import_redirect.h"

#include <msiquery.h>

#include <algorithm>
#include <array>
#include <map>
#include <vector>

namespace {

constexpr std::array<int, 5> BOXES = {IDC_PARTS_BAY, IDC_MEMBER_BAY, IDC_ROUND_TRIP, IDC_SEND_COMPUTER_NAME,
                                      IDC_SEARCH_LOCATIONS};
using Rows = std::map<CString, CString>;

class ResourcesPage : public OnlinePage
{
protected:
    ResourcesPage() : OnlinePage({OnlineResourcesDialog, OnlineResourcesPage})
    {
        EXPECT_EQ(MsiOpenDatabaseW(m_folder / L"zolt.msi", MSIDBOPEN_CREATE, m_database.put()), 0u);
        Run(L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` LONGCHAR NOT NULL PRIMARY KEY "
            L"`Property`)");
        context.hDatabase = m_database.get();
        context.pProduct = &host.AddProduct(L"zolt.msi", L"Zolt");
    }
    void TearDown() override
    {
        CloseDatabase();
        OnlinePage::TearDown();
    }

    void Run(const wchar_t* statement)
    {
        CInstallerHandle view;
        ASSERT_EQ(MsiDatabaseOpenViewW(m_database.get(), statement, view.put()), 0u);
        ASSERT_EQ(MsiViewExecute(view.get(), 0), 0u);
    }
    void WithProperty(const wchar_t* name, const CString& value)
    {
        EXPECT_TRUE(WriteProperty(m_database.get(), name, value));
    }
    // The whole table.
    Rows Table() const
    {
        Rows rows;
        CInstallerHandle view;
        EXPECT_EQ(
            MsiDatabaseOpenViewW(m_database.get(), L"SELECT `Property`,`Value` FROM `Property`", view.put()),
            0u);
        EXPECT_EQ(MsiViewExecute(view.get(), 0), 0u);
        for (CInstallerHandle record; MsiViewFetch(view.get(), record.put()) == 0;) {
            CString name;
            CString value;
            EXPECT_TRUE(ReadRecordText(record.get(), 1, name));
            EXPECT_TRUE(ReadRecordText(record.get(), 2, value));
            rows[name] = value;
        }
        return rows;
    }
    void CloseDatabase() { m_database.reset(); }

    CString Marks() const
    {
        CString marks;
        for (const int box : BOXES) {
            marks += IsChecked(box) ? L'x' : L'-';
        }
        return marks;
    }
    void ExpectMarks(const wchar_t* marks)
    {
        Look([this, marks] { EXPECT_EQ(Marks(), CString(marks)); });
    }

private:
    CTestFolder m_folder;
    CInstallerHandle m_database;
};
INSTANTIATE_BOTH_SHAPES(ResourcesPage);

const Rows DEFAULTS = {{L"ZOLT_PARTSBAY_ENABLE", L"#1"},
                       {L"ZOLT_MEMBERBAY_ENABLE", L"#1"},
                       {L"ZOLT_ENABLE_ROUNDTRIP", L"#1"},
                       {L"ZOLT_ENABLE_SEND_PC_NAME", L"#0"},
                       {L"ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE", L"#1"}};

Rows DefaultsAnd(const wchar_t* name, const wchar_t* value)
{
    Rows rows = DEFAULTS;
    rows[name] = value;
    return rows;
}

} // namespace

TEST_P(ResourcesPage, ADatabaseWithNoneOfTheSixGetsFiveRowsOnEntryAndTheSixthByTheFirstStore)
{
    Look([&] { EXPECT_EQ(Table(), DEFAULTS); });
    ExpectMarks(L"xxx-x");
    ShowAndGoBack();
    EXPECT_EQ(Table(), DefaultsAnd(L"ZOLT_PARTSBAY_DISABLE", L"#0"));
}

TEST_P(ResourcesPage, ValuesThatAreThereStayAsTheyAreOnEntry)
{
    WithProperty(L"ZOLT_PARTSBAY_ENABLE", L"#0");
    WithProperty(L"ZOLT_ENABLE_SEND_PC_NAME", L"no");
    ExpectMarks(L"-xxxx");
    Look([&] {
        EXPECT_EQ(Table()[L"ZOLT_PARTSBAY_ENABLE"], CString(L"#0"));
        EXPECT_EQ(Table()[L"ZOLT_ENABLE_SEND_PC_NAME"], CString(L"no"));
    });
    ShowAndGoBack();
}

TEST_P(ResourcesPage, TheComputersNameIsUncheckedByOffAndCheckedByNoWhichTheStoreNormalises)
{
    WithProperty(L"ZOLT_ENABLE_SEND_PC_NAME", L"#0");
    ExpectMarks(L"xxx-x");
    ShowAndGoBack();
    WithProperty(L"ZOLT_ENABLE_SEND_PC_NAME", L"no");
    ExpectMarks(L"xxxxx");
    ShowAndGoBack();
    EXPECT_EQ(Table()[L"ZOLT_ENABLE_SEND_PC_NAME"], CString(L"#1"));
}

TEST_P(ResourcesPage, EveryOtherTextThanOffCountsAsOn)
{
    WithProperty(L"ZOLT_PARTSBAY_ENABLE", L"#2");
    WithProperty(L"ZOLT_MEMBERBAY_ENABLE", L"[ZOLT]");
    WithProperty(L"ZOLT_ENABLE_ROUNDTRIP", L" #0");
    WithProperty(L"ZOLT_ENABLE_SEND_PC_NAME", CString(L'0', 5000));
    WithProperty(L"ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE", L"0");
    ExpectMarks(L"xxxxx");
    ShowAndGoBack();
    EXPECT_EQ(Table()[L"ZOLT_ENABLE_SEND_PC_NAME"], CString(L"#1"));
}

TEST_P(ResourcesPage, UncheckingThePartsBayGivesOffAndItsOppositeOn)
{
    SetChecked(IDC_PARTS_BAY, false);
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(Table()[L"ZOLT_PARTSBAY_ENABLE"], CString(L"#0"));
    EXPECT_EQ(Table()[L"ZOLT_PARTSBAY_DISABLE"], CString(L"#1"));
}

TEST_P(ResourcesPage, TheOppositeOfThePartsBayIsNeverRead)
{
    WithProperty(L"ZOLT_PARTSBAY_DISABLE", L"#1");
    ExpectMarks(L"xxx-x");
    ShowAndGoBack();
    EXPECT_EQ(Table()[L"ZOLT_PARTSBAY_DISABLE"], CString(L"#0"));
}

TEST_P(ResourcesPage, EachBoxIsStoredInItsOwnProperty)
{
    for (const int box : BOXES) {
        SetChecked(box, box == IDC_SEND_COMPUTER_NAME);
    }
    ShowAndGoBack();
    EXPECT_EQ(Table(), (Rows{{L"ZOLT_PARTSBAY_ENABLE", L"#0"},
                             {L"ZOLT_PARTSBAY_DISABLE", L"#1"},
                             {L"ZOLT_MEMBERBAY_ENABLE", L"#0"},
                             {L"ZOLT_ENABLE_ROUNDTRIP", L"#0"},
                             {L"ZOLT_ENABLE_SEND_PC_NAME", L"#1"},
                             {L"ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE", L"#0"}}));
}

TEST_P(ResourcesPage, WhatWasStoredByBackIsShownAgain)
{
    SetChecked(IDC_MEMBER_BAY, false);
    SetChecked(IDC_SEND_COMPUTER_NAME, true);
    ShowAndGoBack();
    ExpectMarks(L"x-xxx");
    ShowAndGoBack();
}

TEST_P(ResourcesPage, NoBoxEnablesAnother)
{
    for (const int box : BOXES) {
        SetChecked(box, box == IDC_SEND_COMPUTER_NAME);
    }
    Look([&] {
        for (const int box : BOXES) {
            EXPECT_TRUE(Control(box).IsEnabled()) << box;
        }
    });
    ShowAndGoBack();
}

TEST_P(ResourcesPage, AVetoKeepsThePageUnstored)
{
    static int asked = 0;
    asked = 0;
    context.leaveHooks = {[](PageContext*) { return ++asked == 1 ? HOOK_VETO : 1; }};
    SetChecked(IDC_MEMBER_BAY, false);
    Press(Next());
    Await(L"the hook wasn't asked", [] { return asked == 1; });
    Look([&] { EXPECT_EQ(Table(), DEFAULTS); });
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(Table()[L"ZOLT_MEMBERBAY_ENABLE"], CString(L"#0"));
}

TEST_P(ResourcesPage, ADatabaseThatIsGoneShowsTheDefaultsAndNoMessage)
{
    CloseDatabase();
    ExpectMarks(L"xxx-x");
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

// ---- the messages of a tab's host

namespace {

class ResourcesTab : public ResourcesPage
{
protected:
    static constexpr UINT MESSAGES[] = {PAGE_MESSAGE_STORE, PAGE_MESSAGE_STORE_ALL};
};
INSTANTIATE_TEST_SUITE_P(Shapes, ResourcesTab, testing::Values(Shape::Tab), ShapeName);

} // namespace

TEST_P(ResourcesTab, TheHostsMessagesStoreAndAnswerOne)
{
    bool checked = false;
    for (const UINT message : MESSAGES) {
        SetChecked(IDC_MEMBER_BAY, checked);
        Look([this, message, checked] {
            EXPECT_EQ(SendMessageW(Page(), message, 0, 0), 1);
            EXPECT_EQ(Table()[L"ZOLT_MEMBERBAY_ENABLE"], CString(checked ? L"#1" : L"#0"));
        });
        checked = !checked;
    }
    ShowAndGoBack();
}

TEST_P(ResourcesTab, TheHostsMessagesAnswerZeroAndStoreNothingAfterAVeto)
{
    context.leaveHooks = {[](PageContext*) { return HOOK_VETO; }};
    SetChecked(IDC_MEMBER_BAY, false);
    Look([this] {
        for (const UINT message : MESSAGES) {
            EXPECT_EQ(SendMessageW(Page(), message, 0, 0), 0);
        }
        EXPECT_EQ(Table(), DEFAULTS);
    });
    ShowAndGoBack();
}

// ---- the cursor while the page stores

namespace {

HWND g_storing = nullptr; // the page
std::vector<bool>
    g_persistent; // at each statement: whether the page kept the wait cursor when the mouse moved

UINT WINAPI NoteCursor(MSIHANDLE database, LPCWSTR statement, MSIHANDLE* view)
{
    SendMessageW(g_storing, WM_SETCURSOR, reinterpret_cast<WPARAM>(g_storing),
                 MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
    g_persistent.push_back(GetCursor() == LoadCursorW(nullptr, IDC_WAIT));
    return MsiDatabaseOpenViewW(database, statement, view);
}

class ResourcesCursor : public ResourcesPage
{
protected:
    void ExpectPersistentWhileStoring(int button, int result, bool persistent)
    {
        Look([this] {
            g_storing = Page();
            g_persistent.clear(); // those of the entry
        });
        Press(button);
        EXPECT_EQ(ShowPage(), result);
        EXPECT_FALSE(g_persistent.empty());
        EXPECT_EQ(std::count(g_persistent.begin(), g_persistent.end(), !persistent), 0);
    }

    CImportRedirect redirect{L"RolloutUi.dll", "MsiDatabaseOpenViewW", reinterpret_cast<void*>(NoteCursor)};
};
INSTANTIATE_BOTH_SHAPES(ResourcesCursor);

} // namespace

TEST_P(ResourcesCursor, BackShowsAPlainWaitCursorThatTheMouseTakesAway)
{
    ExpectPersistentWhileStoring(Back(), NAVIGATION_BACK, false);
}

TEST_P(ResourcesCursor, NextShowsAWaitCursorThatStays)
{
    ExpectPersistentWhileStoring(Next(), NAVIGATION_NEXT, true);
}

class ResourcesDialog : public ResourcesPage
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, ResourcesDialog, testing::Values(Shape::Wizard), ShapeName);

TEST_P(ResourcesDialog, CancellingLeavesTheDefaultsOfTheEntryInPlace)
{
    SetChecked(IDC_PARTS_BAY, false);
    Press(IDC_CANCEL);
    AnswerCancelQuestion(IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_CANCEL);
    EXPECT_EQ(Table(), DEFAULTS);
}

// ---- the order of reads and writes

namespace {

std::vector<CString> g_statements; // a word and the property's name, an entry each

UINT WINAPI NoteStatement(MSIHANDLE database, LPCWSTR statement, MSIHANDLE* view)
{
    const CString text(statement);
    const int name = text.Find(L"'ZOLT_");
    if (name >= 0) {
        const int end = text.Find(L'\'', name + 1);
        g_statements.push_back(text.Left(text.Find(L' ')) + L" " + text.Mid(name + 1, end - name - 1));
    }
    return MsiDatabaseOpenViewW(database, statement, view);
}

std::vector<CString> StatementsOf(const wchar_t* word)
{
    std::vector<CString> names;
    for (const CString& statement : g_statements) {
        if (statement.Find(CString(word) + L" ") == 0) {
            names.push_back(statement.Mid(TextLength(word) + 1));
        }
    }
    return names;
}

class ResourcesOrder : public ResourcesPage
{
protected:
    ResourcesOrder() { g_statements.clear(); }

    CImportRedirect redirect{L"RolloutUi.dll", "MsiDatabaseOpenViewW",
                             reinterpret_cast<void*>(NoteStatement)};
};
INSTANTIATE_BOTH_SHAPES(ResourcesOrder);

const std::vector<CString> FIVE = {L"ZOLT_PARTSBAY_ENABLE", L"ZOLT_MEMBERBAY_ENABLE",
                                   L"ZOLT_ENABLE_ROUNDTRIP", L"ZOLT_ENABLE_SEND_PC_NAME",
                                   L"ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE"};

} // namespace

TEST_P(ResourcesOrder, EntryReadsTheFiveInTheirOrderAndWritesEachMissingOneAtOnce)
{
    WithProperty(L"ZOLT_ENABLE_ROUNDTRIP", L"#1");
    Look([] {
        EXPECT_EQ(StatementsOf(L"SELECT"), FIVE);
        EXPECT_EQ(
            StatementsOf(L"INSERT"),
            (std::vector<CString>{L"ZOLT_PARTSBAY_ENABLE", L"ZOLT_MEMBERBAY_ENABLE",
                                  L"ZOLT_ENABLE_SEND_PC_NAME", L"ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE"}));
        const auto firstWrite =
            std::find(g_statements.begin(), g_statements.end(), CString(L"INSERT ZOLT_PARTSBAY_ENABLE"));
        const auto secondRead =
            std::find(g_statements.begin(), g_statements.end(), CString(L"SELECT ZOLT_MEMBERBAY_ENABLE"));
        EXPECT_LT(firstWrite - g_statements.begin(), secondRead - g_statements.begin());
    });
    ShowAndGoBack();
}

TEST_P(ResourcesOrder, TheStoreWritesTheInverseBehindThePartsBayAndReadsNothing)
{
    Look([] { g_statements.clear(); });
    Press(Next());
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(StatementsOf(L"INSERT"),
              (std::vector<CString>{L"ZOLT_PARTSBAY_ENABLE", L"ZOLT_PARTSBAY_DISABLE",
                                    L"ZOLT_MEMBERBAY_ENABLE", L"ZOLT_ENABLE_ROUNDTRIP",
                                    L"ZOLT_ENABLE_SEND_PC_NAME", L"ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE"}));
    EXPECT_EQ(StatementsOf(L"SELECT"), std::vector<CString>());
}
