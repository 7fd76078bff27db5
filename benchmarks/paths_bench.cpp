// The 26 paths read and saved, beside the bare property calls on the same product; and a long list of paths turned into
// both forms against a long map, beside the plain look-ups and comparisons that this comes down to.
#include "benchmarks/measurement.h"
#include "benchmarks/sample_host.h"
#include "include/product.h"
#include "paths/path_properties.h"

#include <windows.h>

#include <msiquery.h>

#include <algorithm>
#include <array>
#include <cwchar>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr int ROUNDS = 20; // of reading and saving in one figure: a single one takes less than a millisecond
constexpr DWORD STORED_CAPACITY = 1024; // characters, as the page reads them
constexpr int HOST_CAPACITY = 512;

[[noreturn]] void Fail(const CString& what)
{
    throw CannotMeasure{what + L" failed on the sample product's database"};
}

// ---- the 26 properties -----------------------------------------------------------------------------------------------

// Handles stay open when a call fails: the program ends then.
CString ReadBare(MSIHANDLE database, const wchar_t* name)
{
    wchar_t statement[256] = L"";
    wchar_t value[STORED_CAPACITY] = L"";
    _snwprintf(statement, 256, L"SELECT `Value` FROM `Property` WHERE `Property`='%ls'", name);
    MSIHANDLE view = 0;
    MSIHANDLE record = 0;
    if (MsiDatabaseOpenViewW(database, statement, &view) != ERROR_SUCCESS ||
        MsiViewExecute(view, 0) != ERROR_SUCCESS) {
        Fail(statement);
    }
    if (MsiViewFetch(view, &record) == ERROR_SUCCESS) {
        DWORD size = STORED_CAPACITY;
        MsiRecordGetStringW(record, 1, value, &size);
        MsiCloseHandle(record);
    }
    MsiCloseHandle(view);
    return value;
}

void RunBare(MSIHANDLE database, const wchar_t* statement)
{
    MSIHANDLE view = 0;
    if (MsiDatabaseOpenViewW(database, statement, &view) != ERROR_SUCCESS ||
        MsiViewExecute(view, 0) != ERROR_SUCCESS) {
        Fail(statement);
    }
    MsiCloseHandle(view);
}

bool HasHostValue(CProduct& product, const wchar_t* name)
{
    wchar_t value[HOST_CAPACITY] = L"";
    int size = HOST_CAPACITY;
    return product.GetProperty(name, value, &size);
}

// The calls alone, with the values as they are stored.
void ReadAndSaveBare(CProduct& product, MSIHANDLE database)
{
    std::array<CString, PATH_COUNT> values;
    for (const PathProperty property : PATH_STORE_ORDER) {
        const wchar_t* name = PathPropertyName(property);
        const bool isHeld = HasHostValue(product, name);
        values[property] = ReadBare(database, name);
        if (!isHeld) {
            product.SetProperty(name, values[property]);
        }
    }
    RunBare(database, L"DELETE FROM `Property` WHERE `Property`='NIW_Custom_Paths_Are_Set'");
    RunBare(database, L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('NIW_Custom_Paths_Are_Set','0')");
    for (const PathProperty property : PATH_STORE_ORDER) {
        const wchar_t* name = PathPropertyName(property);
        static_cast<void>(HasHostValue(product, name));
        if (!product.SetMsiProperty(name, values[property], false)) {
            Fail(name);
        }
    }
}

void ReadAndSave(CPathProperties& paths)
{
    paths.ReadAllPathProperties();
    paths.SaveAllPathProperties();
}

template <class Work>
double TimeOf(const Work& work)
{
    const double start = NowMilliseconds();
    work();
    return NowMilliseconds() - start;
}

template <class Work>
double TimeOfRounds(const Work& work)
{
    return TimeOf([&work] {
        for (int round = 0; round < ROUNDS; ++round) {
            work();
        }
    });
}

Comparison MeasureProperties(const BenchOptions& options)
{
    const std::unique_ptr<CSetupHost> host = OpenSampleHost(options);
    CProduct& product = *host->GetSetupManager().m_pProducts->at(0);
    const MSIHANDLE database = product.GetMsiHandle();
    CPathProperties paths(product, database);
    paths.LoadDirectoryMap();
    ReadAndSave(paths); // from here on the host holds the paths, and they are stored as the page stores them
    const CString stored = ReadBare(database, PathPropertyName(PATH_SUPPORT));
    if (stored.IsEmpty()) {
        Fail(L"Saving the paths");
    }
    Comparison comparison;
    comparison.strWhat = NumberText(PATH_COUNT) + L" paths read and saved, " + NumberText(ROUNDS) + L" times";
    comparison.goal = 1.2;
    ReadAndSaveBare(product, database);
    for (int run = 0; run < options.runs; ++run) {
        comparison.bare.push_back(TimeOfRounds([&] { ReadAndSaveBare(product, database); }));
        comparison.ours.push_back(TimeOfRounds([&] { ReadAndSave(paths); }));
    }
    if (ReadBare(database, PathPropertyName(PATH_SUPPORT)) != stored) {
        Fail(L"Keeping the paths");
    }
    return comparison;
}

// ---- a long list ------------------------------------------------------------------------------------------------------

struct BareRow
{
    std::wstring text;
    int flags = 0;
};

// Entry n has the key of row n * STRIDE: spread over the map, so that half of its rows are passed on average.
struct PathList
{
    CString installerForm;
    std::vector<std::wstring> keyed; // the entries' keys and what stands behind them
    std::vector<std::wstring> shown; // the entries in display form
    std::map<std::wstring, BareRow> rows;
    CPathResolver resolver;
};

constexpr int STRIDE = 7919; // a prime number that divides no count of rows here
constexpr int USABLE_AS_PREFIX = 2;
constexpr wchar_t BEHIND[] = L"Fonts\\Shared";

// Digits of one length: no row's text begins another's.
std::wstring RowText(const wchar_t* before, int row)
{
    return before + std::to_wstring(1000000 + row);
}

PathList MakeList(int entries, int rows)
{
    PathList list;
    DirectoryMap map;
    for (int row = 0; row < rows; ++row) {
        const BareRow bare = {RowText(L"Support Files ", row), USABLE_AS_PREFIX};
        const CString key(RowText(L"FOLDER", row).c_str());
        list.rows[RowText(L"FOLDER", row)] = bare;
        map[key] = std::make_unique<TarnDirectoryMapColumns>(
            TarnDirectoryMapColumns{key, CString(bare.text.c_str()), bare.flags});
    }
    list.resolver = CPathResolver(std::move(map));
    for (int entry = 0; entry < entries; ++entry) {
        const int row = static_cast<int>(static_cast<long long>(entry) * STRIDE % rows);
        list.keyed.push_back(RowText(L"FOLDER", row));
        list.shown.push_back(list.rows[RowText(L"FOLDER", row)].text + L"\\" + BEHIND);
        list.installerForm += CString((L"[" + list.keyed.back() + L"]" + BEHIND).c_str());
        list.installerForm += entry + 1 < entries ? L";" : L"";
    }
    return list;
}

// Each key looked up and each text compared with the rows in turn up to its own; no list is cut, nothing is trimmed.
std::size_t PassBare(const PathList& list)
{
    std::wstring decoded;
    for (const std::wstring& key : list.keyed) {
        decoded += list.rows.find(key)->second.text + L"\\" + BEHIND + L";";
    }
    std::wstring encoded;
    for (const std::wstring& path : list.shown) {
        for (const auto& [key, row] : list.rows) {
            if ((row.flags & USABLE_AS_PREFIX) != 0 &&
                std::wcsncmp(path.c_str(), row.text.c_str(), row.text.size()) == 0) {
                encoded += L"[" + key + L"]" + (path.c_str() + row.text.size() + 1) + L";";
                break;
            }
        }
    }
    return encoded.size() - 1; // without the last separator
}

void Pass(const PathList& list)
{
    CString value = list.resolver.DecodePathList(list.installerForm);
    list.resolver.EncodePathList(value);
    if (value != list.installerForm) {
        throw CannotMeasure{L"A list of paths doesn't come back as it was"};
    }
}

Comparison MeasureList(int entries, int rows, int runs)
{
    const PathList list = MakeList(entries, rows);
    if (PassBare(list) != static_cast<std::size_t>(list.installerForm.GetLength())) {
        throw CannotMeasure{L"The bare list of paths doesn't come back as it was"};
    }
    Pass(list); // both sides are warm now
    Comparison comparison;
    comparison.strWhat = NumberText(entries) + L" paths, map of " + NumberText(rows);
    std::size_t passed = 0;
    for (int run = 0; run < runs; ++run) {
        comparison.bare.push_back(TimeOf([&] { passed += PassBare(list); }));
        comparison.ours.push_back(TimeOf([&] { Pass(list); }));
    }
    if (passed == 0) {
        throw CannotMeasure{L"The bare list of paths came out empty"};
    }
    return comparison;
}

Comparison NamedGrowth(const wchar_t* what, const Comparison& few, const Comparison& many)
{
    Comparison growth = GrowthOf(few, many);
    growth.strWhat = what;
    return growth;
}

} // namespace

std::vector<Comparison> MeasurePaths(const BenchOptions& options)
{
    const Comparison properties = MeasureProperties(options);
    const Comparison once = MeasureList(1000, 1000, options.runs);
    const Comparison entries = MeasureList(10000, 1000, options.runs);
    const Comparison rows = MeasureList(1000, 10000, options.runs);
    const Comparison both = MeasureList(10000, 10000, std::min(options.runs, 5));
    return {properties,
            once,
            entries,
            rows,
            both,
            NamedGrowth(L"path growth, 10 times the paths", once, entries),
            NamedGrowth(L"path growth, 10 times the map", once, rows),
            NamedGrowth(L"path growth, 10 times both", once, both)};
}
