#include "msi/custom_shortcuts.h"

#include "base/number_text.h"

#include <algorithm>

namespace {

// The pieces in front of each ";" from `start` on; the one behind the last is left out.
std::vector<CString> ClosedPieces(const CString& text, int start)
{
    std::vector<CString> pieces;
    for (int end; (end = text.Find(L';', start)) >= 0; start = end + 1) {
        pieces.push_back(text.Mid(start, end - start));
    }
    return pieces;
}

int NumberOrNull(const CString& field)
{
    return field.IsEmpty() ? NULL_COLUMN : LeadingNumber(field);
}

} // namespace

int CountTemplateFields(const CString& text)
{
    return static_cast<int>(ClosedPieces(text, 0).size()) + 1;
}

ShortcutColumns ReadShortcutTemplate(const CString& text)
{
    std::vector<CString> fields = ClosedPieces(text, 0);
    const CString last = text.Mid(text.ReverseFind(L';') + 1);
    if (!last.IsEmpty()) {
        fields.push_back(last);
    }
    if (fields.size() < SHORTCUT_TEMPLATE_FIELDS - 1) {
        return {};
    }
    fields.resize(SHORTCUT_TEMPLATE_FIELDS);
    ShortcutColumns row;
    row.Shortcut = fields[0];
    row.Directory_ = fields[1];
    row.Name = fields[2].Mid(fields[2].Find(L'|') + 1);
    row.Component_ = fields[3];
    row.Target = fields[4];
    row.Arguments = fields[5];
    row.Description = fields[6];
    row.Hotkey = NumberOrNull(fields[7]);
    row.Icon_ = fields[8];
    row.IconIndex = NumberOrNull(fields[9]);
    row.ShowCmd = NumberOrNull(fields[10]);
    row.WkDir = fields[11];
    return row;
}

int ReadNextShortcutNumber(const CString& list)
{
    const int end = list.Find(L';');
    const int number = end < 0 ? 0 : LeadingNumber(list.Left(end));
    return number == 0 ? 1 : number;
}

std::vector<CString> ReadShortcutKeys(const CString& list)
{
    const int end = list.Find(L';');
    std::vector<CString> keys;
    if (end < 0) {
        return keys;
    }
    for (const CString& key : ClosedPieces(list, end + 1)) {
        if (!key.IsEmpty() && std::find(keys.begin(), keys.end(), key) == keys.end()) {
            keys.push_back(key);
        }
    }
    return keys;
}
