#include "tests/pages/settings_page.h"

namespace {

void RunSql(MSIHANDLE database, const CString& statement)
{
    MSIHANDLE view = 0;
    EXPECT_EQ(MsiDatabaseOpenViewW(database, statement, &view), 0u) << Utf8(statement);
    EXPECT_EQ(MsiViewExecute(view, 0), 0u) << Utf8(statement);
    MsiCloseHandle(view);
}

} // namespace

SettingsPage::SettingsPage()
{
    WithLocation(folder.GetPath());
}

void SettingsPage::TearDown()
{
    for (const MSIHANDLE database : m_databases)
        MsiCloseHandle(database);
    PageTest::TearDown();
}

void SettingsPage::ShowAndLeave()
{
    Press(IDC_BACK);
    EXPECT_EQ(ShowPage(), NAVIGATION_BACK);
}

void SettingsPage::WithLog(const CString& logFolder)
{
    host.manager.m_bNetworkLog = true;
    host.manager.m_strNetworkLogFolder = logFolder;
}

void SettingsPage::WithLocation(const CString& path)
{
    host.manager.m_strDeploymentLocation = host.Keep(path);
}

void SettingsPage::NextWithLog(const CString& logFolder)
{
    WithLog(logFolder);
    Press(IDC_NEXT);
}

void SettingsPage::ExpectStaysOnFolder(const CString& text)
{
    Await(L"Cancel is still disabled", [&] { return Control(IDC_CANCEL).IsEnabled(); });
    AwaitFocus();
    Look([this, text] {
        EXPECT_EQ(Text(IDC_LOG_FOLDER), text);
        EXPECT_EQ(Control(IDC_LOG_FOLDER).GetSelectedText(), text);
        EXPECT_TRUE(HasFocus(IDC_LOG_FOLDER));
    });
}

TestProduct& SettingsPage::AddCarrier(const wchar_t* value)
{
    TestProduct& product = host.AddProduct(L"Zolt.msi", L"Zolt");
    product.m_productKind = 8;
    product.m_bCarrierFlag1 = true;
    product.m_bCarrierFlag2 = true;
    const CString file =
        folder / (L"Carrier" + NumberText(static_cast<long long>(m_databases.size())) + L".msi");
    MSIHANDLE database = 0;
    EXPECT_EQ(MsiOpenDatabaseW(file, MSIDBOPEN_CREATE, &database), 0u);
    m_databases.push_back(database);
    RunSql(database,
           L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` LONGCHAR NOT NULL LOCALIZABLE "
           L"PRIMARY KEY `Property`)");
    if (value)
        RunSql(database, CString(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('MC3_ENABLED','") +
                             value + L"')");
    EXPECT_EQ(MsiDatabaseCommit(database), 0u);
    product.database = database;
    return product;
}

CString SettingsPage::Mc3Of(TestProduct& product)
{
    MSIHANDLE view = 0;
    MSIHANDLE record = 0;
    wchar_t text[2048] = L"(none)";
    DWORD size = 2048;
    EXPECT_EQ(MsiDatabaseOpenViewW(product.database,
                                   L"SELECT `Value` FROM `Property` WHERE `Property`='MC3_ENABLED'", &view),
              0u);
    EXPECT_EQ(MsiViewExecute(view, 0), 0u);
    if (MsiViewFetch(view, &record) == 0) {
        EXPECT_EQ(MsiRecordGetStringW(record, 1, text, &size), 0u);
    }
    MsiCloseHandle(record);
    MsiCloseHandle(view);
    return text;
}

void SettingsPage::DropProperties(TestProduct& product)
{
    RunSql(product.database, L"DROP TABLE `Property`");
}

void SettingsPage::ExpectFolderEnabled(bool enabled) const
{
    for (const int id : {IDC_LOG_FOLDER_HEADING, IDC_LOG_FOLDER, IDC_LOG_FOLDER_BROWSE})
        EXPECT_EQ(Control(id).IsEnabled(), enabled) << Utf8(Control(id).Describe());
}

void SettingsPage::ExpectMc3Shown(bool shown) const
{
    EXPECT_EQ(Control(IDC_MC3_HEADING).IsVisible(), shown);
    EXPECT_EQ(Control(IDC_MC3).IsVisible(), shown);
    EXPECT_EQ(Control(IDC_MC3).IsEnabled(), shown);
}

CString SettingsPage::FolderBelowComputer()
{
    wchar_t name[MAX_PATH] = {};
    DWORD size = MAX_PATH;
    EXPECT_TRUE(GetComputerNameW(name, &size));
    return CString(L"\\\\") + name + L"\\";
}
