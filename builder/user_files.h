// What an administrator added to a product: which rows are additions, how their files are packed into cabinets, and
// what their rows need to become installable. All of it decided on a snapshot of the database; no window header.
//
// The pages write each addition as rows that belong to no medium, with sequence numbers that may collide and source
// paths of the computer where they were chosen. They stay like that in the open database; only the database that is
// built gets what is decided here.
#pragma once

#include "builder/build_plan.h"
#include "builder/change_report.h"
#include "builder/incomplete_additions.h"
#include "builder/patch_numbers.h"

#include <cstdint>

// Where the bytes of an added file come from.
enum class UserFileOrigin
{
    Source,         // the file that was added
    EarlierFile,    // the deployment that is built on, where it lies loose
    EarlierCabinet, // a cabinet of that deployment
};

// One added file. Its key is that of its rows in File, Component and TarnCustomFile. The last members are decided when
// its source is looked for (added_files.h).
struct UserFile
{
    CString strKey;
    CString strName;              // as it is installed
    CString strFolder;            // key of its directory
    CString strSource;            // full path; or the name alone, in a database that came with a deployment
    std::uint64_t storedSize = 0; // when it was added, or built before
    int sequence = 0;
    CString strInstalled;   // its full path on a workstation (addition_targets.h)
    CString strShownFolder; // the folder of that, as a person reads it

    std::uint64_t size = 0; // now, in bytes
    UserFileOrigin origin = UserFileOrigin::Source;
    CString strContent; // full path of the source, of the loose file, or of the cabinet
    CString strTarget;  // of a loose file: relative to the deployment
};

struct UserFolder
{
    CString strKey;
    CString strName;
    CString strInstalled;
    CString strShown; // that, as a person reads it
};

struct UserAdditions
{
    std::vector<UserFile> files;            // in the order in which they were added
    std::vector<IncompleteAddition> strays; // of files and folders, to be left out
    std::vector<CString> straySteps;        // what is left of drives that were only half removed
    std::vector<UserFolder> folders;        // in the order of their keys
    bool bBuiltBefore = false;              // the database names cabinets of an earlier build
    bool bLoose = false;                    // they aren't packed, but lie in folders; the caller's to fill

    // Nothing was ever added, so that nothing needs to be finished.
    bool IsEmpty() const
    {
        return files.empty() && strays.empty() && straySteps.empty() && folders.empty() && !bBuiltBefore;
    }
};

// A run of the files, packed together.
struct UserCabinet
{
    CString strName; // beside the package
    std::size_t first = 0;
    std::size_t count = 0;
};

// Larger files can't be packed: a cabinet ends at 2 GiB, and so does what a File row can tell. A packed file may be
// larger than its content.
constexpr std::uint64_t MAX_USER_FILE_BYTES = 2032ull << 20;

// The name of a cabinet of added files, in any case: "TARN0001.cab". The installer wants 8.3 names.
[[nodiscard]] bool IsUserCabinet(const CString& fileName);

[[nodiscard]] UserAdditions FindUserAdditions(const DatabaseSnapshot& database);

// The drives that were added, as `X:`.
[[nodiscard]] std::vector<CString> FindUserDrives(const DatabaseSnapshot& database);

// Cuts the files, in their order, into cabinets within the limits.
[[nodiscard]] std::vector<UserCabinet> PackUserFiles(const std::vector<UserFile>& files,
                                                     const CabinetLimits& limits = {});

// Changes the snapshot into what is to be built: no rows of strays, sizes as given in `additions`, sequence numbers
// behind the last one of the product and of the patches that are installed along with it, a Media row for each cabinet in place of those of an earlier build, the attribute of
// compression where the package's own doesn't hold for them, names in place of source paths, as many features as the
// components need, and the standard actions that additions depend on. Loose files share the last number of the media and
// have no Media row of their own. Answers why the installer can't take it and what to do, to follow after the product's
// name; the snapshot is then of no use.
[[nodiscard]] CString FinishUserAdditions(DatabaseSnapshot& database, const UserAdditions& additions,
                                          const std::vector<UserCabinet>& cabinets, bool packageIsCompressed,
                                          const PatchNumbers& patches = {});

// The sizes alone, once they are known for sure.
void SetUserFileSizes(DatabaseSnapshot& database, const UserAdditions& additions);
