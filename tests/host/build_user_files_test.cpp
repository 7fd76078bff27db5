// Files, folders and drives that were added to a product really arrive on a workstation, and go again.
#include "host/build/build_names.h"
#include "host/build/cabinet.h"
#include "tests/host/user_additions.h"

#include <windows.h>

#include <msi.h>
#include <msiquery.h>
#include <objidl.h>

namespace {

enum class Form
{
    Loose,      // the package isn't compressed
    Compressed, // the product's files lie in a cabinet
};

void SetWordCount(const CString& path, int words)
{
    MSIHANDLE summary = 0;
    ASSERT_EQ(MsiGetSummaryInformationW(0, path, 1, &summary), 0u);
    EXPECT_EQ(MsiSummaryInfoSetPropertyW(summary, 15, VT_I4, words, nullptr, nullptr), 0u);
    EXPECT_EQ(MsiSummaryInfoPersist(summary), 0u);
    MsiCloseHandle(summary);
}

// The product's readme.txt goes into a cabinet of the vendor's.
void Compress(const CString& path)
{
    MSIHANDLE database = 0;
    ASSERT_EQ(MsiOpenDatabaseW(path, MSIDBOPEN_TRANSACT, &database), 0u);
    EXPECT_EQ(RunSql(database, L"UPDATE `File` SET `Attributes`=0"), 0u);
    EXPECT_EQ(RunSql(database, L"UPDATE `Media` SET `Cabinet`='vendor.cab'"), 0u);
    EXPECT_EQ(MsiDatabaseCommit(database), 0u);
    MsiCloseHandle(database);
    SetWordCount(path, 2);
    const CString readme = path + L".readme";
    WriteBytes(readme, "hello\n");
    std::vector<CabinetMember> members = {{L"Readme", readme, 0}};
    WriteCabinet(FolderAbove(path) + L"\\vendor.cab", members, [](std::uint64_t) {});
    DeleteFileW(readme);
}

ProductOptions OptionsFor(Form form)
{
    ProductOptions options;
    options.bytesOfLargeFile = 1000;
    options.prepare = [form](const CString& path) {
        MakeAdditionTables(path);
        if (form == Form::Compressed) {
            Compress(path);
        }
    };
    return options;
}

CString ProgramFolder()
{
    wchar_t text[MAX_PATH] = L"";
    GetEnvironmentVariableW(L"ProgramW6432", text, ARRAYSIZE(text));
    return text + CString(L"\\ZoltTest");
}

class UserFilesTest : public testing::TestWithParam<Form>
{
protected:
    UserFilesTest() : build(OptionsFor(GetParam())), rows(build.plan.databases[0].hDatabase, 1)
    {
        MakeFolders(sources.Path());
    }
    ~UserFilesTest() override
    {
        if (MsiQueryProductStateW(PRODUCT_CODE) == INSTALLSTATE_DEFAULT) {
            RunProgram(CString(L"msiexec /x ") + PRODUCT_CODE + L" /qn /norestart");
        }
    }

    CString Source(const CString& name, const std::string& bytes)
    {
        const CString path = sources / name;
        MakeFolders(FolderAbove(path));
        WriteBytes(path, bytes);
        return path;
    }

    void BuildIt()
    {
        const BuildResult result = build.Build();
        warnings = result.warnings;
        ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    }
    void Install()
    {
        const CString log = sources / L"install.log";
        ASSERT_EQ(
            RunProgram(L"msiexec /i \"" + build.Database() + L"\" /qn /norestart /L*V \"" + log + L"\""), 0u)
            << ReadBytes(log);
    }
    unsigned long Uninstall()
    {
        return RunProgram(CString(L"msiexec /x ") + PRODUCT_CODE + L" /qn /norestart");
    }

    TestFolder sources{L"sources"};
    TestBuild build;
    UserAdditionRows rows;
    std::vector<CString> warnings;
};

INSTANTIATE_TEST_SUITE_P(Packages, UserFilesTest, testing::Values(Form::Loose, Form::Compressed),
                         [](const auto& form) {
                             return std::string(form.param == Form::Loose ? "Loose" : "Compressed");
                         });

} // namespace

TEST_P(UserFilesTest, FilesFoldersAndADriveArriveAndGo)
{
    const CString drive = build.Folder() / L"drive";
    MakeFolders(drive);
    const CString deep = rows.AddFolder(L"It's one folder", L"INSTALLDIR");
    const CString inner = rows.AddFolder(L"inner", deep);
    rows.AddFolder(L"Empty", L"INSTALLDIR");
    rows.AddFile(Source(L"a\\logo.txt", "first"), L"INSTALLDIR");
    const CString gone = rows.AddFile(Source(L"x\\removed.txt", "removed"), deep);
    rows.AddFile(Source(L"b\\logo.txt", "the second"), deep);
    rows.RemoveFile(deep, gone);
    rows.AddFile(Source(L"c\\logo.txt", std::string(100000, 'c')), inner);
    BuildIt();
    Install();
    Tree expected;
    expected[L"readme.txt"] = "hello\n";
    expected[L"logo.txt"] = "first";
    expected[L"Empty\\"] = "";
    expected[L"It's one folder\\"] = "";
    expected[L"It's one folder\\logo.txt"] = "the second";
    expected[L"It's one folder\\inner\\"] = "";
    expected[L"It's one folder\\inner\\logo.txt"] = std::string(100000, 'c');
    const Tree found = ReadTree(ProgramFolder());
    EXPECT_EQ(NamesOf(found), NamesOf(expected));
    EXPECT_TRUE(found == expected) << "a file has other bytes";
    EXPECT_EQ(Uninstall(), 0u);
    EXPECT_EQ(NamesOf(ReadTree(ProgramFolder())), "");
    EXPECT_FALSE(Exists(ProgramFolder()));
}
