#include "host/media.h"

#include "base/files.h"
#include "base/path_text.h"
#include "builder/build_names.h"
#include "builder/deployment_place.h"
#include "builder/package_sources.h"
#include "host/host_messages.h"
#include "host/package_identity.h"
#include "host/silent_installer.h"
#include "host/single_package_media.h"
#include "host/system_reason.h"
#include "host/xml_limits.h"
#include "installer/database.h"

#include <msiquery.h>

namespace {

OperationError ReadDescribed(const CString& file, IXmlEvents& events)
{
    std::string bytes;
    const unsigned int error = ReadWholeFile(file, XML_BYTES_LIMIT, bytes);
    if (error == ERROR_FILE_TOO_LARGE) {
        return {error,
                HostSentence(HostText::FileOnly,
                             {file, HostSentence(HostText::XmlTooLarge,
                                                 {NumberText(static_cast<long long>(XML_BYTES_LIMIT))})})};
    }
    if (error != ERROR_SUCCESS) {
        return {error, HostSentence(HostText::MediaFileUnreadable, {file, SystemReason(error)})};
    }
    const XmlFault fault = ReadXml(bytes.data(), bytes.size(), events);
    if (!fault) {
        return {};
    }
    return {ERROR_INVALID_DATA, fault.line > 0 ? HostSentence(HostText::FileAndLine,
                                                              {file, NumberText(fault.line), fault.message})
                                               : HostSentence(HostText::FileOnly, {file, fault.message})};
}

// The first package that the description names for a platform and that isn't there; empty when all are.
CString FindMissingPackage(const Media& media, const std::vector<ProductDescription>& products, int platform)
{
    for (const ProductDescription& product : products) {
        if (const PackageDescription* package = product.FindPackage(platform)) {
            const CString file =
                media.strRoot + PackageFolder(media.description, product, platform) + package->strFile;
            if (!IsFile(file)) {
                return file;
            }
        }
        const CString pack = FindMissingPackage(media, product.languagePacks, platform);
        if (!pack.IsEmpty()) {
            return pack;
        }
    }
    return {};
}

OperationError CheckPackage(const CString& file, const PackageDescription& package)
{
    const CSilentInstaller silent;
    CInstallerHandle database;
    const unsigned int result = OpenDatabase(file, MSIDBOPEN_READONLY, database);
    if (result != ERROR_SUCCESS) {
        return {result, HostSentence(HostText::MediaPackageBroken, {file, SystemReason(result)})};
    }
    const OperationError error = CheckIdentity(database.get(), file, package);
    return error ? error : CheckPackageSources(database.get(), file);
}

OperationError CheckProducts(const Media& media, const std::vector<ProductDescription>& products,
                             int platform)
{
    for (const ProductDescription& product : products) {
        const PackageDescription* package = product.FindPackage(platform);
        OperationError error;
        if (package) {
            error = CheckPackage(media.strRoot + PackageFolder(media.description, product, platform) +
                                     package->strFile,
                                 *package);
        }
        if (!error) {
            error = CheckProducts(media, product.languagePacks, platform);
        }
        if (error) {
            return error;
        }
    }
    return {};
}

// Media may come without a platform: then its whole folder is absent, as in a deployment's image. A platform of which
// only a part is there is a broken copy; going on with the other platform would look like success.
OperationError CheckPackages(const Media& media)
{
    for (const PlatformDescription& platform : media.description.platforms) {
        if (!platform.strFolder.IsEmpty() && !IsFolder(media.strRoot + platform.strFolder)) {
            continue;
        }
        const CString missing = FindMissingPackage(media, media.description.products, platform.id);
        if (!missing.IsEmpty() && (!platform.strFolder.IsEmpty() || HasPackageFile(media, platform.id))) {
            return {ERROR_FILE_NOT_FOUND, HostSentence(HostText::MediaPackageMissing,
                                                       {missing, SystemReason(ERROR_FILE_NOT_FOUND)})};
        }
    }
    return {};
}

OperationError OpenFolder(const CString& folder, Media& media)
{
    media.strRoot = folder;
    if (IsFile(folder + DEPLOYMENT_FILE)) {
        media.strDeploymentFile = folder + DEPLOYMENT_FILE;
        media.strRoot = folder + IMAGE_FOLDER + L"\\";
    } else if (LastName(folder).CompareNoCase(IMAGE_FOLDER) == 0 &&
               IsFile(ParentFolder(folder) + DEPLOYMENT_FILE)) {
        media.strDeploymentFile = ParentFolder(folder) + DEPLOYMENT_FILE;
    }
    const CString setupFile = media.strRoot + SETUP_FILE;
    if (!IsFile(setupFile) && !media.strDeploymentFile.IsEmpty()) {
        return {ERROR_FILE_NOT_FOUND, HostSentence(HostText::MediaImageGone, {folder, setupFile})};
    }
    if (!IsFile(setupFile)) {
        return {ERROR_FILE_NOT_FOUND, HostSentence(HostText::MediaNotRecognised, {folder})};
    }
    const OperationError error = ReadSetupFile(setupFile, media.description);
    return error ? error : CheckPackages(media);
}

} // namespace

OperationError ReadSetupFile(const CString& file, SetupDescription& description)
{
    CSetupDescriptionReader reader;
    OperationError error = ReadDescribed(file, reader);
    if (!error) {
        description = reader.GetDescription();
    }
    return error;
}

OperationError ReadDeploymentFile(const CString& file, DeploymentFile& deployment)
{
    CDeploymentFileReader reader;
    OperationError error = ReadDescribed(file, reader);
    if (!error) {
        deployment = reader.GetDeployment();
    }
    return error;
}

OperationError OpenMedia(const CString& path, Media& media)
{
    media = Media();
    if (IsFolder(path)) {
        return OpenFolder(FolderPath(path), media);
    }
    if (!IsFile(path)) {
        return {ERROR_FILE_NOT_FOUND, HostSentence(HostText::MediaMissing, {path})};
    }
    if (path.Right(4).CompareNoCase(L".msi") != 0) {
        return {ERROR_INVALID_DATA, HostSentence(HostText::MediaNotRecognised, {path})};
    }
    const CString full = WithoutClosingBackslash(FolderPath(path));
    media.strRoot = ParentFolder(full);
    media.bSinglePackage = true;
    return DescribePackage(full, media.description);
}

OperationError CheckPlatform(const Media& media, int platform)
{
    return CheckProducts(media, media.description.products, platform);
}

// A deployment without a cabinet would be built without a complaint and fail on every workstation.
OperationError CheckPackageSources(InstallerHandle database, const CString& packageFile)
{
    const CString folder = ParentFolder(packageFile);
    const CString misnamed = FindMisnamedCabinet(database, folder);
    if (!misnamed.IsEmpty()) {
        return {ERROR_INSTALL_PACKAGE_INVALID,
                HostSentence(HostText::CabinetMisnamed, {packageFile, misnamed})};
    }
    for (const CString& file : FindPackageFiles(database, folder)) {
        if (!IsFile(folder + file)) {
            return {ERROR_FILE_NOT_FOUND,
                    HostSentence(HostText::MediaSourceMissing, {folder + file, packageFile})};
        }
    }
    return {};
}

std::vector<CString> FindDeployments(const CString& location, std::vector<CString>& warnings)
{
    std::vector<CString> found;
    std::vector<FolderItem> items;
    if (location.IsEmpty() || ListFolder(location, items) != ERROR_SUCCESS) {
        return found;
    }
    for (const FolderItem& item : items) {
        const CString file = FolderPath(location) + item.strName + L"\\" + DEPLOYMENT_FILE;
        if (!item.isFolder || IsWorkingName(item.strName) || !IsFile(file)) {
            continue;
        }
        DeploymentFile deployment;
        const OperationError error = ReadDeploymentFile(file, deployment);
        if (error) {
            warnings.push_back(HostSentence(HostText::DeploymentUnreadable, {error.message}));
        } else {
            found.push_back(file);
        }
    }
    return found;
}

bool HasPackageFile(const Media& media, int platform)
{
    if (!media.description.FindPlatform(platform)) {
        return false;
    }
    for (const ProductDescription& product : media.description.products) {
        const PackageDescription* package = product.FindPackage(platform);
        if (package &&
            IsFile(media.strRoot + PackageFolder(media.description, product, platform) + package->strFile)) {
            return true;
        }
    }
    return false;
}
