#include "setup/workstation_lists.h"

#include "automation/list_control.h"
#include "include/resource_ids.h"
#include "setup/texts.h"
#include "window/controls.h"

#include <algorithm>

namespace {

constexpr wchar_t SHORTCUT[] = L"shortcut";
constexpr int NAME_COLUMN = 0;
constexpr int COMMAND_COLUMN = 1;

// The cells of the custom shortcuts.
class CShortcutCells
{
public:
    explicit CShortcutCells(HWND page) : m_list(::GetDlgItem(page, IDC_SHORTCUTS)) {}

    // Hidden for a product without custom shortcuts; a page that is itself hidden still has them.
    [[nodiscard]] bool AreOffered() const { return m_list.Exists() && (Window().GetStyle() & WS_VISIBLE); }
    [[nodiscard]] StepOutcome NeedUsable() const { return m_list.NeedUsable(); }
    [[nodiscard]] int CountRows() const { return Window().GetItemCount(); }

    // A prompt is no text of the cell.
    [[nodiscard]] CString GetText(int row, int column) const
    {
        const CString text = m_list.GetCell(row, column);
        const CString prompt =
            PageText(column == NAME_COLUMN ? IDS_SHORTCUT_NAME_PROMPT : IDS_SHORTCUT_SWITCHES_PROMPT);
        return text.CompareNoCase(prompt) == 0 ? CString() : text;
    }

    // By a double click, as a person does: the cell's editor, or null when none opens.
    [[nodiscard]] HWND OpenEditor(int row, int column) const
    {
        const CListViewCtrl list = Window();
        list.SendMessage(LVM_ENSUREVISIBLE, static_cast<WPARAM>(row), FALSE);
        RECT cell = {};
        cell.top = column;
        cell.left = LVIR_BOUNDS;
        list.SendMessage(LVM_GETSUBITEMRECT, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&cell));
        constexpr int INSIDE = 4;
        const LPARAM place = MAKELPARAM(cell.left + INSIDE, (cell.top + cell.bottom) / 2);
        list.SendMessage(WM_LBUTTONDOWN, MK_LBUTTON, place);
        list.SendMessage(WM_LBUTTONUP, 0, place);
        list.SendMessage(WM_LBUTTONDBLCLK, MK_LBUTTON, place);
        list.SendMessage(WM_LBUTTONUP, 0, place);
        const HWND focus = ::GetFocus();
        return ::IsChild(list, focus) ? focus : nullptr;
    }

private:
    [[nodiscard]] CListViewCtrl Window() const { return CListViewCtrl(m_list.GetWindow()); }

    CListControl m_list;
};

StepOutcome EnterCell(HWND page, int row, int column, const CString& text)
{
    const CShortcutCells cells(page);
    if (const StepOutcome usable = cells.NeedUsable(); !usable.IsDone()) {
        return cells.AreOffered() ? usable : StepOutcome::Failed(L"The product has no custom shortcuts.");
    }
    if (row >= cells.CountRows()) {
        return StepOutcome::Failed(L"The page has room for " + NumberText(cells.CountRows()) +
                                   L" custom shortcuts.");
    }
    if (cells.GetText(row, column) == text) {
        return StepOutcome::Done();
    }
    const HWND editor = cells.OpenEditor(row, column);
    if (!editor) {
        return StepOutcome::Failed(L"The page doesn't let it be edited.");
    }
    const StepOutcome typed = CControl(editor).SetText(text);
    if (typed.IsDone()) {
        SendMessageW(editor, WM_KEYDOWN, VK_RETURN, 1);
    }
    return typed;
}

// The page would accept it, and the row would be missing on the workstations: the database refuses its statement, which
// nobody reports. What the page has already is in the database.
StepOutcome RefuseApostrophe(HWND page, int row, const CString& name, const CString& command)
{
    const CShortcutCells cells(page);
    const bool isThere =
        cells.GetText(row, NAME_COLUMN) == name && cells.GetText(row, COMMAND_COLUMN) == command;
    return isThere || command.Find(L'\'') < 0
               ? StepOutcome::Done()
               : StepOutcome::Failed(L"The command line of a custom shortcut can't have an apostrophe: the "
                                     L"shortcut would be missing in the deployment.");
}

StepOutcome CheckRow(HWND page, int row, const CString& name, const CString& command)
{
    const CShortcutCells cells(page);
    return cells.GetText(row, NAME_COLUMN) == name && cells.GetText(row, COMMAND_COLUMN) == command
               ? StepOutcome::Done()
               : StepOutcome::Failed(L"The page hasn't accepted it.");
}

void AddRowSteps(const PageAnswer& answer, int row, const CString& name, const CString& command,
                 std::vector<ListStep>& steps)
{
    steps.push_back({&answer, L"look for an apostrophe",
                     [=](HWND page) { return RefuseApostrophe(page, row, name, command); }});
    steps.push_back(
        {&answer, L"type the name", [=](HWND page) { return EnterCell(page, row, NAME_COLUMN, name); }});
    steps.push_back({&answer, L"type the command line",
                     [=](HWND page) { return EnterCell(page, row, COMMAND_COLUMN, command); }});
    steps.push_back(
        {&answer, L"look for the shortcut", [=](HWND page) { return CheckRow(page, row, name, command); }});
}

// Rows that aren't answered. As many as the page has by then.
void AddClearingStep(const PageAnswer& answer, int firstRow, std::vector<ListStep>& steps)
{
    steps.push_back({&answer, L"empty the other rows", [firstRow](HWND page) {
                         const CShortcutCells cells(page);
                         for (int row = firstRow; cells.AreOffered() && row < cells.CountRows(); ++row) {
                             for (const int column : {NAME_COLUMN, COMMAND_COLUMN}) {
                                 const StepOutcome emptied = EnterCell(page, row, column, CString());
                                 if (!emptied.IsDone()) {
                                     return emptied;
                                 }
                             }
                         }
                         return StepOutcome::Done();
                     }});
}

bool IsEmptyLine(const PageAnswer& answer)
{
    return std::all_of(answer.fields.begin(), answer.fields.end(),
                       [](const CString& field) { return field.IsEmpty(); });
}

class CWorkstationPageLists final : public IPageLists
{
public:
    [[nodiscard]] std::vector<ListLine> Read(HWND page) const override
    {
        std::vector<ListLine> lines;
        const CShortcutCells cells(page);
        if (!cells.AreOffered()) {
            return lines;
        }
        for (int row = 0; row < cells.CountRows(); ++row) {
            const CString name = cells.GetText(row, NAME_COLUMN);
            const CString command = cells.GetText(row, COMMAND_COLUMN);
            if (!name.IsEmpty() || !command.IsEmpty()) {
                lines.push_back({SHORTCUT, {name, command}});
            }
        }
        if (lines.empty()) {
            lines.push_back({SHORTCUT, {CString(), CString()}});
        }
        return lines;
    }

    [[nodiscard]] std::vector<ListStep>
    MakeSteps(const std::vector<const PageAnswer*>& answers) const override
    {
        std::vector<ListStep> steps;
        int row = 0;
        for (const PageAnswer* answer : answers) {
            if (answers.size() == 1 && IsEmptyLine(*answer)) {
                break; // none is wanted
            }
            const CString& name = answer->fields[0];
            const CString& command = answer->fields[1];
            if (name.IsEmpty() || command.IsEmpty()) {
                steps.push_back({answer, L"refuse half a shortcut", [](HWND) {
                                     return StepOutcome::Failed(
                                         L"A custom shortcut needs a name and a command line. A single line "
                                         L"with neither of them empties the list.");
                                 }});
                return steps;
            }
            AddRowSteps(*answer, row++, name, command, steps);
        }
        AddClearingStep(*answers.back(), row, steps);
        return steps;
    }

    [[nodiscard]] bool IsAtWork(HWND) const override { return false; }
};

} // namespace

const IPageLists& WorkstationPageLists()
{
    static const CWorkstationPageLists lists;
    return lists;
}
