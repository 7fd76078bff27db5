// The pages that are measured: all of include/page_table.h that are written.
#pragma once

#include "benchmarks/measurement.h"
#include "setup/program_libraries.h"

#include <vector>

struct BenchPage
{
    CString strName;
    PageFunction show = nullptr;
    int dialog = 0; // its template's id in the resource library
};

struct BenchTabPage
{
    CString strName;
    TabPageFunction create = nullptr;
    int dialog = 0;
};

struct BenchPages
{
    std::vector<BenchPage> wizard;
    std::vector<BenchTabPage> tabs;
};

// Loads the page library, which stays until the process ends. Throws CannotMeasure for a page that it lacks.
[[nodiscard]] BenchPages FindBenchPages(const BenchOptions& options);
