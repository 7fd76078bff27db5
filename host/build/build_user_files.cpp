// User files: found, checked, packed. What their rows become is decided in user_files.h.
#include "host/build/build_user_files.h"

#include "host/build/build_failure.h"
#include "host/build/build_names.h"
#include "host/build/cabinet.h"
#include "host/build/file_operations.h"

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
                                L"is not there any more. Put it back, or remove it from the additional "
                                L"files, and start the build again.")};
}

void RequirePackable(const CString& product, const CString& source, std::uint64_t size)
{
    if (size > MAX_USER_FILE_BYTES) {
        throw BuildFailure{
            BUILD_FILE_TOO_LARGE,
            Sentence(product, source,
                     L"has " + NumberText(static_cast<long long>(size >> 20)) +
                         L" MB. The installer takes added files of less than 2 GB each. Remove "
                         L"it from the additional files, or add it in smaller parts.")};
    }
}

bool IsFullPath(const CString& path)
{
    return path.Left(2) == L"\\\\" || path.Mid(1, 2) == L":\\";
}

struct RecordedFile
{
    CString strKey;
    CString strSource;
};

// Asked before the tables are read for the build, and then only of the one table that is short.
std::vector<RecordedFile> RecordedFiles(const BuildDatabase& database)
{
    std::vector<RecordedFile> files;
    if (database.hDatabase == 0 ||
        MsiDatabaseIsTablePersistentW(database.hDatabase, L"TarnCustomFile") != MSICONDITION_TRUE) {
        return files;
    }
    const CString what = L"Reading the added files of";
    CInstallerHandle view;
    CheckInstaller(
        MsiDatabaseOpenViewW(database.hDatabase,
                             L"SELECT `Component_`,`SourceFileName` FROM `TarnCustomFile` WHERE `Flags`=0",
                             view.put()),
        what, database.strWorkingCopy);
    CheckInstaller(MsiViewExecute(view.get(), 0), what, database.strWorkingCopy);
    for (;;) {
        CInstallerHandle record;
        const UINT code = MsiViewFetch(view.get(), record.put());
        if (code == ERROR_NO_MORE_ITEMS) {
            return files;
        }
        CheckInstaller(code, what, database.strWorkingCopy);
        const RecordedFile file{ReadRecordField(record.get(), 1), ReadRecordField(record.get(), 2)};
        if (IsUserKey(file.strKey)) {
            files.push_back(file);
        }
    }
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

// Looks for the source of an added file.
class SourceFinder
{
public:
    explicit SourceFinder(const BuildDatabase& database) : m_database(database) {}

    // False: it is to come from the cabinets of the deployment that is built on. A file that isn't there either is
    // refused, and so is one of which nothing can be told, for instance on a share that doesn't answer.
    bool Find(const CString& source, std::uint64_t& size)
    {
        try {
            if (IsFullPath(source) && KindOfPath(source) == PathKind::File) {
                size = SizeOfFile(source);
                RequirePackable(m_database.strProductName, source, size);
                return true;
            }
        } catch (const BuildFailure& failure) {
            if (failure.code == BUILD_FILE_TOO_LARGE || !HasCabinets()) {
                throw;
            }
        }
        if (!HasCabinets()) {
            RefuseMissing(m_database.strProductName, source);
        }
        return false;
    }

private:
    bool HasCabinets()
    {
        if (!m_hasCabinets) {
            m_hasCabinets = !EarlierCabinets(m_database).empty();
        }
        return *m_hasCabinets;
    }

    const BuildDatabase& m_database;
    std::optional<bool> m_hasCabinets; // asked when it matters
};

} // namespace

std::uint64_t CheckUserFiles(const BuildDatabase& database)
{
    std::uint64_t bytes = 0;
    SourceFinder finder(database);
    for (const RecordedFile& file : RecordedFiles(database)) {
        std::uint64_t size = 0;
        bytes += finder.Find(file.strSource, size) ? size : 0;
    }
    return bytes;
}

UserFileBuild::UserFileBuild(BuildRun& run, const BuildDatabase& database, const DatabaseSnapshot& snapshot)
    : m_run(run), m_database(database), m_additions(FindUserAdditions(snapshot))
{
}

void UserFileBuild::Decide(DatabaseSnapshot& snapshot)
{
    // Of a drive with nothing on it too: it stands among the folders that the installer resolves.
    for (const CString& drive : FindUserDrives(snapshot)) {
        m_run.Warn(L"The drive " + drive + L" was added to " + m_database.strProductName +
                   L". On a workstation without that drive the installation fails.");
    }
    if (!IsNeeded()) {
        return;
    }
    TellStrays();
    if (!m_additions.files.empty()) {
        TellProductNames(snapshot);
    }
    const CString clash = FindSameTarget(m_additions);
    if (!clash.IsEmpty()) {
        throw BuildFailure{BUILD_ALREADY_EXISTS, clash};
    }
    FindSources();
    m_cabinets = PackUserFiles(m_additions.files);
    const CString refused =
        FinishUserAdditions(snapshot, m_additions, m_cabinets,
                            IsPackageCompressed(m_database.hDatabase, m_database.strWorkingCopy));
    if (!refused.IsEmpty()) {
        throw BuildFailure{BUILD_INSTALLER_FAILED, L"The files that were added to " +
                                                       m_database.strProductName + L" can't be installed: " +
                                                       refused + L". Add fewer files."};
    }
}

void UserFileBuild::Pack(DatabaseSnapshot& snapshot)
{
    if (m_cabinets.empty()) {
        return;
    }
    m_run.Step(L"Packing the files that were added to " + m_database.strProductName);
    RescueMissing();
    for (const UserCabinet& cabinet : m_cabinets) {
        PackCabinet(cabinet);
    }
    SetUserFileSizes(snapshot, m_additions);
    m_run.log.Write(L"Added files: " + NumberText(static_cast<long long>(m_additions.files.size())) +
                    L", packed into " + NumberText(static_cast<long long>(m_cabinets.size())) +
                    (m_cabinets.size() == 1 ? L" cabinet" : L" cabinets"));
}

void UserFileBuild::FindSources()
{
    SourceFinder finder(m_database);
    for (UserFile& file : m_additions.files) {
        if (!finder.Find(file.strSource, file.size)) {
            file.size = file.storedSize;
            m_rescued[file.strKey] =
                std::make_unique<ScratchFile>(m_database.strWorkingCopy + L"." + file.strKey);
        }
    }
}

const ScratchFile* UserFileBuild::RescuedCopy(const UserFile& file) const
{
    const auto found = m_rescued.find(file.strKey);
    return found == m_rescued.end() ? nullptr : found->second.get();
}

void UserFileBuild::RescueMissing()
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
        if (RescuedCopy(file) && found.count(file.strKey) == 0) {
            RefuseMissing(m_database.strProductName, file.strSource);
        }
    }
}

// Packed beside the working copy, as the library goes back and forth in what it writes; then copied like any file.
void UserFileBuild::PackCabinet(const UserCabinet& cabinet)
{
    std::vector<CabinetMember> members;
    for (std::size_t index = cabinet.first; index < cabinet.first + cabinet.count; ++index) {
        const UserFile& file = m_additions.files[index];
        const ScratchFile* rescued = RescuedCopy(file);
        members.push_back({file.strKey, rescued ? rescued->Path() : file.strSource, 0});
    }
    const ScratchFile packed(m_database.strWorkingCopy + L"." + cabinet.strName);
    WriteCabinet(packed.Path(), members, [&](std::uint64_t bytes) { m_run.meter.Add(bytes); });
    for (std::size_t index = 0; index < members.size(); ++index) {
        UserFile& file = m_additions.files[cabinet.first + index];
        file.size = members[index].bytesRead;
        RequirePackable(m_database.strProductName, file.strSource, file.size);
        TellChange(file);
    }
    CopyIntoStaging(m_run, packed.Path(), JoinFolder(FolderAbove(m_database.strTarget), cabinet.strName));
}

void UserFileBuild::TellStrays()
{
    for (const StrayAddition& stray : m_additions.strays) {
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

void UserFileBuild::TellProductNames(const DatabaseSnapshot& snapshot)
{
    for (const CString& source : FindProductNames(snapshot, m_additions)) {
        m_run.Warn(L"The added file \"" + source + L"\" takes the place of one of " +
                   m_database.strProductName + L": the product has a file of that name in the same folder.");
    }
}

void UserFileBuild::TellChange(const UserFile& file)
{
    if (RescuedCopy(file)) {
        m_run.Warn(L"The added file \"" + file.strSource +
                   L"\" is not on this computer; the copy in the deployment was taken.");
    } else if (file.storedSize != file.size) {
        m_run.Warn(L"The added file \"" + file.strSource + L"\" has changed since it was added: it had " +
                   NumberText(static_cast<long long>(file.storedSize)) + L" bytes then, and has " +
                   NumberText(static_cast<long long>(file.size)) + L" now.");
    }
}
