// What was found of a deployment that stands: whether it is still what was built, and what isn't. Text and JSON of it hold
// the same, in a steady order. No window header.
#pragma once

#include "base/string.h"

#include <cstdint>
#include <vector>

enum class VerifyVerdict
{
    AsBuilt, // settings that an administrator may change don't count
    Differs,
    Undetermined, // nothing was found to differ, but not everything could be looked at
};

enum class FindingKind
{
    Missing,
    Added,
    Changed,
    Unreadable,
    Setting, // of the workstations' commands, which may be changed
};

struct VerifyFinding
{
    FindingKind kind = FindingKind::Changed;
    CString strPath;   // relative; empty for the folder itself
    CString strDetail; // a sentence, or empty
    // Of a setting alone.
    CString strSetting;
    CString strBuilt;
    CString strNow;
};

struct VerifyResult
{
    CString strFolder;  // full path
    CString strName;    // of the deployment: that of its folder
    CString strProduct; // name and version; empty when the deployment doesn't say
    VerifyVerdict verdict = VerifyVerdict::Undetermined;
    bool bCancelled = false;
    bool bIsDeployment = false;
    std::vector<VerifyFinding> findings; // by kind, then by path
    std::vector<CString> unknown;        // sentences: what could not be looked at as a whole
    // Sentences: what the deployment doesn't record, as with those of earlier versions. No verdict hangs on it, as files are
    // known by their contents.
    std::vector<CString> unrecorded;
    std::uint64_t files = 0; // that are as they were built
    std::uint64_t bytes = 0; // that were read
};

// By kind and path; settings by path and in the order of the script.
void SortFindings(std::vector<VerifyFinding>& findings);

// What of the findings follows, without a word of `unknown` when something differs.
[[nodiscard]] VerifyVerdict VerdictOf(const VerifyResult& result);

// One line: what was found, in numbers.
[[nodiscard]] CString VerdictSentence(const VerifyResult& result);
// A line a finding: `Changed: Image\x64\Zolt\Zolt2027.msi (12 bytes, 10 when built)`.
[[nodiscard]] CString FindingLine(const VerifyFinding& finding);
// `Not checked: the package codes of the databases, as the deployment has no Changes.json`
[[nodiscard]] CString UnrecordedLine(const CString& sentence);

[[nodiscard]] CString ComposeVerifyText(const VerifyResult& result);
[[nodiscard]] CString ComposeVerifyJson(const VerifyResult& result);
