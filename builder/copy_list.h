// What a plan comes to, file by file: made before anything is written, so that size, paths and clashes are known
// first. The list itself needs no window header; filling it looks at the disk (copy_scan.h).
#pragma once

#include "builder/build_plan.h"

#include <map>

struct CopyItem
{
    CString strSource; // full path
    CString strTarget; // relative
    std::uint64_t size = 0;
};

struct CopyList
{
    std::vector<CString> folders; // relative, parents before children
    std::vector<CopyItem> files;
    // What comes with a database: loose files of the user's, and the cabinets of those that are packed. Filled once
    // that is decided.
    std::vector<CopyItem> additions;
    std::uint64_t bytes = 0; // of the files, of the databases and, once they are decided, of the user's files
    std::uint64_t userBytes = 0;       // of the user's files that are packed before they are copied
    std::vector<CString> skippedLinks; // full paths: links to other folders are not followed
};

// Adds what comes with a database, with the folders above it and its bytes.
void AddAdditions(CopyList& list, std::vector<CopyItem> files);

// Every target of a build with where its content comes from, in any case.
using TargetNames = std::map<CString, CString, CompareNoCaseLess>;

// The names that the plan and the builder itself write: databases, texts, commands, notes.
[[nodiscard]] TargetNames NamedTargets(const BuildPlan& plan);
// True when one of the plan's texts is the answers that the deployment is built from.
[[nodiscard]] bool HasAnswers(const BuildPlan& plan);
// Those of them that come to be: two of the notes aren't written by each build.
[[nodiscard]] TargetNames WrittenTargets(const BuildPlan& plan, bool hasAdditions);

// A sentence when two sources would become one file, or a target leads out of the deployment; else empty.
[[nodiscard]] CString RefusedTargets(const BuildPlan& plan, const CopyList& list);

// The longest path of the deployment as workstations see it.
[[nodiscard]] CString LongestPath(const BuildPlan& plan, const CopyList& list,
                                  const CString& workstationPath);
