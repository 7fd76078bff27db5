// Small installer packages and media folders for the tests, made with the installer's own calls.
#pragma once

#include "base/files.h"
#include "host/media.h"
#include "host/setup_host.h"
#include "installer/handle.h"
#include "tests/host/outside_links.h"
#include "tests/support/text.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

// A folder of the test's own, with backslash; gone with the object.
class ScratchFolder
{
public:
    explicit ScratchFolder(const wchar_t* name = L"scratch");
    ~ScratchFolder();
    operator const CString&() const { return m_path; }
    CString operator+(const wchar_t* rest) const { return m_path + rest; }

private:
    CString m_path;
};

void WriteFileBytes(const CString& path, const std::string& bytes);
void WriteText(const CString& path, const CString& text);

struct PackageForm
{
    bool bStandardTables = true; // Property alone otherwise
    bool bInstallFolder = true;
    const wchar_t* pszTemplate = L"x64;1033";
    const wchar_t* packageCode = L"{99999999-2222-3333-4444-555555555555}";
    // Rows of the Property table that are changed or added; an empty value leaves the row out.
    std::vector<std::pair<CString, CString>> properties;
};
// A package with a product, directories, a feature, a component and two files of sequence 1 and 7.
void MakePackage(const CString& path, const PackageForm& form = {});
[[nodiscard]] unsigned int RunSql(MSIHANDLE database, const wchar_t* statement);

constexpr const wchar_t* PRODUCT_CODE = L"{11111111-2222-3333-4444-555555555556}";
constexpr const wchar_t* SETUP_CODE = L"{11111111-2222-3333-4444-55555555ABCD}";

constexpr const wchar_t* MERGED_PATCH_CODE =
    L"{11111111-2222-3333-4444-555555555558}"; // of DescribeTestDeployment

constexpr const wchar_t* NARROW_PRODUCT_CODE = L"{11111111-2222-3333-4444-555555555555}"; // 32-bit
constexpr const wchar_t* PACK_PRODUCT_CODE = L"{11111111-2222-3333-4444-555555555557}";

// A media folder with Setup.xml and packages for both platforms.
void MakeMedia(const CString& folder);
// A deployment as a build leaves it: Deployment.xml and an image that is media.
void MakeDeployment(const CString& location, const wchar_t* name, const DeploymentFile& file);
DeploymentFile DescribeTestDeployment(const wchar_t* name);

// A product's own property, apart from its database; "(none)" when there is none.
CString OwnProperty(CProduct& product, const wchar_t* name);

using HostOwner = std::unique_ptr<CSetupHost>;
HostOptions OptionsFor(const CString& media, const CString& work);
HostOwner OpenHost(const CString& media, const CString& work); // fails the test when it can't
