// What two deployments differ in, as a value, and the report of it. No window header.
//
// Text and JSON have the same facts in the same order, one a line:
//
//   fact   = kind [ " of " quoted ] { " " quoted } ": " ( quoted " -> " quoted | "only in " side { ", " value } )
//   kind   = "setting" / "product" / "answer" / "command" / "row" / "added" / "patch" / "file"
//   side   = "A" / "B"
//   value  = [ quoted " = " ] quoted
//   quoted = quote { character | two quotes } quote
//
// Behind "of" stands the product. Characters that would break or disguise a line stand as codes (shown_text.h).
#pragma once

#include "base/string.h"

#include <vector>

// In the order of a report.
enum class DifferenceKind
{
    Setting, // of the deployment, by its name in the deployment file
    Product, // the product as a whole, by its code; or what is said of it, by name
    Answer,  // page and key; a line of a list with its text
    Command, // script and setting, or script and line
    Row,     // table and key, of a changed row also the column
    Added,   // "file", "folder" or "drive" and its path on a workstation
    Patch,
    File, // relative path
};

enum class DifferenceSide
{
    Both,
    OnlyFirst,
    OnlySecond,
};

struct DifferenceValue
{
    CString strName;   // the column of a row; empty for all else
    CString strFirst;  // empty when the item is only in the second deployment
    CString strSecond; // empty when it is only in the first
    bool operator==(const DifferenceValue&) const = default;
};

// One fact. What both have with other values has exactly one value, without a name.
struct DeploymentDifference
{
    DifferenceKind kind = DifferenceKind::Setting;
    CString strProduct;        // by its name; empty for what belongs to none
    std::vector<CString> item; // what differs, from the general to the particular
    DifferenceSide side = DifferenceSide::Both;
    std::vector<DifferenceValue> values;
    bool operator==(const DeploymentDifference&) const = default;
};

struct DeploymentComparison
{
    CString strFirst; // full paths of the folders
    CString strSecond;
    std::vector<DeploymentDifference> differences;
    bool bFirstHasAnswers = true; // deployments of earlier versions have none, which both reports then say
    bool bSecondHasAnswers = true;
};

// By kind, product and item, so that two reports of nearly the same differences have them at the same places.
void SortDifferences(std::vector<DeploymentDifference>& differences);

[[nodiscard]] CString ComposeComparisonText(const DeploymentComparison& comparison);
[[nodiscard]] CString ComposeComparisonJson(const DeploymentComparison& comparison);
