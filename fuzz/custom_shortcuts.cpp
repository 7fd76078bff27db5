// The rules of the custom shortcuts on any text: a line each for name, command line and list, and the rest as template. What
// they accept can be read again, and the list that they write has the keys that they made.
#include "msi/custom_shortcuts.h"
#include "fuzz/wide_input.h"
#include "workstation/shortcut_change_rules.h"
#include "workstation/shortcut_switch_rules.h"
#include "workstation/workstation_settings_rules.h"

#include <algorithm>

namespace {

void Require(bool claim)
{
    if (!claim) {
        __builtin_trap();
    }
}

void CheckSwitches(const CString& command)
{
    const std::optional<CString> bad = FindBadSwitch(command);
    // A switch in front changes nothing of the verdict, and one behind comes after it.
    Require(FindBadSwitch(L"/b/" + command) == bad);
    Require(FindBadSwitch(command + L"/b") == bad);
    if (bad) {
        Require(!bad->IsEmpty() && bad->Find(L'/') < 0 && command.Find(*bad) >= 0);
        Require(FindBadSwitch(*bad) == bad);
    }
}

// A key that another one ends in is found within that one too.
bool DoKeysHideKeys(const std::vector<ShortcutStrings>& existing)
{
    for (const ShortcutStrings& key : existing) {
        for (const ShortcutStrings& other : existing) {
            if (key.Key != other.Key && key.Key.Right(other.Key.GetLength()) == other.Key) {
                return true;
            }
        }
    }
    return false;
}

void CheckRows(const CustomShortcutRow& cell, const CString& list, const ShortcutColumns& shortcutTemplate)
{
    const CustomShortcutRow prompts = {L"Name", L"Switches"};
    std::vector<CustomShortcutRow> rows, again;
    const ShortcutVerdict verdict =
        CollectShortcuts({cell, {L"x", L"/b"}}, prompts, FaultyRows::Refuse, rows);
    static_cast<void>(CollectShortcuts({cell, {L"x", L"/b"}}, prompts, FaultyRows::Drop, rows));
    Require(rows.size() <= 2 && !rows.empty());
    Require(verdict.fault != ShortcutFault::None || !(rows.back() == cell) || rows.size() == 1);
    Require(CollectShortcuts(rows, prompts, FaultyRows::Refuse, again).fault == ShortcutFault::None &&
            again == rows);

    int number = ReadNextShortcutNumber(list);
    std::vector<ShortcutStrings> existing;
    for (const CString& key : ReadShortcutKeys(list)) {
        existing.push_back({key, L"x", L"/b"});
    }
    const ShortcutChanges changes = DecideShortcutChanges(existing, rows, shortcutTemplate, list, number);
    Require(changes.changing.size() <= std::min(existing.size(), rows.size()));
    if ((!list.IsEmpty() && list.Right(1) != L";") || DoKeysHideKeys(existing)) {
        return; // what stands behind the last semicolon sticks to the next key
    }
    const std::vector<CString> keys = ReadShortcutKeys(changes.list);
    for (const ShortcutChange& change : changes.comingAndGoing) {
        const bool isListed = std::find(keys.begin(), keys.end(), change.row.Shortcut) != keys.end();
        Require(isListed == (change.action == MsiRowAction::Insert));
    }
    if (existing.size() < rows.size()) {
        Require(number == 0 || ReadNextShortcutNumber(changes.list) == number);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CString command, list, rest;
    // Texts of a window and a database end at their first zero.
    const CString name = FirstLine(CString(WideInput(data, size).GetString()), command);
    command = FirstLine(command, list);
    list = FirstLine(list, rest);
    CheckSwitches(command);
    Require(CountTemplateFields(rest) >= 1);
    const ShortcutColumns row = ReadShortcutTemplate(rest);
    Require(row.Shortcut.Find(L';') < 0 && row.WkDir.Find(L';') < 0);
    CheckRows({name, command}, list, row);
    static_cast<void>(IsProfileNameAccepted(name));
    return 0;
}
