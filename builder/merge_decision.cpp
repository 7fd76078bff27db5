#include "builder/merge_decision.h"

#include "base/name_rules.h"
#include "base/path_text.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/cabinet.h"
#include "builder/content_hashes.h"
#include "builder/database_snapshot.h"
#include "builder/file_operations.h"
#include "builder/named_table.h"
#include "builder/package_sources.h"
#include "builder/patch_package.h"
#include "builder/product_identity.h"
#include "builder/scratch_file.h"
#include "builder/shown_text.h"
#include "installer/database.h"
#include "installer/summary.h"

#include <algorithm>
#include <memory>

namespace {

// Of MsiDatabaseApplyTransformW: rows that are there already, or aren't, are passed over.
constexpr int LENIENT = 1 | 2 | 4 | 8 | 16;
// A cabinet ends at 2 GiB, and incompressible content grows a little.
constexpr std::uint64_t MAX_CABINET_CONTENT = 2032ull << 20;

constexpr const wchar_t* GET_MEDIA = L"Get the media again.";

[[noreturn]] void RefuseMerge(const CString& product, const CString& why,
                              const CString& remedy = L"On the service pack page, append them instead of "
                                                      L"merging them, or remove them from the list.")
{
    throw BuildFailure{BUILD_INSTALLER_FAILED,
                       L"The patches can't be merged into " + product + L": " + why + L". " + remedy};
}

CString PropertyOf(const DatabaseSnapshot& database, const wchar_t* name)
{
    const ReadTable properties = TableToRead(database, L"Property");
    return properties.Has(name) ? properties.Value(properties.Rows().at({name}), L"Value") : CString();
}

// The size of each file in a cabinet of the patch, by key; a cabinet that can't be read refuses the patch.
using MemberSizes = std::map<CString, std::uint64_t>;

class CMergeDecider
{
public:
    CMergeDecider(const BuildDatabase& database, DatabaseSnapshot& original,
                  const std::function<void()>& poll)
        : m_database(database), m_product(database.strProductName), m_original(original), m_poll(poll),
          m_copy(database.strWorkingCopy + L".patched"), m_applier(m_copy.Path(), m_product)
    {
    }

    MergeDecision Decide()
    {
        ReadOriginal();
        OpenPatches();
        CopyBytes(m_database.strOriginal, m_copy.Path(), m_poll);
        CheckInstaller(OpenDatabase(m_copy.Path(), MSIDBOPEN_TRANSACT, m_patched), L"Opening the database",
                       m_copy.Path());
        m_raw = m_original;
        m_decision.patched = m_original;
        for (const std::unique_ptr<CPatchPackage>& patch : m_packages) {
            MergeOne(*patch);
        }
        m_decision.strVersion = PropertyOf(m_decision.patched, L"ProductVersion");
        PlaceFiles();
        DecideCabinets();
        return std::move(m_decision);
    }

private:
    void ReadOriginal()
    {
        if (m_database.hDatabase == 0) {
            RefuseMerge(m_product, L"its database isn't open", L"Start the build again.");
        }
        const CString& path = m_database.strOriginal;
        const CInstallerHandle vendors = OpenDatabaseToRead(path);
        m_original = ReadSnapshot(vendors.get(), path, m_poll);
        m_layout = LayoutOf(SummaryNumber(vendors.get(), SUMMARY_WORD_COUNT));
        m_template = SummaryText(vendors.get(), SUMMARY_TEMPLATE);
        m_oldPaths = FindLoosePaths(vendors.get(), WithClosingBackslash(FolderAbove(path)));
        if (m_layout.IsUnclear()) {
            RefuseMerge(m_product, L"its package is an administrative image that is marked as compressed, so "
                                   L"that nothing says where its files lie");
        }
    }

    void OpenPatches()
    {
        std::set<CString> codes;
        std::map<CString, CString> stoodInFor; // names of newer patches, by the older one's code
        std::vector<std::unique_ptr<CPatchPackage>> packages;
        for (const MergedPatch& merged : m_database.mergedPatches) {
            packages.push_back(std::make_unique<CPatchPackage>(merged.strSource));
            const CPatchPackage& patch = *packages.back();
            if (patch.Code().CompareNoCase(merged.strCode) != 0) {
                RefusePatch(BUILD_FILE_CHANGED, patch.Path(), m_product,
                            L"has the patch code " + patch.Code() + L" now, but had " +
                                ShownText(merged.strCode) + L" when it was chosen");
            }
            if (!patch.IsForProduct(m_database.strProductCode)) {
                RefusePatch(BUILD_PATCH_NOT_APPLICABLE, patch.Path(), m_product, L"is for another product");
            }
            if (!codes.insert(patch.Code()).second) {
                RefusePatch(BUILD_PATCH_NOT_APPLICABLE, patch.Path(), m_product, L"is on the list twice");
            }
            for (const CString& older : patch.Superseded()) {
                stoodInFor[older] = patch.Name();
            }
        }
        for (std::unique_ptr<CPatchPackage>& patch : packages) {
            const auto newer = stoodInFor.find(patch->Code());
            if (newer == stoodInFor.end()) {
                m_packages.push_back(std::move(patch));
            } else {
                m_decision.warnings.push_back(L"The patch \"" + patch->Path() +
                                              L"\" was left out because \"" + newer->second +
                                              L"\" replaces it.");
            }
        }
        if (m_packages.empty()) {
            RefuseMerge(m_product, L"each of them is replaced by another one on the list");
        }
    }

    void MergeOne(const CPatchPackage& package)
    {
        const auto refuseAs = [&](unsigned int code, const CString& why) {
            if (!why.IsEmpty()) {
                RefusePatch(code, package.Path(), m_product, why);
            }
        };
        const auto refuse = [&](const CString& why) { refuseAs(BUILD_INSTALLER_FAILED, why); };
        const ChosenPatch chosen = ChooseTransform(package);
        refuseAs(BUILD_PATCH_DAMAGED, FindTransformFault(m_raw, package.ReadTransform(chosen.strTransform)));
        PatchSteps steps;
        steps.before = std::move(m_raw);
        m_applier.Apply(m_patched.get(), chosen, false);
        steps.changed = ReadSnapshot(m_patched.get(), m_copy.Path(), m_poll);
        m_decision.patches.push_back(chosen);
        if (PropertyOf(steps.changed, L"ProductCode").CompareNoCase(m_database.strProductCode) != 0) {
            refuse(L"makes another product of it, with the code " +
                   ShownText(PropertyOf(steps.changed, L"ProductCode")));
        }
        refuseAs(BUILD_PATCH_DAMAGED,
                 FindTransformFault(steps.changed, package.ReadTransform(L"#" + chosen.strTransform)));
        steps.sourced = ReadSourced();
        CarriedFiles carried;
        refuse(FindCarriedFiles(steps, carried));
        const DatabaseSnapshot before = m_decision.patched;
        refuse(MergeTables(steps, m_decision.patched));
        const CString version = PropertyOf(m_decision.patched, L"ProductVersion");
        if (!IsInstallerVersion(version)) {
            refuseAs(BUILD_PATCH_DAMAGED,
                     L"sets the product version to \"" + ShownText(version) + L"\", which isn't valid");
        }
        NoteFiles(package, carried);
        m_decision.changes.push_back({package.Name(), LastName(package.Path()), package.Code(),
                                      PropertyOf(before, L"ProductVersion"), version,
                                      CompareSnapshots(before, m_decision.patched)});
        m_raw = std::move(steps.changed);
    }

    ChosenPatch ChooseTransform(const CPatchPackage& package) const
    {
        PatchedProduct product;
        product.strProductCode = m_database.strProductCode;
        product.strVersion = PropertyOf(m_decision.patched, L"ProductVersion");
        product.strUpgradeCode = PropertyOf(m_decision.patched, L"UpgradeCode");
        product.strLanguage = PropertyOf(m_decision.patched, L"ProductLanguage");
        product.strTemplate = m_template;
        CString misfit = L"contains no changes to the database";
        for (const CString& name : package.Transforms()) {
            const TransformTarget target = package.TargetOf(name);
            const CString why = FindTransformMisfit(target, product);
            if (why.IsEmpty()) {
                return {{package.Path(), package.Code()}, name, static_cast<int>(target.flags) & LENIENT};
            }
            misfit = why;
        }
        RefusePatch(BUILD_PATCH_NOT_APPLICABLE, package.Path(), m_product, misfit);
    }

    // On a copy of its own, as the second transform isn't for the product that is built.
    DatabaseSnapshot ReadSourced() const
    {
        const CScratchFile copy(m_copy.Path() + L".sourced");
        CopyBytes(m_database.strOriginal, copy.Path(), m_poll);
        CPatchApplier applier(copy.Path(), m_product);
        CInstallerHandle database;
        CheckInstaller(OpenDatabase(copy.Path(), MSIDBOPEN_TRANSACT, database), L"Opening the database",
                       copy.Path());
        for (const ChosenPatch& chosen : m_decision.patches) {
            applier.Apply(database.get(), chosen, false);
        }
        ChosenPatch second = m_decision.patches.back();
        second.strTransform = L"#" + second.strTransform;
        applier.Apply(database.get(), second, true);
        return ReadSnapshot(database.get(), copy.Path(),
                            m_poll); // a table that a transform brings isn't found by name
    }

    void NoteFiles(const CPatchPackage& package, const CarriedFiles& carried)
    {
        std::map<CString, MemberSizes> cabinets;
        const WriteTable files = TableToWrite(m_decision.patched, L"File");
        for (const auto& [key, stream] : carried) {
            if (cabinets.count(stream) == 0) {
                cabinets[stream] = ReadMembers(package, stream);
            }
            const auto size = cabinets[stream].find(key);
            if (size == cabinets[stream].end()) {
                RefusePatch(BUILD_PATCH_DAMAGED, package.Path(), m_product,
                            L"names the file \"" + ShownText(key) + L"\" and doesn't hold it");
            }
            files.Set(files.Rows().at({key}), L"FileSize", NumberText(static_cast<long long>(size->second)));
            m_carried[key] = {key, m_decision.patches.size() - 1, stream, size->second, CString()};
        }
    }

    MemberSizes ReadMembers(const CPatchPackage& package, const CString& stream) const
    {
        const CScratchFile cabinet(m_copy.Path() + L".cabinet");
        if (!package.SaveCabinet(stream, cabinet.Path(), m_poll)) {
            RefusePatch(BUILD_PATCH_DAMAGED, package.Path(), m_product,
                        L"names the cabinet \"" + ShownText(stream) + L"\" and doesn't hold it");
        }
        try {
            if (!IsPartOfCabinetSet(cabinet.Path())) {
                return ListCabinet(cabinet.Path());
            }
        } catch (const BuildFailure&) {
            // Said below, with the patch in place of a file that nobody knows.
        }
        RefusePatch(BUILD_PATCH_DAMAGED, package.Path(), m_product,
                    L"holds a cabinet \"" + ShownText(stream) +
                        L"\" that can't be read: it is damaged or a part of a set");
    }

    CString TargetBeside(const CString& relative) const
    {
        return JoinFolder(FolderAbove(m_database.strTarget), relative);
    }

    static CString LoosePath(const std::map<CString, LoosePaths>& paths, const CString& key,
                             SourcePlace place)
    {
        const auto found = paths.find(key);
        return found == paths.end()            ? CString()
               : place == SourcePlace::Folders ? found->second.strInFolder
                                               : found->second.strAtRoot;
    }

    // Where each file goes, and what of the media it takes the place of.
    void PlaceFiles()
    {
        const std::map<CString, LoosePaths> paths =
            FindLoosePaths(m_patched.get(), WithClosingBackslash(FolderAbove(m_database.strOriginal)));
        const ReadTable files = TableToRead(m_decision.patched, L"File");
        std::map<CString, CString, CompareNoCaseLess> owners; // keys of loose files by path
        for (const auto& [key, row] : files.Rows()) {
            const SourcePlace place = PlaceInPackage(m_decision.patched, m_layout, key.front());
            const auto carried = m_carried.find(key.front());
            if (place == SourcePlace::Cabinet) {
                continue;
            }
            const CString path = LoosePath(paths, key.front(), place);
            const auto [owner, isFirst] = owners.emplace(path, key.front());
            const bool isTouched =
                carried != m_carried.end() || (!isFirst && m_carried.count(owner->second) != 0);
            if (isTouched && !isFirst && !path.IsEmpty()) {
                RefuseMerge(m_product, L"its files \"" + ShownText(owner->second) + L"\" and \"" +
                                           ShownText(key.front()) +
                                           L"\" lie as one, and a patch changes one of them");
            }
            if (carried == m_carried.end()) {
                continue;
            }
            if (!IsSafeRelativePath(path)) {
                RefuseMerge(m_product,
                            L"the folder of the file \"" + ShownText(key.front()) + L"\" can't be told");
            }
            carried->second.strTarget = TargetBeside(path);
            m_decision.replaced.push_back(carried->second.strTarget);
        }
        for (const auto& [key, file] : m_carried) {
            if (files.Has(key)) { // a later patch may have removed it
                m_decision.files.push_back(file);
            }
        }
        LeaveOutOldFiles(owners);
    }

    // Loose files of the media that nothing refers to any more, or under another name.
    void LeaveOutOldFiles(const std::map<CString, CString, CompareNoCaseLess>& owners)
    {
        const ReadTable files = TableToRead(m_original, L"File");
        const std::set<CString> removed = FindRemovedFiles(m_original, m_decision.patched);
        for (const auto& [key, row] : files.Rows()) {
            const SourcePlace place = PlaceInPackage(m_original, m_layout, key.front());
            const CString path =
                place == SourcePlace::Cabinet ? CString() : LoosePath(m_oldPaths, key.front(), place);
            const bool isGone = removed.count(key.front()) != 0 || m_carried.count(key.front()) != 0;
            if (isGone && !path.IsEmpty() && owners.count(path) == 0) {
                m_decision.replaced.push_back(TargetBeside(path));
            }
        }
    }

    void DecideCabinets()
    {
        std::set<CString> touched;
        for (const MergedFile& file : m_decision.files) {
            touched.insert(file.strKey);
        }
        m_decision.cabinets = FindMergedCabinets(m_original, m_decision.patched, m_layout, touched,
                                                 FindRemovedFiles(m_original, m_decision.patched));
        for (const MergedCabinet& cabinet : m_decision.cabinets) {
            CheckCabinet(cabinet);
            if (StreamOfCabinet(cabinet.strName).IsEmpty()) {
                m_decision.replaced.push_back(TargetBeside(cabinet.strName));
            }
        }
    }

    // What will be packed must be there, and fit.
    void CheckCabinet(const MergedCabinet& cabinet)
    {
        const CString stream = StreamOfCabinet(cabinet.strName);
        const CScratchFile copy(m_copy.Path() + L".cabinet");
        CString path = JoinFolder(FolderAbove(m_database.strOriginal), cabinet.strName);
        if (!stream.IsEmpty()) {
            path = copy.Path();
            const CInstallerHandle vendors = OpenDatabaseToRead(m_database.strOriginal);
            if (!SaveStream(vendors.get(), m_database.strOriginal, stream, path, m_poll)) {
                RefuseMerge(m_product, L"its database lacks the cabinet \"" + ShownText(stream) + L"\"",
                            GET_MEDIA);
            }
        } else if (!IsSafeFileName(cabinet.strName) || KindOfPath(path) != PathKind::File) {
            RefuseMerge(m_product,
                        L"its cabinet \"" + ShownText(cabinet.strName) + L"\" isn't beside the package",
                        GET_MEDIA);
        }
        if (IsPartOfCabinetSet(path)) {
            RefuseMerge(m_product,
                        L"its cabinet \"" + ShownText(cabinet.strName) +
                            L"\" is one of several that belong together, and can't be made anew alone");
        }
        const MemberSizes members = ListCabinet(path);
        std::uint64_t bytes = 0;
        for (const CString& key : cabinet.keys) {
            const auto carried = m_carried.find(key);
            const auto member = members.find(key);
            if (carried == m_carried.end() && member == members.end()) {
                RefuseMerge(m_product,
                            L"its cabinet \"" + ShownText(cabinet.strName) + L"\" lacks the file \"" +
                                ShownText(key) + L"\"",
                            GET_MEDIA);
            }
            bytes += carried == m_carried.end() ? member->second : carried->second.size;
        }
        if (bytes > MAX_CABINET_CONTENT) {
            RefuseMerge(m_product, L"the files of its cabinet \"" + ShownText(cabinet.strName) + L"\" have " +
                                       NumberText(static_cast<long long>(bytes >> 20)) +
                                       L" MB in all, more than a cabinet can be sure to hold");
        }
        m_decision.bytesToPack += bytes;
    }

    const BuildDatabase& m_database;
    CString m_product;
    DatabaseSnapshot& m_original;
    const std::function<void()>& m_poll;
    PackageLayout m_layout;
    CString m_template;
    std::map<CString, LoosePaths> m_oldPaths;
    CScratchFile m_copy;
    CPatchApplier m_applier;
    CInstallerHandle m_patched; // behind both, so that it is closed before they go
    std::vector<std::unique_ptr<CPatchPackage>> m_packages;
    DatabaseSnapshot m_raw; // as the transforms left it
    std::map<CString, MergedFile> m_carried;
    MergeDecision m_decision;
};

} // namespace

std::vector<CopyItem> MergeDecision::Targets(const BuildDatabase& database) const
{
    std::vector<CopyItem> targets;
    for (const MergedFile& file : files) {
        if (!file.strTarget.IsEmpty()) {
            targets.push_back({patches[file.patch].patch.strSource, file.strTarget, file.size});
        }
    }
    for (const MergedCabinet& cabinet : cabinets) {
        if (StreamOfCabinet(cabinet.strName).IsEmpty()) {
            targets.push_back({L"the patches merged into " + database.strProductName,
                               JoinFolder(FolderAbove(database.strTarget), cabinet.strName), 0});
        }
    }
    return targets;
}

MergeDecision DecideMerge(const BuildDatabase& database, DatabaseSnapshot& original,
                          const std::function<void()>& poll)
{
    if (database.mergedPatches.empty()) {
        return {};
    }
    return CMergeDecider(database, original, poll).Decide();
}

void CPatchApplier::Apply(MSIHANDLE database, const ChosenPatch& chosen, bool isLenient)
{
    m_files.push_back(std::make_unique<CScratchFile>(m_scratchBase + L".transform" +
                                                     NumberText(static_cast<long long>(m_files.size()))));
    const CString& file = m_files.back()->Path();
    CPatchPackage(chosen.patch.strSource).SaveTransform(chosen.strTransform, file);
    const unsigned int code =
        MsiDatabaseApplyTransformW(database, file, isLenient ? LENIENT : chosen.passedOver);
    if (code != ERROR_SUCCESS) {
        RefusePatch(BUILD_PATCH_NOT_APPLICABLE, chosen.patch.strSource, m_product,
                    L"doesn't fit the database: " + ReasonFor(code, file) + L" (code " + NumberText(code) +
                        L")");
    }
}

CString StreamOfCabinet(const CString& cabinet)
{
    return cabinet.Left(1) == L"#" ? cabinet.Mid(1) : CString();
}
