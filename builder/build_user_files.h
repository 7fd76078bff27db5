// The files, folders and drives that an administrator added to a product, on their way into the deployment.
#pragma once

#include "builder/build_run.h"
#include "builder/database_snapshot.h"
#include "builder/package_sources.h"
#include "builder/scratch_file.h"
#include "builder/user_files.h"

#include <memory>

// The bytes of the sources of all added files. One that is nowhere, or too large, is refused.
[[nodiscard]] std::uint64_t MeasureUserFiles(const BuildPlan& plan);

// The loose files that were added when the database was built before, relative to its folder.
[[nodiscard]] std::vector<CString> EarlierLooseFiles(const BuildDatabase& database);

// One database's added files. Nothing happens, and nothing is read, when there are none.
class CUserFileBuild
{
public:
    // `snapshot`: of the open database, as the pages left it.
    CUserFileBuild(BuildRun& run, const BuildDatabase& database, const DatabaseSnapshot& snapshot);

    bool IsNeeded() const { return !m_additions.IsEmpty(); }
    // Turns the snapshot of the open database into that of the database to be built. All that can be refused is
    // refused here; nothing is written yet.
    void Decide(DatabaseSnapshot& snapshot);
    // Both once it is decided: the bytes of the sources that will be packed, without those that come out of earlier
    // cabinets, and the files that will be laid loose.
    std::uint64_t BytesToPack() const;
    std::vector<CopyItem> LooseFiles() const;
    // Makes the cabinets in the staging folder, or lays the files there, and puts the sizes that were found into the
    // snapshot.
    void Pack(DatabaseSnapshot& snapshot);

private:
    void FindSources();
    void KeepMissingSources();
    void LayLooseFiles();
    void PackCabinets();
    void PackCabinet(const UserCabinet& cabinet);
    void WarnAboutIncompleteAdditions();
    void WarnAboutProductNames(const DatabaseSnapshot& snapshot);
    void ReportChange(const UserFile& file);
    // Of a file that is not on this computer; empty for any other.
    CString CopyOf(const UserFile& file) const;

    BuildRun& m_run;
    const BuildDatabase& m_database;
    AdditionSources m_places;
    UserAdditions m_additions;
    std::vector<UserCabinet> m_cabinets;
    std::map<CString, std::unique_ptr<CScratchFile>> m_rescued; // by key: taken out of earlier cabinets
    std::map<CString, CString> m_earlierFiles; // by key: full paths, in an earlier deployment
};
