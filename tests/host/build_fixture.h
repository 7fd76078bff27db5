// A small product, real enough to be installed, in a folder of the test's own, and what the tests ask about folders.
#pragma once

#include "builder/deployment_builder.h"
#include "builder/deployment_place.h"
#include "builder/file_operations.h"
#include "tests/host/file_fault.h"
#include "tests/host/folder_tree.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

// A fresh folder that goes with the object, whatever lies in it.
class TestFolder
{
public:
    explicit TestFolder(const CString& name = L"build");
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;
    ~TestFolder();
    const CString& Path() const { return m_path; } // without closing backslash
    CString operator/(const CString& name) const { return m_path + L"\\" + name; }

private:
    CString m_path;
};

void MakeFolders(const CString& path);
void WriteBytes(const CString& path, const std::string& bytes);
bool Exists(const CString& path);
void RemoveTree(const CString& path);

constexpr const wchar_t* PRODUCT_CODE = L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A11}";
constexpr const wchar_t* PACKAGE_CODE = L"{1B1D6C3E-52B7-4C0B-9C8D-6D2E9C1A4F22}";

// A change of a product's database, for what a build does with a changed one.
inline constexpr const wchar_t* CHANGE_DATABASE =
    L"UPDATE `Property` SET `Value` = 'Other' WHERE `Property` = 'Manufacturer'";

// What stands in the product's database and beside it.
struct ProductOptions
{
    CString strProductName = L"Zolt 2027";
    CString strDatabase = L"Zolt2027.msi";
    CString strProductCode = PRODUCT_CODE;
    int codePage = 1252;
    bool bFails = false; // a launch condition that no computer meets: the installer answers 1603
    std::size_t bytesOfLargeFile = 3 << 20;
    std::function<void(const CString& database)> prepare; // run on the vendor's file before it is used
};

// Media with one 64-bit product in `x64\Zolt`: a database, its file readme.txt, a large file, a read-only file, an
// empty folder and one inside another.
void MakeMedia(const CString& folder, const ProductOptions& options = {});

unsigned int RunSql(InstallerHandle database, const CString& statement);
// The first column of the first row; "(none)" when there is no row.
CString QueryText(const CString& path, const CString& statement);
CString PackageCodeOf(const CString& path);

// Media, a working copy open for writing, and the plan of a deployment in `location`.
class TestBuild
{
public:
    explicit TestBuild(const ProductOptions& options = {});
    ~TestBuild();

    const TestFolder& Folder() const { return m_folder; }
    CString Media() const { return m_folder / L"media"; }
    CString Location() const { return m_folder / L"shares"; }
    CString Target() const { return Location() + L"\\" + plan.strName; }
    CString Database() const { return Target() + L"\\Image\\x64\\Zolt\\" + m_options.strDatabase; }
    void Change(const CString& statement); // in the working copy, uncommitted

    // Reviewed beforehand, and held against what the review said.
    BuildResult Build();
    void AllowReplacing(); // the deployment that stands in the target's place now
    BuildPlan plan;
    std::function<bool(std::uint64_t, std::uint64_t)> onProgress; // true goes on
    std::function<void(const CString&)> onStep;
    std::vector<CString> steps;
    std::vector<BuildReview> decided; // by the last build
    int progressCalls = 0;

private:
    TestFolder m_folder;
    ProductOptions m_options;
    InstallerHandle m_database = 0;
};

// The build is refused with that code and those words before anything is written: the check says the same, no other step
// begins, and the location stays as it is.
void ExpectRefusedBeforehand(TestBuild& build, unsigned int code, const std::vector<CString>& words);

// The builder reports at most every 50 milliseconds how far it is. After this the next moment is reported.
void LetTheNextMomentBeReported();

// Runs a program and waits; its exit code, or a failure of the test after a minute. What it says is shown with the
// test, where a failure shows it.
unsigned long RunProgram(const CString& commandLine);

// The files that builds have kept beside the deployments of a location, each by its path below the deployment's name.
Tree KeptFiles(const CString& location);
void RemoveKeptFiles(const CString& location);
// What lies in the location but the deployment itself, the log of a failure and what was kept.
std::vector<CString> Leftovers(const CString& location, const CString& name);
