#include "builder/change_report.h"

#include "base/number_text.h"
#include "builder/shown_text.h"

#include <compare>

namespace {

RowDifference DescribeWholeRow(const CString& name, const TableSnapshot& table, RowChange change,
                               const std::vector<CString>& key, const RowValues& values)
{
    RowDifference row{name, change, key, {}};
    for (std::size_t index = 0; index < values.size(); ++index) {
        const CString& value = values[index];
        if (!value.IsEmpty()) {
            row.columns.push_back({table.columns[index], change == RowChange::Removed ? value : CString(),
                                   change == RowChange::Added ? value : CString()});
        }
    }
    return row;
}

// A column of the other side by name: a table that gained a column is compared by what both have.
const CString* FindValue(const TableSnapshot& table, const RowValues& values, const CString& column)
{
    for (std::size_t index = 0; index < table.columns.size(); ++index) {
        if (table.columns[index] == column) {
            return &values[index];
        }
    }
    return nullptr;
}

std::vector<ColumnChange> CompareRows(const TableSnapshot& oldTable, const RowValues& oldValues,
                                      const TableSnapshot& newTable, const RowValues& newValues)
{
    std::vector<ColumnChange> changes;
    for (std::size_t index = 0; index < newTable.columns.size(); ++index) {
        const CString& column = newTable.columns[index];
        const CString* oldValue = FindValue(oldTable, oldValues, column);
        const CString before = oldValue ? *oldValue : CString();
        if (!(before == newValues[index])) {
            changes.push_back({column, before, newValues[index]});
        }
    }
    for (std::size_t index = 0; index < oldTable.columns.size(); ++index) {
        const CString& column = oldTable.columns[index];
        if (!FindValue(newTable, newValues, column) && !oldValues[index].IsEmpty()) {
            changes.push_back({column, oldValues[index], CString()});
        }
    }
    return changes;
}

void CompareTables(const CString& name, const TableSnapshot& oldTable, const TableSnapshot& newTable,
                   std::vector<RowDifference>& differences)
{
    // Both sides are sorted by key, so that one walk over both meets every row.
    const bool sameColumns = oldTable.columns == newTable.columns;
    auto before = oldTable.rows.begin();
    auto after = newTable.rows.begin();
    while (before != oldTable.rows.end() || after != newTable.rows.end()) {
        const std::strong_ordering order = after == newTable.rows.end()    ? std::strong_ordering::less
                                           : before == oldTable.rows.end() ? std::strong_ordering::greater
                                                                           : before->first <=> after->first;
        if (order < 0) {
            differences.push_back(
                DescribeWholeRow(name, oldTable, RowChange::Removed, before->first, before->second));
            ++before;
        } else if (order > 0) {
            differences.push_back(
                DescribeWholeRow(name, newTable, RowChange::Added, after->first, after->second));
            ++after;
        } else {
            // Nearly all rows are equal, so they are not looked at column by column.
            if (!sameColumns || !(before->second == after->second)) {
                auto columns = CompareRows(oldTable, before->second, newTable, after->second);
                if (!columns.empty()) {
                    differences.push_back({name, RowChange::Changed, after->first, std::move(columns)});
                }
            }
            ++before;
            ++after;
        }
    }
}

const TableSnapshot& TableOf(const DatabaseSnapshot& database, const CString& name)
{
    static const TableSnapshot none;
    const auto found = database.find(name);
    return found == database.end() ? none : found->second;
}

CString JoinKey(const std::vector<CString>& key)
{
    CString text;
    for (const CString& part : key) {
        text += (text.IsEmpty() ? L"" : L", ") + part;
    }
    return text;
}

const wchar_t* WordOf(RowChange change)
{
    return change == RowChange::Added ? L"added" : change == RowChange::Removed ? L"removed" : L"changed";
}

int CountOf(const std::vector<RowDifference>& rows, RowChange change)
{
    int count = 0;
    for (const RowDifference& row : rows) {
        count += row.change == change ? 1 : 0;
    }
    return count;
}

// The value on one line between quotes; quotes inside stand twice, so that nothing in it looks like another value.
CString Quoted(const CString& value)
{
    CString shown = ShownText(value);
    shown.Replace(L"\"", L"\"\"");
    return L"\"" + shown + L"\"";
}

void AppendRow(CString& text, const RowDifference& row)
{
    text += L"  " + ShownText(row.strTable) + L": " + ShownText(JoinKey(row.key)) + L" " +
            WordOf(row.change) + L"\r\n";
    for (const ColumnChange& column : row.columns) {
        text += L"      " + ShownText(column.strColumn) + L": ";
        if (row.change == RowChange::Changed) {
            text += Quoted(column.strOld) + L" -> " + Quoted(column.strNew) + L"\r\n";
        } else {
            text += Quoted(row.change == RowChange::Added ? column.strNew : column.strOld) + L"\r\n";
        }
    }
}

CString CountRows(const std::vector<RowDifference>& rows)
{
    return L"  Rows added: " + NumberText(CountOf(rows, RowChange::Added)) + L", changed: " +
           NumberText(CountOf(rows, RowChange::Changed)) + L", removed: " +
           NumberText(CountOf(rows, RowChange::Removed)) + L"\r\n";
}

void AppendPatch(CString& text, const PatchChanges& patch)
{
    text += L"\r\n  Merged patch: " + ShownText(patch.strName) + L" (" + ShownText(patch.strFile) + L", " +
            ShownText(patch.strCode) + L")\r\n";
    text +=
        L"  Version: " + ShownText(patch.strOldVersion) + L" -> " + ShownText(patch.strNewVersion) + L"\r\n";
    text += CountRows(patch.rows);
    for (const RowDifference& row : patch.rows) {
        AppendRow(text, row);
    }
}

CString JsonRow(const RowDifference& row, const CString& indent)
{
    CString text = indent + L"{\"table\": " + JsonText(row.strTable) + L", \"change\": \"" +
                   WordOf(row.change) + L"\", \"key\": [";
    for (std::size_t index = 0; index < row.key.size(); ++index) {
        text += (index ? L", " : L"") + JsonText(row.key[index]);
    }
    text += L"], \"columns\": [";
    for (std::size_t index = 0; index < row.columns.size(); ++index) {
        const ColumnChange& column = row.columns[index];
        text += CString(index ? L", " : L"") + L"{\"name\": " + JsonText(column.strColumn);
        // What isn't there is null: an added row has no old value, a removed one no new value.
        text +=
            L", \"old\": " + (row.change == RowChange::Added ? CString(L"null") : JsonText(column.strOld));
        text +=
            L", \"new\": " + (row.change == RowChange::Removed ? CString(L"null") : JsonText(column.strNew));
        text += L"}";
    }
    return text + L"]}";
}

CString JsonRows(const std::vector<RowDifference>& rows, const CString& indent)
{
    CString text = L"[";
    for (std::size_t row = 0; row < rows.size(); ++row) {
        text += CString(row ? L"," : L"") + L"\r\n" + JsonRow(rows[row], indent);
    }
    return text + L"]";
}

// Nothing for a database into which no patch was merged.
CString JsonPatches(const std::vector<PatchChanges>& patches)
{
    CString text;
    for (const PatchChanges& patch : patches) {
        text += text.IsEmpty() ? L", \"patches\": [" : L",";
        text += L"\r\n      {\"name\": " + JsonText(patch.strName) + L", \"file\": " +
                JsonText(patch.strFile) + L", \"code\": " + JsonText(patch.strCode) + L", \"oldVersion\": " +
                JsonText(patch.strOldVersion) + L", \"newVersion\": " + JsonText(patch.strNewVersion) +
                L", \"rows\": " + JsonRows(patch.rows, L"        ") + L"}";
    }
    return text.IsEmpty() ? text : text + L"]";
}

} // namespace

std::vector<RowDifference> CompareSnapshots(const DatabaseSnapshot& original, const DatabaseSnapshot& current)
{
    std::map<CString, bool> names;
    for (const auto& table : original) {
        names[table.first] = true;
    }
    for (const auto& table : current) {
        names[table.first] = true;
    }
    std::vector<RowDifference> differences;
    for (const auto& name : names) {
        CompareTables(name.first, TableOf(original, name.first), TableOf(current, name.first), differences);
    }
    return differences;
}

CString ComposeChangesText(const std::vector<DatabaseChanges>& databases)
{
    CString text = L"What this deployment changes in the databases of the products\r\n";
    for (const DatabaseChanges& database : databases) {
        text +=
            L"\r\n" + ShownText(database.strTarget) + L" (" + ShownText(database.strProductName) + L")\r\n";
        if (!database.IsChanged()) {
            text += L"  Nothing: the file is the maker's, byte for byte. Package code " +
                    ShownText(database.strOldPackageCode) + L"\r\n";
            continue;
        }
        if (!database.patches.empty()) {
            text += L"  The settings, beyond what the merged patches below change:\r\n";
        }
        text += CountRows(database.rows);
        text += L"  Package code: " + ShownText(database.strOldPackageCode) + L" -> " +
                ShownText(database.strNewPackageCode) + L"\r\n";
        if (database.bSignatureLost) {
            text += L"  The maker's digital signature no longer matches the changed database and was "
                    L"removed.\r\n";
        }
        for (const CString& note : database.notes) {
            text += L"  Note: " + ShownText(note) + L"\r\n";
        }
        for (const RowDifference& row : database.rows) {
            AppendRow(text, row);
        }
        for (const PatchChanges& patch : database.patches) {
            AppendPatch(text, patch);
        }
    }
    return text;
}

CString JsonText(const CString& text)
{
    CString quoted = L"\"";
    for (int index = 0; index < text.GetLength(); ++index) {
        const wchar_t character = text[index];
        if (character == L'"' || character == L'\\') {
            quoted += L'\\';
            quoted += character;
        } else if (IsHiddenUnit(text, index)) {
            quoted += L"\\u" + HexText(character, 4);
        } else {
            quoted += character;
        }
    }
    return quoted + L"\"";
}

CString ComposeChangesJson(const std::vector<DatabaseChanges>& databases)
{
    CString text = L"{\r\n  \"version\": 1,\r\n  \"databases\": [";
    for (std::size_t index = 0; index < databases.size(); ++index) {
        const DatabaseChanges& database = databases[index];
        text += CString(index ? L"," : L"") + L"\r\n    {\"file\": " + JsonText(database.strTarget);
        text += L", \"product\": " + JsonText(database.strProductName);
        text += L", \"oldPackageCode\": " + JsonText(database.strOldPackageCode);
        text += L", \"newPackageCode\": " + JsonText(database.strNewPackageCode);
        text += CString(L", \"signatureLost\": ") + (database.bSignatureLost ? L"true" : L"false");
        text += L", \"rows\": " + JsonRows(database.rows, L"      ");
        text += JsonPatches(database.patches) + L"}";
    }
    return text + L"\r\n  ]\r\n}\r\n";
}
