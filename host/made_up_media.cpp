#include "host/made_up_media.h"

#include "host/build/product_identity.h"
#include "host/build/shown_text.h"
#include "host/build/user_files.h"
#include "host/database.h"
#include "host/directory_rules.h"
#include "host/files.h"
#include "host/host_messages.h"
#include "host/package_identity.h"
#include "host/silent_installer.h"
#include "host/xml_limits.h"
#include "host/xml_values.h"

#include <msiquery.h>

#include <map>

namespace {

// All pages of the library, each with its help file; those that it doesn't export are passed over.
constexpr const wchar_t* ALL_PAGES[] = {
    L"BeginDeployment",   L"ProductContact",     L"DeploymentSettings", L"WorkstationSetting",
    L"PathCustomization", L"AddAdditionalFiles", L"OnlineResources",    L"NoticeDeskFeedBoard",
    L"ServicePack",       L"DeploymentComplete", L"DeploymentFailed",
};

constexpr int FILE_NONCOMPRESSED = 8192;
constexpr int FILE_COMPRESSED = 16384;

CString LanguageName(const CString& summaryTemplate)
{
    // `platform;language,language`; 0 is the neutral language.
    const CString languages = summaryTemplate.Mid(summaryTemplate.Find(L';') + 1);
    unsigned int id = 0;
    for (int index = 0; index < languages.GetLength() && languages[index] >= L'0' &&
                        languages[index] <= L'9' && id < 0x10000;
         ++index) {
        id = id * 10 + static_cast<unsigned int>(languages[index] - L'0');
    }
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

class DirectoryRows final : public IDirectorySource
{
public:
    explicit DirectoryRows(MSIHANDLE database)
    {
        m_result =
            ForEachRow(database, L"SELECT `Directory`,`Directory_Parent`,`DefaultDir` FROM `Directory`", {},
                       [this](MSIHANDLE record) {
                           const CString key = RecordText(record, 1);
                           m_rows[key] = {key, RecordText(record, 2), RecordText(record, 3)};
                           return true;
                       });
    }
    const DirectoryColumns* FindDirectory(const CString& key) const override
    {
        const auto row = m_rows.find(key);
        return row == m_rows.end() ? nullptr : &row->second;
    }
    CString GetSettledPath(const CString&) const override { return CString(); }

private:
    std::map<CString, DirectoryColumns> m_rows;
    unsigned int m_result = 0;
};

void AddLooseFiles(MSIHANDLE database, const CString& packageFolder, std::vector<CString>& files)
{
    std::map<CString, CString> folders; // of components
    const DirectoryRows directories(database);
    unsigned int result =
        ForEachRow(database, L"SELECT `Component`,`Directory_` FROM `Component`", {}, [&](MSIHANDLE record) {
            folders[RecordText(record, 1)] =
                ResolveSourcePath(directories, RecordText(record, 2), packageFolder, false);
            return true;
        });
    const int wordCount = SummaryNumber(database, SUMMARY_WORD_COUNT);
    if (wordCount & WORD_COUNT_SHORT_NAMES) {
        return; // sources under short names are not looked for by their long ones
    }
    const bool compressed = (wordCount & WORD_COUNT_COMPRESSED) != 0;
    result = ForEachRow(database, L"SELECT `Component_`,`FileName`,`Attributes`,`File` FROM `File`", {},
                        [&](MSIHANDLE record) {
                            if (IsUserKey(RecordText(record, 4))) {
                                return true; // comes from elsewhere, and goes into a cabinet
                            }
                            const int attributes = std::max(MsiRecordGetInteger(record, 3), 0);
                            const bool packed = (attributes & FILE_NONCOMPRESSED) ? false
                                                : (attributes & FILE_COMPRESSED)  ? true
                                                                                  : compressed;
                            const CString name = RecordText(record, 2);
                            const CString path =
                                folders[RecordText(record, 1)] + name.Mid(name.Find(L'|') + 1);
                            const CString relative = path.Mid(packageFolder.GetLength());
                            if (!packed && IsSafeRelativePath(relative)) {
                                files.push_back(relative);
                            }
                            return true;
                        });
    static_cast<void>(result); // without these tables a package has no loose files
}

} // namespace

HostError DescribePackage(const CString& packageFile, SetupDescription& description)
{
    const SilentInstaller silent;
    CInstallerHandle database;
    const unsigned int result = OpenDatabase(packageFile, MSIDBOPEN_READONLY, database);
    if (result != ERROR_SUCCESS) {
        return {result, HostSentence(HostText::MediaPackageBroken, {packageFile, SystemReason(result)})};
    }
    PackageIdentity identity;
    if (HostError error = ReadIdentity(database.get(), packageFile, identity)) {
        return error;
    }
    const CString fileName = FileName(packageFile);
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
    for (const wchar_t* page : ALL_PAGES) {
        description.flow.push_back({CString(page) + L"Dialog", CString(page) + L".html"});
    }
    ProductDescription product;
    product.strName = description.strName;
    product.packages.push_back(
        {platform, fileName, identity.strProductCode.MakeUpper(), description.strProductVersion});
    description.products.push_back(product);
    return {};
}

std::vector<CString> FindPackageFiles(InstallerHandle database, const CString& packageFolder)
{
    std::vector<CString> files;
    const unsigned int result =
        ForEachRow(database, L"SELECT `Cabinet` FROM `Media`", {}, [&](MSIHANDLE record) {
            const CString cabinet = RecordText(record, 1);
            // The cabinets of added files are made anew by each build.
            if (!cabinet.IsEmpty() && cabinet[0] != L'#' && !IsUserCabinet(cabinet) &&
                IsSafeRelativePath(cabinet)) {
                files.push_back(cabinet);
            }
            return true;
        });
    static_cast<void>(result); // no Media table, no cabinets
    AddLooseFiles(database, packageFolder, files);
    return files;
}
