#include "tests/host/package_maker.h"

#include "base/handle.h"
#include "base/path_text.h"
#include "builder/deployment_place.h"
#include "host/setup_description.h"
#include "include/product.h"
#include "installer/query.h"

#include <gtest/gtest.h>
#include <msiquery.h>
#include <propidl.h>

ScratchFolder::ScratchFolder(const wchar_t* name)
{
    static int number = 0;
    wchar_t base[MAX_PATH + 2] = {};
    GetTempPathW(MAX_PATH + 2, base);
    m_path.Format(L"%sHostTest-%lu-%d-%s\\", base, GetCurrentProcessId(), ++number, name);
    EXPECT_EQ(MakeFolders(m_path), 0u);
}

ScratchFolder::~ScratchFolder()
{
    RemoveFolder(m_path);
}

void WriteFileBytes(const CString& path, const std::string& bytes)
{
    ASSERT_EQ(MakeFolders(ParentFolder(path)), 0u) << Utf8(path);
    const CFileOwner file(CreateFileW(FilePath(path), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    ASSERT_TRUE(file) << Utf8(path) << ": " << GetLastError();
    DWORD written = 0;
    ASSERT_TRUE(WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr))
        << Utf8(path) << ": " << GetLastError();
    ASSERT_EQ(written, bytes.size()) << Utf8(path);
}

void WriteText(const CString& path, const CString& text)
{
    WriteFileBytes(path, Utf8(text));
}

unsigned int RunSql(MSIHANDLE database, const wchar_t* statement)
{
    CInstallerHandle view;
    UINT result = MsiDatabaseOpenViewW(database, statement, view.put());
    if (result == ERROR_SUCCESS) {
        result = MsiViewExecute(view.get(), 0);
    }
    return result;
}

namespace {

void MakeProperties(MSIHANDLE database, const PackageForm& form)
{
    std::vector<std::pair<CString, CString>> rows = {{L"ProductName", L"Zolt Test"},
                                                     {L"Manufacturer", L"Velkmora"},
                                                     {L"ProductVersion", L"27.0.0"},
                                                     {L"ProductLanguage", L"1033"},
                                                     {L"ProductCode", PRODUCT_CODE}};
    for (const auto& [name, value] : form.properties) {
        std::erase_if(rows, [&](const auto& row) { return row.first == name; });
        if (!value.IsEmpty()) {
            rows.emplace_back(name, value);
        }
    }
    for (const auto& [name, value] : rows) {
        ASSERT_EQ(RunStatement(database, L"INSERT INTO `Property` (`Property`,`Value`) VALUES (?,?)",
                               {name, value}),
                  0u)
            << Utf8(name);
    }
}

} // namespace

void MakePackage(const CString& path, const PackageForm& form)
{
    ASSERT_EQ(MakeFolders(ParentFolder(path)), 0u);
    CInstallerHandle database;
    ASSERT_EQ(MsiOpenDatabaseW(path, MSIDBOPEN_CREATE, database.put()), 0u);
    const wchar_t* always[] = {
        L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` LONGCHAR NOT NULL LOCALIZABLE "
        L"PRIMARY KEY "
        L"`Property`)",
    };
    const wchar_t* standard[] = {
        L"CREATE TABLE `Directory` (`Directory` CHAR(72) NOT NULL, `Directory_Parent` CHAR(72), `DefaultDir` "
        L"CHAR(255) NOT NULL LOCALIZABLE PRIMARY KEY `Directory`)",
        L"INSERT INTO `Directory` (`Directory`,`DefaultDir`) VALUES ('TARGETDIR','SourceDir')",
        L"INSERT INTO `Directory` (`Directory`,`Directory_Parent`,`DefaultDir`) VALUES "
        L"('ProgramFiles64Folder','TARGETDIR','.')",
        L"CREATE TABLE `File` (`File` CHAR(72) NOT NULL, `Component_` CHAR(72) NOT NULL, `FileName` "
        L"CHAR(255) NOT "
        L"NULL LOCALIZABLE, `FileSize` LONG NOT NULL, `Version` CHAR(72), `Language` CHAR(20), `Attributes` "
        L"SHORT, "
        L"`Sequence` LONG NOT NULL PRIMARY KEY `File`)",
        L"INSERT INTO `File` (`File`,`Component_`,`FileName`,`FileSize`,`Sequence`) VALUES "
        L"('a','C','a.txt',1,1)",
        L"INSERT INTO `File` (`File`,`Component_`,`FileName`,`FileSize`,`Sequence`) VALUES "
        L"('b','C','b.txt',1,7)",
        L"CREATE TABLE `Feature` (`Feature` CHAR(38) NOT NULL, `Feature_Parent` CHAR(38), `Title` CHAR(64) "
        L"LOCALIZABLE, `Description` CHAR(255) LOCALIZABLE, `Display` SHORT, `Level` SHORT NOT NULL, "
        L"`Directory_` "
        L"CHAR(72), `Attributes` SHORT NOT NULL PRIMARY KEY `Feature`)",
        L"INSERT INTO `Feature` (`Feature`,`Level`,`Attributes`) VALUES ('Main',1,0)",
    };
    for (const wchar_t* statement : always) {
        ASSERT_EQ(RunSql(database.get(), statement), 0u) << Utf8(statement);
    }
    MakeProperties(database.get(), form);
    if (form.bStandardTables) {
        for (const wchar_t* statement : standard) {
            ASSERT_EQ(RunSql(database.get(), statement), 0u) << Utf8(statement);
        }
    }
    if (form.bStandardTables && form.bInstallFolder) {
        ASSERT_EQ(RunSql(database.get(),
                         L"INSERT INTO `Directory` (`Directory`,`Directory_Parent`,`DefaultDir`) VALUES "
                         L"('INSTALLDIR','ProgramFiles64Folder','ZOLT|Zolt Test')"),
                  0u);
    }
    CInstallerHandle summary;
    ASSERT_EQ(MsiGetSummaryInformationW(database.get(), nullptr, 10, summary.put()), 0u);
    MsiSummaryInfoSetPropertyW(summary.get(), 7, VT_LPSTR, 0, nullptr, form.pszTemplate);
    MsiSummaryInfoSetPropertyW(summary.get(), 9, VT_LPSTR, 0, nullptr, form.packageCode);
    MsiSummaryInfoSetPropertyW(summary.get(), 14, VT_I4, 500, nullptr, nullptr);
    MsiSummaryInfoSetPropertyW(summary.get(), 15, VT_I4, 0, nullptr, nullptr);
    ASSERT_EQ(MsiSummaryInfoPersist(summary.get()), 0u);
    ASSERT_EQ(MsiDatabaseCommit(database.get()), 0u);
}

void MakeMedia(const CString& folder)
{
    SetupDescription setup;
    setup.strCode = SETUP_CODE;
    setup.strName = L"Zolt 2027";
    setup.strMaker = L"Velkmora";
    setup.strProductVersion = L"27.0.0";
    setup.strResourceFolder = L"Wizard";
    setup.strLinkTargets[0] = L"Guide.pdf";
    setup.strDefaultLanguage = L"en-US";
    setup.languages = {L"en-US", L"de-DE"};
    setup.flow = {{L"BeginDeploymentDialog", L"BeginDeployment.html"}, {L"DeploymentCompleteDialog", L""}};
    setup.platforms = {{2, L"x86"}, {3, L"x64"}};
    ProductDescription product;
    product.strName = L"Zolt 2027";
    product.strFolder = L"Zolt";
    product.kind = 8;
    product.bCarrier1 = true;
    product.packages = {{2, L"Zolt.msi", NARROW_PRODUCT_CODE, L"27.0.0"},
                        {3, L"Zolt.msi", PRODUCT_CODE, L"27.0.0"}};
    ProductDescription pack;
    pack.strName = L"Zolt Deutsch";
    pack.strFolder = L"ZoltDe";
    pack.strLanguage = L"de-DE";
    pack.packages = {{3, L"ZoltDe.msi", PACK_PRODUCT_CODE, L"27.0.0"}};
    product.languagePacks.push_back(pack);
    setup.products.push_back(product);
    WriteText(folder + SETUP_FILE, WriteSetupDescription(setup));
    WriteText(folder + L"Wizard\\en-US\\Guide.pdf", L"guide");
    PackageForm narrow;
    narrow.pszTemplate = L"Intel;1033";
    narrow.properties = {{L"ProductCode", NARROW_PRODUCT_CODE}};
    PackageForm german;
    german.properties = {{L"ProductCode", PACK_PRODUCT_CODE}};
    MakePackage(folder + L"x86\\Zolt\\Zolt.msi", narrow);
    MakePackage(folder + L"x64\\Zolt\\Zolt.msi");
    MakePackage(folder + L"x64\\ZoltDe\\ZoltDe.msi", german);
}

DeploymentFile DescribeTestDeployment(const wchar_t* name)
{
    DeploymentFile file;
    file.strName = name;
    file.strSetupCode = SETUP_CODE;
    file.strProductName = L"Zolt 2027";
    file.strProductVersion = L"27.0.0";
    file.strLanguage = L"de-DE";
    file.installMode = 3;
    file.bNetworkLog = true;
    file.strNetworkLogFolder = L"\\\\server\\logs";
    StoredProduct product;
    product.strProductCode = PRODUCT_CODE;
    product.strName = L"Zolt 2027";
    product.properties.push_back({L"ADDITIONALFILES_MODIFIED", L"1"});
    product.patches.push_back({L"", true, MERGED_PATCH_CODE, CString(L'a', 64)});
    product.patchState = 4;
    file.products.push_back(product);
    return file;
}

void MakeDeployment(const CString& location, const wchar_t* name, const DeploymentFile& file)
{
    const CString folder = location + name + L"\\";
    MakeMedia(folder + L"Image\\");
    WriteText(folder + DEPLOYMENT_FILE, WriteDeploymentFile(file));
}

HostOptions OptionsFor(const CString& media, const CString& work)
{
    HostOptions options;
    options.strMedia = media;
    options.strProgramFolder = work + L"program\\";
    options.strWorkFolder = work + L"work\\";
    options.strLogFile = work + L"Setup.log";
    options.strLanguage = L"en-US";
    return options;
}

HostOwner OpenHost(const CString& media, const CString& work)
{
    OperationError error;
    HostOwner host(OpenSetupHost(OptionsFor(media, work), error));
    EXPECT_TRUE(host) << error.code << ": " << Utf8(error.message);
    return host;
}

CString OwnProperty(CProduct& product, const wchar_t* name)
{
    wchar_t buffer[300] = {};
    int size = 300;
    return product.GetProperty(name, buffer, &size) ? CString(buffer) : CString(L"(none)");
}
