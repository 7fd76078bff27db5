#include "builder/database_edit.h"

#include "installer/query.h"

#include <algorithm>
#include <cstdlib>

namespace {

// Statements are few and rows are many, so each statement is opened once.
class CEditor
{
public:
    CEditor(MSIHANDLE database, const CString& path) : m_database(database), m_path(path) {}

    void Apply(const RowDifference& row, const TableSnapshot& table)
    {
        if (row.change == RowChange::Removed) {
            Run(L"DELETE FROM `" + row.strTable + L"`" + WhereKey(table), KeyValues(row, table));
        } else if (row.change == RowChange::Added) {
            Run(L"INSERT INTO `" + row.strTable + L"` (" + Names(row, L"`") + L") VALUES (" + Marks(row) +
                    L")",
                ColumnValues(row, table));
        } else {
            std::vector<Value> values = ColumnValues(row, table);
            const std::vector<Value> keys = KeyValues(row, table);
            values.insert(values.end(), keys.begin(), keys.end());
            Run(L"UPDATE `" + row.strTable + L"` SET " + Names(row, L"`=?") + WhereKey(table), values);
        }
    }

private:
    struct Value
    {
        CString text;
        bool isNumber = false;
    };

    static bool IsNumber(const TableSnapshot& table, std::size_t column)
    {
        return table.columnTypes[column].Left(1).CompareNoCase(L"i") == 0;
    }

    static std::vector<Value> KeyValues(const RowDifference& row, const TableSnapshot& table)
    {
        std::vector<Value> values;
        for (std::size_t index = 0; index < row.key.size(); ++index) {
            values.push_back({row.key[index], IsNumber(table, index)});
        }
        return values;
    }

    static std::vector<Value> ColumnValues(const RowDifference& row, const TableSnapshot& table)
    {
        std::vector<Value> values;
        for (const ColumnChange& change : row.columns) {
            const auto place = std::find(table.columns.begin(), table.columns.end(), change.strColumn);
            values.push_back(
                {change.strNew, IsNumber(table, static_cast<std::size_t>(place - table.columns.begin()))});
        }
        return values;
    }

    static CString WhereKey(const TableSnapshot& table)
    {
        CString text;
        for (int index = 0; index < table.keyColumns; ++index) {
            text +=
                (index ? L" AND `" : L" WHERE `") + table.columns[static_cast<std::size_t>(index)] + L"`=?";
        }
        return text;
    }

    static CString Names(const RowDifference& row, const wchar_t* after)
    {
        CString text;
        for (const ColumnChange& change : row.columns) {
            text += (text.IsEmpty() ? L"`" : L",`") + change.strColumn + after;
        }
        return text;
    }

    static CString Marks(const RowDifference& row)
    {
        CString text;
        for (std::size_t index = 0; index < row.columns.size(); ++index) {
            text += index ? L",?" : L"?";
        }
        return text;
    }

    void Run(const CString& statement, const std::vector<Value>& values)
    {
        const CString what = L"Writing the decided rows into";
        if (!(statement == m_statement)) {
            m_statement.Empty();
            CheckInstaller(m_query.Open(m_database, statement), what, m_path);
            m_statement = statement;
        }
        const CInstallerHandle record(MsiCreateRecord(static_cast<UINT>(values.size())));
        UINT field = 0;
        for (const Value& value : values) {
            ++field;
            if (value.text.IsEmpty()) {
                continue; // null, for numbers and texts alike
            }
            CheckInstaller(value.isNumber ? MsiRecordSetInteger(record.get(), field, ToNumber(value.text))
                                          : MsiRecordSetStringW(record.get(), field, value.text),
                           what, m_path);
        }
        CheckInstaller(m_query.Execute(record.get()), what, m_path);
        CheckInstaller(m_query.Close(), what, m_path);
    }

    static int ToNumber(const CString& text)
    {
        std::vector<char> digits;
        AppendUtf8(digits, text);
        digits.push_back('\0');
        return std::atoi(digits.data());
    }

    MSIHANDLE m_database;
    CString m_path;
    CString m_statement;
    CQuery m_query;
};

bool HasStreams(const TableSnapshot& table)
{
    return std::any_of(table.columnTypes.begin(), table.columnTypes.end(),
                       [](const CString& type) { return type.Left(1).CompareNoCase(L"v") == 0; });
}

} // namespace

void ApplyDifferences(MSIHANDLE database, const CString& path, const std::vector<RowDifference>& differences,
                      const DatabaseSnapshot& wanted, const std::function<void()>& poll)
{
    CEditor editor(database, path);
    for (const RowDifference& row : differences) {
        const TableSnapshot& table = wanted.at(row.strTable);
        if (!HasStreams(table)) {
            editor.Apply(row, table);
        }
        poll();
    }
}
