// The patches that the tests and the sample stand on, made without the installer: it reads them, judges them, installs
// them and removes them again.
#include "builder/build_names.h"
#include "installer/handle.h"
#include "tests/host/build_fixture.h"
#include "tests/support/patch_fixtures.h"

#include <msi.h>
#include <msiquery.h>

namespace {

constexpr DWORD READ_PATCH = 32; // MSIDBOPEN_READONLY with MSIDBOPEN_PATCHFILE
const wchar_t* const g_layouts[] = {L"beside", L"inside", L"loose"};

UINT OpenPatch(const CString& path, CInstallerHandle& patch)
{
    return MsiOpenDatabaseW(path, reinterpret_cast<LPCWSTR>(static_cast<ULONG_PTR>(READ_PATCH)), patch.put());
}

CString SummaryText(const CString& path, UINT property)
{
    CInstallerHandle patch;
    CInstallerHandle summary;
    wchar_t text[1024] = L"";
    DWORD length = ARRAYSIZE(text);
    UINT type = 0;
    EXPECT_EQ(OpenPatch(path, patch), 0u) << Utf8(path);
    EXPECT_EQ(MsiGetSummaryInformationW(patch.get(), nullptr, 0, summary.put()), 0u);
    EXPECT_EQ(MsiSummaryInfoGetPropertyW(summary.get(), property, &type, nullptr, nullptr, text, &length),
              0u);
    return text;
}

CString MetadataText(const CString& path, const CString& property)
{
    CInstallerHandle patch;
    CInstallerHandle view;
    CInstallerHandle record;
    EXPECT_EQ(OpenPatch(path, patch), 0u) << Utf8(path);
    const CString statement = L"SELECT `Value` FROM `MsiPatchMetadata` WHERE `Property`='" + property + L"'";
    if (MsiDatabaseOpenViewW(patch.get(), statement, view.put()) != ERROR_SUCCESS ||
        MsiViewExecute(view.get(), 0) != ERROR_SUCCESS ||
        MsiViewFetch(view.get(), record.put()) != ERROR_SUCCESS) {
        return L"(none)";
    }
    wchar_t text[4096] = L"";
    DWORD length = ARRAYSIZE(text);
    EXPECT_EQ(MsiRecordGetStringW(record.get(), 1, text, &length), 0u);
    return text;
}

// What the installer says of a patch for a package.
unsigned int Judge(const CString& package, const CString& patch)
{
    MSIPATCHSEQUENCEINFOW entry = {patch, MSIPATCH_DATATYPE_PATCHFILE, 0, 0};
    EXPECT_EQ(MsiDetermineApplicablePatchesW(package, 1, &entry), 0u);
    return entry.uStatus;
}

CString Below64BitPrograms(const CString& path)
{
    wchar_t folder[MAX_PATH] = L"";
    GetEnvironmentVariableW(L"ProgramW6432", folder, ARRAYSIZE(folder));
    return CString(folder) + L"\\" + path;
}

CString SampleFolder(const wchar_t* name)
{
    wchar_t program[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    return FolderAbove(FolderAbove(program)) + L"\\" + name;
}

// Of the fixture and of the sample's product, each removed at the end.
class PatchFilesTest : public testing::Test
{
protected:
    ~PatchFilesTest() override
    {
        if (!m_installed.IsEmpty()) {
            EXPECT_EQ(Remove(), 0u);
        }
    }
    unsigned long Install(const CString& package, const CString& patches)
    {
        m_installed = package;
        return RunProgram(L"msiexec /i \"" + package + L"\" PATCH=\"" + patches + L"\" /qn /norestart");
    }
    unsigned long Remove()
    {
        const CString package = m_installed;
        m_installed.Empty();
        return RunProgram(L"msiexec /x \"" + package + L"\" /qn /norestart");
    }
    CString m_installed;
};

TEST_F(PatchFilesTest, AreNamedByTheirCodesAndTargets)
{
    const struct
    {
        const wchar_t* name;
        const wchar_t* code;
        const wchar_t* target;
    } patches[] = {
        {L"beside\\First.msp", FIRST_PATCH_CODE, PATCHED_PRODUCT_CODE},
        {L"inside\\First.msp", FIRST_PATCH_CODE, PATCHED_PRODUCT_CODE},
        {L"loose\\First.msp", FIRST_PATCH_CODE, PATCHED_PRODUCT_CODE},
        {L"beside\\Second.msp", SECOND_PATCH_CODE, PATCHED_PRODUCT_CODE},
        {L"beside\\Independent.msp", INDEPENDENT_PATCH_CODE, PATCHED_PRODUCT_CODE},
        {L"OtherProduct.msp", OTHER_PRODUCT_PATCH_CODE, OTHER_PRODUCT_CODE},
        {L"NoMetadata.msp", NO_METADATA_PATCH_CODE, PATCHED_PRODUCT_CODE},
        {L"TargetNameOnly.msp", TARGET_NAME_ONLY_PATCH_CODE, PATCHED_PRODUCT_CODE},
        {L"HostileName.msp", HOSTILE_NAME_PATCH_CODE, PATCHED_PRODUCT_CODE},
        {L"SameCode.msp", FIRST_PATCH_CODE, PATCHED_PRODUCT_CODE},
    };
    for (const auto& patch : patches) {
        SCOPED_TRACE(Utf8(patch.name));
        EXPECT_EQ(SummaryText(PatchFixture(patch.name), 7), patch.target);
        EXPECT_EQ(SummaryText(PatchFixture(patch.name), 9), patch.code);
    }
    EXPECT_EQ(SummaryText(PatchFixture(L"Superseding.msp"), 9),
              CString(SUPERSEDING_PATCH_CODE) + FIRST_PATCH_CODE);
}

TEST_F(PatchFilesTest, HaveTheNamesThatTheirHeaderTells)
{
    EXPECT_EQ(MetadataText(PatchFixture(L"beside\\First.msp"), L"TargetProductName"), L"Patch Test");
    EXPECT_EQ(MetadataText(PatchFixture(L"beside\\First.msp"), L"DisplayName"), L"First");
    EXPECT_EQ(MetadataText(PatchFixture(L"TargetNameOnly.msp"), L"TargetProductName"), L"Patch Test");
    EXPECT_EQ(MetadataText(PatchFixture(L"TargetNameOnly.msp"), L"DisplayName"), L"(none)");
    EXPECT_EQ(MetadataText(PatchFixture(L"NoMetadata.msp"), L"DisplayName"), L"(none)");
    const CString hostile = MetadataText(PatchFixture(L"HostileName.msp"), L"DisplayName");
    EXPECT_EQ(hostile.Left(14), L"\r\nA \"quoted\" &");
    EXPECT_GT(hostile.Find(L"\x202E\x05D0\t"), 0);
    EXPECT_GT(hostile.GetLength(), 1500);
}

TEST_F(PatchFilesTest, ApplyToTheirProductAlone)
{
    for (const wchar_t* layout : g_layouts) {
        const CString package = PatchFixture(CString(layout) + L"\\PatchTest.msi");
        EXPECT_EQ(Judge(package, PatchFixture(CString(layout) + L"\\First.msp")), 0u) << Utf8(layout);
        EXPECT_EQ(Judge(package, PatchFixture(CString(layout) + L"\\Independent.msp")), 0u) << Utf8(layout);
    }
    const CString package = PatchFixture(L"beside\\PatchTest.msi");
    EXPECT_EQ(Judge(package, PatchFixture(L"OtherProduct.msp")),
              static_cast<unsigned int>(ERROR_PATCH_TARGET_NOT_FOUND));
}

TEST_F(PatchFilesTest, AreRefusedWhenTheyAreDamaged)
{
    for (const wchar_t* name : {L"CutOff.msp", L"Empty.msp", L"NoPatch.msp", L"beside\\PatchTest.msi"}) {
        CInstallerHandle patch;
        EXPECT_NE(OpenPatch(PatchFixture(name), patch), 0u) << Utf8(name);
        EXPECT_NE(Judge(PatchFixture(L"beside\\PatchTest.msi"), PatchFixture(name)), 0u) << Utf8(name);
    }
}

TEST_F(PatchFilesTest, BringTheirFilesAndGoWithTheProduct)
{
    const CString folder = Below64BitPrograms(L"Patch Test");
    for (const wchar_t* layout : g_layouts) {
        SCOPED_TRACE(Utf8(layout));
        const CString own = CString(layout) + L"\\";
        ASSERT_EQ(Install(PatchFixture(own + L"PatchTest.msi"), PatchFixture(own + L"First.msp")), 0u);
        EXPECT_EQ(ReadBytes(folder + L"\\kept.txt"), "kept, as it was\r\n");
        EXPECT_EQ(ReadBytes(folder + L"\\replaced.txt"), "replaced by the first patch\r\n");
        EXPECT_EQ(ReadBytes(folder + L"\\Support\\added file.txt"), "added by the first patch\r\n");
        EXPECT_EQ(ReadBytes(folder + L"\\Support\\second.txt"), "second, as it was\r\n");
        EXPECT_EQ(Remove(), 0u);
        EXPECT_FALSE(Exists(folder));
    }
}

TEST_F(PatchFilesTest, BringTheirFilesOneAfterTheOther)
{
    const CString folder = Below64BitPrograms(L"Patch Test");
    ASSERT_EQ(Install(PatchFixture(L"beside\\PatchTest.msi"),
                      PatchFixture(L"beside\\First.msp") + L";" + PatchFixture(L"beside\\Second.msp")),
              0u);
    EXPECT_EQ(ReadBytes(folder + L"\\replaced.txt"), "replaced by the first patch\r\n");
    EXPECT_EQ(ReadBytes(folder + L"\\Support\\added file.txt"),
              "added by the first patch, replaced by the second\r\n");
    EXPECT_EQ(ReadBytes(folder + L"\\Support\\second.txt"), "replaced by the second patch\r\n");
}

TEST_F(PatchFilesTest, OfTheSampleBringTheNewestVersion)
{
    for (const wchar_t* platform : {L"x64", L"x86"}) {
        SCOPED_TRACE(Utf8(platform));
        const CString package = SampleFolder(L"media") + L"\\" + platform + L"\\Zolt\\Zolt2027.msi";
        const CString patches = SampleFolder(L"sample_patches") + L"\\" + platform + L"\\";
        EXPECT_EQ(Judge(package, patches + L"Zolt2027Update1.msp"), 0u);
        EXPECT_EQ(Judge(package, patches + L"Zolt2027Unnamed.msp"), 0u);
        EXPECT_NE(Judge(package, patches + L"Zolt2027CutOff.msp"), 0u);
        EXPECT_NE(Judge(package, patches + L"Zolt2027NoPatch.msp"), 0u);
        EXPECT_NE(Judge(package, patches + L"ZoltViewer2027Update1.msp"), 0u);
        EXPECT_EQ(SummaryText(patches + L"Zolt2027Update2.msp", 9).Mid(38),
                  SummaryText(patches + L"Zolt2027Update1.msp", 9));
        ASSERT_EQ(Install(package, patches + L"Zolt2027Update2.msp"), 0u);
        CString folder = Below64BitPrograms(L"Velkmora\\Zolt 2027");
        if (CString(platform) == L"x86") {
            folder.Replace(L"Program Files", L"Program Files (x86)");
        }
        for (const wchar_t* path : {L"Support\\Units.txt", L"Fonts\\Engraving.zfont"}) {
            EXPECT_NE(ReadBytes(folder + L"\\" + path).find("; Update 1\r\n"), std::string::npos)
                << Utf8(path);
        }
        for (const wchar_t* path : {L"Support\\Aliases.txt", L"Help\\What is New.html"}) {
            EXPECT_NE(ReadBytes(folder + L"\\" + path).find("; Update 2\r\n"), std::string::npos)
                << Utf8(path);
        }
        EXPECT_EQ(Remove(), 0u);
        EXPECT_FALSE(Exists(folder));
    }
}

TEST_F(PatchFilesTest, AreWrittenByAProgramThatHoldsThem)
{
    const TestFolder folder(L"extracted files");
    const CString target = folder / L"First.msp";
    const CString program = L"\"" + PatchFixture(L"SelfExtracting.exe") + L"\"";
    EXPECT_EQ(RunProgram(program + L" /e \"" + target + L"\""), 0u);
    EXPECT_EQ(ReadBytes(target), ReadBytes(PatchFixture(L"beside\\First.msp")));
    EXPECT_EQ(RunProgram(program), 1u);
    EXPECT_EQ(RunProgram(program + L" /x \"" + target + L"\""), 1u);
    EXPECT_EQ(RunProgram(program + L" /e \"" + folder / L"missing\\First.msp\""), 3u);
}

TEST_F(PatchFilesTest, AreNotWrittenByAProgramThatHoldsNone)
{
    const TestFolder folder;
    const CString target = folder / L"First.msp";
    EXPECT_EQ(RunProgram(L"\"" + PatchFixture(L"ExtractsNothing.exe") + L"\" /e \"" + target + L"\""), 2u);
    EXPECT_FALSE(Exists(target));
}

} // namespace
