#include "tests/host/merge_build.h"

#include "builder/file_operations.h"
#include "installer/handle.h"

#include <msi.h>
#include <msiquery.h>

namespace {

void CopyTree(const CString& from, const CString& to)
{
    MakeFolders(to);
    VisitFolder(from, [&](const WIN32_FIND_DATAW& found) {
        const CString source = from + L"\\" + found.cFileName;
        const CString target = to + L"\\" + found.cFileName;
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            CopyTree(source, target);
        } else if (CString(found.cFileName).Right(4) != L".msp") {
            EXPECT_TRUE(CopyFileW(source, target, TRUE)) << Utf8(source) << ": " << GetLastError();
        }
    });
}

class Steps final : public IBuildProgress
{
public:
    explicit Steps(MergeBuild& build) : m_build(build) {}
    void OnStep(const CString& sentence) override
    {
        m_build.steps.push_back(sentence);
        if (m_build.onStep) {
            m_build.onStep(sentence);
        }
    }
    bool OnProgress(std::uint64_t, std::uint64_t, const CString&) override
    {
        return !m_build.onProgress || m_build.onProgress();
    }

private:
    MergeBuild& m_build;
};

} // namespace

CString PatchedFolder()
{
    wchar_t folder[MAX_PATH] = L"";
    GetEnvironmentVariableW(L"ProgramW6432", folder, ARRAYSIZE(folder));
    return CString(folder) + L"\\Patch Test";
}

Tree InstallAndRemove(const CString& package, const CString& patches)
{
    const TestFolder logs(L"merge logs");
    const CString chain = patches.IsEmpty() ? CString() : L" PATCH=\"" + patches + L"\"";
    EXPECT_EQ(RunProgram(L"msiexec /i \"" + package + L"\"" + chain + L" /qn /norestart /L*V \"" +
                         logs / L"install.log\""),
              0u)
        << ReadBytes(logs / L"install.log");
    Tree installed = ReadTree(PatchedFolder());
    EXPECT_EQ(RunProgram(CString(L"msiexec /x ") + PATCHED_PRODUCT_CODE + L" /qn /norestart"), 0u);
    // A known gap: of several patches the service here registers the last one alone, and so leaves what an earlier one
    // added. Expect nothing to stay when this fails.
    EXPECT_EQ(Exists(PatchedFolder()), patches.Find(L';') > 0) << NamesOf(ReadTree(PatchedFolder()));
    RemoveTree(PatchedFolder());
    return installed;
}

MergeBuild::MergeBuild(const CString& layout, const CString& media)
    : MergeBuild(
          MergedPackage{media.IsEmpty() ? FolderAbove(PatchFixture(layout + L"\\PatchTest.msi")) : media})
{
    m_layout = layout;
}

MergeBuild::MergeBuild(const MergedPackage& package)
{
    const CString product = m_folder / L"media\\x64\\PatchTest";
    CopyTree(package.strFolder, product);
    BuildDatabase database;
    database.strOriginal = product + L"\\" + package.strFile;
    database.strWorkingCopy = m_folder / L"work.msi";
    CopyFileW(database.strOriginal, database.strWorkingCopy, TRUE);
    EXPECT_EQ(MsiOpenDatabaseW(database.strWorkingCopy, MSIDBOPEN_TRANSACT, &m_database), 0u);
    database.hDatabase = m_database;
    database.strTarget = L"Image\\x64\\PatchTest\\" + package.strFile;
    database.strProductName = package.strName;
    database.strProductCode = package.strCode;
    database.strProductVersion = package.strVersion;
    database.strMaker = L"Velkmora";
    plan.databases.push_back(database);
    plan.strLocation = m_folder / L"shares";
    MakeFolders(plan.strLocation);
    plan.strName = L"Office";
    plan.strBuiltBy = L"Setup 1.0.0";
    plan.strMediaName = package.strName;
    plan.folders.push_back({product, L"Image\\x64\\PatchTest"});
    plan.texts.push_back({L"Deployment.xml", L"<Deployment/>\r\n"});
}

MergeBuild::~MergeBuild()
{
    MsiCloseHandle(m_database);
}

void MergeBuild::Merge(const CString& name, const CString& code)
{
    MergeFile(PatchFixture(m_layout + L"\\" + name + L".msp"), code);
}

void MergeBuild::MergeFile(const CString& path, const CString& code)
{
    Product().mergedPatches.push_back({path, code});
}

void MergeBuild::Change(const CString& statement)
{
    EXPECT_EQ(RunSql(m_database, statement), 0u) << Utf8(statement);
}

BuildResult MergeBuild::Build()
{
    Steps progress(*this);
    BuildResult result = BuildDeployment(plan, progress);
    warnings = result.warnings;
    return result;
}

void MergeBuild::BuildIt()
{
    const BuildResult result = Build();
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
}

CString MergeBuild::OwnPatch(const CString& name) const
{
    const CString copy = m_folder / L"own " + LastName(name);
    EXPECT_TRUE(CopyFileW(PatchFixture(name), copy, FALSE)) << GetLastError();
    return copy;
}

void SetWordCount(const CString& package, int wordCount)
{
    CInstallerHandle database;
    CInstallerHandle summary;
    ASSERT_EQ(MsiOpenDatabaseW(package, MSIDBOPEN_TRANSACT, database.put()), 0u);
    ASSERT_EQ(MsiGetSummaryInformationW(database.get(), nullptr, 1, summary.put()), 0u);
    EXPECT_EQ(MsiSummaryInfoSetPropertyW(summary.get(), 15, VT_I4, wordCount, nullptr, nullptr), 0u);
    EXPECT_EQ(MsiSummaryInfoPersist(summary.get()), 0u);
    EXPECT_EQ(MsiDatabaseCommit(database.get()), 0u);
}

void ExpectMergeRefused(MergeBuild& build, const std::vector<CString>& words)
{
    const Tree before = ReadTree(build.Folder().Path());
    std::vector<CString> unused;
    const OperationError checked = CheckBuild(build.plan, unused);
    build.steps.clear();
    const BuildResult result = build.Build();
    EXPECT_NE(result.error.code, 0u) << "the build was made";
    EXPECT_EQ(Utf8(checked.message), Utf8(result.error.message));
    for (const CString& word : words) {
        EXPECT_GE(result.error.message.Find(word), 0)
            << Utf8(word) << " is missing in: " << Utf8(result.error.message);
    }
    EXPECT_LE(build.steps.size(), 1u) << "more was done than checking: " << Utf8(build.steps.back());
    const Tree after = ReadTree(build.Folder().Path());
    EXPECT_TRUE(after == before) << "now there is\n"
                                 << NamesOf(after) << "and there was\n"
                                 << NamesOf(before);
}
