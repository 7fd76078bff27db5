#include "host/patch_plan.h"

#include "base/files.h"
#include "base/path_text.h"
#include "builder/patch_transforms.h"
#include "host/media.h"
#include "host/patch_states.h"
#include "installer/patch_summary.h"

#include <algorithm>
#include <set>

namespace {

CString InImage(const CString& relative)
{
    return CString(IMAGE_FOLDER) + L"\\" + relative;
}

// `sp1.msp`, `sp1 (2).msp`, ...
CString NumberedName(const CString& name, int number)
{
    const int dot = name.ReverseFind(L'.');
    const int end = dot < 0 ? name.GetLength() : dot;
    return number < 2 ? name : name.Left(end) + L" (" + NumberText(number) + L")" + name.Mid(end);
}

class CPatchPlanner
{
public:
    CPatchPlanner(CHostProduct& product, const CString& mediaRoot, BuildPlan& plan, BuildDatabase& database,
                  StoredProduct& stored)
        : m_product(product), m_patches(product.GetPatches()), m_mediaRoot(mediaRoot),
          m_folder(FolderOfFile(product.GetRelativeFile()) + PATCH_FOLDER), m_plan(plan),
          m_database(database), m_stored(stored)
    {
    }

    void Plan()
    {
        ReserveNames();
        for (const StoredPatch& patch : m_patches.GetStored()) {
            if (patch.merged) {
                AddMergedBefore(patch);
            }
        }
        const PatchUse use = UseOfPatches(m_product.GetPatchState());
        if (use != PatchUse::None) {
            AddListed(use);
        }
        LeaveOutTheRest();
    }

private:
    // Names that others have in the folder: files of the plan, and what the media have there beside known patches.
    void ReserveNames()
    {
        for (const BuildFile& file : m_plan.files) {
            m_taken.insert(file.strTarget);
        }
        std::vector<FolderItem> items;
        static_cast<void>(ListFolder(m_mediaRoot + m_folder, items)); // mostly there is none
        for (const FolderItem& item : items) {
            if (!m_patches.FindStored(m_mediaRoot + m_folder + item.strName)) {
                m_taken.insert(InImage(m_folder + item.strName));
            }
        }
        // One that stays keeps its name, whatever comes before it in the list.
        for (const StoredPatch& patch : m_patches.GetStored()) {
            const CString path = m_patches.PathOf(patch);
            const bool stays =
                patch.merged ||
                std::any_of(m_product.m_patchFiles.begin(), m_product.m_patchFiles.end(),
                            [&](const CString& file) { return file.CompareNoCase(path) == 0; });
            if (stays && !patch.file.IsEmpty()) {
                m_taken.insert(InImage(patch.file));
            }
        }
    }

    // A semicolon separates patches in commands, and nobody can rename a file that was downloaded.
    CString ChooseName(const CString& path)
    {
        CString name = LastName(path);
        name.Replace(L';', L'_');
        int number = 1;
        while (m_taken.count(InImage(m_folder + NumberedName(name, number))) != 0) {
            ++number;
        }
        return m_folder + NumberedName(name, number);
    }

    void AddMergedBefore(const StoredPatch& patch)
    {
        m_stored.patches.push_back(patch);
        const CString path = m_patches.PathOf(patch);
        CString name;
        static_cast<void>(!path.IsEmpty() && ReadPatchDisplayName(path, name));
        m_database.patches.push_back({path, path.IsEmpty() ? CString() : InImage(patch.file), patch.code,
                                      name, patch.sha256, ListedPatch::Use::MergedBefore});
        if (!path.IsEmpty()) {
            m_plan.files.push_back({path, InImage(patch.file)});
            NoteDownload(path, patch.file);
        }
    }

    void AddListed(PatchUse use)
    {
        std::vector<CString> paths;
        std::copy_if(m_product.m_patchFiles.begin(), m_product.m_patchFiles.end(), std::back_inserter(paths),
                     [&](const CString& path) { return !m_patches.IsMerged(path); });
        std::vector<std::vector<PatchTransform>> transforms;
        for (const CString& path : paths) {
            transforms.push_back(ReadPatchTransforms(path));
        }
        const std::set<std::size_t> replaced = FindReplaced(paths);
        const PatchChain chain =
            ChainPatches(transforms, m_database.strProductCode, m_database.strProductVersion, replaced);
        for (const std::size_t index : chain.order) {
            if (use == PatchUse::Merge && replaced.count(index) != 0) {
                NameReplaced(paths[index]);
            } else {
                AddPatch(paths[index], use);
            }
        }
        if (!m_database.mergedPatches.empty()) {
            m_database.strMergedVersion = chain.strVersion;
        }
    }

    // Indexes of those that another one of the list stands in for.
    std::set<std::size_t> FindReplaced(const std::vector<CString>& paths)
    {
        std::set<std::size_t> replaced;
        for (const CString& newer : paths) {
            for (const CString& code : m_patches.ReadReplacedCodes(newer)) {
                for (std::size_t index = 0; index < paths.size(); ++index) {
                    if (m_patches.ReadCode(paths[index]) == code) {
                        replaced.insert(index);
                    }
                }
            }
        }
        return replaced;
    }

    // A build checks it with the others, says that it is left out, and merges the newer one alone.
    void NameReplaced(const CString& path)
    {
        const CString code = m_patches.ReadCode(path);
        m_database.patches.push_back(
            {path, CString(), code, CString(), m_patches.NotedHash(path), ListedPatch::Use::Merged});
        m_database.mergedPatches.push_back({path, code});
    }

    void AddPatch(const CString& path, PatchUse use)
    {
        const StoredPatch* const known = m_patches.FindStored(path);
        const CString relative = known ? known->file : ChooseName(path);
        const CString target = InImage(relative);
        m_taken.insert(target);
        const CString code = m_patches.ReadCode(path);
        const CString noted = m_patches.NotedHash(path);
        const CString hash = noted.IsEmpty() ? m_patches.ReadHash(path) : noted;
        CString name;
        static_cast<void>(ReadPatchDisplayName(path, name)); // without one it goes by its file
        const bool isMerged = use == PatchUse::Merge;
        m_plan.files.push_back({path, target});
        m_stored.patches.push_back({relative, isMerged, code, hash});
        m_database.patches.push_back({path, target, code, name, hash,
                                      isMerged ? ListedPatch::Use::Merged : ListedPatch::Use::Appended});
        if (isMerged) {
            m_database.mergedPatches.push_back({path, code});
        } else {
            m_database.patchTargets.push_back(target);
        }
        NoteDownload(path, relative);
    }

    // What was downloaded and doesn't go into the image is gone with the run.
    void NoteDownload(const CString& path, const CString& relative)
    {
        if (path.CompareNoCase(m_product.GetDownloadedMSPPath()) == 0) {
            m_stored.strPatchPath = relative;
        }
    }

    void LeaveOutTheRest()
    {
        for (const StoredPatch& patch : m_patches.GetStored()) {
            const bool goesAlong =
                std::any_of(m_stored.patches.begin(), m_stored.patches.end(), [&](const StoredPatch& kept) {
                    return kept.file.CompareNoCase(patch.file) == 0;
                });
            if (!goesAlong) {
                m_plan.leftOut.push_back(InImage(patch.file));
            }
        }
    }

    CHostProduct& m_product;
    CProductPatches& m_patches;
    const CString m_mediaRoot;
    const CString m_folder; // of the product's patches, below the image
    BuildPlan& m_plan;
    BuildDatabase& m_database;
    StoredProduct& m_stored;
    std::set<CString, CompareNoCaseLess> m_taken; // targets
};

} // namespace

void PlanPatches(CHostProduct& product, const CString& mediaRoot, BuildPlan& plan, BuildDatabase& database,
                 StoredProduct& stored)
{
    CPatchPlanner(product, mediaRoot, plan, database, stored).Plan();
}
