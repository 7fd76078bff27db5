#include "benchmarks/measurement.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <string>

double NowMilliseconds()
{
    LARGE_INTEGER frequency = {};
    LARGE_INTEGER count = {};
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&count);
    return static_cast<double>(count.QuadPart) * 1000 / static_cast<double>(frequency.QuadPart);
}

double Median(Samples samples)
{
    std::sort(samples.begin(), samples.end());
    const std::size_t middle = samples.size() / 2;
    return samples.size() % 2 == 1 ? samples[middle] : (samples[middle - 1] + samples[middle]) / 2;
}

Comparison GrowthOf(const Comparison& few, const Comparison& many)
{
    Comparison growth;
    growth.unit = "times";
    growth.goal = 1.1;
    const auto multiples = [](const Samples& fewer, Samples more) {
        const double once = Median(fewer);
        std::transform(more.begin(), more.end(), more.begin(),
                       [once](double figure) { return figure / once; });
        return more;
    };
    growth.ours = multiples(few.ours, many.ours);
    growth.bare = multiples(few.bare, many.bare);
    return growth;
}

namespace {

std::string Figure(const Samples& samples, const char* unit)
{
    const auto [least, most] = std::minmax_element(samples.begin(), samples.end());
    char text[100];
    snprintf(text, sizeof(text), "%.1f %s (%.1f..%.1f)", Median(samples), unit, *least, *most);
    return text;
}

void PrintRow(const std::string& what, const std::string& ours, const std::string& bare,
              const std::string& ratio, const std::string& goal, const std::string& met)
{
    printf("%-34s %-30s %-30s %6s %6s  %s\n", what.c_str(), ours.c_str(), bare.c_str(), ratio.c_str(),
           goal.c_str(), met.c_str());
    fflush(stdout);
}

std::string Ratio(double value)
{
    char text[20];
    snprintf(text, sizeof(text), "%.2f", value);
    return text;
}

} // namespace

void PrintHeading()
{
    PrintRow("what", "ours: median (min..max)", "bare: median (min..max)", "ratio", "goal", "met");
}

void PrintComparison(const Comparison& comparison)
{
    std::string what;
    AppendUtf8(what, comparison.strWhat);
    if (comparison.ours.empty() || comparison.bare.empty()) {
        throw CannotMeasure{comparison.strWhat + L": no figures came"};
    }
    const double ratio = Median(comparison.ours) / Median(comparison.bare);
    const bool met = comparison.goal && ratio <= *comparison.goal;
    PrintRow(what, Figure(comparison.ours, comparison.unit), Figure(comparison.bare, comparison.unit),
             Ratio(ratio), comparison.goal ? Ratio(*comparison.goal) : "-",
             !comparison.goal ? "no goal set"
             : met            ? "yes"
                              : "NO");
}
