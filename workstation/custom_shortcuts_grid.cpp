#include "workstation/custom_shortcuts_grid.h"

#include "frame/resource_text.h"
#include "include/product.h"
#include "include/resource_ids.h"
#include "msi/custom_shortcuts.h"
#include "msi/msi_rows.h"
#include "workstation/product_property.h"
#include "workstation/shortcut_change_rules.h"

#include <algorithm>

namespace {

constexpr int NAME_COLUMN = 0;
constexpr int COMMAND_COLUMN = 1;

struct FaultText
{
    ShortcutFault fault;
    unsigned int text;
};
constexpr FaultText FAULT_TEXTS[] = {{ShortcutFault::Incomplete, IDS_SHORTCUT_INCOMPLETE},
                                     {ShortcutFault::BadName, IDS_SHORTCUT_NAME_INVALID},
                                     {ShortcutFault::DuplicateName, IDS_SHORTCUT_NAME_TWICE},
                                     {ShortcutFault::BadSwitch, IDS_SHORTCUT_SWITCH_UNKNOWN}};

} // namespace

void CCustomShortcutsGrid::BuildShortcutGrid(HWND page)
{
    m_page = page;
    m_prompts = {LoadResourceString(IDS_SHORTCUT_NAME_PROMPT),
                 LoadResourceString(IDS_SHORTCUT_SWITCHES_PROMPT)};
    if (!m_grid.Bind(::GetDlgItem(page, IDC_SHORTCUTS))) {
        return; // a template without the list
    }
    m_grid.AddColumn(LoadResourceString(IDS_SHORTCUT_NAME_COLUMN), NAME_COLUMN);
    m_grid.AddColumn(LoadResourceString(IDS_SHORTCUT_SWITCHES_COLUMN), COMMAND_COLUMN);
    const LONG width = m_grid.GetClientRect().right;
    for (const int column : {NAME_COLUMN, COMMAND_COLUMN}) {
        m_grid.SetColumnWidth(column, width / 2);
    }
    for (int row = 0; row < ROWS; ++row) {
        m_grid.InsertItem(row, L"");
    }
    m_grid.SetCellText(0, NAME_COLUMN, m_prompts.Name);
    m_grid.SetCellText(0, COMMAND_COLUMN, m_prompts.Command);
    FitHeight();
}

// Never higher than the template has it.
void CCustomShortcutsGrid::FitHeight()
{
    constexpr int SPARE = 2;
    const RECT window = m_grid.GetWindowRect();
    const RECT client = m_grid.GetClientRect();
    const RECT header = CWindow(reinterpret_cast<HWND>(m_grid.SendMessage(LVM_GETHEADER))).GetWindowRect();
    const int height = window.bottom - window.top;
    int needed = height - client.bottom + SPARE + header.bottom - header.top;
    for (int row = 0; row < m_grid.GetItemCount(); ++row) {
        RECT bounds = {};
        bounds.left = LVIR_BOUNDS;
        m_grid.SendMessage(LVM_GETITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&bounds));
        needed += bounds.bottom - bounds.top;
    }
    if (needed < height) {
        m_grid.SetWindowPos(nullptr, 0, 0, window.right - window.left, needed,
                            SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    }
}

void CCustomShortcutsGrid::LoadCustomShortcuts()
{
    const CString shortcutTemplate = ReadInstallerProperty(m_product, SHORTCUT_TEMPLATE_PROPERTY);
    if (shortcutTemplate.IsEmpty()) {
        ::ShowWindow(::GetDlgItem(m_page, IDC_SHORTCUTS), SW_HIDE);
        ::ShowWindow(::GetDlgItem(m_page, IDC_SHORTCUTS_HEADING), SW_HIDE);
        return;
    }
    m_shortcutTemplate = ReadShortcutTemplate(shortcutTemplate);
    const CString list = ReadInstallerProperty(m_product, SHORTCUT_LIST_PROPERTY);
    m_nextShortcutNumber = ReadNextShortcutNumber(list);
    // Without rows to show them in nothing is read, so nothing counts as removed later.
    if (list.IsEmpty() || m_grid.GetItemCount() == 0) {
        return;
    }
    static_cast<void>(
        m_product.GetCustomShortcuts(m_existingShortcuts)); // silent: what could be read is shown
    const int shown = std::min(ROWS, static_cast<int>(m_existingShortcuts.size()));
    for (int row = 0; row < shown; ++row) {
        const ShortcutStrings& shortcut = m_existingShortcuts[static_cast<std::size_t>(row)];
        m_grid.SetCellText(row, NAME_COLUMN, shortcut.Name);
        m_grid.SetCellText(row, COMMAND_COLUMN, shortcut.Command);
    }
}

bool CCustomShortcutsGrid::CollectCustomShortcuts(std::vector<CustomShortcutRow>& rows, bool showErrors)
{
    rows.clear();
    if (!m_grid.IsWindow()) {
        return true;
    }
    m_grid.CommitOpenEditor();
    std::vector<CustomShortcutRow> cells(ROWS);
    for (int row = 0; row < ROWS; ++row) {
        CustomShortcutRow& cell = cells[static_cast<std::size_t>(row)];
        m_grid.GetCellText(row, NAME_COLUMN, cell.Name);
        m_grid.GetCellText(row, COMMAND_COLUMN, cell.Command);
    }
    const ShortcutVerdict verdict =
        CollectShortcuts(cells, m_prompts, showErrors ? FaultyRows::Refuse : FaultyRows::Drop, rows);
    if (verdict.fault == ShortcutFault::None) {
        return true;
    }
    Report(verdict);
    return false;
}

void CCustomShortcutsGrid::Report(const ShortcutVerdict& verdict)
{
    const FaultText& row = *std::find_if(std::begin(FAULT_TEXTS), std::end(FAULT_TEXTS),
                                         [&](const FaultText& text) { return text.fault == verdict.fault; });
    CString text = LoadResourceString(row.text);
    if (verdict.fault != ShortcutFault::Incomplete) {
        text += L": " + verdict.culprit;
    }
    ::MessageBoxW(nullptr, text, LoadResourceString(IDS_ERROR_TITLE), MB_OK | MB_ICONERROR);
    // The box has no owner: while it was up, the page may have gone, or another cell may have come under edit.
    if (m_grid.IsWindow()) {
        m_grid.GoToCell({verdict.row, verdict.bCommandToChange ? COMMAND_COLUMN : NAME_COLUMN});
        m_grid.SetFocus();
    }
}

bool CCustomShortcutsGrid::WriteCustomShortcuts(const std::vector<CustomShortcutRow>& rows)
{
    const ShortcutChanges changes =
        DecideShortcutChanges(m_existingShortcuts, rows, m_shortcutTemplate,
                              ReadInstallerProperty(m_product, SHORTCUT_LIST_PROPERTY), m_nextShortcutNumber);
    Execute(changes.comingAndGoing);
    m_product.SetMsiProperty(SHORTCUT_LIST_PROPERTY, changes.list, false);
    Execute(changes.changing);
    return true;
}

void CCustomShortcutsGrid::Execute(const std::vector<ShortcutChange>& changes)
{
    for (const ShortcutChange& change : changes) {
        ShortcutData row;
        static_cast<ShortcutColumns&>(row) = change.row;
        row.m_action = change.action;
        static_cast<void>(row.Execute(m_hDatabase)); // see WriteCustomShortcuts
    }
}
