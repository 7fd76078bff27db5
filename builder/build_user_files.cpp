// User files: found, checked, packed. What their rows become is decided in user_files.h.
#include "builder/build_user_files.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/cabinet.h"
#include "builder/file_operations.h"
#include "msi/directory_rules.h"

#include <optional>
#include <set>

namespace {

CString Sentence(const CString& product, const CString& source, const CString& rest)
{
    return L"The file \"" + source + L"\", which was added to " + product + L", " + rest;
}

[[noreturn]] void RefuseMissing(const CString& product, const CString& source)
{
    throw BuildFailure{BUILD_FILE_NOT_FOUND,
                       Sentence(product, source,
                                L"is no longer there. Put it back, or remove it from the additional "
                                L"files, and start the build again.")};
}

constexpr std::uint64_t MEGABYTE = 1u << 20;

CString Megabytes(std::uint64_t bytes)
{
    return NumberText(static_cast<long long>(bytes / MEGABYTE)) + L" MB";
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

bool IsFullPath(const CString& path)
{
    return path.Left(2) == L"\\\\" || path.Mid(1, 2) == L":\\";
}

// The cabinets of the deployment that is built on; none beside a vendor's package.
std::vector<CString> EarlierCabinets(const BuildDatabase& database)
{
    std::vector<CString> cabinets;
    const CString folder = FolderAbove(database.strOriginal);
    for (const FolderEntry& entry : ListFolder(folder)) {
        if (!entry.IsFolder() && IsUserCabinet(entry.strName)) {
            cabinets.push_back(JoinFolder(folder, entry.strName));
        }
    }
    return cabinets;
}

CString PackageFolder(const BuildDatabase& database)
{
    return WithBackslash(FolderAbove(database.strOriginal));
}

// Where the files that were added before lie loose, by key, relative to the package's folder.
std::map<CString, CString> EarlierLoosePaths(const BuildDatabase& database)
{
    const CString folder = PackageFolder(database);
    if (database.hDatabase == 0 || !FindAdditionSources(database.hDatabase, folder).bLoose) {
        return {};
    }
    return FindAdditionSources(OpenDatabaseToRead(database.strOriginal).get(), folder).paths;
}

struct FoundSource
{
    CString strPath; // empty: it is to come from the cabinets of the deployment that is built on
    std::uint64_t size = 0;
    bool bEarlier = false; // not on this computer, but in that deployment
};

// Looks for the source of an added file.
class CSourceFinder
{
public:
    explicit CSourceFinder(const BuildDatabase& database)
        : m_database(database), m_loosePaths(EarlierLoosePaths(database))
    {
    }

    // A file that is nowhere is refused, and so is one of which nothing can be told, for instance on a share that
    // doesn't answer.
    FoundSource Find(const CString& key, const CString& source)
    {
        const CString copy = EarlierCopy(key);
        try {
            if (IsFullPath(source) && KindOfPath(source) == PathKind::File) {
                const std::uint64_t size = SizeOfFile(source);
                RequirePackable(m_database.strProductName, source, size);
                return {source, size, false};
            }
        } catch (const BuildFailure& failure) {
            if (failure.code == BUILD_FILE_TOO_LARGE || (copy.IsEmpty() && !HasCabinets())) {
                throw;
            }
        }
        if (!copy.IsEmpty()) {
            return {copy, SizeOfFile(copy), true};
        }
        if (!HasCabinets()) {
            RefuseMissing(m_database.strProductName, source);
        }
        return {CString(), 0, true};
    }

private:
    CString EarlierCopy(const CString& key) const
    {
        const auto found = m_loosePaths.find(key);
        const CString path =
            found == m_loosePaths.end() ? CString() : PackageFolder(m_database) + found->second;
        return !path.IsEmpty() && KindOfPath(path) == PathKind::File ? path : CString();
    }

    bool HasCabinets()
    {
        if (!m_hasCabinets) {
            m_hasCabinets = !EarlierCabinets(m_database).empty();
        }
        return *m_hasCabinets;
    }

    const BuildDatabase& m_database;
    std::map<CString, CString> m_loosePaths;
    std::optional<bool> m_hasCabinets; // asked when it matters
};

} // namespace

std::uint64_t MeasureUserFiles(const BuildPlan& plan)
{
    std::uint64_t bytes = 0;
    for (const BuildDatabase& database : plan.databases) {
        if (database.hDatabase == 0) {
            continue;
        }
        const DatabaseSnapshot tables =
            ReadTables(database.hDatabase, database.strWorkingCopy,
                       {L"TarnCustomFile", L"File", L"Component", L"FeatureComponents", L"Directory"});
        CSourceFinder finder(database);
        for (const UserFile& file : FindUserAdditions(tables).files) {
            bytes += finder.Find(file.strKey, file.strSource).size;
        }
    }
    return bytes;
}

std::vector<CString> EarlierLooseFiles(const BuildDatabase& database)
{
    std::vector<CString> files;
    for (const auto& [key, path] : EarlierLoosePaths(database)) {
        files.push_back(path);
    }
    return files;
}

CUserFileBuild::CUserFileBuild(BuildRun& run, const BuildDatabase& database, const DatabaseSnapshot& snapshot)
    : m_run(run), m_database(database),
      m_places(FindAdditionSources(database.hDatabase, PackageFolder(database))),
      m_additions(FindUserAdditions(snapshot))
{
    m_additions.bLoose = m_places.bLoose;
}

void CUserFileBuild::Decide(DatabaseSnapshot& snapshot)
{
    // Of a drive with nothing on it too: it stands among the folders that the installer resolves.
    for (const CString& drive : FindUserDrives(snapshot)) {
        m_run.Warn(L"The drive " + drive + L" was added to " + m_database.strProductName +
                   L". On a workstation without that drive the installation fails.");
    }
    if (!IsNeeded()) {
        return;
    }
    WarnAboutIncompleteAdditions();
    if (!m_additions.files.empty()) {
        WarnAboutProductNames(snapshot);
    }
    const CString clash = FindSameTarget(m_additions);
    if (!clash.IsEmpty()) {
        throw BuildFailure{BUILD_ALREADY_EXISTS, clash};
    }
    FindSources();
    if (!m_additions.bLoose) {
        m_cabinets = PackUserFiles(m_additions.files, m_run.plan.cabinetLimits);
    }
    const CString refused = FinishUserAdditions(snapshot, m_additions, m_cabinets, m_places.bPackedUnmarked);
    if (!refused.IsEmpty()) {
        throw BuildFailure{BUILD_INSTALLER_FAILED, L"The files that were added to " +
                                                       m_database.strProductName + L" can't be installed: " +
                                                       refused};
    }
}

void CUserFileBuild::Pack(DatabaseSnapshot& snapshot)
{
    if (m_additions.files.empty()) {
        return;
    }
    if (m_additions.bLoose) {
        LayLooseFiles();
    } else {
        PackCabinets();
    }
    SetUserFileSizes(snapshot, m_additions);
}

void CUserFileBuild::PackCabinets()
{
    m_run.Step(L"Packing the files that were added to " + m_database.strProductName);
    KeepMissingSources();
    for (const UserCabinet& cabinet : m_cabinets) {
        PackCabinet(cabinet);
    }
    m_run.log.Write(L"Added files: " + NumberText(static_cast<long long>(m_additions.files.size())) +
                    L", packed into " + NumberText(static_cast<long long>(m_cabinets.size())) +
                    (m_cabinets.size() == 1 ? L" cabinet" : L" cabinets"));
}

void CUserFileBuild::FindSources()
{
    CSourceFinder finder(m_database);
    for (UserFile& file : m_additions.files) {
        if (m_additions.bLoose && m_places.paths.count(file.strKey) == 0) {
            throw BuildFailure{BUILD_INSTALLER_FAILED,
                               Sentence(m_database.strProductName, file.strSource,
                                        L"can't be installed, as the product's database lacks the folder of "
                                        L"it. Remove it from the additional files.")};
        }
        const FoundSource found = finder.Find(file.strKey, file.strSource);
        file.size = found.size;
        if (found.bEarlier && !found.strPath.IsEmpty()) {
            m_earlierFiles[file.strKey] = found.strPath;
        } else if (found.bEarlier) {
            file.size = file.storedSize;
            m_rescued[file.strKey] =
                std::make_unique<CScratchFile>(m_database.strWorkingCopy + L"." + file.strKey);
        }
    }
}

std::uint64_t CUserFileBuild::BytesToPack() const
{
    std::uint64_t bytes = 0;
    for (const UserFile& file : m_additions.files) {
        bytes += m_additions.bLoose || m_rescued.count(file.strKey) != 0 ? 0 : file.size;
    }
    return bytes;
}

std::vector<CopyItem> CUserFileBuild::LooseFiles() const
{
    std::vector<CopyItem> files;
    for (const UserFile& file : m_additions.files) {
        if (m_additions.bLoose) {
            files.push_back({file.strSource,
                             JoinFolder(FolderAbove(m_database.strTarget), m_places.paths.at(file.strKey)),
                             file.size});
        }
    }
    return files;
}

CString CUserFileBuild::CopyOf(const UserFile& file) const
{
    const auto rescued = m_rescued.find(file.strKey);
    if (rescued != m_rescued.end()) {
        return rescued->second->Path();
    }
    const auto earlier = m_earlierFiles.find(file.strKey);
    return earlier == m_earlierFiles.end() ? CString() : earlier->second;
}

void CUserFileBuild::KeepMissingSources()
{
    if (m_rescued.empty()) {
        return;
    }
    std::map<CString, CString> targets;
    for (const auto& [key, file] : m_rescued) {
        targets[key] = file->Path();
    }
    std::set<CString> found;
    for (const CString& cabinet : EarlierCabinets(m_database)) {
        found.merge(ReadCabinet(cabinet, targets, [&](std::uint64_t) { m_run.meter.Poll(); }));
    }
    for (const UserFile& file : m_additions.files) {
        if (m_rescued.count(file.strKey) != 0 && found.count(file.strKey) == 0) {
            RefuseMissing(m_database.strProductName, file.strSource);
        }
    }
}

void CUserFileBuild::LayLooseFiles()
{
    m_run.Step(L"Copying the files that were added to " + m_database.strProductName);
    KeepMissingSources();
    for (UserFile& file : m_additions.files) {
        const CString copy = CopyOf(file);
        CopyIntoStaging(m_run, copy.IsEmpty() ? file.strSource : copy,
                        JoinFolder(FolderAbove(m_database.strTarget), m_places.paths.at(file.strKey)));
        file.size = m_run.manifest.back().size;
        RequirePackable(m_database.strProductName, file.strSource, file.size);
        ReportChange(file);
    }
    m_run.log.Write(L"Added files: " + NumberText(static_cast<long long>(m_additions.files.size())) +
                    L", laid beside the product's own");
}

// Packed beside the working copy, as the library goes back and forth in what it writes; then copied like any file.
void CUserFileBuild::PackCabinet(const UserCabinet& cabinet)
{
    std::vector<CabinetMember> members;
    for (std::size_t index = cabinet.first; index < cabinet.first + cabinet.count; ++index) {
        const UserFile& file = m_additions.files[index];
        const CString copy = CopyOf(file);
        members.push_back({file.strKey, copy.IsEmpty() ? file.strSource : copy, 0});
    }
    const CScratchFile packed(m_database.strWorkingCopy + L"." + cabinet.strName);
    WriteCabinet(packed.Path(), members, [&](std::uint64_t bytes) { m_run.meter.Add(bytes); });
    for (std::size_t index = 0; index < members.size(); ++index) {
        UserFile& file = m_additions.files[cabinet.first + index];
        file.size = members[index].bytesRead;
        RequirePackable(m_database.strProductName, file.strSource, file.size);
        ReportChange(file);
    }
    CopyIntoStaging(m_run, packed.Path(), JoinFolder(FolderAbove(m_database.strTarget), cabinet.strName));
}

void CUserFileBuild::WarnAboutIncompleteAdditions()
{
    for (const IncompleteAddition& stray : m_additions.strays) {
        m_run.Warn(
            L"The addition \"" + stray.strName + L"\" to " + m_database.strProductName +
            L" was never completed, or only half removed, and is left out of the deployment. Remove it "
            L"from the additional files, and add it again if it is wanted.");
    }
    for (const CString& step : m_additions.straySteps) {
        m_run.Warn(L"A drive (" + step + L") was only half removed from " + m_database.strProductName +
                   L". What was left of it is left out of the deployment.");
    }
}

void CUserFileBuild::WarnAboutProductNames(const DatabaseSnapshot& snapshot)
{
    for (const CString& source : FindProductNames(snapshot, m_additions)) {
        m_run.Warn(L"The added file \"" + source + L"\" takes the place of one of " +
                   m_database.strProductName + L": the product has a file of that name in the same folder.");
    }
}

void CUserFileBuild::ReportChange(const UserFile& file)
{
    if (!CopyOf(file).IsEmpty()) {
        m_run.Warn(L"The added file \"" + file.strSource +
                   L"\" is not on this computer; the copy in the deployment was taken.");
    } else if (file.storedSize != file.size) {
        m_run.Warn(L"The added file \"" + file.strSource + L"\" has changed since it was added: it had " +
                   NumberText(static_cast<long long>(file.storedSize)) + L" bytes then, and has " +
                   NumberText(static_cast<long long>(file.size)) + L" now.");
    }
}
