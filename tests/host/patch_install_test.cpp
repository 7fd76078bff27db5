// What workstations get of a deployment with appended patches: its scripts run, the installer service does the rest.
#include "tests/host/patched_media.h"

#include <msi.h>

#include <functional>

namespace {

CString InstalledFile(const wchar_t* name)
{
    wchar_t programs[MAX_PATH] = L"";
    GetEnvironmentVariableW(L"ProgramW6432", programs, ARRAYSIZE(programs));
    return CString(programs) + L"\\Patch Test\\" + name;
}

bool IsInstalled()
{
    return MsiQueryProductStateW(PATCHED_PRODUCT_CODE) == INSTALLSTATE_DEFAULT;
}

class PatchInstallTest : public PatchedProductTest, public testing::WithParamInterface<const wchar_t*>
{
protected:
    ~PatchInstallTest() override
    {
        if (IsInstalled()) {
            RunAndWait(CString(L"msiexec /x ") + PATCHED_PRODUCT_CODE + L" /qn /norestart");
        }
    }

    // The other product of the media can't be installed.
    void Deploy(const std::vector<CString>& files)
    {
        CopyPatchedPackage(plain + L"media\\", GetParam());
        Begin(Open(plain + L"media\\PatchTest.msi"), Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), NAME);
        Choose(FirstOf(*host), files, Setup::PATCHSTATE_APPEND);
        Build();
    }

    void Modify(const std::function<std::vector<CString>(std::vector<CString>)>& change)
    {
        CProduct& product = OpenAgain(Setup::SETUPMODE_MODIFY_DEPLOYMENT, NAME, NAME);
        const std::vector<CString> files = change(product.m_patchFiles);
        Choose(product, files, files.empty() ? Setup::PATCHSTATE_NONE : Setup::PATCHSTATE_APPEND);
        Build();
    }

    unsigned long Run(const wchar_t* script)
    {
        return RunAndWait(L"cmd.exe /d /c \"\"" + location + NAME + L"\\" + script + L"\"\"");
    }

    // Installs, and answers what the product's files say; then removes it again.
    CString InstalledTexts(bool hasChain = false)
    {
        EXPECT_EQ(Run(L"Install.cmd"), 0u);
        EXPECT_TRUE(IsInstalled());
        CString texts;
        for (const wchar_t* name : {L"replaced.txt", L"Support\\added file.txt", L"Support\\second.txt"}) {
            CString text = IsFile(InstalledFile(name)) ? ReadText(InstalledFile(name)) : CString(L"(none)");
            texts += text.Trim() + L"; ";
        }
        EXPECT_EQ(Run(L"Uninstall.cmd"), 0u);
        EXPECT_FALSE(IsInstalled());
        // Wine registers only the last patch of a chain, and then doesn't know what the one before it brought.
        EXPECT_EQ(IsFile(InstalledFile(L"Support\\added file.txt")), hasChain);
        EXPECT_EQ(IsFolder(InstalledFile(L"")), hasChain);
        RemoveFolder(InstalledFile(L""));
        return texts;
    }

    CString Patch(const wchar_t* name, const wchar_t* file)
    {
        return CopyOf(CString(GetParam()) + L"\\" + name, file);
    }

    static constexpr const wchar_t* NAME = L"50 & more (1)";
};

const CString UNPATCHED = L"replaced, as it was; (none); second, as it was; ";
const CString BY_FIRST = L"replaced by the first patch; added by the first patch; second, as it was; ";
const CString BY_BOTH =
    L"replaced by the first patch; added by the first patch, replaced by the second; replaced by the "
    L"second patch; ";

} // namespace

TEST_P(PatchInstallTest, AppendedPatchesAreInstalledWithTheirProductAndOneThatIsAddedOrRemovedComesOrGoes)
{
    Deploy({Patch(L"First.msp", L"first & 100% (1).msp")});
    EXPECT_EQ(InstalledTexts(), BY_FIRST);
    Modify([&](std::vector<CString> files) {
        files.insert(files.begin(), Patch(L"Second.msp", L"second.msp"));
        return files;
    });
    EXPECT_EQ(InstalledTexts(true), BY_BOTH);
    Modify([](const std::vector<CString>& files) { return std::vector<CString>{files.at(0)}; });
    EXPECT_EQ(InstalledTexts(), BY_FIRST);
    Modify([](const std::vector<CString>&) { return std::vector<CString>(); });
    EXPECT_EQ(InstalledTexts(), UNPATCHED);
}

INSTANTIATE_TEST_SUITE_P(Layouts, PatchInstallTest, testing::Values(L"beside", L"inside", L"loose"),
                         [](const testing::TestParamInfo<const wchar_t*>& layout) {
                             return Utf8(CString(layout.param));
                         });
