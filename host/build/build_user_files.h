// The files, folders and drives that an administrator added to a product, on their way into the deployment.
#pragma once

#include "host/build/build_run.h"
#include "host/build/database_snapshot.h"
#include "host/build/scratch_file.h"
#include "host/build/user_files.h"
#include "host/package_sources.h"

#include <memory>

// Before anything is written: the sources of a database's added files must be there, or in cabinets of the deployment
// that is built on, and must not be too large.
struct UserFileSources
{
    std::uint64_t bytesToPack = 0;
    std::vector<CopyItem> loose; // what isn't packed
};
[[nodiscard]] UserFileSources CheckUserFiles(const BuildDatabase& database);

// The loose files that were added when the database was built before, relative to its folder.
[[nodiscard]] std::vector<CString> EarlierLooseFiles(const BuildDatabase& database);

// One database's added files. Nothing happens, and nothing is read, when there are none.
class UserFileBuild
{
public:
    // `snapshot`: of the open database, as the pages left it.
    UserFileBuild(BuildRun& run, const BuildDatabase& database, const DatabaseSnapshot& snapshot);

    bool IsNeeded() const { return !m_additions.IsEmpty(); }
    // Turns the snapshot of the open database into that of the database to be built. All that can be refused is
    // refused here.
    void Decide(DatabaseSnapshot& snapshot);
    // Makes the cabinets in the staging folder, or lays the files there, and puts the sizes that were found into the
    // snapshot.
    void Pack(DatabaseSnapshot& snapshot);

private:
    void FindSources();
    void RescueMissing();
    void LayLooseFiles();
    void PackCabinets();
    void PackCabinet(const UserCabinet& cabinet);
    void TellStrays();
    void TellProductNames(const DatabaseSnapshot& snapshot);
    void TellChange(const UserFile& file);
    // Of a file that is not on this computer; empty for any other.
    CString CopyOf(const UserFile& file) const;

    BuildRun& m_run;
    const BuildDatabase& m_database;
    AdditionSources m_places;
    UserAdditions m_additions;
    std::vector<UserCabinet> m_cabinets;
    std::map<CString, std::unique_ptr<ScratchFile>> m_rescued; // by key: taken out of earlier cabinets
    std::map<CString, CString> m_earlierFiles;                 // by key: full paths, in an earlier deployment
};
