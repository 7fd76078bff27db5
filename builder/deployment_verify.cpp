#include "builder/deployment_verify.h"

#include "base/name_rules.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/changes_codes.h"
#include "builder/command_settings.h"
#include "builder/content_hash.h"
#include "builder/database_snapshot.h"
#include "builder/deployment_place.h"
#include "builder/manifest_check.h"
#include "installer/database.h"
#include "installer/patch_summary.h"

#include <algorithm>
#include <string>

namespace {

constexpr const wchar_t* COMMANDS[] = {L"Install.cmd", L"Uninstall.cmd"};
constexpr std::size_t LONGEST_COMMANDS = 4 << 20;
constexpr int BRACED_GUID_LENGTH = 38; // codes of replaced patches follow a patch's own
constexpr std::size_t LONGEST_CHANGES = 256 << 20;
constexpr const wchar_t* DATABASE_CODES = L"codes of the databases";
constexpr const wchar_t LINK[] = L"it is a link to another place, which was not looked at";

CString SizeText(std::uint64_t size)
{
    return NumberText(static_cast<long long>(size)) + (size == 1 ? L" byte" : L" bytes");
}

CString SizeDetail(const ChangedFile& file)
{
    return file.size == file.builtSize ? L"other content of the same size"
                                       : SizeText(file.size) + L", built with " + SizeText(file.builtSize);
}

CString HashOf(const std::string& bytes)
{
    CContentHash hash;
    hash.Add(bytes.data(), bytes.size());
    return hash.Finish();
}

class CVerifier
{
public:
    CVerifier(const CString& folder, const RecordReader& readRecord, IBuildProgress& progress)
        : m_folder(WithoutClosingBackslash(folder)), m_readRecord(readRecord), m_progress(progress)
    {
        m_result.strFolder = m_folder;
        m_result.strName = LastName(m_folder);
    }

    VerifyResult Verify()
    {
        try {
            VerifyFolder();
        } catch (const BuildFailure& failure) {
            m_result.bCancelled = failure.code == BUILD_CANCELLED;
            m_result.unknown.push_back(failure.message);
        }
        SortFindings(m_result.findings);
        m_result.verdict = m_result.bCancelled ? VerifyVerdict::Undetermined : VerdictOf(m_result);
        return std::move(m_result);
    }

private:
    void VerifyFolder()
    {
        if (!IsDeployment()) {
            return;
        }
        m_progress.OnStep(L"Checking the deployment " + m_result.strName);
        CheckFiles();
        CheckRecord();
        CheckDatabases();
        CheckPatches();
        CheckCommands();
    }

    // True when something is there that can be verified.
    bool IsDeployment()
    {
        const PathKind kind = KindOfPath(m_folder);
        if (kind != PathKind::Folder) {
            m_result.unknown.push_back(kind == PathKind::File
                                           ? L"\"" + m_folder +
                                                 L"\" is a file. Specify the folder of a deployment."
                                           : L"The folder \"" + m_folder + L"\" doesn't exist.");
            return false;
        }
        m_result.bIsDeployment = KindOfPath(FullPath(DEPLOYMENT_FILE)) == PathKind::File ||
                                 KindOfPath(FullPath(MANIFEST_FILE)) == PathKind::File;
        if (!m_result.bIsDeployment) {
            const CString around = DeploymentAround(m_folder);
            m_result.unknown.push_back(
                L"The folder \"" + m_folder + L"\" contains no deployment, because it has neither " +
                DEPLOYMENT_FILE + L" nor " + MANIFEST_FILE + L"." +
                (around.IsEmpty()
                     ? CString()
                     : L" It belongs to the deployment \"" + around + L"\": specify that folder."));
        }
        return m_result.bIsDeployment;
    }

    CString FullPath(const CString& relative) const { return JoinFolder(m_folder, relative); }

    // ---- files

    void CheckFiles()
    {
        const ManifestCheckCalls calls = {[this](std::uint64_t bytes, std::uint64_t total,
                                                 const CString& path) { Poll(bytes, total, path); },
                                          [this](const CString& path, const BuildFailure& failure) {
                                              Find(FindingKind::Unreadable, path, failure.message);
                                          }};
        try {
            m_check = CheckManifest(m_folder, {}, calls);
        } catch (const BuildFailure& failure) {
            if (failure.code == BUILD_CANCELLED) {
                throw;
            }
            Find(FindingKind::Unreadable, MANIFEST_FILE, failure.message);
            m_result.unknown.push_back(CString(MANIFEST_FILE) +
                                       L" can't be read, so nothing is known of the files.");
            return;
        }
        if (m_check.manifest != ManifestState::Read) {
            m_result.unknown.push_back(CString(MANIFEST_FILE) +
                                       (m_check.manifest == ManifestState::None
                                            ? L" is missing, so files can't be compared with what was built."
                                            : L" is damaged or of another version of the program, so files "
                                              L"can't be compared with what "
                                              L"was built."));
            return;
        }
        NoteFiles();
    }

    void NoteFiles()
    {
        m_result.files = m_check.same.size();
        m_result.bytes = m_check.bytes;
        for (const CString& path : m_check.missing) {
            Find(FindingKind::Missing, path);
        }
        for (const CString& path : m_check.added) {
            Find(FindingKind::Added, path);
        }
        for (const ChangedFile& file : m_check.changed) {
            Find(FindingKind::Changed, file.strPath, SizeDetail(file));
        }
        for (const CString& path : m_check.links) {
            Find(IsBuilt(path) ? FindingKind::Changed : FindingKind::Added, path, LINK);
        }
    }

    // A file of the build, or a folder with some.
    bool IsBuilt(const CString& path) const
    {
        return std::any_of(
            m_check.entries.begin(), m_check.entries.end(),
            [&path](const ManifestEntry& entry) { return IsSameOrBelow(entry.strPath, path); });
    }

    void Poll(std::uint64_t bytes, std::uint64_t total, const CString& path)
    {
        if (!m_progress.OnProgress(bytes, total, path)) {
            throw BuildFailure{BUILD_CANCELLED, L"The check was canceled."};
        }
    }

    void Find(FindingKind kind, const CString& path, const CString& detail = CString())
    {
        m_result.findings.push_back({kind, path, detail, {}, {}, {}});
    }

    VerifyFinding* FindingOf(const CString& path)
    {
        const auto found = std::find_if(
            m_result.findings.begin(), m_result.findings.end(),
            [&path](const VerifyFinding& finding) { return finding.strPath.CompareNoCase(path) == 0; });
        return found == m_result.findings.end() ? nullptr : &*found;
    }

    // One finding a file, however much is to be said of it.
    void AddDetail(const CString& path, const CString& detail)
    {
        if (VerifyFinding* const finding = FindingOf(path)) {
            finding->strDetail += (finding->strDetail.IsEmpty() ? L"" : L"; ") + detail;
        } else {
            Find(FindingKind::Changed, path, detail);
        }
    }

    // What a file of the deployment says counts when it is the one that was built, or nothing is known of it.
    bool IsTrusted(const CString& path) const
    {
        return m_check.manifest != ManifestState::Read || m_check.same.count(path) != 0;
    }

    bool IsThere(const CString& path)
    {
        if (m_check.same.count(path) != 0) {
            return true;
        }
        const VerifyFinding* const finding = FindingOf(path);
        return finding ? finding->kind == FindingKind::Changed && !(finding->strDetail == LINK)
                       : KindOfPath(FullPath(path)) == PathKind::File;
    }

    std::string ReadFile(const CString& path, std::size_t limit) const
    {
        const CString full = FullPath(path);
        const CFileOwner file = OpenForReading(full);
        std::string bytes;
        std::vector<char> piece(64 << 10);
        while (const DWORD read = ReadChunk(file, piece.data(), static_cast<DWORD>(piece.size()), full)) {
            bytes.append(piece.data(), read);
            if (bytes.size() > limit) {
                return {};
            }
        }
        return bytes;
    }

    // ---- what the deployment says of itself

    void CheckRecord()
    {
        if (KindOfPath(FullPath(DEPLOYMENT_FILE)) != PathKind::File) {
            if (!FindingOf(DEPLOYMENT_FILE)) { // a build without it has no manifest line of it
                m_result.unknown.push_back(CString(DEPLOYMENT_FILE) + L" is missing.");
            }
            return;
        }
        const CString fault = m_readRecord(FullPath(DEPLOYMENT_FILE), m_record);
        m_result.strProduct = m_record.strProduct;
        m_hasRecord = fault.IsEmpty() && IsTrusted(DEPLOYMENT_FILE);
        if (fault.IsEmpty()) {
            return;
        }
        if (VerifyFinding* const finding = FindingOf(DEPLOYMENT_FILE)) {
            finding->strDetail += L"; " + fault;
        } else if (m_check.manifest != ManifestState::Read) {
            m_result.unknown.push_back(fault);
        } else {
            m_result.unrecorded.push_back(L"product codes, patches and the settings of the commands, as " +
                                          CString(DEPLOYMENT_FILE) +
                                          L", which is what was built, can't be read: " + fault);
        }
    }

    // ---- databases

    void CheckDatabases()
    {
        const bool isThere = IsThere(CHANGES_FILE);
        if (FindingOf(CHANGES_FILE) || (isThere && !IsTrusted(CHANGES_FILE))) {
            return; // named already
        }
        if (!isThere) {
            m_result.unrecorded.push_back(CString(DATABASE_CODES) + L", as the deployment has no " +
                                          CHANGES_FILE);
            return;
        }
        const std::string bytes = ReadFile(CHANGES_FILE, LONGEST_CHANGES);
        std::vector<DatabaseCodes> databases;
        if (!ReadDatabaseCodes(bytes.data(), bytes.size(), databases)) {
            if (m_check.manifest != ManifestState::Read) {
                m_result.unknown.push_back(CString(CHANGES_FILE) +
                                           L" is damaged, so the codes of the databases aren't known.");
            } else {
                m_result.unrecorded.push_back(CString(DATABASE_CODES) + L", as " + CHANGES_FILE +
                                              L", which is what was built, has none that can be read");
            }
            return;
        }
        for (const DatabaseCodes& database : databases) {
            Poll(m_check.bytes, m_check.bytes, database.strTarget);
            CheckDatabase(database);
        }
    }

    void CheckDatabase(const DatabaseCodes& built)
    {
        if (!IsPlainRelativePath(built.strTarget)) {
            return; // no build writes such a path, and it may lead anywhere
        }
        if (!IsThere(built.strTarget)) {
            if (!FindingOf(built.strTarget)) {
                Find(FindingKind::Missing, built.strTarget);
            }
            return;
        }
        CString packageCode;
        CString productCode;
        if (!ReadCodes(built.strTarget, packageCode, productCode)) {
            return;
        }
        if (packageCode.CompareNoCase(built.strPackageCode) != 0) {
            AddDetail(built.strTarget,
                      L"package code " + packageCode + L", built with " + built.strPackageCode);
        }
        const bool isKnown =
            std::any_of(m_record.productCodes.begin(), m_record.productCodes.end(),
                        [&productCode](const CString& code) { return code.CompareNoCase(productCode) == 0; });
        if (m_hasRecord && !isKnown) {
            AddDetail(built.strTarget,
                      L"product code " + productCode + L", which is none of the deployment's");
        }
    }

    // False when the database can't be opened: one that is as it was built is known by its content, and all others are
    // named already.
    bool ReadCodes(const CString& path, CString& packageCode, CString& productCode)
    {
        try {
            const CString full = FullPath(path);
            RequireShortPath(full);
            const CInstallerHandle database = OpenDatabaseToRead(full);
            packageCode = ReadPackageCode(database.get(), full);
            return ReadPropertyRow(database.get(), L"ProductCode", productCode);
        } catch (const BuildFailure& failure) {
            if (m_check.manifest != ManifestState::Read) {
                Find(FindingKind::Unreadable, path, failure.message);
            }
            return false;
        }
    }

    // The installer of some systems doesn't refuse a longer path, but writes beyond its memory.
    static void RequireShortPath(const CString& path)
    {
        if (path.GetLength() > MAX_INSTALLER_PATH) {
            throw BuildFailure{BUILD_BAD_PATH_NAME,
                               L"The path \"" + path + L"\" is too long for the installer to open."};
        }
    }

    // ---- patches

    void CheckPatches()
    {
        if (!m_hasRecord) {
            return;
        }
        bool isEachRecorded = true;
        for (const RecordedPatch& patch : m_record.patches) {
            isEachRecorded = isEachRecorded && !patch.strCode.IsEmpty() && !patch.strSha256.IsEmpty();
            CheckPatch(patch);
        }
        if (!isEachRecorded) {
            m_result.unrecorded.push_back(L"codes of some patches, as " + CString(DEPLOYMENT_FILE) +
                                          L" names their files alone");
        }
    }

    void CheckPatch(const RecordedPatch& patch)
    {
        if (!IsThere(patch.strFile)) {
            // What the manifest doesn't name was never there.
            if (m_check.manifest != ManifestState::Read && !patch.bMerged && !FindingOf(patch.strFile)) {
                Find(FindingKind::Missing, patch.strFile);
            }
            return;
        }
        CString code;
        const CString full = FullPath(patch.strFile);
        if (!patch.strCode.IsEmpty() && full.GetLength() <= MAX_INSTALLER_PATH && ReadPatchCode(full, code) &&
            code.Left(BRACED_GUID_LENGTH).CompareNoCase(patch.strCode) != 0) {
            AddDetail(patch.strFile,
                      L"patch code " + code.Left(BRACED_GUID_LENGTH) + L", built with " + patch.strCode);
        }
        if (!patch.strSha256.IsEmpty() && ContentOf(patch.strFile).CompareNoCase(patch.strSha256) != 0 &&
            !FindingOf(patch.strFile)) {
            Find(FindingKind::Changed, patch.strFile,
                 L"not the patch file that the deployment was built with");
        }
    }

    CString ContentOf(const CString& path)
    {
        const auto same = m_check.same.find(path);
        if (same != m_check.same.end()) {
            return same->second.strSha256;
        }
        return HashOfFile(FullPath(path), [] {});
    }

    // ---- commands

    void CheckCommands()
    {
        for (const wchar_t* command : COMMANDS) {
            const VerifyFinding* const finding = FindingOf(command);
            if (m_hasRecord && finding && finding->kind == FindingKind::Changed &&
                !(finding->strDetail == LINK)) {
                CheckCommand(command);
            }
        }
    }

    // With its settings as they were built the script must be the one that was built, to the byte.
    void CheckCommand(const CString& path)
    {
        const std::string script = ReadFile(path, LONGEST_COMMANDS);
        std::string restored;
        std::vector<SettingChange> changes;
        const bool isRestored = RestoreSettings(script, m_record.commands, restored, changes);
        if (!isRestored || HashOf(restored) != BuiltHash(path)) {
            AddDetail(path, L"more than its settings, or a setting that can't be used");
            return;
        }
        std::erase_if(m_result.findings, [&path](const VerifyFinding& finding) {
            return finding.strPath.CompareNoCase(path) == 0;
        });
        for (const SettingChange& change : changes) {
            m_result.findings.push_back(
                {FindingKind::Setting, path, {}, change.inWords, change.strBuilt, change.strNow});
        }
    }

    CString BuiltHash(const CString& path) const
    {
        for (const ManifestEntry& entry : m_check.entries) {
            if (entry.strPath.CompareNoCase(path) == 0) {
                return entry.strSha256;
            }
        }
        return {};
    }

    const CString m_folder;
    const RecordReader& m_readRecord;
    IBuildProgress& m_progress;
    VerifyResult m_result;
    ManifestCheck m_check;
    DeploymentRecord m_record;
    bool m_hasRecord = false; // it could be read, and is the one that was built as far as is known
};

} // namespace

VerifyResult VerifyDeployment(const CString& folder, const RecordReader& readRecord, IBuildProgress& progress)
{
    return CVerifier(folder, readRecord, progress).Verify();
}
