// Merged patches: their files are laid or packed among the product's own, and their changes go into the copy of the
// database, as merge_decision.h has decided.
#pragma once

#include "builder/build_run.h"
#include "builder/file_operations.h"
#include "builder/scratch_file.h"

#include <memory>

class CMergeWriter
{
public:
    CMergeWriter(BuildRun& run, DatabaseDecision& decision);

    // Lays loose files and cabinets into the staging folder. What is only known now (hashes of files, the bytes of a cabinet
    // within the database) is entered into the decision.
    void WriteFiles();
    // Into a copy of the database that the pages have left.
    void WriteDatabase(const CString& copy);

private:
    void HoldPatches();
    void UnpackPatches();
    void RequireSize(const MergedFile& file) const;
    void NoteHash(const MergedFile& file);
    void LayLooseFiles();
    void ApplyPatches(const CString& copy) const;
    void MakeCabinet(const MergedCabinet& cabinet);
    CString SaveOldCabinet(const MergedCabinet& cabinet, const CString& scratch) const;
    const CString& NewScratch();

    BuildRun& m_run;
    DatabaseDecision& m_decision;
    const MergeDecision& m_merge;
    const BuildDatabase& m_database;
    std::vector<CFileOwner> m_held; // the patches, so that nobody changes them until all is written
    std::vector<std::unique_ptr<CScratchFile>> m_scratch;
    std::map<CString, CString> m_contents; // full paths by key of file
    std::map<CString, CString> m_streams;  // full paths of cabinets within the database, by name
};
