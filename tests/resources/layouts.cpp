#include "tests/resources/layouts.h"

#include "include/resource_ids.h"

#include <utility>

namespace {

void ShowFrame(CDialogModel& dialog)
{
    for (const int id : {IDC_SIDE_PANE, IDC_FOOTER, IDC_RESET, IDC_SEPARATOR}) {
        dialog.Show(id, true);
    }
    dialog.Show(IDC_HIDDEN_AT_START, false);
}

struct AnchorUse
{
    int control;
    int anchor;
};

struct BeginLayout
{
    const char* name;
    std::vector<int> hidden;
    std::vector<AnchorUse> moved;
};

const BeginLayout beginLayouts[] = {
    {"begin, no deployments",
     {IDC_MODE_HEADING, IDC_MODE_CREATE, IDC_MODE_CREATE_FROM, IDC_MODE_MODIFY, IDC_LOCATION_HEADING_EXISTING,
      IDC_DEPLOYMENTS_HEADING, IDC_DEPLOYMENTS},
     {{IDC_LOCATION, IDC_ANCHOR_LOCATION_PLAIN},
      {IDC_LOCATION_BROWSE, IDC_ANCHOR_BROWSE_PLAIN},
      {IDC_NAME_HEADING, IDC_ANCHOR_NAME_HEADING_PLAIN},
      {IDC_NAME, IDC_ANCHOR_NAME_PLAIN}}},
    {"begin, create",
     {IDC_LOCATION_HEADING_NEW, IDC_DEPLOYMENTS_HEADING, IDC_DEPLOYMENTS},
     {{IDC_NAME_HEADING, IDC_ANCHOR_NAME_HEADING_CREATE}, {IDC_NAME, IDC_ANCHOR_NAME_CREATE}}},
    {"begin, create from",
     {IDC_LOCATION_HEADING_NEW},
     {{IDC_NAME_HEADING, IDC_ANCHOR_NAME_HEADING_CREATE_FROM}, {IDC_NAME, IDC_ANCHOR_NAME_CREATE_FROM}}},
    {"begin, modify", {IDC_LOCATION_HEADING_NEW, IDC_NAME_HEADING, IDC_NAME}, {}},
};

} // namespace

const std::vector<int>& PageDialogs()
{
    static const std::vector<int> dialogs = {
        IDD_BEGIN_DEPLOYMENT, IDD_PRODUCT_CONTACT,     IDD_DEPLOYMENT_SETTINGS, IDD_NOTICE_DESK_FEED_BOARD,
        IDD_ONLINE_RESOURCES, IDD_DEPLOYMENT_COMPLETE, IDD_DEPLOYMENT_FAILED};
    return dialogs;
}

const std::vector<int>& TabDialogs()
{
    static const std::vector<int> dialogs = {IDD_NOTICE_DESK_FEED_BOARD_TAB, IDD_ONLINE_RESOURCES_TAB};
    return dialogs;
}

std::vector<DialogLayout> AllLayouts(const CLanguageLibrary& library)
{
    std::vector<DialogLayout> layouts;
    layouts.push_back({"cancel question", IDD_CANCEL, CDialogModel(library.GetModule(), IDD_CANCEL)});
    for (const BeginLayout& begin : beginLayouts) {
        CDialogModel dialog(library.GetModule(), IDD_BEGIN_DEPLOYMENT);
        ShowFrame(dialog);
        for (const int id : begin.hidden) {
            dialog.Show(id, false);
        }
        for (const AnchorUse& use : begin.moved) {
            dialog.MoveTo(use.control, use.anchor);
        }
        layouts.push_back({begin.name, IDD_BEGIN_DEPLOYMENT, std::move(dialog)});
    }
    const std::pair<const char*, int> others[] = {
        {"contact", IDD_PRODUCT_CONTACT},        {"settings", IDD_DEPLOYMENT_SETTINGS},
        {"notices", IDD_NOTICE_DESK_FEED_BOARD}, {"online resources", IDD_ONLINE_RESOURCES},
        {"complete", IDD_DEPLOYMENT_COMPLETE},   {"failed", IDD_DEPLOYMENT_FAILED}};
    for (const auto& [name, id] : others) {
        CDialogModel dialog(library.GetModule(), id);
        ShowFrame(dialog);
        if (id == IDD_DEPLOYMENT_COMPLETE) {
            dialog.Show(IDC_RESULT_LABEL, true);
        }
        layouts.push_back({name, id, std::move(dialog)});
    }
    for (const int id : TabDialogs()) {
        layouts.push_back({"tab " + std::to_string(id), id, CDialogModel(library.GetModule(), id)});
    }
    return layouts;
}
