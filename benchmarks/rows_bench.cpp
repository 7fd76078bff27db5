// Adding user files and writing properties, beside the same statements by the service's own calls. Each run of either side
// has a fresh working copy of the sample product's database.
#include "benchmarks/measurement.h"
#include "benchmarks/sample_host.h"
#include "include/product.h"
#include "installer/handle.h"
#include "msi/msi_property.h"
#include "msi/user_file_writer.h"

#include <windows.h>

#include <rpc.h>
#include <shlwapi.h>

#include <algorithm>
#include <cwchar>
#include <iterator>
#include <memory>

namespace {

constexpr int PROPERTIES = 40;
constexpr int FILES_AT_A_TIME = 50;              // the counts of files are multiples of it
constexpr std::size_t STATEMENT_CAPACITY = 1024; // characters
const wchar_t* const PARENT_KEY = L"INSTALLDIR";

[[noreturn]] void Fail(const wchar_t* what)
{
    throw CannotMeasure{CString(what) + L" failed on the sample product's database"};
}

class COpenProduct
{
public:
    explicit COpenProduct(const BenchOptions& options) : m_host(OpenSampleHost(options)) {}
    CProduct* Get() const { return m_host->GetSetupManager().m_pProducts->at(0); }

private:
    std::unique_ptr<CSetupHost> m_host;
};

// ---- the bare side: each statement is written out, opened, run and closed ------------------------------------------

void RunBare(MSIHANDLE database, const wchar_t* statement, const wchar_t* bound = nullptr)
{
    MSIHANDLE view = 0;
    MSIHANDLE record = 0;
    if (MsiDatabaseOpenViewW(database, statement, &view) != ERROR_SUCCESS) {
        Fail(statement);
    }
    if (bound) {
        record = MsiCreateRecord(1);
        MsiRecordSetStringW(record, 1, bound);
    }
    const UINT result = MsiViewExecute(view, record);
    if (record) {
        MsiCloseHandle(record);
    }
    MsiCloseHandle(view);
    if (result != ERROR_SUCCESS) {
        Fail(statement);
    }
}

void AddBareFeature(MSIHANDLE database)
{
    RunBare(database,
            L"INSERT INTO `Feature` (`Feature`, `Feature_Parent`,`Title`,`Description`,`Display`,`Level`,"
            L"`Directory_`,`Attributes`) VALUES( '_UserDeploymentFile', '', 'User Deployment Files', "
            L"'User deployment files.', '0', '1', 'INSTALLDIR', '16') ");
}

void AddBareFile(MSIHANDLE database, const wchar_t* source, int sequence)
{
    UUID uuid = {};
    RPC_WSTR uuidText = nullptr;
    if (UuidCreate(&uuid) != RPC_S_OK || UuidToStringW(&uuid, &uuidText) != RPC_S_OK) {
        Fail(L"A new GUID");
    }
    wchar_t guid[40] = L"";
    wchar_t key[50] = L"TARN_";
    std::wcscpy(guid, reinterpret_cast<const wchar_t*>(uuidText));
    RpcStringFreeW(&uuidText);
    CharUpperW(guid);
    std::wcscat(key, guid);
    for (wchar_t* at = key; *at; ++at) {
        *at = *at == L'-' ? L'_' : *at;
    }

    const wchar_t* name = PathFindFileNameW(source);
    wchar_t shortName[MAX_PATH] = L"";
    wchar_t fileName[2 * MAX_PATH + 2];
    const bool isShort = GetShortPathNameW(name, shortName, MAX_PATH) != 0;
    _snwprintf(fileName, std::size(fileName), L"%ls|%ls", isShort ? shortName : name, name);
    LARGE_INTEGER size = {};
    const HANDLE file =
        CreateFileW(source, FILE_READ_ATTRIBUTES, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        GetFileSizeEx(file, &size);
        CloseHandle(file);
    }

    wchar_t statement[STATEMENT_CAPACITY];
    _snwprintf(
        statement, STATEMENT_CAPACITY,
        L"INSERT INTO `File` (`FileName`,`File`,`Component_`,`FileSize`,`Version`,`Language`,`Attributes`,"
        L"`Sequence`) VALUES (?, '%ls','%ls','%d','%ls','%ls','%d','%d')",
        key, key, static_cast<int>(size.LowPart), L"", L"", 0, sequence);
    RunBare(database, statement, fileName);
    _snwprintf(statement, STATEMENT_CAPACITY,
               L"INSERT INTO `Component` "
               L"(`Component`,`ComponentId`,`Directory_`,`Attributes`,`Condition`,`KeyPath`) "
               L"VALUES ('%ls','{%ls}','%ls','%d','%ls','%ls')",
               key, guid, PARENT_KEY, 256, L"", L"");
    RunBare(database, statement);
    _snwprintf(statement, STATEMENT_CAPACITY,
               L"INSERT INTO `FeatureComponents` (`Feature_`,`Component_`) VALUES ('%ls','%ls')",
               L"_UserDeploymentFile", key);
    RunBare(database, statement);
    _snwprintf(statement, STATEMENT_CAPACITY,
               L"INSERT INTO `CreateFolder` (`Directory_`,`Component_`) VALUES ('%ls','%ls')", PARENT_KEY,
               key);
    RunBare(database, statement);
    _snwprintf(statement, STATEMENT_CAPACITY,
               L"INSERT INTO `TarnCustomFile` (`SourceFileName`,`Component_`,`Flags`) VALUES (?,'%ls','%d')",
               key, 0);
    RunBare(database, statement, source);
}

// Adds files number `first` to `first + count - 1` and gives the time that it took.
double AddFilesBare(CProduct& product, const CString& source, int first, int count)
{
    const MSIHANDLE database = product.GetMsiHandle();
    const double start = NowMilliseconds();
    if (first == 0) {
        AddBareFeature(database);
    }
    for (int number = first; number < first + count; ++number) {
        AddBareFile(database, source, number);
    }
    return NowMilliseconds() - start;
}

double AddFiles(CProduct& product, const CString& source, int first, int count)
{
    CUserFileWriter writer(&product, product.GetMsiHandle());
    CString key;
    const double start = NowMilliseconds();
    if (first == 0) {
        g_bUserFeatureExists = false; // each run has a database of its own
    }
    for (int number = first; number < first + count; ++number) {
        if (!writer.AddUserFile(source, PARENT_KEY, key)) {
            Fail(L"Adding a user file");
        }
    }
    return NowMilliseconds() - start;
}

// ---- properties ----------------------------------------------------------------------------------------------------

CString PropertyName(int number)
{
    return L"ZOLT_BENCH_" + NumberText(number);
}

double WriteAndReadBare(MSIHANDLE database)
{
    wchar_t statement[STATEMENT_CAPACITY];
    wchar_t value[STATEMENT_CAPACITY];
    const double start = NowMilliseconds();
    for (int number = 0; number < PROPERTIES; ++number) {
        const CString name = PropertyName(number);
        _snwprintf(statement, STATEMENT_CAPACITY, L"DELETE FROM `Property` WHERE `Property`='%ls'",
                   name.GetString());
        RunBare(database, statement);
        _snwprintf(statement, STATEMENT_CAPACITY,
                   L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('%ls',?)", name.GetString());
        RunBare(database, statement, L"a value");
    }
    for (int number = 0; number < PROPERTIES; ++number) {
        MSIHANDLE view = 0;
        MSIHANDLE record = 0;
        DWORD size = STATEMENT_CAPACITY;
        _snwprintf(statement, STATEMENT_CAPACITY, L"SELECT `Value` FROM `Property` WHERE `Property`='%ls'",
                   PropertyName(number).GetString());
        if (MsiDatabaseOpenViewW(database, statement, &view) != ERROR_SUCCESS ||
            MsiViewExecute(view, 0) != ERROR_SUCCESS || MsiViewFetch(view, &record) != ERROR_SUCCESS ||
            MsiRecordGetStringW(record, 1, value, &size) != ERROR_SUCCESS || CString(value) != L"a value") {
            Fail(statement);
        }
        MsiCloseHandle(record);
        MsiCloseHandle(view);
    }
    return NowMilliseconds() - start;
}

double WriteAndRead(MSIHANDLE database)
{
    const double start = NowMilliseconds();
    for (int number = 0; number < PROPERTIES; ++number) {
        if (!WriteProperty(database, PropertyName(number), L"a value")) {
            Fail(L"Writing a property");
        }
    }
    for (int number = 0; number < PROPERTIES; ++number) {
        if (ReadProperty(database, PropertyName(number)) != L"a value") {
            Fail(L"Reading a property");
        }
    }
    return NowMilliseconds() - start;
}

// Both databases grow side by side, some files at a time, so that whatever else the machine does slows both.
Comparison MeasureFiles(const BenchOptions& options, const CString& source, int count, int runs)
{
    Comparison comparison;
    comparison.strWhat = NumberText(count) + L" user files";
    comparison.goal = 1.1;
    for (int run = 0; run < runs; ++run) {
        const COpenProduct bareProduct(options);
        const COpenProduct product(options);
        double bare = 0;
        double ours = 0;
        for (int first = 0; first < count; first += FILES_AT_A_TIME) {
            const bool bareFirst = (run + first / FILES_AT_A_TIME) % 2 == 0;
            bare += bareFirst ? AddFilesBare(*bareProduct.Get(), source, first, FILES_AT_A_TIME) : 0;
            ours += AddFiles(*product.Get(), source, first, FILES_AT_A_TIME);
            bare += bareFirst ? 0 : AddFilesBare(*bareProduct.Get(), source, first, FILES_AT_A_TIME);
        }
        comparison.bare.push_back(bare);
        comparison.ours.push_back(ours);
    }
    return comparison;
}

} // namespace

std::vector<Comparison> MeasureRows(const BenchOptions& options)
{
    const CString source = options.strProgramFolder + L"bench.exe"; // any file will do
    std::vector<Comparison> comparisons;
    static_cast<void>(MeasureFiles(options, source, 100, 1)); // warms up
    comparisons.push_back(MeasureFiles(options, source, 100, 3 * options.runs));
    const Comparison thousand = MeasureFiles(options, source, 1000, std::min(options.runs, 5));
    const Comparison tenThousand = MeasureFiles(options, source, 10000, std::min(options.runs, 3));
    comparisons.insert(comparisons.end(), {thousand, tenThousand, GrowthOf(thousand, tenThousand)});
    comparisons.back().strWhat = L"user files, growth 1000 to 10000";

    Comparison properties;
    properties.strWhat = NumberText(PROPERTIES) + L" property writes and reads";
    properties.goal = 1.1;
    const COpenProduct product(options);
    const MSIHANDLE database = product.Get()->GetMsiHandle();
    static_cast<void>(WriteAndReadBare(database));
    static_cast<void>(WriteAndRead(database));
    for (int run = 0; run < options.runs; ++run) {
        properties.bare.push_back(WriteAndReadBare(database));
        properties.ours.push_back(WriteAndRead(database));
    }
    comparisons.push_back(properties);
    return comparisons;
}
