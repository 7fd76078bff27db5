// Where the setup runs from: a described folder, a deployment's image, or one package.
#pragma once

#include "host/deployment_file.h"
#include "host/setup_description.h"
#include "host/setup_host.h"

#include <vector>

struct Media
{
    CString strRoot; // with backslash; packages and resources lie below it
    SetupDescription description;
    bool bSinglePackage = false; // the description is made up
    CString strDeploymentFile;   // when the root is a deployment's image; otherwise empty
};

constexpr const wchar_t* SETUP_FILE = L"Setup.xml";
constexpr const wchar_t* IMAGE_FOLDER = L"Image";

// A folder with Setup.xml, a deployment's folder or its image, or one .msi.
[[nodiscard]] OperationError OpenMedia(const CString& path, Media& media);

[[nodiscard]] OperationError ReadSetupFile(const CString& file, SetupDescription& description);
[[nodiscard]] OperationError ReadDeploymentFile(const CString& file, DeploymentFile& deployment);
// All readable deployments directly below a folder, by the name of their folders: the full paths of their files.
// A damaged one is passed over with a sentence in `warnings`.
[[nodiscard]] std::vector<CString> FindDeployments(const CString& location, std::vector<CString>& warnings);

// The package file of a product; null when the product isn't made for the platform.
[[nodiscard]] bool HasPackageFile(const Media& media, int platform);

// Opens each package of the platform, compares it with the description and looks for the files that it installs from.
[[nodiscard]] OperationError CheckPlatform(const Media& media, int platform);
// The first cabinet or loose file that the package installs from and that isn't there, as an error that names both.
[[nodiscard]] OperationError CheckPackageSources(InstallerHandle database, const CString& packageFile);
