#include "builder/database_snapshot.h"

#include "builder/build_failure.h"
#include "builder/file_operations.h"
#include "builder/sha256.h"

namespace {

constexpr UINT PROPERTY_REVISION_NUMBER = 9;
const wchar_t g_streams[] = L"_Streams";

bool IsStreamType(const CString& type)
{
    return type.Left(1).CompareNoCase(L"v") == 0;
}

class CSnapshotReader
{
public:
    CSnapshotReader(MSIHANDLE database, const CString& path, const std::function<void()>& poll)
        : m_database(database), m_path(path), m_poll(poll), m_chunk(64 * 1024), m_text(1024)
    {
    }

    DatabaseSnapshot Read()
    {
        DatabaseSnapshot snapshot;
        for (const CString& name : TableNames()) {
            snapshot[name] = ReadTable(name);
        }
        TableSnapshot streams = ReadTable(g_streams);
        DropTableStreams(snapshot, streams);
        snapshot[g_streams] = std::move(streams);
        return snapshot;
    }

    DatabaseSnapshot Read(std::initializer_list<const wchar_t*> names)
    {
        DatabaseSnapshot snapshot;
        for (const wchar_t* name : names) {
            if (MsiDatabaseIsTablePersistentW(m_database, name) == MSICONDITION_TRUE) {
                snapshot[name] = ReadTable(name);
            }
        }
        return snapshot;
    }

private:
    void Check(UINT code, const CString& what) const
    {
        CheckInstaller(code, L"Reading " + what + L" of", m_path);
    }

    CInstallerHandle Query(const CString& statement, const CString& what) const
    {
        CInstallerHandle view;
        Check(MsiDatabaseOpenViewW(m_database, statement, view.put()), what);
        Check(MsiViewExecute(view.get(), 0), what);
        return view;
    }

    // False after the last row.
    bool Fetch(const CInstallerHandle& view, CInstallerHandle& record, const CString& what) const
    {
        CInstallerHandle fetched;
        const UINT code = MsiViewFetch(view.get(), fetched.put());
        if (code == ERROR_NO_MORE_ITEMS) {
            return false;
        }
        Check(code, what);
        record = std::move(fetched);
        return true;
    }

    std::vector<CString> TableNames()
    {
        const CInstallerHandle view = Query(L"SELECT `Name` FROM `_Tables`", L"the list of tables");
        std::vector<CString> names;
        CInstallerHandle record;
        while (Fetch(view, record, L"the list of tables")) {
            names.push_back(ReadText(record.get(), 1));
            if (names.back().IsEmpty()) {
                throw BuildFailure{BUILD_DATABASE_DAMAGED, L"The database \"" + m_path +
                                                               L"\" lists a table without a name. " +
                                                               RemedyOf(BUILD_DATABASE_DAMAGED)};
            }
        }
        return names;
    }

    TableSnapshot ReadTable(const CString& name)
    {
        const CString what = L"the table " + name;
        m_poll();
        const CInstallerHandle view = Query(L"SELECT * FROM `" + name + L"`", what);
        TableSnapshot table;
        table.columns = ReadColumns(view, MSICOLINFO_NAMES, what);
        table.columnTypes = ReadColumns(view, MSICOLINFO_TYPES, what);
        table.keyColumns = name == g_streams ? 1 : CountKeys(name);
        CInstallerHandle record;
        while (Fetch(view, record, what)) {
            RowValues values;
            values.reserve(table.columns.size());
            for (std::size_t index = 0; index < table.columns.size(); ++index) {
                values.push_back(IsStreamType(table.columnTypes[index])
                                     ? ReadStream(record.get(), static_cast<UINT>(index + 1), what)
                                     : ReadText(record.get(), static_cast<UINT>(index + 1)));
            }
            table.rows[{values.begin(), values.begin() + table.keyColumns}] = std::move(values);
        }
        return table;
    }

    std::vector<CString> ReadColumns(const CInstallerHandle& view, MSICOLINFO kind, const CString& what)
    {
        CInstallerHandle record;
        Check(MsiViewGetColumnInfo(view.get(), kind, record.put()), what);
        std::vector<CString> names;
        for (UINT field = 1; field <= MsiRecordGetFieldCount(record.get()); ++field) {
            names.push_back(ReadText(record.get(), field));
        }
        return names;
    }

    int CountKeys(const CString& name)
    {
        CInstallerHandle record;
        Check(MsiDatabaseGetPrimaryKeysW(m_database, name, record.put()), L"the keys of the table " + name);
        return static_cast<int>(MsiRecordGetFieldCount(record.get()));
    }

    CString ReadText(MSIHANDLE record, UINT field)
    {
        DWORD length = static_cast<DWORD>(m_text.size());
        UINT code = MsiRecordGetStringW(record, field, m_text.data(), &length);
        if (code == ERROR_MORE_DATA) {
            m_text.resize(++length);
            code = MsiRecordGetStringW(record, field, m_text.data(), &length);
        }
        Check(code, L"a value");
        return CString(m_text.data(), static_cast<int>(length));
    }

    // Size and hash stand for the bytes: a cabinet of a gigabyte needs no gigabyte of memory.
    CString ReadStream(MSIHANDLE record, UINT field, const CString& what)
    {
        if (MsiRecordIsNull(record, field)) {
            return {};
        }
        Sha256 hash;
        long long size = 0;
        for (;;) {
            DWORD read = static_cast<DWORD>(m_chunk.size());
            Check(MsiRecordReadStream(record, field, m_chunk.data(), &read), what);
            if (read == 0) {
                break;
            }
            hash.Add(m_chunk.data(), read);
            size += read;
            m_poll();
        }
        return NumberText(size) + L" bytes, SHA-256 " + hash.Finish();
    }

    // Streams of rows were read with their rows, and those of the summary and the signature aren't content.
    static void DropTableStreams(const DatabaseSnapshot& snapshot, TableSnapshot& streams)
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

    MSIHANDLE m_database;
    CString m_path;
    const std::function<void()>& m_poll;
    std::vector<char> m_chunk;
    std::vector<wchar_t> m_text;
};

} // namespace

void CheckInstaller(unsigned int code, const CString& operation, const CString& path)
{
    if (code != ERROR_SUCCESS) {
        throw BuildFailure{code, DescribeFailure(operation, path, code, ReasonFor(code, path))};
    }
}

CInstallerHandle OpenDatabaseToRead(const CString& path)
{
    CInstallerHandle database;
    CheckInstaller(MsiOpenDatabaseW(path, MSIDBOPEN_READONLY, database.put()), L"Opening the database", path);
    return database;
}

DatabaseSnapshot ReadSnapshot(MSIHANDLE database, const CString& path, const std::function<void()>& poll)
{
    return CSnapshotReader(database, path, poll).Read();
}

DatabaseSnapshot ReadTables(MSIHANDLE database, const CString& path,
                            std::initializer_list<const wchar_t*> names)
{
    const std::function<void()> poll = [] {};
    return CSnapshotReader(database, path, poll).Read(names);
}

CString ReadRecordField(MSIHANDLE record, UINT field)
{
    DWORD length = 0;
    wchar_t none[1] = L"";
    UINT code = MsiRecordGetStringW(record, field, none, &length);
    CString text;
    if (code == ERROR_MORE_DATA) {
        DWORD capacity = ++length;
        code = MsiRecordGetStringW(record, field, text.GetBuffer(static_cast<int>(length)), &capacity);
        text.ReleaseBuffer(code == ERROR_SUCCESS ? static_cast<int>(capacity) : 0);
    }
    return text;
}

CString ReadPackageCode(MSIHANDLE database, const CString& path)
{
    CInstallerHandle summary;
    CheckInstaller(MsiGetSummaryInformationW(database, nullptr, 0, summary.put()),
                   L"Reading the summary information of", path);
    UINT type = 0;
    INT number = 0;
    FILETIME time = {};
    wchar_t text[256] = L"";
    DWORD length = ARRAYSIZE(text);
    CheckInstaller(MsiSummaryInfoGetPropertyW(summary.get(), PROPERTY_REVISION_NUMBER, &type, &number, &time,
                                              text, &length),
                   L"Reading the package code of", path);
    return text;
}

void WritePackageCode(MSIHANDLE database, const CString& packageCode, const CString& path)
{
    CInstallerHandle summary;
    CheckInstaller(MsiGetSummaryInformationW(database, nullptr, 1, summary.put()),
                   L"Opening the summary information of", path);
    CheckInstaller(MsiSummaryInfoSetPropertyW(summary.get(), PROPERTY_REVISION_NUMBER, VT_LPSTR, 0, nullptr,
                                              packageCode),
                   L"Writing the package code of", path);
    CheckInstaller(MsiSummaryInfoPersist(summary.get()), L"Writing the summary information of", path);
}
