#include "host/package_identity.h"

#include "base/guid_text.h"
#include "builder/product_identity.h"
#include "builder/shown_text.h"
#include "host/host_messages.h"
#include "host/xml_limits.h"
#include "installer/database.h"

namespace {

OperationError Refuse(HostText sentence, const CString& packageFile, const CString& value,
                      const CString& described = {})
{
    return {ERROR_INSTALL_PACKAGE_INVALID,
            HostSentence(sentence, {packageFile, ShownText(value), described})};
}

} // namespace

OperationError ReadIdentity(InstallerHandle database, const CString& packageFile, PackageIdentity& identity)
{
    // A missing row is an empty value, which is neither.
    static_cast<void>(ReadPropertyRow(database, L"ProductCode", identity.strProductCode));
    static_cast<void>(ReadPropertyRow(database, L"ProductVersion", identity.strVersion));
    if (!IsBracedGuid(identity.strProductCode)) {
        return Refuse(HostText::PackageCodeInvalid, packageFile, identity.strProductCode);
    }
    if (!IsInstallerVersion(identity.strVersion) || identity.strVersion.GetLength() > VERSION_LIMIT) {
        return Refuse(HostText::PackageVersionInvalid, packageFile, identity.strVersion);
    }
    return {};
}

OperationError CheckIdentity(InstallerHandle database, const CString& packageFile,
                             const PackageDescription& described)
{
    PackageIdentity identity;
    if (OperationError error = ReadIdentity(database, packageFile, identity)) {
        return error;
    }
    if (identity.strProductCode.CompareNoCase(described.strProductCode) != 0) {
        return Refuse(HostText::PackageCodeDiffers, packageFile, identity.strProductCode,
                      described.strProductCode);
    }
    if (!(identity.strVersion == described.strVersion)) {
        return Refuse(HostText::PackageVersionDiffers, packageFile, identity.strVersion,
                      ShownText(described.strVersion));
    }
    return {};
}
