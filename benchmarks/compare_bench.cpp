// Two databases compared, beside reading each field of both by the service's own calls.
#include "base/path_text.h"
#include "benchmarks/measurement.h"
#include "builder/deployment_compare.h"
#include "installer/handle.h"

#include <windows.h>

#include <msi.h>
#include <msiquery.h>

#include <algorithm>

namespace {

// Spread over tables, as each row that is inserted costs a look at all others of its table.
constexpr int TABLES = 20;
constexpr int ROWS_OF_A_TABLE = 5000;
constexpr int CHANGED_ROWS = 100;
constexpr int COLUMNS = 6;

void Require(UINT code, const wchar_t* what)
{
    if (code != ERROR_SUCCESS) {
        throw CannotMeasure{CString(what) + L" failed with " + NumberText(code)};
    }
}

CInstallerHandle OpenView(MSIHANDLE database, const CString& statement)
{
    CInstallerHandle view;
    Require(MsiDatabaseOpenViewW(database, statement, view.put()), statement);
    return view;
}

void Run(MSIHANDLE database, const CString& statement)
{
    Require(MsiViewExecute(OpenView(database, statement).get(), 0), statement);
}

CString TableName(int table)
{
    return L"Table" + NumberText(table);
}

void FillTable(MSIHANDLE database, int table)
{
    Run(database, L"CREATE TABLE `" + TableName(table) +
                      L"` (`Key` CHAR(72) NOT NULL, `Component_` CHAR(72), `Name` CHAR(255) LOCALIZABLE, "
                      L"`Size` LONG, `Attributes` SHORT, `Value` CHAR(0) PRIMARY KEY `Key`)");
    const CInstallerHandle insert = OpenView(
        database, L"INSERT INTO `" + TableName(table) +
                      L"` (`Key`, `Component_`, `Name`, `Size`, `Attributes`, `Value`) VALUES (?, ?, ?, "
                      L"?, ?, ?)");
    const CInstallerHandle record(MsiCreateRecord(COLUMNS));
    for (int row = 0; row < ROWS_OF_A_TABLE; ++row) {
        const CString number = NumberText(row);
        MsiRecordSetStringW(record.get(), 1, L"Row" + number);
        MsiRecordSetStringW(record.get(), 2, L"Component" + NumberText(row % 500));
        MsiRecordSetStringW(record.get(), 3, L"FILE" + number + L".TXT|A longer name " + number + L".txt");
        MsiRecordSetInteger(record.get(), 4, row * 17);
        MsiRecordSetInteger(record.get(), 5, row % 1000);
        MsiRecordSetStringW(record.get(), 6, L"A value of a few words, " + NumberText(row % 2000));
        Require(MsiViewExecute(insert.get(), record.get()), L"Inserting a row");
        MsiViewClose(insert.get());
    }
}

void MakeDatabase(const CString& path)
{
    CInstallerHandle database;
    Require(MsiOpenDatabaseW(path, MSIDBOPEN_CREATE, database.put()), path);
    for (int table = 0; table < TABLES; ++table) {
        FillTable(database.get(), table);
    }
    Require(MsiDatabaseCommit(database.get()), L"Committing the database");
}

void ChangeDatabase(const CString& path)
{
    CInstallerHandle database;
    Require(MsiOpenDatabaseW(path, MSIDBOPEN_TRANSACT, database.put()), path);
    for (int table = 0; table < TABLES; ++table) {
        for (int change = 0; change < CHANGED_ROWS / TABLES; ++change) {
            Run(database.get(), L"UPDATE `" + TableName(table) + L"` SET `Size` = 1 WHERE `Key` = 'Row" +
                                    NumberText(change * 7 + 1) + L"'");
        }
    }
    Require(MsiDatabaseCommit(database.get()), L"Committing the database");
}

CString FieldOf(MSIHANDLE record, UINT field)
{
    wchar_t text[512] = L"";
    DWORD length = ARRAYSIZE(text);
    Require(MsiRecordGetStringW(record, field, text, &length), L"Reading a field");
    return CString(text, static_cast<int>(length));
}

// Each field of each row as a text that is kept, as a comparison needs them.
void ReadBare(const CString& path)
{
    CInstallerHandle database;
    Require(MsiOpenDatabaseW(path, MSIDBOPEN_READONLY, database.put()), path);
    std::vector<std::vector<CString>> rows;
    for (int table = 0; table < TABLES; ++table) {
        const CInstallerHandle view = OpenView(database.get(), L"SELECT * FROM `" + TableName(table) + L"`");
        Require(MsiViewExecute(view.get(), 0), L"Selecting");
        for (;;) {
            CInstallerHandle record;
            if (MsiViewFetch(view.get(), record.put()) != ERROR_SUCCESS) {
                break;
            }
            std::vector<CString>& row = rows.emplace_back();
            for (UINT field = 1; field <= COLUMNS; ++field) {
                row.push_back(FieldOf(record.get(), field));
            }
        }
    }
    if (rows.size() != std::size_t{TABLES} * ROWS_OF_A_TABLE) {
        throw CannotMeasure{L"The database that was to be read lacks rows"};
    }
}

double ReadBoth(const CString& first, const CString& second)
{
    const double start = NowMilliseconds();
    ReadBare(first);
    ReadBare(second);
    return NowMilliseconds() - start;
}

double CompareBoth(const CString& first, const CString& second)
{
    Differences differences;
    const double start = NowMilliseconds();
    CompareDatabases(
        L"Sample", first, second, [] {}, differences);
    const double end = NowMilliseconds();
    if (differences.size() != CHANGED_ROWS) {
        throw CannotMeasure{L"The comparison found " +
                            NumberText(static_cast<long long>(differences.size())) + L" differences, not " +
                            NumberText(CHANGED_ROWS)};
    }
    return end - start;
}

} // namespace

std::vector<Comparison> MeasureCompare(const BenchOptions& options)
{
    const CString first = JoinFolder(options.strScratch, L"compared.msi");
    const CString second = JoinFolder(options.strScratch, L"other.msi");
    MakeDatabase(first);
    if (!CopyFileW(first, second, FALSE)) {
        throw CannotMeasure{L"The database can't be copied"};
    }
    ChangeDatabase(second);
    Comparison comparison;
    comparison.strWhat = L"two databases of 100000 rows";
    comparison.goal = 1.5;
    static_cast<void>(ReadBoth(first, second)); // warms up
    static_cast<void>(CompareBoth(first, second));
    const int runs = std::min(options.runs, 5);
    for (int run = 0; run < runs; ++run) {
        comparison.bare.push_back(ReadBoth(first, second));
        comparison.ours.push_back(CompareBoth(first, second));
    }
    DeleteFileW(first);
    DeleteFileW(second);
    return {comparison};
}
