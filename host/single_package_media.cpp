#include "host/single_package_media.h"

#include "base/guid_text.h"
#include "base/name_rules.h"
#include "base/number_text.h"
#include "base/path_text.h"
#include "builder/product_identity.h"
#include "builder/shown_text.h"
#include "host/host_messages.h"
#include "host/package_identity.h"
#include "host/package_pages.h"
#include "host/silent_installer.h"
#include "host/system_reason.h"
#include "host/xml_limits.h"
#include "host/xml_values.h"
#include "installer/database.h"
#include "installer/summary.h"

#include <msiquery.h>

namespace {

CString LanguageName(const CString& summaryTemplate)
{
    // `platform;language,language`; 0 is the neutral language.
    const CString languages = summaryTemplate.Mid(summaryTemplate.Find(L';') + 1);
    int end = 0;
    const auto id = static_cast<LCID>(ReadDigits(languages, end, 0xFFFF));
    wchar_t name[LOCALE_NAME_MAX_LENGTH] = {};
    if (id == 0 || id > 0xFFFF || LCIDToLocaleName(id, name, LOCALE_NAME_MAX_LENGTH, 0) == 0) {
        return L"en-US";
    }
    return IsLocaleName(name) ? CString(name) : CString(L"en-US");
}

// A name for people, on one line.
CString NameOr(MSIHANDLE database, const wchar_t* name, const CString& otherwise)
{
    CString value;
    const bool found = ReadPropertyRow(database, name, value);
    const CString plain = PlainName(value.Left(NAME_LIMIT));
    return !found || plain.IsEmpty() ? otherwise : plain;
}

// A setup code is not needed to install, so that any upgrade code that isn't one is passed over.
CString SetupCode(MSIHANDLE database, const CString& productCode)
{
    CString code;
    if (!ReadPropertyRow(database, L"UpgradeCode", code) || !IsBracedGuid(code)) {
        code = productCode;
    }
    return code.MakeUpper();
}

} // namespace

OperationError DescribePackage(const CString& packageFile, SetupDescription& description)
{
    const CSilentInstaller silent;
    CInstallerHandle database;
    const unsigned int result = OpenDatabase(packageFile, MSIDBOPEN_READONLY, database);
    if (result != ERROR_SUCCESS) {
        return {result, HostSentence(HostText::MediaPackageBroken, {packageFile, SystemReason(result)})};
    }
    PackageIdentity identity;
    if (OperationError error = ReadIdentity(database.get(), packageFile, identity)) {
        return error;
    }
    const CString fileName = LastName(packageFile);
    if (!IsSafeFileName(fileName)) {
        return {ERROR_INVALID_NAME, HostSentence(HostText::PackageNameInvalid, {packageFile})};
    }
    const CString summaryTemplate = SummaryText(database.get(), SUMMARY_TEMPLATE);
    const int platform = IsSixtyFourBit(database.get()) ? Setup::PLATFORM_X64 : Setup::PLATFORM_X86;
    description = SetupDescription();
    description.strCode = SetupCode(database.get(), identity.strProductCode);
    description.strName = NameOr(database.get(), L"ProductName", fileName.Left(fileName.GetLength() - 4));
    description.strMaker = NameOr(database.get(), L"Manufacturer", L"-");
    description.strProductVersion = identity.strVersion;
    description.strDefaultLanguage = LanguageName(summaryTemplate);
    description.languages.push_back(description.strDefaultLanguage);
    description.platforms.push_back({platform, CString()});
    description.flow = ChoosePages(database.get());
    ProductDescription product;
    product.strName = description.strName;
    product.packages.push_back(
        {platform, fileName, identity.strProductCode.MakeUpper(), description.strProductVersion});
    description.products.push_back(product);
    return {};
}
