#include "tests/host/source_packages.h"

#include "base/path_text.h"
#include "builder/cabinet.h"
#include "host/setup_description.h"

#include <gtest/gtest.h>
#include <msiquery.h>

namespace {

constexpr int SHORT_NAMES = 1;
constexpr int COMPRESSED = 2;
constexpr int ADMIN_IMAGE = 4;
constexpr int NONCOMPRESSED = 8192;
constexpr int PACKED = 16384;

const wchar_t* const g_statements[] = {
    L"CREATE TABLE `Property` (`Property` CHAR(72) NOT NULL, `Value` LONGCHAR NOT NULL LOCALIZABLE PRIMARY "
    L"KEY `Property`)",
    L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('ProductName','Maker Test')",
    L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('Manufacturer','Velkmora')",
    L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('ProductVersion','27.0.0')",
    L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('ProductLanguage','1033')",
    L"INSERT INTO `Property` (`Property`,`Value`) VALUES "
    L"('ProductCode','{2B1D6C3E-52B7-4C0B-9C8D-6D2E9C1A4F77}')",
    L"CREATE TABLE `Directory` (`Directory` CHAR(72) NOT NULL, `Directory_Parent` CHAR(72), `DefaultDir` "
    L"CHAR(255) NOT NULL LOCALIZABLE PRIMARY KEY `Directory`)",
    L"INSERT INTO `Directory` (`Directory`,`DefaultDir`) VALUES ('TARGETDIR','SourceDir')",
    L"INSERT INTO `Directory` (`Directory`,`Directory_Parent`,`DefaultDir`) VALUES "
    L"('ProgramFiles64Folder','TARGETDIR','.')",
    L"INSERT INTO `Directory` (`Directory`,`Directory_Parent`,`DefaultDir`) VALUES "
    L"('INSTALLDIR','ProgramFiles64Folder','MAKERT~1|Maker Test:SRC|Source Files')",
    L"INSERT INTO `Directory` (`Directory`,`Directory_Parent`,`DefaultDir`) VALUES "
    L"('SUPPORTDIR','INSTALLDIR','SUPPOR~1|Support Files')",
    L"CREATE TABLE `Component` (`Component` CHAR(72) NOT NULL, `ComponentId` CHAR(38), `Directory_` CHAR(72) "
    L"NOT NULL, `Attributes` SHORT NOT NULL, `Condition` CHAR(255), `KeyPath` CHAR(72) PRIMARY KEY "
    L"`Component`)",
    L"INSERT INTO `Component` (`Component`,`ComponentId`,`Directory_`,`Attributes`,`KeyPath`) VALUES "
    L"('Main','{2B6B6E9C-6E3A-4A63-9A5F-3C1F0D7E8A01}','INSTALLDIR',256,'Plain')",
    L"INSERT INTO `Component` (`Component`,`ComponentId`,`Directory_`,`Attributes`,`KeyPath`) VALUES "
    L"('Support','{2B6B6E9C-6E3A-4A63-9A5F-3C1F0D7E8A02}','SUPPORTDIR',256,'Loose')",
    L"CREATE TABLE `Feature` (`Feature` CHAR(38) NOT NULL, `Feature_Parent` CHAR(38), `Title` CHAR(64) "
    L"LOCALIZABLE, `Description` CHAR(255) LOCALIZABLE, `Display` SHORT, `Level` SHORT NOT NULL, "
    L"`Directory_` CHAR(72), `Attributes` SHORT NOT NULL PRIMARY KEY `Feature`)",
    L"INSERT INTO `Feature` (`Feature`,`Level`,`Attributes`) VALUES ('All',1,0)",
    L"CREATE TABLE `FeatureComponents` (`Feature_` CHAR(38) NOT NULL, `Component_` CHAR(72) NOT NULL PRIMARY "
    L"KEY `Feature_`, `Component_`)",
    L"INSERT INTO `FeatureComponents` (`Feature_`,`Component_`) VALUES ('All','Main')",
    L"INSERT INTO `FeatureComponents` (`Feature_`,`Component_`) VALUES ('All','Support')",
    L"CREATE TABLE `File` (`File` CHAR(72) NOT NULL, `Component_` CHAR(72) NOT NULL, `FileName` CHAR(255) "
    L"NOT NULL LOCALIZABLE, `FileSize` LONG NOT NULL, `Version` CHAR(72), `Language` CHAR(20), `Attributes` "
    L"SHORT, `Sequence` SHORT NOT NULL PRIMARY KEY `File`)",
    L"CREATE TABLE `Media` (`DiskId` SHORT NOT NULL, `LastSequence` SHORT NOT NULL, `DiskPrompt` CHAR(64) "
    L"LOCALIZABLE, `Cabinet` CHAR(255), `VolumeLabel` CHAR(32), `Source` CHAR(72) PRIMARY KEY `DiskId`)",
    L"CREATE TABLE `InstallExecuteSequence` (`Action` CHAR(72) NOT NULL, `Condition` CHAR(255), `Sequence` "
    L"SHORT PRIMARY KEY `Action`)",
};

const struct
{
    const wchar_t* name;
    int sequence;
} g_actions[] = {
    {L"CostInitialize", 800},     {L"FileCost", 900},           {L"CostFinalize", 1000},
    {L"InstallValidate", 1400},   {L"InstallInitialize", 1500}, {L"ProcessComponents", 1600},
    {L"UnpublishFeatures", 1800}, {L"RemoveFiles", 3500},       {L"RemoveFolders", 3600},
    {L"InstallFiles", 4000},      {L"RegisterProduct", 6100},   {L"PublishFeatures", 6300},
    {L"PublishProduct", 6400},    {L"InstallFinalize", 6600},
};

struct ProductFile
{
    const wchar_t* key;
    const wchar_t* component;
    const wchar_t* fileName;
    int mark; // in mixed packages
    const wchar_t* longSource;
    const wchar_t* shortSource;
    const char* bytes;
};

const ProductFile g_files[] = {
    {L"Plain", L"Main", L"PLAINF~1.TXT|plain file.txt", 0, L"Source Files\\plain file.txt",
     L"SRC\\PLAINF~1.TXT", "the plain one"},
    {L"Loose", L"Support", L"LOOSEF~1.TXT|loose file.txt", NONCOMPRESSED,
     L"Source Files\\Support Files\\loose file.txt", L"SRC\\SUPPOR~1\\LOOSEF~1.TXT", "the loose one, longer"},
    {L"Packed", L"Support", L"PACKED~1.TXT|packed file.txt", PACKED,
     L"Source Files\\Support Files\\packed file.txt", L"SRC\\SUPPOR~1\\PACKED~1.TXT",
     "the packed one, the longest"},
};

Layout PlaceOf(const SourcePackage& form, const ProductFile& file)
{
    if (form.layout != Layout::Documented) {
        return form.layout;
    }
    if (form.wordCount & ADMIN_IMAGE) {
        return Layout::Folders;
    }
    const int mark = form.marks == RowMarks::Mixed ? file.mark : 0;
    const bool compressed = (form.wordCount & COMPRESSED) != 0;
    if (mark == PACKED || (mark == 0 && compressed)) {
        return Layout::Packed;
    }
    return compressed ? Layout::Beside : Layout::Folders;
}

std::vector<CString> LayFiles(const CString& folder, const SourcePackage& form)
{
    std::vector<CString> laid;
    std::vector<CabinetMember> members;
    const ScratchFolder packing(L"packing");
    for (const ProductFile& file : g_files) {
        const Layout place = PlaceOf(form, file);
        const CString source = form.wordCount & SHORT_NAMES ? file.shortSource : file.longSource;
        const CString relative = place == Layout::Beside ? LastName(source) : source;
        if (place == Layout::Packed) {
            WriteFileBytes(packing + file.key, file.bytes);
            members.push_back({file.key, packing + file.key, 0});
        } else {
            WriteFileBytes(folder + relative, file.bytes);
            laid.push_back(relative);
        }
    }
    if (!members.empty()) {
        WriteCabinet(folder + SOURCE_CABINET, members, [](std::uint64_t) {});
        laid.push_back(SOURCE_CABINET);
    }
    return laid;
}

void InsertFiles(MSIHANDLE database, const SourcePackage& form, bool packed)
{
    int sequence = 0;
    for (const ProductFile& file : g_files) {
        CString statement;
        statement.Format(
            L"INSERT INTO `File` (`File`,`Component_`,`FileName`,`FileSize`,`Attributes`,`Sequence`) "
            L"VALUES ('%s','%s','%s',%d,%d,%d)",
            file.key, file.component, file.fileName, static_cast<int>(std::string(file.bytes).size()),
            form.marks == RowMarks::Mixed ? file.mark : 0, ++sequence);
        ASSERT_EQ(RunSql(database, statement), 0u) << Utf8(statement);
    }
    // An image that was made of a package with a cabinet still names it.
    ASSERT_EQ(RunSql(database, packed || form.marks == RowMarks::Mixed
                                   ? L"INSERT INTO `Media` (`DiskId`,`LastSequence`,`Cabinet`) VALUES "
                                     L"(1,3,'product.cab')"
                                   : L"INSERT INTO `Media` (`DiskId`,`LastSequence`) VALUES (1,3)"),
              0u);
}

void WriteSummary(MSIHANDLE database, int wordCount)
{
    CInstallerHandle summary;
    ASSERT_EQ(MsiGetSummaryInformationW(database, nullptr, 10, summary.put()), 0u);
    MsiSummaryInfoSetPropertyW(summary.get(), 7, VT_LPSTR, 0, nullptr, L"x64;1033");
    MsiSummaryInfoSetPropertyW(summary.get(), 9, VT_LPSTR, 0, nullptr,
                               L"{99999999-2222-3333-4444-555555555577}");
    MsiSummaryInfoSetPropertyW(summary.get(), 14, VT_I4, 200, nullptr, nullptr);
    MsiSummaryInfoSetPropertyW(summary.get(), 15, VT_I4, wordCount, nullptr, nullptr);
    ASSERT_EQ(MsiSummaryInfoPersist(summary.get()), 0u);
}

void MakeDatabase(const CString& path, const SourcePackage& form, bool packed)
{
    CInstallerHandle database;
    ASSERT_EQ(MsiOpenDatabaseW(path, MSIDBOPEN_CREATE, database.put()), 0u);
    for (const wchar_t* statement : g_statements) {
        ASSERT_EQ(RunSql(database.get(), statement), 0u) << Utf8(statement);
    }
    for (const auto& action : g_actions) {
        CString statement;
        statement.Format(L"INSERT INTO `InstallExecuteSequence` (`Action`,`Sequence`) VALUES ('%s',%d)",
                         action.name, action.sequence);
        ASSERT_EQ(RunSql(database.get(), statement), 0u) << Utf8(statement);
    }
    InsertFiles(database.get(), form, packed);
    WriteSummary(database.get(), form.wordCount);
    ASSERT_EQ(MsiDatabaseCommit(database.get()), 0u);
}

} // namespace

std::vector<CString> MakeSourcePackage(const CString& path, const SourcePackage& form)
{
    EXPECT_EQ(MakeFolders(ParentFolder(path)), 0u);
    const std::vector<CString> laid = LayFiles(ParentFolder(path), form);
    MakeDatabase(path, form, !laid.empty() && laid.back() == SOURCE_CABINET);
    return laid;
}

std::vector<CString> MakeSourceMedia(const CString& folder, const SourcePackage& form)
{
    SetupDescription setup;
    setup.strCode = SETUP_CODE;
    setup.strName = L"Maker Test";
    setup.strMaker = L"Velkmora";
    setup.strProductVersion = L"27.0.0";
    setup.strDefaultLanguage = L"en-US";
    setup.languages = {L"en-US"};
    setup.flow = {{L"BeginDeploymentDialog", L"BeginDeployment.html"}};
    setup.platforms = {{3, L"x64"}};
    ProductDescription product;
    product.strName = L"Maker Test";
    product.strFolder = L"Maker";
    product.packages = {{3, L"Maker.msi", SOURCE_PRODUCT_CODE, L"27.0.0"}};
    setup.products.push_back(product);
    WriteText(folder + SETUP_FILE, WriteSetupDescription(setup));
    return MakeSourcePackage(folder + L"x64\\Maker\\Maker.msi", form);
}
