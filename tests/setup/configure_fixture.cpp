#include "tests/setup/configure_fixture.h"

#include "base/system_text.h"
#include "installer/handle.h"
#include "msi/msi_property.h"
#include "setup/configure_rules.h"
#include "setup/texts.h"
#include "window/module.h"

#include <msiquery.h>

#include <algorithm>
#include <utility>

CAppModule _Module;

namespace {

MSIHANDLE MakeDatabase(const CString& path)
{
    MSIHANDLE database = 0;
    EXPECT_EQ(MsiOpenDatabaseW(path, MSIDBOPEN_CREATEDIRECT, &database), 0u);
    CInstallerHandle view;
    EXPECT_EQ(MsiDatabaseOpenViewW(database,
                                   L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` CHAR(0) "
                                   L"NOT NULL LOCALIZABLE PRIMARY KEY `Property`)",
                                   view.put()),
              0u);
    EXPECT_EQ(MsiViewExecute(view.get(), 0), 0u);
    return database;
}

// As the host asks.
CString WhyItIsSilent(CProduct& product)
{
    CInstallerHandle view;
    const UINT code =
        MsiDatabaseOpenViewW(product.GetMsiHandle(), L"SELECT `Value` FROM `Property`", view.put());
    return code == 0 ? CString() : SystemErrorText(code);
}

} // namespace

void ConfigureTest::SetUpTestSuite()
{
    _Module.Init(GetModuleHandleW(nullptr));
}

ConfigureTest::ConfigureTest() : record(GetPagesRecord())
{
    record = PagesRecord();
    host.language.wizTextPath = ProgramFolder();
    host.manager.m_strProductName = L"Zolt & Sons";
    host.manager.m_strDeploymentName = L"Office";
    options.strPlaceKey = TEST_PLACE_KEY;
    options.checkDatabase = WhyItIsSilent;
    script.SetFailureHandler([] {
        while (CloseFrontWindow()) {
        }
    });
    static bool warm = false;
    if (!std::exchange(warm, true)) {
        WarmUp();
    }
    RegDeleteTreeW(HKEY_CURRENT_USER, TEST_PLACE_KEY);
    m_before = ReadProcessState();
}

// The system fills caches of its own at the first window, box and scroll bar of each kind.
void ConfigureTest::WarmUp()
{
    AddProduct(L"Warm");
    AddTabs(2);
    AddTab(TEST_PAGES, *m_products.front());
    for (const int tab : {2, 1, 0}) {
        GoTo(tab);
    }
    for (const UINT icon : {MB_ICONERROR, MB_ICONQUESTION, MB_ICONWARNING, MB_ICONINFORMATION}) {
        Do([this, icon] { MessageBoxW(Dialog(), L"warm", L"warm", MB_YESNO | icon); });
        Step(L"answer", [] {
            const auto box = FindMessageBox();
            return box ? AnswerMessageBox(*box, IDYES) : StepOutcome::NotYet(L"no box");
        });
        Step(L"wait for its end", [] { return Until(!FindMessageBox(), L"the box is still there"); });
    }
    for (int stop = 0; stop < 10; ++stop) { // the focus on each kind of control
        Key(VK_TAB);
    }
    Press(IDC_CONFIGURE_CANCEL);
    (void)Run();
    Forget();
}

void ConfigureTest::BeginBehind(const std::function<void()>& warmUp)
{
    warmUp();
    Forget();
    m_before = ReadProcessState();
}

void ConfigureTest::Forget()
{
    m_dialog.reset();
    m_tabs.clear();
    m_products.clear();
    host.products.clear();
    for (const MSIHANDLE database : m_databases) {
        MsiCloseHandle(database);
    }
    m_databases.clear();
    record = PagesRecord();
    host.log.Clear();
    host.ui.stored.clear();
    host.ui.saved = false;
    host.manager.m_exitCode = 0;
}

ConfigureTest::~ConfigureTest()
{
    RegDeleteTreeW(HKEY_CURRENT_USER, TEST_PLACE_KEY);
}

void ConfigureTest::TearDown()
{
    m_dialog.reset();
    for (const MSIHANDLE database : m_databases) {
        MsiCloseHandle(database);
    }
    EXPECT_EQ(MsiCloseAllHandles(), 0u) << "installer handles were left open";
    EXPECT_EQ(record.alive, 0) << "pages were left over";
    EXPECT_EQ(DescribeChange(m_before, ReadProcessState()), CString());
}

TestProduct& ConfigureTest::AddProduct(const wchar_t* name)
{
    const CString file = CString(name) + L".msi";
    TestProduct& product = host.AddProduct(host.Keep(file), host.Keep(name));
    product.m_strName = host.Keep(name);
    m_databases.push_back(MakeDatabase(m_folder / file));
    product.database = m_databases.back();
    m_products.push_back(&product);
    return product;
}

void ConfigureTest::AddTabs(int count)
{
    for (TestProduct* product : m_products) {
        for (int page = 0; page < count; ++page) {
            AddTab(page, *product);
        }
    }
}

void ConfigureTest::AddTab(int page, TestProduct& product, const wchar_t* name)
{
    AddTab(name ? CString(name) : L"Test" + NumberText(page) + L"Page", GetTestPage(page), product);
    m_tabs.back().strName = L"Page " + NumberText(page);
    m_tabs.back().strCaption = TabCaption(product.m_strName, m_tabs.back().strName, m_products.size() > 1);
}

void ConfigureTest::AddTab(const wchar_t* page, TabPageFunction create, TestProduct& product)
{
    ConfigureTab tab;
    tab.strPage = page;
    tab.strName = page;
    tab.strProduct = m_products.size() > 1 ? CString(product.m_strName) : CString();
    tab.strCaption = TabCaption(product.m_strName, tab.strName, m_products.size() > 1);
    tab.create = create;
    tab.context.pSetupManager = &host.manager;
    tab.context.pProduct = &product;
    tab.context.hDatabase = product.database;
    tab.context.leaveHooks = leaveHooks;
    tab.context.postInitHooks = postInitHooks;
    m_tabs.push_back(tab);
}

void ConfigureTest::AddTabWithoutProduct(int page)
{
    ConfigureTab tab;
    tab.strName = L"Page " + NumberText(page);
    tab.strCaption = tab.strName;
    tab.create = GetTestPage(page);
    tab.context.pSetupManager = &host.manager;
    m_tabs.push_back(tab);
}

void ConfigureTest::Step(const wchar_t* name, CScript::Step step)
{
    script.Add(name, std::move(step));
}

void ConfigureTest::Do(std::function<void()> act)
{
    Step(L"act", [this, act = std::move(act)] {
        if (!m_dialog || !IsWindowVisible(*m_dialog) || !IsWindowEnabled(*m_dialog)) {
            return StepOutcome::NotYet(L"the dialog isn't there, or a box is up");
        }
        act();
        return StepOutcome::Done();
    });
}

void ConfigureTest::Await(const wchar_t* what, std::function<bool()> condition)
{
    Step(what, [what, condition = std::move(condition)] { return Until(condition(), what); });
}

void ConfigureTest::Type(const wchar_t* text)
{
    Step(L"type", [this, text] { return OnPage(IDC_TEST_EDIT).SetText(text); });
}

void ConfigureTest::GoTo(int tab)
{
    Do([this, tab] { Dialog().GoTo(tab); });
}

void ConfigureTest::Press(int button)
{
    Step(L"press a button", [this, button] {
        return m_dialog ? InDialog(button).Click() : StepOutcome::NotYet(L"the dialog isn't there");
    });
}

void ConfigureTest::PressOnPage(int button)
{
    Step(L"press a button of the page", [this, button] { return OnPage(button).Click(); });
}

void ConfigureTest::LastKey(WORD virtualKey)
{
    Step(L"press the last key", [virtualKey] { return PressKey(virtualKey); });
}

void ConfigureTest::Key(WORD virtualKey, KeyModifier modifier)
{
    Step(L"press a key", [virtualKey, modifier] { return PressKey(virtualKey, modifier); });
    // The key is handled by the time when a message that was posted behind it is.
    Step(L"let the key be handled", [handled = false]() mutable {
        const bool before = handled;
        handled = true;
        return Until(before, L"the key is on its way");
    });
}

void ConfigureTest::Answer(int button, const CString& text)
{
    Step(L"answer a box", [this, button, text] {
        const auto box = FindMessageBox();
        if (!box) {
            return StepOutcome::NotYet(L"no box is up");
        }
        EXPECT_EQ(box->text, text);
        EXPECT_EQ(box->title, CString(L"Zolt & Sons"));
        return AnswerMessageBox(*box, button);
    });
    Step(L"wait for the box's end", [] { return Until(!FindMessageBox(), L"the box is still there"); });
}

int ConfigureTest::Run()
{
    m_dialog = std::make_unique<CConfigureDialog>(host.manager, m_tabs, options);
    script.SetEnding(L"the dialog's end", [] {
        const StepOutcome clear = ExpectNoMessageBox();
        return clear.IsFailed() ? clear : StepOutcome::NotYet(L"the dialog is still up");
    });
    script.Start();
    const int result = ShowDialog(*m_dialog, nullptr);
    script.Stop();
    EXPECT_FALSE(script.HasFailed()) << Utf8(script.GetFailure());
    EXPECT_TRUE(script.HasFailed() || script.IsFinished())
        << "left before: " << Utf8(script.GetCurrentStep());
    return result;
}

int ConfigureTest::RunUnattended(CUnattendedPages& pages)
{
    m_dialog = std::make_unique<CConfigureDialog>(host.manager, m_tabs, options);
    return ShowDialog(*m_dialog, &pages);
}

int ConfigureTest::ShowDialog(CConfigureDialog& dialog, CUnattendedPages* unattended)
{
    return unattended ? unattended->ShowConfigure(dialog) : dialog.Run();
}

int ConfigureTest::VisiblePages()
{
    int count = 0;
    for (int tab = 0; tab < Dialog().GetTabCount(); ++tab) {
        count += Page(tab) && IsWindowVisible(Page(tab));
    }
    return count;
}

std::vector<PageMessage> ConfigureTest::Stores() const
{
    std::vector<PageMessage> stores = record.messages;
    std::erase_if(stores, [](const PageMessage& message) { return message.message == PAGE_MESSAGE_COUNTER; });
    return stores;
}

CString ConfigureTest::Property(TestProduct& product, const wchar_t* name) const
{
    return ReadProperty(product.database, name);
}

void ConfigureTest::CloseDatabase(TestProduct& product)
{
    std::erase(m_databases, product.database);
    MsiCloseHandle(product.database);
}
