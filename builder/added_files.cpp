#include "builder/added_files.h"

#include "builder/addition_findings.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/cabinet.h"
#include "builder/database_snapshot.h"
#include "builder/file_operations.h"

#include <optional>
#include <set>

namespace {

CString Sentence(const CString& product, const CString& source, const CString& rest)
{
    return L"The file \"" + source + L"\", which was added to " + product + L", " + rest;
}

constexpr std::uint64_t MEGABYTE = 1u << 20;

CString Megabytes(std::uint64_t bytes)
{
    return NumberText(static_cast<long long>(bytes / MEGABYTE)) + L" MB";
}

bool IsFullPath(const CString& path)
{
    return path.Left(2) == L"\\\\" || path.Mid(1, 2) == L":\\";
}

CString PackageFolder(const BuildDatabase& database)
{
    return WithClosingBackslash(FolderAbove(database.strOriginal));
}

// A member of a cabinet of the deployment that is built on.
struct EarlierMember
{
    CString strCabinet; // full path
    std::uint64_t size = 0;
};

// By key; empty beside a vendor's package.
std::map<CString, EarlierMember> ListEarlierCabinets(const BuildDatabase& database)
{
    std::map<CString, EarlierMember> members;
    const CString folder = FolderAbove(database.strOriginal);
    for (const FolderEntry& entry : ListFolder(folder)) {
        if (entry.IsFolder() || !IsUserCabinet(entry.strName)) {
            continue;
        }
        const CString cabinet = JoinFolder(folder, entry.strName);
        for (const auto& [key, size] : ListCabinet(cabinet)) {
            members[key] = {cabinet, size};
        }
    }
    return members;
}

// Looks for the bytes of added files: at their sources, else in the deployment that is built on.
class CSourceFinder
{
public:
    CSourceFinder(const BuildDatabase& database, const AdditionPlaces& places)
        : m_database(database), m_places(places)
    {
    }

    // A file that is nowhere is refused, and so is one of which nothing can be told, for instance on a share that
    // doesn't answer.
    void Find(UserFile& file)
    {
        if (FindAtSource(file) || FindLoose(file) || FindInCabinet(file)) {
            return;
        }
        RefuseMissingFile(m_database.strProductName, file.strSource);
    }

    bool IsInEarlierDeployment(const UserFile& file)
    {
        return !LoosePath(file).IsEmpty() || Members().count(file.strKey) != 0;
    }

private:
    bool FindAtSource(UserFile& file)
    {
        try {
            if (!IsFullPath(file.strSource) || KindOfPath(file.strSource) != PathKind::File) {
                return false;
            }
            file.size = SizeOfFile(file.strSource);
        } catch (const BuildFailure&) {
            if (!IsInEarlierDeployment(file)) {
                throw;
            }
            return false;
        }
        RequirePackable(m_database.strProductName, file.strSource, file.size);
        // One that another program holds is refused now, and not when all else has been copied.
        static_cast<void>(OpenForReading(file.strSource));
        file.origin = UserFileOrigin::Source;
        file.strContent = file.strSource;
        return true;
    }

    bool FindLoose(UserFile& file) const
    {
        const CString path = LoosePath(file);
        if (path.IsEmpty()) {
            return false;
        }
        file.origin = UserFileOrigin::EarlierFile;
        file.strContent = path;
        file.size = SizeOfFile(path);
        return true;
    }

    bool FindInCabinet(UserFile& file)
    {
        const auto member = Members().find(file.strKey);
        if (member == Members().end()) {
            return false;
        }
        file.origin = UserFileOrigin::EarlierCabinet;
        file.strContent = member->second.strCabinet;
        file.size = member->second.size;
        return true;
    }

    CString LoosePath(const UserFile& file) const
    {
        const auto found = m_places.earlierLooseFiles.find(file.strKey);
        if (found == m_places.earlierLooseFiles.end()) {
            return {};
        }
        const CString path = PackageFolder(m_database) + found->second;
        return KindOfPath(path) == PathKind::File ? path : CString();
    }

    const std::map<CString, EarlierMember>& Members()
    {
        if (!m_members) {
            m_members = ListEarlierCabinets(m_database);
        }
        return *m_members;
    }

    const BuildDatabase& m_database;
    const AdditionPlaces& m_places;
    std::optional<std::map<CString, EarlierMember>> m_members; // read when it matters
};

void SetLooseTarget(const BuildDatabase& database, const AdditionPlaces& places, UserFile& file)
{
    const auto place = places.now.paths.find(file.strKey);
    if (place == places.now.paths.end()) {
        throw BuildFailure{BUILD_INSTALLER_FAILED,
                           Sentence(database.strProductName, file.strSource,
                                    L"can't be installed, as the product's database lacks the folder of "
                                    L"it. Remove it from the additional files.")};
    }
    file.strTarget = JoinFolder(FolderAbove(database.strTarget), place->second);
}

// `\\server\share\` of a path on the network; empty for any other.
CString ShareOf(const CString& path)
{
    if (path.Left(2) != L"\\\\" || path.Left(4) == L"\\\\?\\") {
        return {};
    }
    const int server = path.Find(L'\\', 2);
    const int share = server < 0 ? -1 : path.Find(L'\\', server + 1);
    return share < 0 ? CString() : path.Left(share + 1).MakeUpper();
}

// The codes of a file's own troubles; with any other its share may not answer.
bool IsOfTheFile(unsigned int code)
{
    return code == BUILD_FILE_NOT_FOUND || code == BUILD_PATH_NOT_FOUND || code == BUILD_ACCESS_DENIED ||
           code == BUILD_SHARING_VIOLATION || code == BUILD_FILE_TOO_LARGE;
}

// Looks for sources one after the other, as a page does that must not keep a person waiting.
class CSourceJudge
{
public:
    CSourceJudge(const BuildDatabase& database, const AdditionPlaces& places, SourceLook look,
                 KnownSources& known)
        : m_database(database), m_places(places), m_look(look), m_finder(database, places), m_known(known)
    {
    }

    // Throws a BuildFailure as a build would.
    void Judge(UserFile& file)
    {
        if (m_places.now.bLoose) {
            SetLooseTarget(m_database, m_places, file);
        }
        const CString share = ShareOf(file.strSource);
        if (m_silentShares.count(share) != 0 && !m_finder.IsInEarlierDeployment(file)) {
            throw BuildFailure{BUILD_PATH_NOT_FOUND,
                               Sentence(m_database.strProductName, file.strSource,
                                        L"can't be reached. Check the connection to its server, or remove it "
                                        L"from the additional files.")};
        }
        try {
            JudgeSource(file);
        } catch (const BuildFailure& failure) {
            if (!share.IsEmpty() && !IsOfTheFile(failure.code)) {
                m_silentShares.insert(share);
            }
            throw;
        }
    }

private:
    void JudgeSource(UserFile& file)
    {
        const auto known = m_known.find(file.strSource);
        if (known != m_known.end() && m_look == SourceLook::New) {
            file.size = known->second.size;
            return;
        }
        const PathState state = IsFullPath(file.strSource) ? TryState(file.strSource) : PathState();
        const FileMark mark = {state.size, state.lastWritten};
        if (state.kind == PathKind::File && known != m_known.end() && known->second == mark) {
            file.size = mark.size;
            return;
        }
        m_known.erase(file.strSource);
        m_finder.Find(file);
        if (state.kind == PathKind::File && file.origin == UserFileOrigin::Source) {
            m_known[file.strSource] = mark;
        }
    }

    // Whatever fails here fails again, with its reason, where the file is looked for.
    static PathState TryState(const CString& path)
    {
        try {
            return StateOfPath(path);
        } catch (const BuildFailure&) {
            return {};
        }
    }

    const BuildDatabase& m_database;
    const AdditionPlaces& m_places;
    SourceLook m_look;
    CSourceFinder m_finder;
    KnownSources& m_known;
    std::set<CString> m_silentShares;
};

void WarnOfDrives(AddedFiles& added, const CString& product)
{
    for (const CString& drive : added.drives) {
        added.warnings.push_back(L"The drive " + drive + L" was added to " + product +
                                 L". On a workstation without that drive the installation fails.");
    }
}

void WarnOrRefuse(AddedFiles& added, const std::vector<AdditionFinding>& findings)
{
    for (const AdditionFinding& finding : findings) {
        if (finding.Blocks()) {
            throw BuildFailure{finding.code, finding.strReason};
        }
        added.warnings.push_back(finding.strReason);
    }
}

void WarnOfChange(AddedFiles& added, const UserFile& file)
{
    if (file.origin != UserFileOrigin::Source) {
        added.warnings.push_back(L"The added file \"" + file.strSource +
                                 L"\" is not on this computer; the copy in the deployment was taken.");
    } else if (file.storedSize != file.size) {
        added.warnings.push_back(DescribeChangedFile(file));
    }
}

} // namespace

AdditionPlaces FindAdditionPlaces(const BuildDatabase& database)
{
    AdditionPlaces places;
    if (database.hDatabase == 0) {
        return places;
    }
    const CString folder = PackageFolder(database);
    places.now = FindAdditionSources(database.hDatabase, folder);
    if (places.now.bLoose) {
        places.earlierLooseFiles =
            FindAdditionSources(OpenDatabaseToRead(database.strOriginal).get(), folder).paths;
    }
    return places;
}

std::uint64_t AddedFiles::BytesToPack() const
{
    std::uint64_t bytes = 0;
    for (const UserFile& file : additions.files) {
        bytes += additions.bLoose ? 0 : file.size;
    }
    return bytes;
}

std::vector<CopyItem> AddedFiles::Targets(const BuildDatabase& database) const
{
    std::vector<CopyItem> targets;
    if (additions.bLoose) {
        for (const UserFile& file : additions.files) {
            targets.push_back({file.strSource, file.strTarget, file.size});
        }
    }
    for (const UserCabinet& cabinet : cabinets) {
        targets.push_back({L"the files added to " + database.strProductName,
                           JoinFolder(FolderAbove(database.strTarget), cabinet.strName), 0});
    }
    return targets;
}

AddedItems AddedFiles::Describe(const BuildDatabase& database) const
{
    AddedItems items;
    items.strDatabase = database.strTarget;
    items.strProductName = database.strProductName;
    items.files = additions.files;
    for (const UserFolder& folder : additions.folders) {
        items.folders.push_back(folder.strShown);
    }
    items.drives = drives;
    items.leftOut = leftOut;
    return items;
}

AddedFiles DecideAddedFiles(const BuildDatabase& database, const AdditionPlaces& places,
                            const CabinetLimits& limits, DatabaseSnapshot& snapshot,
                            const std::function<void()>& poll)
{
    const CString& product = database.strProductName;
    AddedFiles added;
    added.additions = FindUserAdditions(snapshot);
    added.additions.bLoose = places.now.bLoose;
    added.drives = FindUserDrives(snapshot);
    // Of a drive with nothing on it too: it stands among the folders that the installer resolves.
    WarnOfDrives(added, product);
    if (!added.IsNeeded()) {
        return added;
    }
    for (const AdditionFinding& finding : FindLeftOut(added.additions, product)) {
        added.leftOut.push_back(finding.strReason);
        added.warnings.push_back(finding.strReason);
    }
    WarnOrRefuse(added, FindTargetClashes(snapshot, added.additions, product));
    CSourceFinder finder(database, places);
    for (UserFile& file : added.additions.files) {
        if (added.additions.bLoose) {
            SetLooseTarget(database, places, file);
        }
        finder.Find(file);
        poll();
        WarnOfChange(added, file);
    }
    if (!added.additions.bLoose) {
        added.cabinets = PackUserFiles(added.additions.files, limits);
    }
    const CString refused = FinishUserAdditions(snapshot, added.additions, added.cabinets,
                                                places.now.bPackedUnmarked, FindPatchNumbers(database, poll));
    if (!refused.IsEmpty()) {
        throw BuildFailure{BUILD_INSTALLER_FAILED, DescribeRefusedAdditions(product, refused)};
    }
    return added;
}

std::vector<AdditionFinding> FindSourceFaults(const BuildDatabase& database, const AdditionPlaces& places,
                                              UserAdditions& additions, SourceLook look, KnownSources& known)
{
    std::vector<AdditionFinding> findings;
    CSourceJudge judge(database, places, look, known);
    for (UserFile& file : additions.files) {
        try {
            judge.Judge(file);
        } catch (const BuildFailure& failure) {
            findings.push_back({failure.code, ShownAddition(file), file.strSource, failure.message});
        }
    }
    return findings;
}

CString DescribeRefusedAdditions(const CString& product, const CString& why)
{
    return L"The files that were added to " + product + L" can't be installed: " + why;
}

void RefuseMissingFile(const CString& product, const CString& source)
{
    throw BuildFailure{BUILD_FILE_NOT_FOUND,
                       Sentence(product, source,
                                L"is no longer there. Put it back, or remove it from the additional "
                                L"files.")};
}

void RequirePackable(const CString& product, const CString& source, std::uint64_t size)
{
    if (size > MAX_USER_FILE_BYTES) {
        throw BuildFailure{
            BUILD_FILE_TOO_LARGE,
            Sentence(product, source,
                     L"has " + Megabytes(size + MEGABYTE - 1) +
                         L". The installer takes added files of up to " + Megabytes(MAX_USER_FILE_BYTES) +
                         L" each. Remove it from the additional files, or add it in smaller parts.")};
    }
}

CString DescribeChangedFile(const UserFile& file)
{
    return L"The added file \"" + file.strSource + L"\" has changed since it was added: it had " +
           NumberText(static_cast<long long>(file.storedSize)) + L" bytes then, and has " +
           NumberText(static_cast<long long>(file.size)) + L" now.";
}
