#include "host/deployment_base.h"

#include "base/files.h"
#include "base/path_text.h"
#include "builder/build_failure.h"
#include "builder/deployment_place.h"
#include "builder/file_operations.h"
#include "host/host_messages.h"

namespace {

// As it stands on the disk: a path may name it in another case, or by its 8.3 name.
CString NameOfFolder(const CString& folder)
{
    try {
        const CString name = EntryOnDisk(folder).strName;
        return name.IsEmpty() ? LastName(folder) : name;
    } catch (const BuildFailure&) {
        return LastName(folder);
    }
}

} // namespace

CString NameOfDeployment(const CString& entry)
{
    const CString name = NameOfFolder(ParentFolder(entry));
    if (!name.IsEmpty() && name.Find(L':') < 0) {
        return name;
    }
    DeploymentFile file;
    const OperationError error = ReadDeploymentFile(entry, file);
    return error ? CString() : file.strName;
}

OperationError OpenBase(const CString& entry, const CString& setupCode, DeploymentBase& base)
{
    const CString name = NameOfDeployment(entry);
    const CString folder = ParentFolder(entry);
    if (!IsFile(entry)) {
        return {ERROR_FILE_NOT_FOUND, HostSentence(HostText::BaseGone, {name, ParentFolder(folder)})};
    }
    DeploymentBase opened;
    opened.strEntry = entry;
    try {
        opened.strStamp = StampOfDeployment(folder); // before it is read: a change in between shows as one
    } catch (const BuildFailure& failure) {
        return {failure.code, HostSentence(HostText::BaseDamaged, {name, failure.message})};
    }
    if (OperationError error = ReadDeploymentFile(entry, opened.file)) {
        return {error.code, HostSentence(HostText::BaseDamaged, {name, error.message})};
    }
    if (opened.file.strSetupCode.CompareNoCase(setupCode) != 0) {
        return {ERROR_INVALID_DATA, HostSentence(HostText::BaseOtherSetup, {name, opened.file.strSetupCode})};
    }
    const CString image = folder + IMAGE_FOLDER + L"\\";
    if (!IsFolder(image)) {
        return {ERROR_PATH_NOT_FOUND, HostSentence(HostText::BaseImageGone, {name, image})};
    }
    if (OperationError error = OpenMedia(image, opened.image)) {
        return {error.code, HostSentence(HostText::BaseDamaged, {name, error.message})};
    }
    base = std::move(opened);
    return {};
}
