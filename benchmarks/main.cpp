// bench.exe --media FOLDER --scratch FOLDER [--megabytes N] [--large N] [--files N] [--runs N] [--builds N]
//           [--only GROUP] [--processors 2]
// Measures and prints the table; with --processors 2 the rows alone that need a second one, without the heading.
// Exit code 1 when something could not be measured; a goal that isn't met shows in the table alone.
#include "benchmarks/measurement.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cwchar>
#include <exception>
#include <iterator>
#include <string>

namespace {

CString ProgramFolder()
{
    wchar_t path[MAX_PATH] = L"";
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    *(std::wcsrchr(path, L'\\') + 1) = L'\0';
    return path;
}

struct Group
{
    const wchar_t* name; // for --only
    std::vector<Comparison> (*measure)(const BenchOptions&);
};

constexpr Group GROUPS[] = {{L"pages", MeasurePages},
                            {L"tabs", MeasureTabs},
                            {L"start", MeasureStart},
                            {L"rows", MeasureRows},
                            {L"paths", MeasurePaths},
                            {L"files", MeasureFiles},
                            {L"grid", MeasureGrid},
                            {L"patches", MeasurePatches},
                            {L"compare", MeasureCompare},
                            {L"plan", MeasurePlans},
                            {L"build", MeasureDeployment},
                            {L"many-files", MeasureManyFiles},
                            {L"large-files", MeasureLargeFiles},
                            {L"verify", MeasureVerify}};

bool IsGroup(const CString& name)
{
    return std::any_of(std::begin(GROUPS), std::end(GROUPS),
                       [&](const Group& group) { return name == group.name; });
}

bool ReadOption(const CString& name, const wchar_t* value, BenchOptions& options)
{
    const int number = static_cast<int>(std::wcstol(value, nullptr, 10));
    if (name == L"--media") {
        options.strMedia = value;
    } else if (name == L"--scratch") {
        options.strScratch = value;
    } else if (name == L"--megabytes" && number > 0) {
        options.megabytes = number;
    } else if (name == L"--large" && number > 0) {
        options.largeMegabytes = number;
    } else if (name == L"--files" && number > 0) {
        options.files = number;
    } else if (name == L"--processors" && number == 2) {
        options.isOnTwoProcessors = true;
    } else if (name == L"--only" && IsGroup(value)) {
        options.strOnly = value;
    } else if (name == L"--runs" && number > 0) {
        options.runs = number;
    } else if (name == L"--builds" && number > 0) {
        options.builds = number;
    } else {
        return false;
    }
    return true;
}

// True when every figure came.
bool Run(std::vector<Comparison> (*measure)(const BenchOptions&), const BenchOptions& options)
{
    try {
        for (const Comparison& comparison : measure(options)) {
            PrintComparison(comparison);
        }
        return true;
    } catch (const CannotMeasure& failure) {
        std::string why;
        AppendUtf8(why, failure.strWhy);
        printf("NOT MEASURED: %s\n", why.c_str());
    } catch (const std::exception& failure) {
        printf("NOT MEASURED: %s\n", failure.what());
    }
    return false;
}

} // namespace

int wmain(int count, wchar_t** arguments)
{
    BenchOptions options;
    options.strProgramFolder = ProgramFolder();
    for (int index = 1; index < count; index += 2) {
        if (index + 1 == count || !ReadOption(arguments[index], arguments[index + 1], options)) {
            fprintf(stderr, "bench: an option is unknown or has no good value\n");
            return 2;
        }
    }
    if (options.isOnTwoProcessors) {
        return Run(MeasureTwoProcessors, options) ? 0 : 1;
    }
    PrintHeading();
    bool complete = true;
    for (const Group& group : GROUPS) {
        if (options.strOnly.IsEmpty() || options.strOnly == group.name) {
            complete = Run(group.measure, options) && complete;
        }
    }
    return complete ? 0 : 1;
}
