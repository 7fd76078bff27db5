#include "host/package_pages.h"

#include "host/property_names.h"
#include "installer/database.h"

#include <msiquery.h>

#include <algorithm>
#include <set>

namespace {

// A page, and the properties of which it needs one; none for a page of any package. A name that ends in "*" stands for
// all that begin so.
struct PageChoice
{
    const wchar_t* page;
    std::vector<const wchar_t*> properties;
};

const std::vector<PageChoice>& PageChoices()
{
    static const std::vector<PageChoice> choices = {
        {L"BeginDeployment", {}},
        {L"DeploymentSettings", {}},
        {L"WorkstationSetting",
         {L"TARN_DESKTOPSHORTCUT_1", L"ZOLT_IE_REQUIRED", L"ZOLT_SHEETX_FORMAT", L"ZOLTDEFAULTPROFILENAME",
          L"ZOLT_SHORTCUT_TEMPLATE"}},
        {L"PathCustomization", {L"NIW_Custom_Paths_Are_Set", L"ZOLTProfile_*"}},
        {L"AddAdditionalFiles", {}},
        {L"OnlineResources",
         {L"ZOLT_PARTSBAY_ENABLE", L"ZOLT_PARTSBAY_DISABLE", L"ZOLT_MEMBERBAY_ENABLE",
          L"ZOLT_ENABLE_ROUNDTRIP", L"ZOLT_ENABLE_SEND_PC_NAME", L"ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE"}},
        {L"NoticeDeskFeedBoard",
         {L"ZOLT_PATCHRELAY_ENABLE", L"ZOLT_PATCHRELAY_PATCHNOTIFY", L"ZOLT_PATCHRELAY_LISTLOCACTION",
          L"ZOLT_CHANNEL_NOTIFY_ENABLE", L"ZOLT_SITEMGR_CHANNEL_ENABLE", L"ZOLT_SITEMGR_LOCATION",
          L"ZOLT_SITEMGR_DISPLAY_NAME", L"ZOLT_RSS_FEEDS_ENABLE", L"ZOLT_RSS_FEEDS_CUSTOM_ENABLE"}},
        {L"ServicePack", {}},
        {L"DeploymentComplete", {}},
        {L"DeploymentFailed", {}},
    };
    return choices;
}

// Where a package tells which properties it goes by: their names, and the texts and conditions of what it does.
constexpr const wchar_t* QUERIES[] = {
    L"SELECT `Property`,`Value` FROM `Property`", // AdminProperties and others are lists of names
    L"SELECT `Property` FROM `AppSearch`",
    L"SELECT `Source`,`Target` FROM `CustomAction`",
    L"SELECT `Condition` FROM `InstallExecuteSequence`",
    L"SELECT `Condition` FROM `InstallUISequence`",
    L"SELECT `Condition` FROM `Component`",
    L"SELECT `Condition` FROM `Condition`",
    L"SELECT `Condition` FROM `LaunchCondition`",
    L"SELECT `Key`,`Name`,`Value` FROM `Registry`",
    L"SELECT `Section`,`Value` FROM `IniFile`",
    L"SELECT `Name`,`Value` FROM `Environment`",
    L"SELECT `Target`,`Arguments` FROM `Shortcut`",
    L"SELECT `Arguments`,`StartName` FROM `ServiceInstall`",
};

using NameSet = std::set<CString>;

NameSet NamesIn(MSIHANDLE database)
{
    NameSet names;
    const auto keep = [&](const CString& name) { names.insert(name); };
    for (const wchar_t* query : QUERIES) {
        const unsigned int result = ForEachRow(database, query, {}, [&](MSIHANDLE record) {
            for (UINT field = 1; field <= MsiRecordGetFieldCount(record); ++field) {
                ForEachIdentifier(RecordText(record, field), keep);
            }
            return true;
        });
        static_cast<void>(result); // most packages lack some of these tables
    }
    return names;
}

bool IsNamed(const NameSet& names, const CString& property)
{
    if (property.Right(1) != L"*") {
        return names.count(property) != 0;
    }
    const CString beginning = property.Left(property.GetLength() - 1);
    const auto name = names.lower_bound(beginning);
    return name != names.end() && name->Left(beginning.GetLength()) == beginning;
}

} // namespace

std::vector<PageDescription> ChoosePages(MSIHANDLE database)
{
    const NameSet names = NamesIn(database);
    std::vector<PageDescription> pages;
    for (const PageChoice& choice : PageChoices()) {
        if (choice.properties.empty() ||
            std::any_of(choice.properties.begin(), choice.properties.end(),
                        [&](const wchar_t* property) { return IsNamed(names, property); })) {
            pages.push_back({CString(choice.page) + L"Dialog", CString(choice.page) + L".html"});
        }
    }
    return pages;
}
