// The pages of the wizard, one row each: what the host, the program, the tests and the benchmarks need to know of a page
// without calling it. A new page is a row here; docs/writing-a-page.md names what else it touches.
#pragma once

#include "base/string.h"
#include "include/resource_ids.h"

#include <span>
#include <string_view>

enum class PageRole
{
    Target,   // chooses name and place of the deployment; comes first
    Choosing, // before the build
    Complete, // after a build that succeeded
    Failed,   // after any other
};

struct PageRow
{
    const wchar_t* stem = nullptr; // of its exports: the wizard page is <stem>Dialog, the tab page <stem>Page
    PageRole role = PageRole::Choosing;
    bool bTab = false;                 // has the shape of a tab page too
    bool bOfProduct = false;           // edits one product, and is shown once for each
    const wchar_t* section = nullptr;  // of the answers
    unsigned int caption = 0;          // of its tab: a string of the resource library
    const wchar_t* helpFile = nullptr; // of its side pane
    int wizardTemplate = 0;            // the dialogs of its shapes in the resource library
    int tabTemplate = 0;
    // False for a page that says something of the media's maker, which a package from elsewhere doesn't have.
    bool bInPackageFlow = true;
    // Of the package, set by the page, which means something for packages that know one of them; "NAME*" stands for all
    // that begin so. None for a page of any package.
    std::span<const wchar_t* const> properties = {};

    // A page that isn't written yet has neither dialog nor answers. Flows name it nevertheless: those of packages, and of
    // the deployments that were made from them.
    constexpr bool IsWritten() const { return wizardTemplate != 0; }
    constexpr bool IsOutcome() const { return role == PageRole::Complete || role == PageRole::Failed; }
};

namespace PageProperties {
inline constexpr const wchar_t* WORKSTATION[] = {L"TARN_DESKTOPSHORTCUT_1", L"ZOLT_IE_REQUIRED",
                                                 L"ZOLT_SHEETX_FORMAT", L"ZOLTDEFAULTPROFILENAME",
                                                 L"ZOLT_SHORTCUT_TEMPLATE"};
inline constexpr const wchar_t* PATHS[] = {L"NIW_Custom_Paths_Are_Set", L"ZOLTProfile_*"};
inline constexpr const wchar_t* ONLINE_RESOURCES[] = {
    L"ZOLT_PARTSBAY_ENABLE",  L"ZOLT_PARTSBAY_DISABLE",    L"ZOLT_MEMBERBAY_ENABLE",
    L"ZOLT_ENABLE_ROUNDTRIP", L"ZOLT_ENABLE_SEND_PC_NAME", L"ZOLT_SEARCH_LOCATIONS_CUSTOM_ENABLE"};
inline constexpr const wchar_t* NOTICES[] = {
    L"ZOLT_PATCHRELAY_ENABLE",     L"ZOLT_PATCHRELAY_PATCHNOTIFY", L"ZOLT_PATCHRELAY_LISTLOCACTION",
    L"ZOLT_CHANNEL_NOTIFY_ENABLE", L"ZOLT_SITEMGR_CHANNEL_ENABLE", L"ZOLT_SITEMGR_LOCATION",
    L"ZOLT_SITEMGR_DISPLAY_NAME",  L"ZOLT_RSS_FEEDS_ENABLE",       L"ZOLT_RSS_FEEDS_CUSTOM_ENABLE"};
} // namespace PageProperties

// In the order in which a wizard shows them. One field a line: scripts/page_table.py reads the rows too.
inline constexpr PageRow PAGE_TABLE[] = {
    {.stem = L"BeginDeployment",
     .role = PageRole::Target,
     .section = L"begin",
     .helpFile = L"BeginDeployment.html",
     .wizardTemplate = IDD_BEGIN_DEPLOYMENT},
    {.stem = L"DeploymentSettings",
     .section = L"settings",
     .helpFile = L"DeploymentSettings.html",
     .wizardTemplate = IDD_DEPLOYMENT_SETTINGS},
    {.stem = L"WorkstationSetting",
     .bTab = true,
     .bOfProduct = true,
     .section = L"workstation",
     .caption = IDS_TAB_WORKSTATIONS,
     .helpFile = L"WorkstationSetting.html",
     .wizardTemplate = IDD_WORKSTATION_SETTING,
     .tabTemplate = IDD_WORKSTATION_SETTING_TAB,
     .properties = PageProperties::WORKSTATION},
    {.stem = L"PathCustomization",
     .bTab = true,
     .bOfProduct = true,
     .section = L"paths",
     .caption = IDS_TAB_PATHS,
     .helpFile = L"PathCustomization.html",
     .wizardTemplate = IDD_PATH_CUSTOMIZATION,
     .tabTemplate = IDD_PATH_CUSTOMIZATION_TAB,
     .properties = PageProperties::PATHS},
    {.stem = L"AddAdditionalFiles",
     .bTab = true,
     .bOfProduct = true,
     .section = L"files",
     .caption = IDS_TAB_ADDITIONAL_FILES,
     .helpFile = L"AddAdditionalFiles.html",
     .wizardTemplate = IDD_ADD_ADDITIONAL_FILES,
     .tabTemplate = IDD_ADD_ADDITIONAL_FILES_TAB},
    {.stem = L"OnlineResources",
     .bTab = true,
     .bOfProduct = true,
     .section = L"resources",
     .caption = IDS_TAB_ONLINE_RESOURCES,
     .helpFile = L"OnlineResources.html",
     .wizardTemplate = IDD_ONLINE_RESOURCES,
     .tabTemplate = IDD_ONLINE_RESOURCES_TAB,
     .properties = PageProperties::ONLINE_RESOURCES},
    {.stem = L"NoticeDeskFeedBoard",
     .bTab = true,
     .bOfProduct = true,
     .section = L"notices",
     .caption = IDS_TAB_NOTICES,
     .helpFile = L"NoticeDeskFeedBoard.html",
     .wizardTemplate = IDD_NOTICE_DESK_FEED_BOARD,
     .tabTemplate = IDD_NOTICE_DESK_FEED_BOARD_TAB,
     .properties = PageProperties::NOTICES},
    {.stem = L"ServicePack",
     .bTab = true,
     .bOfProduct = true,
     .section = L"service_pack",
     .caption = IDS_TAB_SERVICE_PACK,
     .helpFile = L"ServicePack.html",
     .wizardTemplate = IDD_SERVICE_PACK,
     .tabTemplate = IDD_SERVICE_PACK_TAB},
    {.stem = L"ProductContact",
     .section = L"contact",
     .helpFile = L"ProductContact.html",
     .wizardTemplate = IDD_PRODUCT_CONTACT,
     .bInPackageFlow = false},
    {.stem = L"DeploymentComplete",
     .role = PageRole::Complete,
     .section = L"complete",
     .helpFile = L"DeploymentComplete.html",
     .wizardTemplate = IDD_DEPLOYMENT_COMPLETE},
    {.stem = L"DeploymentFailed",
     .role = PageRole::Failed,
     .section = L"failed",
     .helpFile = L"DeploymentFailed.html",
     .wizardTemplate = IDD_DEPLOYMENT_FAILED},
};

// The exports of a row. TabExport is empty for a page without that shape.
inline CString WizardExport(const PageRow& page)
{
    return CString(page.stem) + L"Dialog";
}

inline CString TabExport(const PageRow& page)
{
    return page.bTab ? CString(page.stem) + L"Page" : CString();
}

// By the name of an export; null when no page has it. FindPage knows both shapes.
inline const PageRow* FindWizardPage(const CString& exportName)
{
    for (const PageRow& page : PAGE_TABLE) {
        if (exportName == WizardExport(page)) {
            return &page;
        }
    }
    return nullptr;
}

inline const PageRow* FindTabPage(const CString& exportName)
{
    for (const PageRow& page : PAGE_TABLE) {
        if (page.bTab && exportName == TabExport(page)) {
            return &page;
        }
    }
    return nullptr;
}

inline const PageRow* FindPage(const CString& exportName)
{
    const PageRow* page = FindWizardPage(exportName);
    return page ? page : FindTabPage(exportName);
}

// By the section of the answers; null when no page has it.
inline const PageRow* FindPageOfSection(const CString& section)
{
    for (const PageRow& page : PAGE_TABLE) {
        if (page.section && section == page.section) {
            return &page;
        }
    }
    return nullptr;
}

// The same for a section that a page has; any other doesn't compile.
consteval const PageRow& RowOfSection(const wchar_t* section)
{
    const PageRow* found = PAGE_TABLE;
    while (!found->section || std::wstring_view(found->section) != section) {
        ++found;
    }
    return *found;
}

inline bool HasRole(const CString& wizardExport, PageRole role)
{
    const PageRow* page = FindWizardPage(wizardExport);
    return page && page->role == role;
}

// The page that has the role; of Choosing the first.
constexpr const PageRow& PageOfRole(PageRole role)
{
    const PageRow* found = PAGE_TABLE;
    while (found->role != role) {
        ++found;
    }
    return *found;
}

// Each role has its page; a search that runs past the table doesn't compile.
static_assert(PageOfRole(PageRole::Target).bTab == false &&
              PageOfRole(PageRole::Choosing).section != nullptr);
// The configure dialog has a tab for each product, so a tab page is of one.
static_assert([] {
    for (const PageRow& page : PAGE_TABLE) {
        if (page.bTab && !page.bOfProduct) {
            return false;
        }
    }
    return true;
}());
static_assert(PageOfRole(PageRole::Complete).IsOutcome() && PageOfRole(PageRole::Failed).IsOutcome());
