// A table of a snapshot with its columns by name. No window header.
#pragma once

#include "base/number_text.h"
#include "builder/change_report.h"

#include <algorithm>

// A number as it stands in a snapshot; 0 for anything else.
inline long long NumberOf(const CString& text)
{
    constexpr long long MOST = 1ll << 60;
    return ReadWholeNumber(text, -MOST, MOST).value_or(0);
}

// A table that isn't there has no rows: ask `Exists` before `Rows`.
template <class Table>
class CNamedTable
{
public:
    explicit CNamedTable(Table* table) : m_table(table) {}

    bool Exists() const { return m_table != nullptr; }
    auto& Rows() const { return m_table->rows; }
    bool Has(const CString& key) const { return m_table && m_table->rows.count({key}) != 0; }
    int ColumnOf(const wchar_t* name) const
    {
        const auto found = std::find_if(m_table->columns.begin(), m_table->columns.end(),
                                        [name](const CString& column) { return column == name; });
        return found == m_table->columns.end() ? -1 : static_cast<int>(found - m_table->columns.begin());
    }
    CString Value(const RowValues& row, const wchar_t* column) const
    {
        const int index = ColumnOf(column);
        return index < 0 ? CString() : row[static_cast<std::size_t>(index)];
    }
    void Set(RowValues& row, const wchar_t* column, const CString& value) const
    {
        const int index = ColumnOf(column);
        if (index >= 0) {
            row[static_cast<std::size_t>(index)] = value;
        }
    }
    bool HoldsOnlyShortNumbers(const wchar_t* column) const
    {
        const int index = ColumnOf(column);
        return index >= 0 && m_table->columnTypes[static_cast<std::size_t>(index)].Right(1) == L"2"; // i2, I2
    }
    RowValues EmptyRow() const { return RowValues(m_table->columns.size()); }

private:
    Table* m_table;
};

using ReadTable = CNamedTable<const TableSnapshot>;
using WriteTable = CNamedTable<TableSnapshot>;

inline ReadTable TableToRead(const DatabaseSnapshot& database, const wchar_t* name)
{
    const auto found = database.find(name);
    return ReadTable(found == database.end() ? nullptr : &found->second);
}

inline WriteTable TableToWrite(DatabaseSnapshot& database, const wchar_t* name)
{
    const auto found = database.find(name);
    return WriteTable(found == database.end() ? nullptr : &found->second);
}
