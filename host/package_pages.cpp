#include "host/package_pages.h"

#include "host/property_names.h"
#include "include/page_table.h"
#include "installer/query.h"
#include "installer/record.h"

#include <msiquery.h>

#include <algorithm>
#include <set>

namespace {

// Where a package says which properties it goes by: their names, and the texts and conditions of what it does.
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
    for (const PageRow& page : PAGE_TABLE) {
        const bool means = page.properties.empty() ||
                           std::any_of(page.properties.begin(), page.properties.end(),
                                       [&](const wchar_t* property) { return IsNamed(names, property); });
        if (page.bInPackageFlow && means) {
            pages.push_back({WizardExport(page), page.helpFile});
        }
    }
    return pages;
}
