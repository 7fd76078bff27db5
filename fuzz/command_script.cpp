// Any bytes as a script of a deployment: no crash, it equals itself, and swapped with another one it differs in as much.
#include "builder/compare_rules.h"

#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const char* const bytes = reinterpret_cast<const char*>(data);
    const CommandScript whole = ReadCommandScript(bytes, size);
    const CommandScript half = ReadCommandScript(bytes, size / 2);
    Differences same;
    CompareScripts(L"Install.cmd", whole, whole, same);
    Differences one;
    CompareScripts(L"Install.cmd", whole, half, one);
    Differences other;
    CompareScripts(L"Install.cmd", half, whole, other);
    if (!same.empty() || one.size() != other.size()) {
        std::abort();
    }
    SortDifferences(one);
    static_cast<void>(ComposeComparisonText({L"", L"", one}));
    static_cast<void>(ComposeComparisonJson({L"", L"", one}));
    return 0;
}
