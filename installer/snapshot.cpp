#include "installer/snapshot.h"

#include "installer/database.h"
#include "installer/query.h"
#include "installer/record.h"

#include <algorithm>

namespace {

constexpr wchar_t STREAMS[] = L"_Streams";
constexpr wchar_t TABLE_LIST[] = L"the list of tables";

bool IsStreamType(const CString& type)
{
    return type.Left(1).CompareNoCase(L"v") == 0;
}

void Require(unsigned int code, const CString& part)
{
    if (code != ERROR_SUCCESS) {
        throw SnapshotFailure{code, part};
    }
}

CString ReadValue(MSIHANDLE record, unsigned int column)
{
    CString text;
    Require(CopyRecordText(record, column, text), L"a value");
    return text;
}

// The rows of a query, each to be read whole or not at all.
class CRowWalk
{
public:
    CRowWalk(MSIHANDLE database, const CString& statement, const CString& part) : m_part(part)
    {
        Require(m_query.Run(database, statement), m_part);
    }

    // False behind the last row.
    bool Next()
    {
        const unsigned int code = m_query.Fetch(m_row);
        if (code == ERROR_NO_MORE_ITEMS) {
            return false;
        }
        Require(code, m_part);
        return true;
    }
    MSIHANDLE Row() const { return m_row.get(); }

    std::vector<CString> ReadColumns(MSICOLINFO kind)
    {
        CInstallerHandle record;
        Require(m_query.ReadColumns(kind, record), m_part);
        std::vector<CString> texts;
        for (UINT column = 1; column <= MsiRecordGetFieldCount(record.get()); ++column) {
            texts.push_back(ReadValue(record.get(), column));
        }
        return texts;
    }

private:
    CString m_part;
    CQuery m_query;
    CInstallerHandle m_row;
};

class CSnapshotReader
{
public:
    CSnapshotReader(MSIHANDLE database, const SnapshotCalls& calls) : m_database(database), m_calls(calls) {}

    std::vector<CString> ReadTableNames() const
    {
        std::vector<CString> names;
        for (CRowWalk walk(m_database, L"SELECT `Name` FROM `_Tables`", TABLE_LIST); walk.Next();) {
            names.push_back(ReadValue(walk.Row(), 1));
            if (names.back().IsEmpty()) {
                throw SnapshotFailure{ERROR_INSTALL_PACKAGE_INVALID, CString()};
            }
        }
        return names;
    }

    TableSnapshot ReadTable(const CString& name) const
    {
        TableSnapshot table;
        for (RowValues& values : ReadRows(name, table)) {
            AddRow(table, std::move(values));
        }
        return table;
    }

    static void AddRow(TableSnapshot& table, RowValues&& values)
    {
        table.rows[{values.begin(), values.begin() + table.keyColumns}] = std::move(values);
    }

    // The rows in the order in which they come, and all else into `table`.
    std::vector<RowValues> ReadRows(const CString& name, TableSnapshot& table) const
    {
        const CString part = L"the table " + name;
        m_calls.poll();
        CRowWalk walk(m_database, L"SELECT * FROM `" + name + L"`", part);
        table.columns = walk.ReadColumns(MSICOLINFO_NAMES);
        table.columnTypes = walk.ReadColumns(MSICOLINFO_TYPES);
        table.keyColumns = name == STREAMS ? 1 : CountKeys(name);
        std::vector<RowValues> rows;
        while (walk.Next()) {
            RowValues& values = rows.emplace_back();
            values.reserve(table.columns.size());
            for (std::size_t index = 0; index < table.columns.size(); ++index) {
                const UINT column = static_cast<UINT>(index + 1);
                values.push_back(IsStreamType(table.columnTypes[index])
                                     ? DescribeStream(walk.Row(), column, part)
                                     : ReadValue(walk.Row(), column));
            }
        }
        return rows;
    }

private:
    int CountKeys(const CString& name) const
    {
        CInstallerHandle record;
        Require(MsiDatabaseGetPrimaryKeysW(m_database, name, record.put()), L"the keys of the table " + name);
        return static_cast<int>(MsiRecordGetFieldCount(record.get()));
    }

    CString DescribeStream(MSIHANDLE record, UINT column, const CString& part) const
    {
        if (MsiRecordIsNull(record, column)) {
            return {};
        }
        return m_calls.describeStream([&](void* bytes, std::size_t room) {
            DWORD read = static_cast<DWORD>(room);
            Require(MsiRecordReadStream(record, column, static_cast<char*>(bytes), &read), part);
            m_calls.poll();
            return static_cast<std::size_t>(read);
        });
    }

    MSIHANDLE m_database;
    const SnapshotCalls& m_calls;
};

// Streams of rows were read with their rows, and those of the summary and the signature aren't content.
void DropTableStreams(const DatabaseSnapshot& snapshot, TableSnapshot& streams)
{
    for (auto row = streams.rows.begin(); row != streams.rows.end();) {
        const CString& name = row->first.front();
        const int dot = name.Find(L'.');
        const auto table = dot > 0 ? snapshot.find(name.Left(dot)) : snapshot.end();
        bool drop = name[0] == L'\x05';
        for (std::size_t index = 0; table != snapshot.end() && index < table->second.columnTypes.size();
             ++index) {
            drop = drop || IsStreamType(table->second.columnTypes[index]);
        }
        row = drop ? streams.rows.erase(row) : std::next(row);
    }
}

// The next place of `row` behind `at`, as far as it is looked for; the end of the rows when it isn't there. Rows that one
// database alone has seldom stand many in a row.
std::size_t FindAhead(const std::vector<RowValues>& rows, std::size_t at, const RowValues& row)
{
    constexpr std::size_t FARTHEST = 8;
    const std::size_t end = std::min(rows.size(), at + FARTHEST);
    for (std::size_t index = at; index < end; ++index) {
        if (rows[index] == row) {
            return index;
        }
    }
    return rows.size();
}

// Two versions of a table have their common rows in one order, so one walk over both finds nearly all of them.
void AddUnequalRows(std::vector<RowValues>&& firstRows, TableSnapshot& first,
                    std::vector<RowValues>&& secondRows, TableSnapshot& second)
{
    std::size_t before = 0;
    std::size_t after = 0;
    const bool sameColumns = first.columns == second.columns;
    while (sameColumns && before < firstRows.size() && after < secondRows.size()) {
        if (firstRows[before] == secondRows[after]) {
            ++before;
            ++after;
            continue;
        }
        const std::size_t added = FindAhead(secondRows, after + 1, firstRows[before]);
        const std::size_t removed = FindAhead(firstRows, before + 1, secondRows[after]);
        const bool isAdded = added < secondRows.size();
        const bool isRemoved = !isAdded && removed < firstRows.size();
        const std::size_t firstEnd = isRemoved ? removed : isAdded ? before : before + 1;
        const std::size_t secondEnd = isAdded ? added : isRemoved ? after : after + 1;
        for (; before < firstEnd; ++before) {
            CSnapshotReader::AddRow(first, std::move(firstRows[before]));
        }
        for (; after < secondEnd; ++after) {
            CSnapshotReader::AddRow(second, std::move(secondRows[after]));
        }
    }
    for (; before < firstRows.size(); ++before) {
        CSnapshotReader::AddRow(first, std::move(firstRows[before]));
    }
    for (; after < secondRows.size(); ++after) {
        CSnapshotReader::AddRow(second, std::move(secondRows[after]));
    }
}

// What `read` reads of the second of two databases.
template <class Read>
auto OfSecond(const Read& read)
{
    try {
        return read();
    } catch (SnapshotFailure& failure) {
        failure.bOfSecond = true;
        throw;
    }
}

void ReadStreams(const CSnapshotReader& reader, DatabaseSnapshot& snapshot)
{
    TableSnapshot streams = reader.ReadTable(STREAMS);
    DropTableStreams(snapshot, streams);
    snapshot[STREAMS] = std::move(streams);
}

} // namespace

DatabaseSnapshot ReadDatabaseSnapshot(MSIHANDLE database, const SnapshotCalls& calls)
{
    const CSnapshotReader reader(database, calls);
    DatabaseSnapshot snapshot;
    for (const CString& name : reader.ReadTableNames()) {
        snapshot[name] = reader.ReadTable(name);
    }
    ReadStreams(reader, snapshot);
    return snapshot;
}

SnapshotPair ReadUnequalRows(MSIHANDLE first, MSIHANDLE second, const std::set<CString>& whole,
                             const SnapshotCalls& calls)
{
    const CSnapshotReader firstReader(first, calls);
    const CSnapshotReader secondReader(second, calls);
    const std::vector<CString> firstNames = firstReader.ReadTableNames();
    const std::vector<CString> secondNames = OfSecond([&] { return secondReader.ReadTableNames(); });
    std::set<CString> inBoth;
    for (const CString& name : firstNames) {
        if (whole.count(name) == 0 &&
            std::find(secondNames.begin(), secondNames.end(), name) != secondNames.end()) {
            inBoth.insert(name);
        }
    }
    SnapshotPair pair;
    for (const CString& name : firstNames) {
        if (inBoth.count(name) == 0) {
            pair.first[name] = firstReader.ReadTable(name);
            continue;
        }
        TableSnapshot& before = pair.first[name];
        TableSnapshot& after = pair.second[name];
        std::vector<RowValues> firstRows = firstReader.ReadRows(name, before);
        std::vector<RowValues> secondRows = OfSecond([&] { return secondReader.ReadRows(name, after); });
        AddUnequalRows(std::move(firstRows), before, std::move(secondRows), after);
    }
    for (const CString& name : secondNames) {
        if (inBoth.count(name) == 0) {
            pair.second[name] = OfSecond([&] { return secondReader.ReadTable(name); });
        }
    }
    ReadStreams(firstReader, pair.first);
    OfSecond([&] { return ReadStreams(secondReader, pair.second); });
    return pair;
}

DatabaseSnapshot ReadTableSnapshots(MSIHANDLE database, std::initializer_list<const wchar_t*> names,
                                    const SnapshotCalls& calls)
{
    const CSnapshotReader reader(database, calls);
    DatabaseSnapshot snapshot;
    for (const wchar_t* name : names) {
        if (HasTable(database, name)) {
            snapshot[name] = reader.ReadTable(name);
        }
    }
    return snapshot;
}
