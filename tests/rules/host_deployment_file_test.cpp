// Deployment.xml is foreign once it lies on a share: what it names must not lead out of the deployment, and what the
// host writes into it must come back.
#include "host/deployment_file.h"
#include "host/read_again.h"
#include "host/xml_limits.h"
#include "host/xml_text.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace {

constexpr const wchar_t* PATCH_CODE = L"{0B9E6A6E-0000-4000-8000-000000000001}";

DeploymentFile Whole()
{
    DeploymentFile file;
    file.strName = L"North";
    file.strSetupCode = L"{11111111-2222-3333-4444-55555555ABCD}";
    file.strProductName = L"Zolt 2027";
    file.strProductVersion = L"27.0.0";
    file.strLanguage = L"de-DE";
    file.strBaseName = L"South";
    file.strNetworkLogFolder = L"\\\\server\\logs";
    file.properties.push_back({L"A", L"1"});
    StoredProduct product;
    product.strProductCode = L"{11111111-2222-3333-4444-555555555555}";
    product.strName = L"Zolt";
    product.properties.push_back({L"B", L"2"});
    product.patches.push_back({L"x64\\Zolt\\ServicePacks\\sp1.msp", true, PATCH_CODE, CString(L'a', 64)});
    product.addedFiles.push_back({L"TARN_0D7A5C1E_0000_4000_8000_000000000001", L"C:\\a.txt"});
    product.strPatchPath = L"C:\\sp1.msp";
    product.strPatchName = L"sp1";
    product.strPatchReadme = L"readme";
    product.strPatchSize = L"12 MB";
    file.products.push_back(product);
    return file;
}

std::string Bytes(const DeploymentFile& file)
{
    return Utf8(WriteDeploymentFile(file));
}

XmlFault Read(const std::string& text, DeploymentFile* file = nullptr)
{
    CDeploymentFileReader reader;
    const XmlFault fault = ReadXml(text.data(), text.size(), reader);
    if (file) {
        *file = reader.GetDeployment();
    }
    return fault;
}

std::string With(const std::string& old, const std::string& replacement)
{
    std::string text = Bytes(Whole());
    const std::size_t place = text.find(old);
    EXPECT_NE(place, std::string::npos) << old;
    return text.replace(place, old.size(), replacement);
}

const char PATCH_START[] = "file=\"x64\\Zolt\\ServicePacks\\sp1.msp\" merged=\"1\"";

using Change = std::function<void(DeploymentFile&)>;

} // namespace

class HostileNameTest : public testing::TestWithParam<const char*>
{
};

TEST_P(HostileNameTest, ADeploymentsNameIsRefused)
{
    const XmlFault fault = Read(With("name=\"North\"", std::string("name=\"") + GetParam() + "\""));
    EXPECT_GE(fault.message.Find(L"is not a name that a folder can have"), 0) << Utf8(fault.message);
    EXPECT_EQ(fault.line, 2);
}

TEST_P(HostileNameTest, ABasesNameIsRefused)
{
    const XmlFault fault = Read(With("base=\"South\"", std::string("base=\"") + GetParam() + "\""));
    EXPECT_GE(fault.message.Find(L"is not a name that a folder can have"), 0) << Utf8(fault.message);
}

INSTANTIATE_TEST_SUITE_P(All, HostileNameTest,
                         testing::Values("..\\..\\x", "..", ".", "a\\b", "a/b", "C:x", "C:\\x",
                                         "\\\\server\\share", "con", "a&#10;b", "a&#9;b", " a", "a ", "a.",
                                         "a*", " "));

class HostilePatchTest : public testing::TestWithParam<const char*>
{
};

TEST_P(HostilePatchTest, APatchOutsideOfTheImageIsRefusedByNameAndLine)
{
    for (const char* merged : {"0", "1"}) {
        const std::string file = GetParam();
        const XmlFault fault =
            Read(With(PATCH_START, "file=\"" + file + "\" merged=\"" + std::string(merged) + "\""));
        const bool isRefused = !file.empty() || *merged == '0'; // what is merged may have lost its file
        EXPECT_EQ(fault.message.Find(L"is not a path below the folder") >= 0, isRefused)
            << Utf8(fault.message);
        EXPECT_GE(fault.message.Find(TextFromUtf8(file.data(), file.size())), 0) << Utf8(fault.message);
        EXPECT_EQ(fault.line, isRefused ? 7 : 0);
    }
}

// Nobody can look at a patch again once it is merged, so the file has to say which one it was.
TEST(DeploymentTextsTest, AMergedPatchWithoutCodeOrHashIsRefused)
{
    for (const char* attribute : {"code", "sha256"}) {
        const std::string name = attribute;
        const XmlFault fault = Read(With(
            " " + name + "=\"" + (name == "code" ? Utf8(CString(PATCH_CODE)) : std::string(64, 'a')) + "\"",
            ""));
        EXPECT_GE(fault.message.Find(L"lacks the attribute \"" + TextFromUtf8(attribute, name.size())), 0)
            << Utf8(fault.message);
    }
}

TEST(DeploymentTextsTest, APatchCodeOrHashOfAnotherFormIsRefused)
{
    for (const char* code : {"", "x", "{0B9E6A6E-0000-4000-8000-00000000000}"}) {
        const XmlFault fault = Read(With(Utf8(CString(PATCH_CODE)), code));
        EXPECT_GE(fault.message.Find(L"of attribute \"code\" is not a code"), 0) << Utf8(fault.message);
    }
    for (const std::string& hash : {std::string(), std::string(63, 'a'), std::string(65, 'a'),
                                    std::string(64, 'A'), std::string(64, 'g')}) {
        const XmlFault fault = Read(With(std::string(64, 'a'), hash));
        EXPECT_GE(fault.message.Find(L"of attribute \"sha256\" is not a SHA-256"), 0) << Utf8(fault.message);
    }
}

// Files that were built before patches were known by code and content.
TEST(DeploymentTextsTest, APatchOfAnEarlierFileIsReadAsNotMerged)
{
    const std::string facts =
        " code=\"" + Utf8(CString(PATCH_CODE)) + "\" sha256=\"" + std::string(64, 'a') + "\"";
    std::string earlier = With(facts, "");
    const std::string version = "<Deployment version=\"2\"";
    ASSERT_NE(earlier.find(version), std::string::npos);
    earlier.replace(earlier.find(version), version.size(), "<Deployment version=\"1\"");
    DeploymentFile file;
    const XmlFault fault = Read(earlier, &file);
    ASSERT_FALSE(fault) << Utf8(fault.message);
    EXPECT_EQ(file.products.at(0).patches.at(0),
              (StoredPatch{L"x64\\Zolt\\ServicePacks\\sp1.msp", false, CString(), CString()}));
    EXPECT_FALSE(CheckReadsAgain(file));
}

TEST(DeploymentTextsTest, APatchCodeIsKeptInUpperCase)
{
    DeploymentFile file;
    ASSERT_FALSE(Read(With("0B9E6A6E", "0b9e6a6e"), &file));
    EXPECT_EQ(file.products.at(0).patches.at(0).code, CString(PATCH_CODE));
}

INSTANTIATE_TEST_SUITE_P(All, HostilePatchTest,
                         testing::Values("..\\sp1.msp", "x64\\..\\..\\sp1.msp", "C:x", "C:\\sp1.msp",
                                         "\\sp1.msp", "\\\\server\\share\\sp1.msp", "\\\\?\\C:\\sp1.msp",
                                         "a/../sp1.msp", "x64\\nul", ""));

TEST(DeploymentTextsTest, ALogFolderOfTwoLinesIsRefused)
{
    const XmlFault fault = Read(With("\\\\server\\logs", "\\\\server\\logs&#13;&#10;calc.exe"));
    EXPECT_GE(fault.message.Find(L"holds a control character"), 0) << Utf8(fault.message);
}

TEST(DeploymentTextsTest, WhatWasLearnedOfAPatchStandsOnce)
{
    const std::string element = "<DownloadedPatch path=\"\" name=\"\" readme=\"\" size=\"\"/>";
    EXPECT_GE(
        Read(With("</Product>", element + "</Product>")).message.Find(L"<DownloadedPatch> stands twice"), 0);
}

// Files that were built before several values of an element could be escaped.
TEST(DeploymentTextsTest, EscapedValuesOfEarlierFilesAreRead)
{
    DeploymentFile file;
    const XmlFault fault = Read(With("<Property name=\"A\" value=\"1\"/>",
                                     "<Property name=\"A\\x\" value=\"\\u0009\\u005C\" escaped=\"1\"/>"),
                                &file);
    ASSERT_FALSE(fault) << Utf8(fault.message);
    EXPECT_EQ(file.properties.at(0).name, CString(L"A\\x"));
    EXPECT_EQ(file.properties.at(0).value, CString(L"\t\\"));
    const std::string bare = With(" path=\"C:\\sp1.msp\" name=\"sp1\" readme=\"readme\" size=\"12 MB\"", "");
    EXPECT_FALSE(Read(bare)) << bare;
}

TEST(DeploymentTextsTest, TextsOfAPatchMayHoldAnyUnits)
{
    DeploymentFile file = Whole();
    StoredProduct& product = file.products[0];
    product.strPatchPath = L"C:\\a\tb\\u0041";
    product.strPatchName = L"\x1 \\ \xD800";
    product.strPatchReadme = L"https://x/?a=\n\"&<";
    product.strPatchSize = L"12\x7FMB";
    DeploymentFile again;
    const XmlFault fault = Read(Bytes(file), &again);
    ASSERT_FALSE(fault) << Utf8(fault.message) << Bytes(file);
    EXPECT_TRUE(again == file) << Bytes(file) << Bytes(again);
    EXPECT_FALSE(CheckReadsAgain(file));
}

TEST(DeploymentTextsTest, EmptyValuesReadBackAsValues)
{
    DeploymentFile file = Whole();
    StoreProperty(file.products[0].properties, L"B", L"");
    StoreProperty(file.products[0].properties, L"C", L"");
    DeploymentFile again;
    ASSERT_FALSE(Read(Bytes(file), &again));
    ASSERT_NE(FindProperty(again.products.at(0).properties, L"B"), nullptr);
    EXPECT_EQ(*FindProperty(again.products[0].properties, L"B"), CString());
    EXPECT_NE(FindProperty(again.products[0].properties, L"C"), nullptr);
    EXPECT_EQ(FindProperty(again.products[0].properties, L"D"), nullptr);
}

// Each field of the file that a writer could forget, changed on its own.
TEST(ReadAgainTest, EveryFieldComesBackChanged)
{
    const Change changes[] = {
        [](DeploymentFile& file) { file.strName = L"x"; },
        [](DeploymentFile& file) { file.strSetupCode = L"{00000000-2222-3333-4444-55555555ABCD}"; },
        [](DeploymentFile& file) { file.strProductName = L"x"; },
        [](DeploymentFile& file) { file.strProductVersion = L"x"; },
        [](DeploymentFile& file) { file.strBaseName = L""; },
        [](DeploymentFile& file) { file.strLanguage = L"en-US"; },
        [](DeploymentFile& file) { file.platform = 2; },
        [](DeploymentFile& file) { file.installMode = 3; },
        [](DeploymentFile& file) { file.bNetworkLog = true; },
        [](DeploymentFile& file) { file.strNetworkLogFolder = L""; },
        [](DeploymentFile& file) { file.bSettingsOption = true; },
        [](DeploymentFile& file) { file.properties[0].value = L""; },
        [](DeploymentFile& file) {
            file.products[0].strProductCode = L"{00000000-2222-3333-4444-55555555ABCD}";
        },
        [](DeploymentFile& file) { file.products[0].strName = L"x"; },
        [](DeploymentFile& file) { file.products[0].properties[0].name = L"x"; },
        [](DeploymentFile& file) { file.products[0].patches[0].file = L"x"; },
        [](DeploymentFile& file) { file.products[0].patches[0].file = L""; },
        [](DeploymentFile& file) { file.products[0].patches[0].merged = false; },
        [](DeploymentFile& file) {
            file.products[0].patches[0] = {L"x", false, CString(), CString()};
        },
        [](DeploymentFile& file) {
            file.products[0].patches[0].code = L"{0B9E6A6E-0000-4000-8000-000000000002}";
        },
        [](DeploymentFile& file) { file.products[0].patches[0].sha256 = CString(L'b', 64); },
        [](DeploymentFile& file) { file.products[0].addedFiles[0].component = L"x"; },
        [](DeploymentFile& file) { file.products[0].addedFiles[0].source = L""; },
        [](DeploymentFile& file) { file.products[0].patchState = 5; },
        [](DeploymentFile& file) { file.products[0].includePatch = 2; },
        [](DeploymentFile& file) { file.products[0].strPatchPath = L""; },
        [](DeploymentFile& file) { file.products[0].strPatchName = L""; },
        [](DeploymentFile& file) { file.products[0].strPatchReadme = L""; },
        [](DeploymentFile& file) { file.products[0].strPatchSize = L""; },
    };
    int number = 0;
    for (const Change& change : changes) {
        DeploymentFile file = Whole();
        change(file);
        DeploymentFile again;
        const XmlFault fault = Read(Bytes(file), &again);
        EXPECT_FALSE(fault) << number << ": " << Utf8(fault.message);
        EXPECT_TRUE(again == file) << number << ": " << Bytes(file);
        EXPECT_FALSE(again == Whole()) << number;
        ++number;
    }
}

TEST(ReadAgainTest, AFileAtEveryLimitReadsAgain)
{
    DeploymentFile file = Whole();
    file.strName = CString(L'n', FOLDER_NAME_LIMIT);
    file.strBaseName = file.strName;
    file.strProductName = CString(L'n', NAME_LIMIT);
    file.strProductVersion = CString(L'1', VERSION_LIMIT);
    file.strNetworkLogFolder = CString(L'n', FULL_PATH_LIMIT);
    file.properties[0] = {CString(L'n', PROPERTY_NAME_LIMIT), CString(L'v', PROPERTY_VALUE_LIMIT - 1)};
    StoredProduct& product = file.products[0];
    product.strName = file.strProductName;
    product.addedFiles[0] = {CString(L'k', TABLE_KEY_LIMIT), CString(L'p', FULL_PATH_LIMIT)};
    product.strPatchPath = CString(L'p', FULL_PATH_LIMIT);
    product.strPatchName = CString(L'n', PATCH_NAME_LIMIT);
    product.strPatchReadme = CString(L'r', PATCH_README_LIMIT);
    product.strPatchSize = CString(L's', PATCH_SIZE_LIMIT);
    const XmlFault fault = CheckReadsAgain(file);
    EXPECT_FALSE(fault) << Utf8(fault.message);
}

struct Unreadable
{
    const char* what;
    const wchar_t* named;
    Change change;
};

class UnreadableDeploymentTest : public testing::TestWithParam<Unreadable>
{
};

TEST_P(UnreadableDeploymentTest, IsRefusedBeforeItIsBuiltAndTheValueIsNamed)
{
    DeploymentFile file = Whole();
    GetParam().change(file);
    const XmlFault fault = CheckReadsAgain(file);
    EXPECT_GE(fault.message.Find(GetParam().named), 0) << Utf8(fault.message);
    EXPECT_GE(fault.message.Find(L"Nothing was built"), 0) << Utf8(fault.message);
    EXPECT_LT(fault.message.GetLength(), 800);
}

INSTANTIATE_TEST_SUITE_P(
    Values, UnreadableDeploymentTest,
    testing::Values(
        Unreadable{"Name", L"\"name\"", [](DeploymentFile& file) { file.strName = L"..\\x"; }},
        Unreadable{"LongName", L"\"name\"", [](DeploymentFile& file) { file.strName = CString(L'n', 256); }},
        Unreadable{"ProductName", L"productName=\"a b",
                   [](DeploymentFile& file) { file.strProductName = L"a\tb"; }},
        Unreadable{
            "LogFolder", L"networkLogFolder",
            [](DeploymentFile& file) { file.strNetworkLogFolder = CString(L'n', FULL_PATH_LIMIT + 1); }},
        Unreadable{"LogFolderOfTwoLines", L"networkLogFolder",
                   [](DeploymentFile& file) { file.strNetworkLogFolder = L"a\nb"; }},
        Unreadable{"Language", L"\"language\"", [](DeploymentFile& file) { file.strLanguage = L""; }},
        Unreadable{"PropertyName", L"<Property name=\"a b",
                   [](DeploymentFile& file) { file.properties[0].name = L"a\tb"; }},
        Unreadable{"Code", L"\"code\"",
                   [](DeploymentFile& file) { file.products.push_back(file.products[0]); }},
        Unreadable{"FullPatchPath", L"C:\\sp1.msp",
                   [](DeploymentFile& file) { file.products[0].patches[0].file = L"C:\\sp1.msp"; }},
        Unreadable{"Readme", L"\"readme\"",
                   [](DeploymentFile& file) { file.products[0].strPatchReadme = CString(L'r', 4001); }},
        Unreadable{"Size", L"\"size\"",
                   [](DeploymentFile& file) { file.products[0].strPatchSize = CString(L's', 101); }},
        Unreadable{"Value", L"The value of an attribute is longer",
                   [](DeploymentFile& file) { file.properties[0].value = CString(L'\t', 200000); }}),
    [](const testing::TestParamInfo<Unreadable>& information) { return information.param.what; });

TEST(ReadAgainTest, AnImagesDescriptionThatWouldNotReadIsRefused)
{
    SetupDescription setup;
    const XmlFault fault = CheckReadsAgain(setup);
    EXPECT_GE(fault.message.Find(L"Setup.xml"), 0) << Utf8(fault.message);
}
