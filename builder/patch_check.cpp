#include "builder/patch_check.h"

#include "base/guid_text.h"
#include "builder/build_failure.h"
#include "builder/content_hash.h"
#include "builder/database_snapshot.h"
#include "builder/file_operations.h"
#include "builder/patch_transforms.h"
#include "builder/shown_text.h"
#include "installer/database.h"
#include "installer/patch_summary.h"

#include <msi.h>

#include <algorithm>
#include <iterator>
#include <map>

namespace {

class CPatchCheck
{
public:
    CPatchCheck(const BuildDatabase& database, const std::function<void()>& poll)
        : m_database(database), m_poll(poll)
    {
        std::copy_if(database.patches.begin(), database.patches.end(), std::back_inserter(m_patches),
                     [](const ListedPatch& patch) { return patch.use != ListedPatch::Use::MergedBefore; });
    }

    void Check() const
    {
        RequireMergedBefore();
        if (m_patches.empty()) {
            return;
        }
        for (const ListedPatch& patch : m_patches) {
            m_poll();
            RequireFile(patch);
        }
        RequireOwnCodes();
        RequireVersions();
        RequireInstallersWord();
    }

    void RequireCopied(const std::map<CString, CString>& hashes) const
    {
        for (const ListedPatch& patch : m_database.patches) {
            const auto copied = hashes.find(patch.strTarget);
            if (copied != hashes.end()) {
                RequireContent(patch, copied->second);
            }
        }
    }

private:
    CString Named(const ListedPatch& patch) const
    {
        return L"The patch \"" + ShownText(patch.strSource) + L"\" of \"" +
               ShownText(m_database.strProductName) + L"\"";
    }

    [[noreturn]] void Refuse(unsigned int code, const ListedPatch& patch, const CString& what) const
    {
        throw BuildFailure{code, Named(patch) + L" " + what + L" " + RemedyOf(code)};
    }

    void RequireContent(const ListedPatch& patch, const CString& hash) const
    {
        if (patch.strSha256.IsEmpty() || hash == patch.strSha256) {
            return;
        }
        if (patch.use == ListedPatch::Use::MergedBefore) { // no list has it that it could be taken off
            throw BuildFailure{BUILD_FILE_CHANGED,
                               Named(patch) +
                                   L" has changed since it was merged. Put the file back as it was, "
                                   L"or delete it: the package has its changes already."};
        }
        Refuse(BUILD_FILE_CHANGED, patch, L"has changed since it was chosen.");
    }

    // Their content is known, though nothing else of them is looked at.
    void RequireMergedBefore() const
    {
        for (const ListedPatch& patch : m_database.patches) {
            if (patch.use == ListedPatch::Use::MergedBefore && !patch.strSource.IsEmpty() &&
                !patch.strSha256.IsEmpty()) {
                RequireContent(patch, HashOfFile(patch.strSource, m_poll));
            }
        }
    }

    void RequireFile(const ListedPatch& patch) const
    {
        if (KindOfPath(patch.strSource) != PathKind::File) {
            throw BuildFailure{BUILD_FILE_NOT_FOUND,
                               Named(patch) +
                                   L" is no longer there. Put the file back, or remove it from the "
                                   L"list of the service pack page."};
        }
        CInstallerHandle opened;
        const unsigned int result = OpenPatch(patch.strSource, opened);
        opened.reset();
        if (result != ERROR_SUCCESS) {
            Refuse(BUILD_PATCH_DAMAGED, patch,
                   L"is damaged, or isn't a patch: the installer can't open it (" +
                       ReasonFor(result, patch.strSource) + L", code " + NumberText(result) + L").");
        }
        if (!IsBracedGuid(patch.strCode)) {
            Refuse(BUILD_PATCH_DAMAGED, patch, L"has no patch code.");
        }
        if (!patch.strSha256.IsEmpty()) {
            RequireContent(patch, HashOfFile(patch.strSource, m_poll));
        }
    }

    // The installer knows a patch by its code, and applies it once.
    void RequireOwnCodes() const
    {
        std::map<CString, const ListedPatch*> known;
        for (const ListedPatch& patch : m_database.patches) {
            CString code = patch.strCode;
            const auto [first, isNew] = known.emplace(code.MakeUpper(), &patch);
            if (isNew) {
                continue;
            }
            const CString other = first->second->use == ListedPatch::Use::MergedBefore
                                      ? CString(L"one that is merged already")
                                      : L"\"" + ShownText(first->second->strSource) + L"\"";
            throw BuildFailure{BUILD_ALREADY_EXISTS,
                               Named(patch) + L" has the same patch code as " + other + L": " + code +
                                   L". Remove it from the list of the service pack page."};
        }
    }

    // Not every installer looks at versions when it is asked, but all do when they install.
    void RequireVersions() const
    {
        std::vector<std::vector<PatchTransform>> patches;
        for (const ListedPatch& patch : m_patches) {
            m_poll();
            patches.push_back(ReadPatchTransforms(patch.strSource));
        }
        const CInstallerHandle original = OpenDatabaseToRead(m_database.strOriginal);
        CString version; // the plan has the one that merging leads to
        if (!ReadPropertyRow(original.get(), L"ProductVersion", version)) {
            version = m_database.strProductVersion;
        }
        const PatchChain chain = ChainPatches(patches, m_database.strProductCode, version);
        if (chain.unfit.empty()) {
            return;
        }
        const std::size_t first = chain.unfit.front();
        const std::vector<CString> made = VersionsMadeFor(patches[first], m_database.strProductCode);
        if (made.empty()) {
            Refuse(BUILD_PATCH_NOT_APPLICABLE, m_patches[first],
                   L"doesn't apply: it is made for another product.");
        }
        CString list;
        for (const CString& one : made) {
            list += (list.IsEmpty() ? L"" : L", ") + one;
        }
        Refuse(BUILD_PATCH_NOT_APPLICABLE, m_patches[first],
               L"doesn't apply: it is made for " +
                   CString(made.size() == 1 ? L"version " : L"the versions ") + list +
                   L", and the product has version " + ShownText(version) + L".");
    }

    void RequireInstallersWord() const
    {
        std::vector<MSIPATCHSEQUENCEINFOW> patches(m_patches.size());
        for (std::size_t index = 0; index < patches.size(); ++index) {
            patches[index].szPatchData = m_patches[index].strSource;
            patches[index].ePatchDataType = MSIPATCH_DATATYPE_PATCHFILE;
        }
        const UINT result = MsiDetermineApplicablePatchesW(
            m_database.strOriginal, static_cast<DWORD>(patches.size()), patches.data());
        const auto refused =
            std::find_if(patches.begin(), patches.end(),
                         [](const MSIPATCHSEQUENCEINFOW& patch) { return patch.uStatus != ERROR_SUCCESS; });
        if (refused != patches.end()) {
            const ListedPatch& patch = m_patches[static_cast<std::size_t>(refused - patches.begin())];
            Refuse(BUILD_PATCH_NOT_APPLICABLE, patch,
                   L"doesn't apply: the installer refuses it (" +
                       ReasonFor(refused->uStatus, patch.strSource) + L", code " +
                       NumberText(refused->uStatus) + L").");
        }
        if (result != ERROR_SUCCESS) {
            throw BuildFailure{result,
                               L"The installer can't tell whether the patches of \"" +
                                   ShownText(m_database.strProductName) + L"\" apply to \"" +
                                   m_database.strOriginal + L"\" (code " + NumberText(result) +
                                   L"). Remove them from the list of the service pack page, or get them "
                                   L"from their maker again."};
        }
    }

    const BuildDatabase& m_database;
    const std::function<void()>& m_poll;
    std::vector<ListedPatch> m_patches; // those that this build applies
};

} // namespace

void RequirePatchesApply(const BuildPlan& plan, const std::function<void()>& poll)
{
    for (const BuildDatabase& database : plan.databases) {
        CPatchCheck(database, poll).Check();
    }
}

void RequirePatchesAsChosen(const BuildPlan& plan, const std::vector<ManifestEntry>& copied)
{
    std::map<CString, CString> hashes;
    for (const ManifestEntry& entry : copied) {
        hashes[entry.strPath] = entry.strSha256;
    }
    for (const BuildDatabase& database : plan.databases) {
        CPatchCheck(database, [] {}).RequireCopied(hashes);
    }
}
