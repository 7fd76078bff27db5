// One build under way: what its phases share. The phases stand in files of their own, in the order in which they
// run: check, stage, copy, database, outputs, publish.
#pragma once

#include "builder/build_decision.h"
#include "builder/build_result.h"
#include "builder/change_report.h"
#include "builder/content_hashes.h"
#include "builder/copy_list.h"
#include "builder/own_files.h"
#include "builder/readme_text.h"

#include <memory>

// Reports to the caller how far the build is, not oftener than needed, and stops the build when the caller says so.
class CProgressMeter
{
public:
    explicit CProgressMeter(IBuildProgress& progress) : m_progress(progress) {}

    void Start(std::uint64_t total); // reported at once
    void SetFile(const CString& file) { m_file = file; }
    void Add(std::uint64_t bytes); // reported when the last time is a while ago
    void Poll() { Add(0); }
    void Finish(); // reported at once, with all bytes done
    void Step(const CString& sentence) { m_progress.OnStep(sentence); }
    void Decided(const BuildReview& review) { m_progress.OnDecided(review); }

private:
    void Report(); // throws a BuildFailure 1602 when the caller cancels

    IBuildProgress& m_progress;
    CString m_file;
    std::uint64_t m_done = 0;
    std::uint64_t m_total = 0;
    unsigned long long m_reportedAt = 0; // milliseconds of the system's clock
};

// The text of Build.log: each line with its time.
class CBuildLog
{
public:
    void Write(const CString& line);
    const CString& Text() const { return m_text; }

private:
    CString m_text;
};

// A file of the staging folder that may still be hashed.
struct CopiedFile
{
    CString strTarget; // relative
    std::uint64_t size = 0;
    CString strPathInOld; // of its source in the old deployment; empty: from elsewhere, or edited meanwhile
    std::uint64_t lastWritten = 0; // of that source
};

struct CopiedFiles
{
    CContentHashes hashes;
    std::vector<CopiedFile> files; // in the order of the hashes
};

struct BuildRun
{
    BuildRun(const BuildPlan& thePlan, IBuildProgress& theProgress);

    // A step begins: reported to the caller and in the log.
    void Step(const CString& sentence);
    void Warn(const CString& sentence);

    BuildPlan plan; // as it was given, but with the products as merged patches make them
    CProgressMeter meter;
    CBuildLog log;
    std::uint32_t id; // of this build, in the names of its working folders
    CString target;   // full paths without closing backslash
    CString staging;
    CString old;
    CopyList list;
    CopiedFiles copied;
    CopiedFiles copiedBetween; // small ones, while a large one is still under way
    std::vector<ManifestEntry> manifest;
    std::vector<DatabaseDecision> decisions; // made by the check, carried out later
    std::vector<DatabaseChanges> changes;
    std::vector<AddedItems> additions; // of products that have some
    std::vector<CString> warnings;
    std::uint64_t bytesOfChanges = 0; // room for what the decided changes add to databases and notes
    std::uint64_t bytesFree = 0;      // in the location, when that was checked
    bool replaces = false;            // an old deployment stood in the target's place when the build began
    bool flushesFiles = false;        // each file is on the disk before the build goes on
    ReadContents readOfOld;           // what was copied from that one
    FolderJudgement judgement;        // of that one
    bool oldIsAside = false;          // the old deployment lies in `old`, whole or partly deleted
};

void CheckPlan(BuildRun& run);       // build_check.cpp
void StageFolders(BuildRun& run);    // build_copy.cpp
void CopyFiles(BuildRun& run);       // build_copy.cpp
void BuildDatabases(BuildRun& run);  // build_database.cpp
void WriteOutputs(BuildRun& run);    // build_outputs.cpp
void ListCopiedFiles(BuildRun& run); // build_copy.cpp; waits for the last hash
void JudgeOld(BuildRun& run);        // build_publish.cpp
void Publish(BuildRun& run);         // build_publish.cpp

// Copies one file into the staging folder and notes it for the manifest; bytes count as progress. How many there were.
std::uint64_t CopyIntoStaging(BuildRun& run, const CString& source, const CString& target);
// Writes one new file there.
void WriteIntoStaging(BuildRun& run, const CString& target, const CString& text, bool byteOrderMark);
