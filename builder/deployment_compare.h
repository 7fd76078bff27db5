// Reads two deployments and finds what they differ in. Nothing is written.
//
// What has to differ between two builds is no difference: the deployment's name and place, times, package codes, the keys
// and cabinets of additions, and the notes of the build (compare_rules.h).
#pragma once

#include "builder/compare_rules.h"

#include <functional>

// One product, as the files of its deployment name it.
struct ComparedProduct
{
    CString strCode; // with braces
    CString strName;
    CString strDatabase; // relative to the deployment
    NamedValues settings;
    std::vector<CString> patches;       // a line each, in their order
    std::map<CString, CString> sources; // of added files, by their keys
};

struct ComparedDeployment
{
    CString strFolder; // full path
    NamedValues settings;
    std::vector<ComparedProduct> products;
};

// All but the answers, which the wizard reads. Products are matched by code, else by the place of their databases. Files
// that both manifests name are compared by what these say, as long as the sizes are still those; databases always by
// their bytes. Throws a BuildFailure when something can't be read. `poll` is called now and then and may throw.
[[nodiscard]] Differences CompareDeployments(const ComparedDeployment& first,
                                             const ComparedDeployment& second,
                                             const std::function<void()>& poll);

// The databases of one product alone: two full paths, and `product` for the report.
void CompareDatabases(const CString& product, const CString& first, const CString& second,
                      const std::function<void()>& poll, Differences& differences);
