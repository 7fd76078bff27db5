#include "builder/copy_scan.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/command_text.h"
#include "builder/file_operations.h"
#include "builder/user_files.h"

#include <set>

namespace {

class CScanner
{
public:
    CScanner(const BuildPlan& plan, const std::vector<CString>& earlierFiles,
             const std::function<void()>& poll)
        : m_plan(plan), m_poll(poll), m_named(NamedTargets(plan)),
          m_leftOut(earlierFiles.begin(), earlierFiles.end())
    {
        m_leftOut.insert(plan.leftOut.begin(), plan.leftOut.end());
        for (const BuildFile& file : plan.files) {
            m_named[file.strTarget] = file.strSource;
        }
        for (const BuildDatabase& database : plan.databases) {
            if (database.hDatabase != 0) {
                m_packageFolders.insert(FolderAbove(database.strTarget));
            }
        }
    }

    CopyList Scan()
    {
        for (const BuildFolder& folder : m_plan.folders) {
            ScanRoot(folder);
        }
        for (const BuildFile& file : m_plan.files) {
            AddFile({file.strSource, file.strTarget, SizeOfFile(file.strSource)});
        }
        for (const BuildDatabase& database : m_plan.databases) {
            AddParents(database.strTarget);
            AddParents(LogNameFile(m_plan, database));
            m_list.bytes += SizeOfFile(database.hDatabase ? database.strWorkingCopy : database.strOriginal);
        }
        for (const BuildText& text : m_plan.texts) {
            AddParents(text.strTarget);
        }
        return std::move(m_list);
    }

private:
    void ScanRoot(const BuildFolder& folder)
    {
        if (IsSameOrBelow(m_plan.strLocation, folder.strSource)) {
            throw BuildFailure{BUILD_BAD_PATH_NAME, L"The location \"" + m_plan.strLocation +
                                                        L"\" lies inside the media \"" + folder.strSource +
                                                        L"\". Choose a location outside of them."};
        }
        const CString target = WithoutClosingBackslash(folder.strTarget);
        if (!target.IsEmpty()) {
            AddFolder(target);
        }
        ScanFolder(WithoutClosingBackslash(folder.strSource), target);
    }

    void ScanFolder(const CString& source, const CString& target)
    {
        m_poll();
        for (const FolderEntry& entry : ListFolder(source)) {
            const CString entrySource = JoinFolder(source, entry.strName);
            const CString entryTarget = JoinFolder(target, entry.strName);
            if (m_named.count(entryTarget) != 0 || IsEarlierCabinet(entry.strName, target) ||
                m_leftOut.count(entryTarget) != 0) {
                continue;
            }
            if (!entry.IsFolder()) {
                AddFile({entrySource, entryTarget, entry.size});
            } else if (entry.IsLink()) {
                m_list.skippedLinks.push_back(entrySource);
            } else {
                if (!HoldsFilesLeftOut(entryTarget)) {
                    AddFolder(entryTarget); // else with what still comes into it
                }
                ScanFolder(entrySource, entryTarget);
            }
        }
    }

    // The cabinets of added files are made anew with the database beside them.
    bool IsEarlierCabinet(const CString& name, const CString& targetFolder) const
    {
        return IsUserCabinet(name) && m_packageFolders.count(targetFolder) != 0;
    }

    bool HoldsFilesLeftOut(const CString& folder) const
    {
        const auto first = m_leftOut.lower_bound(folder + L"\\");
        return first != m_leftOut.end() && IsSameOrBelow(*first, folder);
    }

    void AddFile(CopyItem file)
    {
        AddParents(file.strTarget);
        m_list.bytes += file.size;
        m_list.files.push_back(std::move(file));
    }

    void AddParents(const CString& target)
    {
        const CString parent = FolderAbove(target);
        if (!parent.IsEmpty()) {
            AddFolder(parent);
        }
    }

    void AddFolder(const CString& folder)
    {
        if (m_folders.count(folder) == 0) {
            AddParents(folder);
            m_folders.insert(folder);
            m_list.folders.push_back(folder);
        }
    }

    using NameSet = std::set<CString, CompareNoCaseLess>;

    const BuildPlan& m_plan;
    const std::function<void()>& m_poll;
    TargetNames m_named; // what a folder's own file of that name gives way to
    NameSet m_folders;
    NameSet m_packageFolders; // targets of the databases that are written anew
    // Targets of what was added to them before and lies loose, which comes anew as well, and of what the plan leaves out.
    NameSet m_leftOut;
    CopyList m_list;
};

} // namespace

CopyList ScanSources(const BuildPlan& plan, const std::vector<CString>& earlierFiles,
                     const std::function<void()>& poll)
{
    return CScanner(plan, earlierFiles, poll).Scan();
}
