// How the parts of two deployments are held against each other. Each call adds what it finds. No window header.
#pragma once

#include "builder/change_report.h"
#include "builder/deployment_difference.h"

#include <map>
#include <vector>

// Values by name.
using NamedValues = std::map<CString, CString>;

// What differs, and where: the product's name, and the first names of each item.
struct ComparedPart
{
    DifferenceKind kind = DifferenceKind::Setting;
    CString strProduct;
    std::vector<CString> item;
};

using Differences = std::vector<DeploymentDifference>;

void CompareValues(const ComparedPart& part, const NamedValues& first, const NamedValues& second,
                   Differences& differences);

// One value. An empty one is a value, too.
void CompareValue(const ComparedPart& part, const CString& first, const CString& second,
                  Differences& differences);

void AddMissing(const ComparedPart& part, DifferenceSide side, const CString& value,
                Differences& differences);

// Lines of which one may stand several times: each that the other list lacks. Where those that both have stand in another
// order, the first place at which they do is one difference more, the item "order".
void CompareLists(const ComparedPart& part, const std::vector<CString>& first,
                  const std::vector<CString>& second, Differences& differences);

// The rows of one product's database: an added or removed row is one difference, and so is each column of a changed one.
void AddRowDifferences(const CString& product, const std::vector<RowDifference>& rows,
                       Differences& differences);

// Install.cmd or Uninstall.cmd as it stands: the settings that an administrator may change, and what it does.
struct CommandScript
{
    NamedValues settings;
    std::vector<CString> lines; // without remarks and empty lines
};
[[nodiscard]] CommandScript ReadCommandScript(const char* bytes, std::size_t length);
void CompareScripts(const CString& name, const CommandScript& first, const CommandScript& second,
                    Differences& differences);

// What a build writes about itself and its surroundings: names, places, times, package codes. Its facts are compared where
// they come from, so that these files themselves are not.
[[nodiscard]] bool IsNoteOfBuild(const CString& relativePath);

struct ComparedFile
{
    std::uint64_t size = 0;
    CString strSha256; // may be empty where the sizes differ
};
void CompareFiles(const ComparedPart& part, const ComparedFile& first, const ComparedFile& second,
                  Differences& differences);
