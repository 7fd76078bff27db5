// Figures of one run of the benchmarks, and the table in which they are shown.
#pragma once

#include "base/string.h"

#include <optional>
#include <vector>

// Milliseconds of the system's fine clock; only differences mean something.
double NowMilliseconds();

// The figures of one kind; never empty when it is shown.
using Samples = std::vector<double>;
double Median(Samples samples);

struct Comparison
{
    CString strWhat;
    const char* unit = "ms";
    Samples ours;
    Samples bare;
    std::optional<double> goal = std::nullopt; // the highest ratio of the medians that is good
};

// The figures of `many` as multiples of the median of `few`, each side by itself.
Comparison GrowthOf(const Comparison& few, const Comparison& many);

void PrintHeading();
void PrintComparison(const Comparison& comparison);

// Carried to main: what could not be measured, and why.
struct CannotMeasure
{
    CString strWhy;
};

struct BenchOptions
{
    CString strMedia;         // folder of the sample media
    CString strScratch;       // an existing folder for what the benchmarks make
    CString strProgramFolder; // ends in a backslash
    CString strOnly;          // the one group of figures that is measured; empty: all
    int runs = 11;            // of pages and starts, after one that warms up
    int builds = 5;           // of the deployment
    int megabytes = 500;
    int files = 20000; // of the build of many files
    int largeMegabytes = 1024;
    bool isOnTwoProcessors = false; // measures only what needs a second one
};

// Each throws CannotMeasure.
std::vector<Comparison> MeasurePages(const BenchOptions& options);
std::vector<Comparison> MeasureDeployment(const BenchOptions& options);
std::vector<Comparison> MeasureManyFiles(const BenchOptions& options);
std::vector<Comparison> MeasureLargeFiles(const BenchOptions& options);
std::vector<Comparison> MeasureVerify(const BenchOptions& options);
std::vector<Comparison> MeasureTwoProcessors(const BenchOptions& options);
std::vector<Comparison> MeasureStart(const BenchOptions& options);
std::vector<Comparison> MeasureTabs(const BenchOptions& options);
std::vector<Comparison> MeasureRows(const BenchOptions& options);
std::vector<Comparison> MeasurePaths(const BenchOptions& options);
std::vector<Comparison> MeasureFiles(const BenchOptions& options);
std::vector<Comparison> MeasureGrid(const BenchOptions& options);
std::vector<Comparison> MeasureCompare(const BenchOptions& options);
std::vector<Comparison> MeasurePatches(const BenchOptions& options);
std::vector<Comparison> MeasurePlans(const BenchOptions& options);
