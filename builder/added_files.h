// What becomes of the files, folders and drives that an administrator added to a product: looked for and decided before
// anything is written. build_user_files.h does what is decided here.
#pragma once

#include "builder/addition_finding.h"
#include "builder/addition_notes.h"
#include "builder/copy_list.h"
#include "builder/package_sources.h"
#include "builder/user_files.h"

#include <functional>

// Where additions of a product lie, and lay in the deployment that is built on. Paths are relative to the package's
// folder.
struct AdditionPlaces
{
    AdditionSources now;
    std::map<CString, CString> earlierLooseFiles; // by key
};
// Empty for a product whose database isn't open.
[[nodiscard]] AdditionPlaces FindAdditionPlaces(const BuildDatabase& database);

// A value: all that writing the additions of one product needs to know.
struct AddedFiles
{
    UserAdditions additions;           // each file with its size and where its bytes come from
    std::vector<UserCabinet> cabinets; // none when the files lie loose
    std::vector<CString> drives;       // `X:`
    std::vector<CString> leftOut;      // sentences; they are among the warnings too
    std::vector<CString> warnings;     // sentences

    // The database is made anew then: added files may have changed although no row did.
    bool IsNeeded() const { return !additions.IsEmpty(); }
    // Of the files that will be packed, out of earlier cabinets too: those aren't copied, but made anew.
    [[nodiscard]] std::uint64_t BytesToPack() const;
    // What the additions bring into the deployment: loose files with their bytes, and cabinets, whose bytes are those of
    // their contents (BytesToPack).
    [[nodiscard]] std::vector<CopyItem> Targets(const BuildDatabase& database) const;
    // For Additions.txt.
    [[nodiscard]] AddedItems Describe(const BuildDatabase& database) const;
};

// Finds each source once, and turns the snapshot of the open database into that of the database to be built. Throws a
// BuildFailure for whatever keeps the additions from being installed; nothing is written. `poll` is called now and then
// and may throw.
[[nodiscard]] AddedFiles DecideAddedFiles(const BuildDatabase& database, const AdditionPlaces& places,
                                          const CabinetLimits& limits, DatabaseSnapshot& snapshot,
                                          const std::function<void()>& poll);

// A file on a disk, to see whether it has changed.
struct FileMark
{
    std::uint64_t size = 0;
    std::uint64_t lastWritten = 0;
    friend bool operator==(const FileMark&, const FileMark&) = default;
};
// Sources that could be read when they were looked at last, by path.
using KnownSources = std::map<CString, FileMark>;

// Additions whose bytes a build wouldn't find, or couldn't read or pack. Fills the sizes of the others. A source that is
// known and hasn't changed isn't opened again; a share that doesn't answer is asked once.
[[nodiscard]] std::vector<AdditionFinding> FindSourceFaults(const BuildDatabase& database,
                                                            const AdditionPlaces& places,
                                                            UserAdditions& additions, SourceLook look,
                                                            KnownSources& known);

// Shared with the writing of files, which may find what was true no more.
[[noreturn]] void RefuseMissingFile(const CString& product, const CString& source);
void RequirePackable(const CString& product, const CString& source, std::uint64_t size);
[[nodiscard]] CString DescribeChangedFile(const UserFile& file);
[[nodiscard]] CString DescribeRefusedAdditions(const CString& product, const CString& why);
