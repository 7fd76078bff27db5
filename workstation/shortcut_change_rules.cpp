#include "workstation/shortcut_change_rules.h"

#include <algorithm>

namespace {

constexpr wchar_t KEY_PREFIX[] = L"CUSTOM_SHORTCUT_";

ShortcutColumns RowOf(const ShortcutColumns& shortcutTemplate, const CString& key, const CString& name,
                      const CString& command)
{
    ShortcutColumns row = shortcutTemplate;
    row.Shortcut = key;
    row.Name = name;
    row.Arguments = command;
    return row;
}

// Behind the largest number the smallest follows.
int NumberAfter(int number)
{
    return static_cast<int>(static_cast<unsigned int>(number) + 1);
}

// The list with its number raised and the key behind it. A list that doesn't begin with the number keeps what it begins with
// behind the new one, on purpose: only the first number counts.
void AddKey(CString& list, int number, const CString& key)
{
    const CString former = NumberText(number) + L";";
    if (!list.IsEmpty() && list.Left(former.GetLength()) == former) {
        list.Delete(0, former.GetLength());
    }
    list = NumberText(NumberAfter(number)) + L";" + list + key + L";";
}

} // namespace

ShortcutChanges DecideShortcutChanges(const std::vector<ShortcutStrings>& existing,
                                      const std::vector<CustomShortcutRow>& wanted,
                                      const ShortcutColumns& shortcutTemplate, const CString& list,
                                      int& nextNumber)
{
    ShortcutChanges changes;
    changes.list = list;
    for (std::size_t index = existing.size(); index < wanted.size(); ++index) {
        const CString key = KEY_PREFIX + NumberText(nextNumber);
        AddKey(changes.list, nextNumber, key);
        nextNumber = NumberAfter(nextNumber);
        changes.comingAndGoing.push_back(
            {MsiRowAction::Insert, RowOf(shortcutTemplate, key, wanted[index].Name, wanted[index].Command)});
    }
    for (std::size_t index = wanted.size(); index < existing.size(); ++index) {
        const ShortcutStrings& old = existing[index];
        changes.comingAndGoing.push_back(
            {MsiRowAction::Delete, RowOf(shortcutTemplate, old.Key, old.Name, old.Command)});
        changes.list.Replace(old.Key + L";", nullptr);
    }
    for (std::size_t index = 0; index < std::min(existing.size(), wanted.size()); ++index) {
        const ShortcutStrings& old = existing[index];
        if (CustomShortcutRow{old.Name, old.Command} != wanted[index]) {
            changes.changing.push_back(
                {MsiRowAction::Update,
                 RowOf(shortcutTemplate, old.Key, wanted[index].Name, wanted[index].Command)});
        }
    }
    return changes;
}
