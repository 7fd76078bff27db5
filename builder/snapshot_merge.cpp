#include "builder/snapshot_merge.h"

#include "builder/named_table.h"

namespace {

void AddMissingColumns(const TableSnapshot& from, TableSnapshot& to)
{
    for (std::size_t index = 0; index < from.columns.size(); ++index) {
        if (std::find(to.columns.begin(), to.columns.end(), from.columns[index]) == to.columns.end()) {
            to.columns.push_back(from.columns[index]);
            to.columnTypes.push_back(from.columnTypes[index]);
            for (auto& [key, row] : to.rows) {
                row.emplace_back();
            }
        }
    }
}

// True when the row meets another change: it is gone, or another one has its key.
bool CarryRow(const RowDifference& difference, const WriteTable& table)
{
    if (difference.change == RowChange::Removed) {
        table.Rows().erase(difference.key);
        return false;
    }
    const auto found = table.Rows().find(difference.key);
    const bool isThere = found != table.Rows().end();
    const RowValues old = isThere ? found->second : RowValues();
    if (difference.change == RowChange::Added) {
        table.Rows()[difference.key] = table.EmptyRow();
    } else if (!isThere) {
        return true;
    }
    RowValues& row = table.Rows()[difference.key];
    for (const ColumnChange& column : difference.columns) {
        table.Set(row, column.strColumn, column.strNew);
    }
    return difference.change == RowChange::Added && isThere && !(row == old);
}

} // namespace

std::vector<RowDifference> CarryDifferences(const DatabaseSnapshot& before, const DatabaseSnapshot& after,
                                            DatabaseSnapshot& database)
{
    std::vector<RowDifference> met;
    for (const auto& [name, table] : after) {
        TableSnapshot& target = database[name];
        if (target.columns.empty()) {
            target.keyColumns = table.keyColumns;
        }
        AddMissingColumns(table, target);
    }
    for (const RowDifference& difference : CompareSnapshots(before, after)) {
        const auto table = database.find(difference.strTable);
        if (table != database.end() && CarryRow(difference, WriteTable(&table->second))) {
            met.push_back(difference);
        }
    }
    for (const auto& [name, table] : before) {
        if (after.count(name) == 0) {
            database.erase(name);
        }
    }
    return met;
}
