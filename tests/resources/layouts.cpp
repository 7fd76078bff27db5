#include "tests/resources/layouts.h"

#include "include/page_table.h"
#include "tests/support/text.h"

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

std::vector<int> DialogsOf(int PageRow::*shape)
{
    std::vector<int> dialogs;
    for (const PageRow& page : PAGE_TABLE) {
        if (page.*shape != 0) {
            dialogs.push_back(page.*shape);
        }
    }
    return dialogs;
}

} // namespace

const std::vector<int>& PageDialogs()
{
    static const std::vector<int> dialogs = DialogsOf(&PageRow::wizardTemplate);
    return dialogs;
}

const std::vector<int>& TabDialogs()
{
    static const std::vector<int> dialogs = DialogsOf(&PageRow::tabTemplate);
    return dialogs;
}

std::vector<DialogLayout> AllLayouts(const CLanguageLibrary& library)
{
    std::vector<DialogLayout> layouts;
    layouts.push_back({"cancel question", IDD_CANCEL, CDialogModel(library.GetModule(), IDD_CANCEL)});
    layouts.push_back(
        {"progress of files", IDD_FILES_PROGRESS, CDialogModel(library.GetModule(), IDD_FILES_PROGRESS)});
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
    for (const PageRow& page : PAGE_TABLE) {
        if (!page.IsWritten() || page.role == PageRole::Target) {
            continue;
        }
        CDialogModel dialog(library.GetModule(), page.wizardTemplate);
        ShowFrame(dialog);
        if (page.role == PageRole::Complete) {
            dialog.Show(IDC_RESULT_LABEL, true);
        }
        layouts.push_back({Utf8(page.stem), page.wizardTemplate, std::move(dialog)});
    }
    for (const int id : TabDialogs()) {
        layouts.push_back({"tab " + std::to_string(id), id, CDialogModel(library.GetModule(), id)});
    }
    return layouts;
}
