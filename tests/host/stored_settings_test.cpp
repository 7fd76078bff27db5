// What a deployment's file keeps of the settings, from one wizard to the next.
#include "builder/deployment_place.h"
#include "tests/host/through_host.h"

#include "host/xml_limits.h"
#include "installer/query.h"
#include "installer/record.h"
#include "tests/support/processor_time.h"

#include <msiquery.h>

namespace {

class StoredSettingsTest : public ThroughHostTest
{
protected:
    CProduct& Start(const wchar_t* name = L"North")
    {
        MakeMedia(scratch + L"media\\");
        CSetupManager& manager = Open(scratch + L"media");
        Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), name);
        return *manager.m_pProducts->at(0);
    }

    CProduct& OpenBuilt(const wchar_t* name = L"North")
    {
        CSetupManager& manager = Open(location + name);
        return *manager.m_pProducts->at(0);
    }

    DeploymentFile ReadBuilt(const wchar_t* name = L"North")
    {
        DeploymentFile file;
        const OperationError error = ReadDeploymentFile(location + name + L"\\" + DEPLOYMENT_FILE, file);
        EXPECT_FALSE(error) << Utf8(error.message);
        return file;
    }

    // The message of a build that has to be refused with nothing written to the location.
    CString RefusedBuild()
    {
        CSilentProgress progress;
        const BuildResult result = host->Build(progress);
        EXPECT_TRUE(result.error) << "the deployment was built";
        std::vector<FolderItem> items;
        EXPECT_EQ(ListFolder(location, items), 0u);
        EXPECT_TRUE(items.empty()) << Utf8(items[0].strName);
        return result.error.message;
    }
};

void SetProductName(const CString& package, const wchar_t* name)
{
    CInstallerHandle database;
    ASSERT_EQ(MsiOpenDatabaseW(package, MSIDBOPEN_TRANSACT, database.put()), 0u);
    CInstallerHandle view;
    ASSERT_EQ(MsiDatabaseOpenViewW(database.get(),
                                   L"UPDATE `Property` SET `Value`=? WHERE `Property`='ProductName'",
                                   view.put()),
              0u);
    CInstallerHandle record;
    *record.put() = MsiCreateRecord(1);
    MsiRecordSetStringW(record.get(), 1, name);
    ASSERT_EQ(MsiViewExecute(view.get(), record.get()), 0u);
    ASSERT_EQ(MsiDatabaseCommit(database.get()), 0u);
}

// Rows of added files as a built database has them: the names alone.
void AddRows(const CString& package, int count)
{
    CInstallerHandle database;
    ASSERT_EQ(MsiOpenDatabaseW(package, MSIDBOPEN_TRANSACT, database.put()), 0u);
    ASSERT_EQ(RunSql(database.get(), L"CREATE TABLE `TarnCustomFile` (`Component_` CHAR(72) NOT NULL, "
                                     L"`SourceFileName` LONGCHAR, `Flags` LONG PRIMARY KEY `Component_`)"),
              0u);
    for (int row = 0; row < count; ++row) {
        CString statement;
        statement.Format(L"INSERT INTO `TarnCustomFile` (`Component_`,`SourceFileName`,`Flags`) VALUES "
                         L"('TARN_%d','name.txt',%d)",
                         row, row % 2);
        ASSERT_EQ(RunSql(database.get(), statement), 0u);
    }
    ASSERT_EQ(MsiDatabaseCommit(database.get()), 0u);
}

} // namespace

// An empty baseline was dropped, and the next visit of a page took what was entered since for the first value.
TEST_F(StoredSettingsTest, AnEmptyValueIsKeptAndComesBackAsAValue)
{
    CProduct& product = Start();
    product.SetProperty(L"ZOLTProfile_MenuFile", L"C:\\menu.cui");
    product.SetProperty(L"ZOLTProfile_MenuFile", L"");
    product.SetProperty(L"ZOLTProfile_AltFont", nullptr);
    EXPECT_EQ(OwnProperty(product, L"ZOLTProfile_MenuFile"), CString());
    EXPECT_EQ(OwnProperty(product, L"ZOLTProfile_AltFont"), CString());
    EXPECT_EQ(OwnProperty(product, L"ZOLTProfile_TEXMAPS"), CString(L"(none)"));
    Build();
    CProduct& again = OpenBuilt();
    EXPECT_EQ(OwnProperty(again, L"ZOLTProfile_MenuFile"), CString());
    EXPECT_EQ(OwnProperty(again, L"ZOLTProfile_AltFont"), CString());
    EXPECT_EQ(OwnProperty(again, L"ZOLTProfile_TEXMAPS"), CString(L"(none)"));
}

TEST_F(StoredSettingsTest, ABufferTooSmallStaysAsItIsAndTheSizeSaysWhatIsNeeded)
{
    CProduct& product = Start();
    const CString value(L'v', 5000);
    product.SetProperty(L"ZOLTProfile_SupportPath", value);
    std::vector<wchar_t> buffer(5001, L'#');
    int size = 512;
    EXPECT_FALSE(product.GetProperty(L"ZOLTProfile_SupportPath", buffer.data(), &size));
    EXPECT_EQ(size, 5000);
    EXPECT_EQ(buffer[0], L'#');
    size = 5000; // no room for the closing zero
    EXPECT_FALSE(product.GetProperty(L"ZOLTProfile_SupportPath", buffer.data(), &size));
    size = 5001;
    EXPECT_TRUE(product.GetProperty(L"ZOLTProfile_SupportPath", buffer.data(), &size));
    EXPECT_EQ(size, 5000);
    EXPECT_EQ(CString(buffer.data()), value);
    EXPECT_FALSE(product.GetProperty(L"ZOLTProfile_SupportPath", nullptr, &size));
    EXPECT_EQ(size, 5000);
    size = 100;
    EXPECT_TRUE(product.GetProperty(L"ZOLTProfile_SupportPath", nullptr, nullptr) == false);
}

TEST_F(StoredSettingsTest, ALongValueComesBackWhole)
{
    const CString value = CString(L'v', 70000) + L"\t\u4E2D]";
    Start().SetProperty(L"ZOLTProfile_SupportPath", value);
    Build();
    EXPECT_TRUE(ReadBuilt().products.at(0).properties.at(0).value == value);
}

// The deployment was built, and nobody could list or open it again.
TEST_F(StoredSettingsTest, AProductWithControlCharactersInItsNameIsListedAndModified)
{
    MakePackage(scratch + L"Tool.msi");
    SetProductName(scratch + L"Tool.msi", L"Zolt\x1F\tTest\r\n2");
    CSetupManager& manager = Open(scratch + L"Tool.msi");
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"Tool");
    Build();
    ASSERT_EQ(manager.GetDeploymentList(location)->size(), 1u);
    EXPECT_EQ(ReadBuilt(L"Tool").products.at(0).strName, CString(L"Zolt  Test  2"));

    CSetupManager& modified = Open(location + L"Tool");
    EXPECT_EQ(CString(modified.m_pProducts->at(0)->m_strName), CString(L"Zolt  Test  2"));
    Begin(modified, Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"Tool", L"Tool");
    Build();
    EXPECT_EQ(modified.GetDeploymentList(location)->size(), 1u);
}

TEST_F(StoredSettingsTest, TextsOfAPatchWithControlCharactersComeBack)
{
    CProduct& product = Start();
    product.SetDownloadedPatchName(L"Service\tPack\x1 1\\u0041");
    product.SetDownloadedPatchSize(L"12 MB");
    Build();
    CProduct& again = OpenBuilt();
    EXPECT_EQ(again.GetDownloadedPatchName(), CString(L"Service\tPack\x1 1\\u0041"));
    EXPECT_EQ(again.GetDownloadedPatchSize(), CString(L"12 MB"));
}

TEST_F(StoredSettingsTest, AValueThatCouldNotBeReadAgainRefusesTheBuildBeforeAnythingIsCopied)
{
    CProduct& product = Start();
    product.SetDownloadedPatchReadmeURL(CString(L'r', 4001));
    const CString message = RefusedBuild();
    EXPECT_GE(message.Find(L"\"readme\""), 0) << Utf8(message);
    EXPECT_GE(message.Find(L"4000"), 0) << Utf8(message);
}

TEST_F(StoredSettingsTest, ALogFolderOfTwoLinesRefusesTheBuild)
{
    Start();
    CSetupManager& manager = host->GetSetupManager();
    manager.m_bNetworkLog = true;
    manager.m_strNetworkLogFolder = L"\\\\server\\logs\r\ncalc.exe";
    const CString message = RefusedBuild();
    EXPECT_GE(message.Find(L"networkLogFolder"), 0) << Utf8(message);
}

TEST_F(StoredSettingsTest, ADeploymentThatNamesAPatchElsewhereIsPassedOverByNameAndLine)
{
    DeploymentFile file = DescribeTestDeployment(L"Evil");
    file.products[0].patches[0].file = L"..\\..\\other.msp";
    MakeDeployment(location, L"Evil", file);
    MakeMedia(scratch + L"media\\");
    CSetupManager& manager = Open(scratch + L"media");
    EXPECT_TRUE(manager.GetDeploymentList(location)->empty());
    const CString log = ReadText(work + L"Setup.log");
    EXPECT_GE(log.Find(L"Evil\\Deployment.xml, line "), 0) << Utf8(log);
    EXPECT_GE(log.Find(L"\"..\\..\\other.msp\" of attribute \"file\""), 0) << Utf8(log);
}

// One statement for each of them took minutes for a file that names as many as it may.
TEST_F(StoredSettingsTest, SourcesOfManyAddedFilesAreRestoredAtOnce)
{
    constexpr int ROWS = 8000;
    DeploymentFile file = DescribeTestDeployment(L"North");
    for (int row = 0; row < static_cast<int>(ADDED_FILE_LIMIT); ++row) {
        file.products[0].addedFiles.push_back(
            {L"TARN_" + NumberText(row), L"D:\\it's here\\" + NumberText(row)});
    }
    MakeDeployment(location, L"North", file);
    AddRows(location + L"North\\Image\\x64\\Zolt\\Zolt.msi", ROWS);
    const double start = ProcessorSeconds();
    CProduct& product = OpenBuilt();
    EXPECT_LT(ProcessorSeconds() - start, 2.0);
    int restored = 0;
    ASSERT_EQ(ForEachRow(product.GetMsiHandle(),
                         L"SELECT `Component_`,`SourceFileName`,`Flags` FROM `TarnCustomFile`", {},
                         [&](MSIHANDLE record) {
                             const CString source = RecordText(record, 2);
                             const bool user = MsiRecordGetInteger(record, 3) == 0;
                             const CString key = RecordText(record, 1).Mid(5);
                             EXPECT_EQ(source, user ? L"D:\\it's here\\" + key : CString(L"name.txt"));
                             restored += user;
                             return true;
                         }),
              0u);
    EXPECT_EQ(restored, ROWS / 2);
}
