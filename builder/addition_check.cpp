#include "builder/addition_check.h"

#include "builder/addition_findings.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/code_page.h"
#include "builder/database_snapshot.h"

#include <algorithm>
#include <optional>

namespace {

void Append(std::vector<AdditionFinding>& all, std::vector<AdditionFinding> found)
{
    all.insert(all.end(), std::make_move_iterator(found.begin()), std::make_move_iterator(found.end()));
}

std::vector<AdditionFinding> FindNames(const BuildDatabase& database, const UserAdditions& additions)
{
    std::optional<unsigned int> codePage; // asked for when it matters
    return FindUnheldNames(additions, database.strProductName, [&](const CString& name) {
        if (IsAscii(name)) {
            return true;
        }
        if (!codePage) {
            codePage = ReadCodePage(database);
        }
        return CodePageHolds(*codePage, name);
    });
}

// What has no item of its own: numbers that don't fit, a sequence without room.
void FindWhatRefusesAll(const BuildDatabase& database, const AdditionPlaces& places,
                        DatabaseSnapshot& snapshot, const UserAdditions& additions,
                        std::vector<AdditionFinding>& all)
{
    const std::vector<UserCabinet> cabinets =
        additions.bLoose ? std::vector<UserCabinet>() : PackUserFiles(additions.files);
    const CString refused = FinishUserAdditions(snapshot, additions, cabinets, places.now.bPackedUnmarked);
    if (!refused.IsEmpty()) {
        all.push_back({BUILD_INSTALLER_FAILED, CString(), CString(),
                       DescribeRefusedAdditions(database.strProductName, refused)});
    }
}

} // namespace

std::vector<AdditionFinding> CheckAdditions(const BuildDatabase& database, SourceLook look,
                                            KnownSources& known)
{
    DatabaseSnapshot snapshot = ReadTables(
        database.hDatabase, database.strWorkingCopy,
        {L"Component", L"CreateFolder", L"CustomAction", L"Directory", L"Feature", L"FeatureComponents",
         L"File", L"InstallExecuteSequence", L"Media", L"Property", L"TarnCustomFile", L"TarnDirectoryMap"});
    UserAdditions additions = FindUserAdditions(snapshot);
    std::vector<AdditionFinding> all = FindLeftOut(additions, database.strProductName);
    if (additions.files.empty() && additions.folders.empty()) {
        return all;
    }
    const AdditionPlaces places = FindAdditionPlaces(database);
    additions.bLoose = places.now.bLoose;
    Append(all, FindTargetClashes(snapshot, additions, database.strProductName));
    Append(all, FindNames(database, additions));
    Append(all, FindSourceFaults(database, places, additions, look, known));
    FindWhatRefusesAll(database, places, snapshot, additions, all);
    std::stable_partition(all.begin(), all.end(),
                          [](const AdditionFinding& finding) { return finding.Blocks(); });
    return all;
}
