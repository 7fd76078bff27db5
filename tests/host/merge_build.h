// A build of the small product of the patch fixtures, into which patches are merged. For test classes to derive from.
#pragma once

#include "builder/build_names.h"
#include "tests/host/build_fixture.h"
#include "tests/support/patch_fixtures.h"

// In the folder of 64-bit programs, without closing backslash.
CString PatchedFolder();
// What installing a package gives, file by file; the product is removed again, and nothing of it may stay. `patches` are
// chained, with semicolons between.
Tree InstallAndRemove(const CString& package, const CString& patches = CString());

// A package that is built from.
struct MergedPackage
{
    CString strFolder; // with the package and its files
    CString strFile = L"PatchTest.msi";
    CString strName = L"Patch Test";
    CString strCode = PATCHED_PRODUCT_CODE;
    CString strVersion = L"1.0.0";
};

class MergeBuild
{
public:
    // `layout`: "beside", "inside" or "loose", as in patch_fixtures.h. `media`: instead, the image of a deployment.
    explicit MergeBuild(const CString& layout, const CString& media = CString());
    explicit MergeBuild(const MergedPackage& package);
    ~MergeBuild();
    MergeBuild(const MergeBuild&) = delete;
    MergeBuild& operator=(const MergeBuild&) = delete;

    // One of the fixture's layout (`First`), with its code.
    void Merge(const CString& name, const CString& code);
    void MergeFile(const CString& path, const CString& code);
    void Change(const CString& statement); // in the working copy, uncommitted
    BuildResult Build();
    void BuildIt(); // fails the test when it can't

    CString Original() const { return Product().strOriginal; }
    CString Target() const { return plan.strLocation + L"\\" + plan.strName; }
    CString Image() const { return Target() + L"\\Image\\x64\\PatchTest"; }
    CString Database() const { return Target() + L"\\" + Product().strTarget; }
    CString OwnPatch(const CString& name) const; // a copy that a test may change
    const TestFolder& Folder() const { return m_folder; }
    BuildDatabase& Product() { return plan.databases.front(); }
    const BuildDatabase& Product() const { return plan.databases.front(); }

    BuildPlan plan;
    std::vector<CString> steps;
    std::vector<CString> warnings; // of the last build
    std::function<void(const CString&)> onStep;
    std::function<bool()> onProgress; // true goes on

private:
    CString m_layout;
    TestFolder m_folder{L"merge"};
    InstallerHandle m_database = 0;
};

// Of the summary of a package: where its files lie.
constexpr int COMPRESSED = 2;
constexpr int ADMIN_IMAGE = 4;
void SetWordCount(const CString& package, int wordCount);

// The build refuses that patch or product in these words, before anything is written. A check says the same.
void ExpectMergeRefused(MergeBuild& build, const std::vector<CString>& words);
