#include "host/deployment_file.h"
#include "host/setup_description.h"
#include "host/xml_limits.h"
#include "host/xml_text.h"
#include "host/xml_values.h"
#include "include/page_table.h"
#include "msi/directory_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace {

const char SETUP[] = R"(<?xml version="1.0" encoding="utf-8"?>
<Setup version="1" code="{11111111-2222-3333-4444-55555555abcd}" name="Zolt 2027" maker="Velkmora" productVersion="27.0.0">
  <Resources folder="Wizard"/>
  <Link number="1" target="Guide.pdf"/>
  <Step text="Zolt 2027 deployment"/>
  <Languages default="en-US"><Language name="en-US"/><Language name="de-DE"/></Languages>
  <Flow><Page name="BeginDeploymentDialog" help="BeginDeployment.html"/></Flow>
  <Platforms><Platform id="2" folder="x86"/><Platform id="3" folder="x64"/></Platforms>
  <Products>
    <Product name="Zolt 2027" folder="Zolt" catalogKey="ZOLT2027" kind="8" carrier1="1" carrier2="0">
      <Package platform="2" file="Zolt.msi" productCode="{11111111-2222-3333-4444-555555555555}" version="27.0.0"/>
      <Package platform="3" file="Zolt.msi" productCode="{11111111-2222-3333-4444-555555555556}" version="27.0.0"/>
      <LanguagePack name="Zolt Deutsch" folder="ZoltDe" language="de-DE" catalogKey="ZDE">
        <Package platform="3" file="ZoltDe.msi" productCode="{11111111-2222-3333-4444-555555555557}" version="27.0.0"/>
      </LanguagePack>
    </Product>
  </Products>
</Setup>
)";

XmlFault ReadSetup(const std::string& text, SetupDescription* description = nullptr)
{
    CSetupDescriptionReader reader;
    const XmlFault fault = ReadXml(text.data(), text.size(), reader);
    if (description) {
        *description = reader.GetDescription();
    }
    return fault;
}

std::string With(const char* old, const std::string& replacement)
{
    std::string text = SETUP;
    const std::size_t place = text.find(old);
    EXPECT_NE(place, std::string::npos) << old;
    return text.replace(place, std::string(old).size(), replacement);
}

std::string Bytes(const CString& text)
{
    return Utf8(text);
}

DeploymentFile MakeDeployment()
{
    DeploymentFile file;
    file.strName = L"Büro Nord";
    file.strSetupCode = L"{11111111-2222-3333-4444-55555555ABCD}";
    file.strProductName = L"Zolt <&> \"2027\"";
    file.strProductVersion = L"27.0.0";
    file.strLanguage = L"de-DE";
    file.strBaseName = L"Alt";
    file.platform = 2;
    file.installMode = 3;
    file.bNetworkLog = true;
    file.strNetworkLogFolder = L"\\\\server\\logs";
    file.bSettingsOption = true;
    file.properties.push_back({L"A", L"1"});
    StoredProduct product;
    product.strProductCode = L"{11111111-2222-3333-4444-555555555555}";
    product.strName = L"Zolt";
    product.patchState = 2;
    product.includePatch = 1;
    product.properties.push_back({L"B", L"'x'"});
    product.patches.push_back({L"x86\\Zolt\\ServicePacks\\sp1.msp", true,
                               L"{0B9E6A6E-0000-4000-8000-000000000001}", CString(L'a', 64)});
    product.addedFiles.push_back(
        {L"TARN_0D7A5C1E_0000_4000_8000_000000000001", L"C:\\B\u00FCro & Co\\\u4E2D'.txt"});
    product.strPatchName = L"sp1";
    file.products.push_back(product);
    return file;
}

DeploymentFile ReadBack(const DeploymentFile& file, XmlFault& fault)
{
    const std::string bytes = Bytes(WriteDeploymentFile(file));
    CDeploymentFileReader reader;
    fault = ReadXml(bytes.data(), bytes.size(), reader);
    return reader.GetDeployment();
}

class Directories final : public IDirectorySource
{
public:
    std::map<CString, DirectoryColumns> rows;
    std::map<CString, CString> settled;
    void Add(const wchar_t* key, const wchar_t* parent, const wchar_t* name)
    {
        rows[key] = {key, parent, name};
    }
    const DirectoryColumns* FindDirectory(const CString& key) const override
    {
        const auto row = rows.find(key);
        return row == rows.end() ? nullptr : &row->second;
    }
    CString GetSettledPath(const CString& key) const override
    {
        const auto path = settled.find(key);
        return path == settled.end() ? CString() : path->second;
    }
};

} // namespace

TEST(SetupXmlTest, AWholeDescriptionIsReadWithoutFault)
{
    SetupDescription setup;
    const XmlFault fault = ReadSetup(SETUP, &setup);
    ASSERT_FALSE(fault) << fault.line << ": " << Utf8(fault.message);
    EXPECT_EQ(setup.strCode, CString(L"{11111111-2222-3333-4444-55555555ABCD}"));
    ASSERT_EQ(setup.products.size(), 1u);
    EXPECT_EQ(setup.products[0].kind, 8);
    ASSERT_EQ(setup.products[0].languagePacks.size(), 1u);
    EXPECT_EQ(setup.products[0].languagePacks[0].strLanguage, CString(L"de-DE"));
    EXPECT_EQ(PackageFolder(setup, setup.products[0], 3), CString(L"x64\\Zolt\\"));
}

TEST(SetupXmlTest, AFlowOffersTheConfigureDialogOnlyWhenItSaysSo)
{
    SetupDescription description;
    EXPECT_FALSE(ReadSetup(SETUP, &description));
    EXPECT_FALSE(description.bConfigure);
    EXPECT_FALSE(ReadSetup(With("<Flow>", "<Flow configure=\"no\">"), &description));
    EXPECT_FALSE(description.bConfigure);
    EXPECT_FALSE(ReadSetup(With("<Flow>", "<Flow configure=\"yes\">"), &description));
    EXPECT_TRUE(description.bConfigure);
}

TEST(SetupXmlTest, TheOfferOfTheConfigureDialogIsWrittenToo)
{
    SetupDescription description;
    EXPECT_FALSE(ReadSetup(With("<Flow>", "<Flow configure=\"yes\">"), &description));
    SetupDescription again;
    EXPECT_FALSE(ReadSetup(Bytes(WriteSetupDescription(description)), &again));
    EXPECT_TRUE(again.bConfigure);
}

TEST(SetupXmlTest, AnOfferThatIsNeitherYesNorNoIsRefusedWithItsValue)
{
    const XmlFault fault = ReadSetup(With("<Flow>", "<Flow configure=\"maybe\">"));
    EXPECT_NE(fault.message.Find(L"\"maybe\""), -1) << Utf8(fault.message);
    EXPECT_NE(fault.message.Find(L"yes, no"), -1) << Utf8(fault.message);
}

TEST(SetupXmlTest, AWrittenDescriptionReadsBackEqual)
{
    SetupDescription setup;
    ASSERT_FALSE(ReadSetup(SETUP, &setup));
    const CString once = WriteSetupDescription(setup);
    SetupDescription again;
    const XmlFault fault = ReadSetup(Bytes(once), &again);
    ASSERT_FALSE(fault) << Utf8(fault.message);
    EXPECT_EQ(WriteSetupDescription(again), once);
    EXPECT_EQ(again.products[0].languagePacks[0].packages.size(), 1u);
}

struct Refusal
{
    const char* what;
    const char* old;
    const char* replacement;
    const wchar_t* message;
    int line;
};

class RefusedSetupXmlTest : public testing::TestWithParam<Refusal>
{
};

TEST_P(RefusedSetupXmlTest, IsRefusedWithLineAndReason)
{
    const XmlFault fault = ReadSetup(With(GetParam().old, GetParam().replacement));
    EXPECT_GE(fault.message.Find(GetParam().message), 0) << "message: " << Utf8(fault.message);
    EXPECT_EQ(fault.line, GetParam().line) << Utf8(fault.message);
}

INSTANTIATE_TEST_SUITE_P(
    Damage, RefusedSetupXmlTest,
    testing::Values(
        Refusal{"UnknownElement", "<Resources folder=\"Wizard\"/>", "<Extra/>", L"<Extra> is not known", 3},
        Refusal{"UnknownAttribute", "folder=\"Wizard\"", "folder=\"Wizard\" size=\"1\"",
                L"\"size\" is not known", 3},
        Refusal{"MissingAttribute", "target=\"Guide.pdf\"", "", L"lacks the attribute \"target\"", 4},
        Refusal{"BadCode", "abcd}", "abc}", L"is not a code of the form", 2},
        Refusal{"ParentFolder", "folder=\"Wizard\"", "folder=\"..\\Wizard\"", L"not a path below", 3},
        Refusal{"AbsoluteFolder", "folder=\"Wizard\"", "folder=\"C:\\Wizard\"", L"not a path below", 3},
        Refusal{"ForwardSlash", "folder=\"Wizard\"", "folder=\"a/b\"", L"not a path below", 3},
        Refusal{"UncFolder", "folder=\"Wizard\"", "folder=\"\\\\server\\share\"", L"not a path below", 3},
        Refusal{"DeviceName", "folder=\"Wizard\"", "folder=\"con.txt\"", L"not a path below", 3},
        Refusal{"DeviceNumber", "folder=\"Wizard\"", "folder=\"lpt\xC2\xB2\"", L"not a path below", 3},
        Refusal{"TrailingDot", "folder=\"Wizard\"", "folder=\"Wizard.\"", L"not a path below", 3},
        Refusal{"StreamName", "folder=\"Wizard\"", "folder=\"Wizard:x\"", L"not a path below", 3},
        Refusal{"NewerVersion", "version=\"1\" code", "version=\"2\" code", L"Use a newer program", 2},
        Refusal{"TextInside", "<Step", "words<Step", L"text inside <Setup>", 5},
        Refusal{"TwoSteps", "<Step text=\"Zolt 2027 deployment\"/>", "<Step text=\"a\"/><Step text=\"b\"/>",
                L"<Step> stands twice", 5},
        Refusal{"PlatformTwice", "id=\"3\"", "id=\"2\"", L"was used before", 8},
        Refusal{"UndeclaredPlatform", "<Platform id=\"2\" folder=\"x86\"/>", "", L"not declared", 11},
        Refusal{"PackageTwice", "platform=\"3\" file=\"Zolt.msi\"", "platform=\"2\" file=\"Zolt.msi\"",
                L"was used before", 12},
        Refusal{"PackageWithPath", "file=\"Zolt.msi\"", "file=\"a\\Zolt.msi\"", L"not a file name", 11},
        Refusal{"PackageNoMsi", "file=\"Zolt.msi\"", "file=\"Zolt.exe\"", L".msi", 11},
        Refusal{"ProductTwice", "555557}", "555556}",
                L"\"ZoltDe.msi\" has the product code {11111111-2222-3333-4444-555555555556}, and so has the "
                L"package \"Zolt.msi\"",
                14},
        Refusal{"SharedFolder", "folder=\"ZoltDe\"", "folder=\"zolt\"", L"would hold two packages", 0},
        Refusal{"BadLocale", "default=\"en-US\"", "default=\"..\\\\en\"", L"not a language name", 6},
        Refusal{"NoPage", "BeginDeploymentDialog", "BeginDeploymntDialog",
                L"\"BeginDeploymntDialog\" of attribute \"name\" is not a wizard page", 7},
        Refusal{"TabPage", "BeginDeploymentDialog", "NoticeDeskFeedBoardPage",
                L"Known pages: BeginDeploymentDialog, DeploymentSettingsDialog, ", 7},
        Refusal{"BadExport", "BeginDeploymentDialog", "Begin;Dialog", L"not a wizard page", 7},
        Refusal{"EndingAlone", "BeginDeploymentDialog", "Dialog", L"not a wizard page", 7},
        Refusal{"MangledExport", "BeginDeploymentDialog", "_ZN8CLangMgr10ShowDialog", L"not a wizard page",
                7},
        Refusal{"NotClosed", "</Products>", "", L"not well-formed", 18},
        Refusal{"WrongRoot", "<Setup version", "<Deployment version", L"<Deployment>, not <Setup>", 2},
        Refusal{"NoProducts", "<Products>", "<Products></Products><Products>", L"<Products> stands twice",
                9}),
    [](const testing::TestParamInfo<Refusal>& information) { return information.param.what; });

TEST(SetupXmlTest, AFlowMayNameEveryWizardPage)
{
    for (const PageRow& page : PAGE_TABLE) {
        const XmlFault fault = ReadSetup(With("BeginDeploymentDialog", Bytes(WizardExport(page))));
        EXPECT_FALSE(fault) << Utf8(fault.message);
    }
}

TEST(SetupXmlTest, ADocumentTypeDeclarationIsRefused)
{
    const XmlFault fault =
        ReadSetup("<?xml version=\"1.0\"?>\n<!DOCTYPE Setup [<!ENTITY a \"aaaa\">]>\n<Setup/>");
    EXPECT_GE(fault.message.Find(L"document type declaration"), 0) << Utf8(fault.message);
}

TEST(SetupXmlTest, AFileThatEndsAnywhereIsRefused)
{
    const std::string whole = SETUP;
    for (std::size_t length = 0; length + 2 < whole.size(); length += 7) {
        EXPECT_TRUE(ReadSetup(whole.substr(0, length))) << "cut off after " << length << " bytes";
    }
}

TEST(SetupXmlTest, AnotherEncodingThanUtf8IsRefused)
{
    EXPECT_GE(ReadSetup(With("utf-8", "iso-8859-1")).message.Find(L"not UTF-8"), 0);
    EXPECT_GE(ReadSetup(With("Velkmora", "Velkm\xF6ra")).message.Find(L"not UTF-8"), 0);
    EXPECT_FALSE(ReadSetup(With("Velkmora", "\xEF\xBF\xBD")));
    EXPECT_FALSE(ReadSetup(With("<?xml", "\xEF\xBB\xBF<?xml")));
}

TEST(SetupXmlTest, AGraveAccentIsALetterLikeAnyOther)
{
    SetupDescription setup;
    ASSERT_FALSE(ReadSetup(With("Velkmora", "a`b `60; &#96; &#96;"), &setup));
    EXPECT_EQ(setup.strMaker, CString(L"a`b `60; ` `"));
}

TEST(SetupXmlTest, ALongFileKeepsEveryLetter)
{
    // Every alignment of a three-byte letter to whatever the parser's buffer is.
    for (int shift = 0; shift < 3; ++shift) {
        std::string comment = "<!--" + std::string(static_cast<std::size_t>(shift), 'x');
        for (int count = 0; count < 6000; ++count) {
            comment += "\xE4\xB8\xAD";
        }
        std::string name;
        for (int count = 0; count < 200; ++count) {
            name += "\xE4\xB8\xAD";
        }
        std::string text = With("Velkmora", name);
        text.insert(text.find("<Resources"), comment + "-->");
        SetupDescription setup;
        ASSERT_FALSE(ReadSetup(text, &setup));
        EXPECT_EQ(Utf8(setup.strMaker), name);
    }
}

TEST(SetupXmlTest, AControlCharacterInANameIsReadAsABlank)
{
    SetupDescription setup;
    ASSERT_FALSE(ReadSetup(With("name=\"Zolt 2027\" maker", "name=\"Zolt&#9;20&#10;27\" maker"), &setup));
    EXPECT_EQ(setup.strName, CString(L"Zolt 20 27"));
}

TEST(SetupXmlTest, AHugeFileIsRefusedUnread)
{
    const XmlFault fault = ReadSetup(std::string(XML_BYTES_LIMIT + 1, ' '));
    EXPECT_GE(fault.message.Find(L"larger than"), 0) << Utf8(fault.message);
}

TEST(DeploymentFileTest, EverySettingReadsBackEqual)
{
    const DeploymentFile file = MakeDeployment();
    XmlFault fault;
    const DeploymentFile again = ReadBack(file, fault);
    ASSERT_FALSE(fault) << Utf8(fault.message);
    EXPECT_EQ(again.strName, file.strName);
    EXPECT_EQ(again.strProductName, file.strProductName);
    EXPECT_EQ(again.platform, 2);
    EXPECT_TRUE(again.bNetworkLog);
    ASSERT_EQ(again.products.size(), 1u);
    EXPECT_TRUE(again.products[0].patches.at(0).merged);
    EXPECT_EQ(again.products[0].addedFiles.at(0).source, file.products[0].addedFiles[0].source);
    EXPECT_EQ(WriteDeploymentFile(again), WriteDeploymentFile(file));
}

TEST(DeploymentFileTest, AValueOfAnyUnitReadsBackEqual)
{
    DeploymentFile file = MakeDeployment();
    CString value(L" \\ \\u0041 ");
    for (int unit = 1; unit <= 0xFFFF; ++unit) {
        const wchar_t character = static_cast<wchar_t>(unit);
        value.Append(&character, 1);
    }
    file.products[0].properties[0].value = value;
    XmlFault fault;
    const DeploymentFile again = ReadBack(file, fault);
    ASSERT_FALSE(fault) << Utf8(fault.message);
    const CString read = again.products.at(0).properties.at(0).value;
    int same = 0;
    while (same < value.GetLength() && read[same] == value[same]) {
        ++same;
    }
    EXPECT_TRUE(read == value) << "first difference at " << same << ": " << std::hex << int{read[same]}
                               << " for " << int{value[same]} << ", lengths " << std::dec << read.GetLength()
                               << " and " << value.GetLength();
}

TEST(DeploymentFileTest, AnAddedFileBelongsToAProductAndNamesItsComponent)
{
    const std::string whole = Bytes(WriteDeploymentFile(MakeDeployment()));
    const std::string element = whole.substr(
        whole.find("<AddedFile"), whole.find("/>", whole.find("<AddedFile")) + 2 - whole.find("<AddedFile"));
    std::string outside = whole;
    outside.insert(outside.find("<Product"), element);
    std::string nameless = whole;
    nameless.replace(nameless.find("component="), 10, "key=");
    for (const std::string& text : {outside, nameless}) {
        CDeploymentFileReader reader;
        EXPECT_TRUE(ReadXml(text.data(), text.size(), reader)) << text;
    }
}

TEST(DeploymentFileTest, ACutOffFileIsRefused)
{
    const std::string whole = Bytes(WriteDeploymentFile(MakeDeployment()));
    for (std::size_t length = 0; length + 3 < whole.size(); length += 5) {
        CDeploymentFileReader reader;
        EXPECT_TRUE(ReadXml(whole.data(), length, reader)) << "cut off after " << length << " bytes";
    }
}

TEST(DirectoryRulesTest, LongNamesOfTargetAndSourceAreReported)
{
    EXPECT_EQ(TargetFolderName(L"SHORT|Long Name:SRC|Source Name"), CString(L"Long Name"));
    EXPECT_EQ(SourceFolderName(L"SHORT|Long Name:SRC|Source Name", LayoutOf(0)), CString(L"Source Name"));
    EXPECT_EQ(TargetFolderName(L".:src"), CString());
    EXPECT_EQ(SourceFolderName(L"name", LayoutOf(0)), CString(L"name"));
}

TEST(DirectoryRulesTest, ATargetIsItsParentsAndItsName)
{
    Directories directories;
    directories.Add(L"TARGETDIR", L"", L"SourceDir");
    directories.Add(L"INSTALLDIR", L"TARGETDIR", L"ZOLT|Zolt 2027");
    directories.Add(L"Below", L"INSTALLDIR", L".");
    directories.settled[L"TARGETDIR"] = L"C:";
    EXPECT_EQ(ResolveTargetPath(directories, L"Below"), CString(L"C:\\Zolt 2027\\"));
    EXPECT_EQ(ResolveSourcePath(directories, L"Below", L"D:\\m\\", LayoutOf(0)),
              CString(L"D:\\m\\Zolt 2027\\"));
    EXPECT_EQ(ResolveSourcePath(directories, L"Below", L"D:\\m\\", LayoutOf(2)), CString(L"D:\\m\\"));
}

TEST(DirectoryRulesTest, ACircleOfParentsGivesNoPath)
{
    Directories directories;
    directories.Add(L"A", L"B", L"a");
    directories.Add(L"B", L"A", L"b");
    EXPECT_EQ(ResolveTargetPath(directories, L"A"), CString());
    EXPECT_EQ(ResolveSourcePath(directories, L"A", L"D:\\", LayoutOf(0)), CString());
}

TEST(XmlValuesTest, OnlyLocaleNamesPass)
{
    EXPECT_TRUE(IsLocaleName(L"en-US"));
    EXPECT_TRUE(IsLocaleName(L"zh-Hans-CN"));
    EXPECT_FALSE(IsLocaleName(L""));
    EXPECT_FALSE(IsLocaleName(L"en-"));
    EXPECT_FALSE(IsLocaleName(L"..\\en"));
}
