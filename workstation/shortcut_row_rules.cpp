#include "workstation/shortcut_row_rules.h"

#include "workstation/shortcut_switch_rules.h"

#include <algorithm>

namespace {

// The backslash isn't among them, on purpose: it always was accepted.
constexpr wchar_t FORBIDDEN_IN_NAMES[] = L"/:*?\"<>|";

bool IsBlank(const CString& cell, const CString& prompt)
{
    return cell.IsEmpty() || cell.CompareNoCase(prompt) == 0;
}

bool HasName(const std::vector<CustomShortcutRow>& rows, const CString& name)
{
    return std::any_of(rows.begin(), rows.end(),
                       [&name](const CustomShortcutRow& row) { return row.Name.CompareNoCase(name) == 0; });
}

ShortcutVerdict JudgeFilledRow(const CustomShortcutRow& row, const std::vector<CustomShortcutRow>& rowsAbove)
{
    if (row.Name.FindOneOf(FORBIDDEN_IN_NAMES) >= 0) {
        return {ShortcutFault::BadName, row.Name, -1, false};
    }
    if (HasName(rowsAbove, row.Name)) {
        return {ShortcutFault::DuplicateName, row.Name, -1, false};
    }
    const std::optional<CString> piece = FindBadSwitch(row.Command);
    return piece ? ShortcutVerdict{ShortcutFault::BadSwitch, *piece, -1, true} : ShortcutVerdict{};
}

} // namespace

ShortcutVerdict CollectShortcuts(const std::vector<CustomShortcutRow>& cells,
                                 const CustomShortcutRow& prompts, FaultyRows faultyRows,
                                 std::vector<CustomShortcutRow>& rows)
{
    rows.clear();
    for (std::size_t index = 0; index < cells.size(); ++index) {
        const CustomShortcutRow& cell = cells[index];
        const bool isNameBlank = IsBlank(cell.Name, prompts.Name);
        const bool isCommandBlank = IsBlank(cell.Command, prompts.Command);
        if (isNameBlank && isCommandBlank) {
            continue;
        }
        ShortcutVerdict verdict = isNameBlank || isCommandBlank
                                      ? ShortcutVerdict{ShortcutFault::Incomplete, {}, -1, isCommandBlank}
                                      : JudgeFilledRow(cell, rows);
        if (verdict.fault == ShortcutFault::None) {
            rows.push_back(cell);
        } else if (faultyRows == FaultyRows::Refuse) {
            verdict.row = static_cast<int>(index);
            return verdict;
        }
    }
    return {};
}
