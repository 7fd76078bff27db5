#include "builder/build_user_files.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/cabinet.h"
#include "builder/scratch_file.h"

#include <memory>
#include <set>

namespace {

class CAddedFilesWriter
{
public:
    CAddedFilesWriter(BuildRun& run, const BuildDatabase& database, AddedFiles& added)
        : m_run(run), m_database(database), m_added(added), m_files(added.additions.files)
    {
    }

    bool Write()
    {
        m_run.Step((m_added.additions.bLoose ? L"Copying" : L"Packing") +
                   CString(L" the files that were added to ") + m_database.strProductName);
        UnpackEarlierFiles();
        if (m_added.additions.bLoose) {
            LayLooseFiles();
        } else {
            PackCabinets();
        }
        return m_bSizeChanged;
    }

private:
    // Beside the working copy. What lies in a cabinet can't be packed anew without.
    void UnpackEarlierFiles()
    {
        std::map<CString, std::map<CString, CString>> wanted; // paths by key, by cabinet
        for (const UserFile& file : m_files) {
            if (file.origin == UserFileOrigin::EarlierCabinet) {
                auto scratch = std::make_unique<CScratchFile>(m_database.strWorkingCopy + L"." + file.strKey);
                wanted[file.strContent][file.strKey] = scratch->Path();
                m_unpacked[file.strKey] = std::move(scratch);
            }
        }
        std::set<CString> found;
        for (const auto& [cabinet, targets] : wanted) {
            found.merge(ReadCabinet(cabinet, targets, [&](std::uint64_t) { m_run.meter.Poll(); }));
        }
        for (const UserFile& file : m_files) {
            if (m_unpacked.count(file.strKey) != 0 && found.count(file.strKey) == 0) {
                RefuseMissingFile(m_database.strProductName, file.strSource);
            }
        }
    }

    CString ContentOf(const UserFile& file) const
    {
        const auto unpacked = m_unpacked.find(file.strKey);
        return unpacked == m_unpacked.end() ? file.strContent : unpacked->second->Path();
    }

    void LayLooseFiles()
    {
        for (UserFile& file : m_files) {
            NoteSize(file, CopyIntoStaging(m_run, ContentOf(file), file.strTarget));
        }
        m_run.log.Write(L"Added files: " + NumberText(static_cast<long long>(m_files.size())) +
                        L", laid beside the product's own");
    }

    void PackCabinets()
    {
        for (const UserCabinet& cabinet : m_added.cabinets) {
            PackCabinet(cabinet);
        }
        m_run.log.Write(L"Added files: " + NumberText(static_cast<long long>(m_files.size())) +
                        L", packed into " + NumberText(static_cast<long long>(m_added.cabinets.size())) +
                        (m_added.cabinets.size() == 1 ? L" cabinet" : L" cabinets"));
    }

    // Packed beside the working copy, as the library goes back and forth in what it writes; then copied like any file.
    void PackCabinet(const UserCabinet& cabinet)
    {
        std::vector<CabinetMember> members;
        for (std::size_t index = cabinet.first; index < cabinet.first + cabinet.count; ++index) {
            members.push_back({m_files[index].strKey, ContentOf(m_files[index]), 0});
        }
        const CScratchFile packed(m_database.strWorkingCopy + L"." + cabinet.strName);
        WriteCabinet(packed.Path(), members, [&](std::uint64_t bytes) { m_run.meter.Add(bytes); });
        for (std::size_t index = 0; index < members.size(); ++index) {
            NoteSize(m_files[cabinet.first + index], members[index].bytesRead);
        }
        CopyIntoStaging(m_run, packed.Path(), JoinFolder(FolderAbove(m_database.strTarget), cabinet.strName));
    }

    void NoteSize(UserFile& file, std::uint64_t size)
    {
        if (size == file.size) {
            return;
        }
        m_bSizeChanged = true;
        file.size = size;
        RequirePackable(m_database.strProductName, file.strSource, size);
        m_run.Warn(DescribeChangedFile(file));
    }

    BuildRun& m_run;
    const BuildDatabase& m_database;
    AddedFiles& m_added;
    std::vector<UserFile>& m_files;
    std::map<CString, std::unique_ptr<CScratchFile>> m_unpacked; // by key
    bool m_bSizeChanged = false;
};

} // namespace

bool WriteAddedFiles(BuildRun& run, const BuildDatabase& database, AddedFiles& added)
{
    return !added.additions.files.empty() && CAddedFilesWriter(run, database, added).Write();
}
