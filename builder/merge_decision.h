// What merging the patches of a product does: decided before anything is copied. build_merge.h does what is decided here.
#pragma once

#include "builder/build_plan.h"
#include "builder/change_report.h"
#include "builder/copy_list.h"
#include "builder/merged_files.h"
#include "builder/scratch_file.h"
#include "installer/handle.h"

#include <functional>
#include <memory>
#include <set>

// A patch that is merged, with the pair of transforms in it that is for the product.
struct ChosenPatch
{
    MergedPatch patch;
    CString strTransform;
    int passedOver =
        0; // what of the database is no hindrance to it: the service's MSITRANSFORM_ERROR, as the patch says
};

// A file that patches bring or replace, of whatever patch brings it last.
struct MergedFile
{
    CString strKey;
    std::size_t patch = 0; // its number among those that are merged
    CString strStream;     // the cabinet in that patch
    std::uint64_t size = 0;
    CString strTarget; // of a loose file, relative to the deployment; empty for a packed one
};

// A value: all that merging the patches of one product needs to know.
struct MergeDecision
{
    std::vector<ChosenPatch> patches; // in their order, those left out that another one stands in for
    std::vector<PatchChanges> changes;
    DatabaseSnapshot patched; // the vendor's database with all of them
    CString strVersion;       // of the product, then
    std::vector<MergedFile> files;
    std::vector<MergedCabinet> cabinets; // of the product's own, made anew
    std::vector<CString> replaced;       // targets in the deployment that aren't copied from the media
    std::vector<CString> warnings;       // sentences
    std::uint64_t bytesToPack = 0;       // of all files in those cabinets

    bool IsNeeded() const { return !patches.empty(); }
    // What merging brings into the deployment beside the database.
    [[nodiscard]] std::vector<CopyItem> Targets(const BuildDatabase& database) const;
};

// Reads patches, database and cabinets, and fills `original` with the vendor's. Throws a BuildFailure that names the patch
// for whatever can't be merged; nothing is written but files beside the working copy that go at once. `poll` is called now
// and then and may throw.
[[nodiscard]] MergeDecision DecideMerge(const BuildDatabase& database, DatabaseSnapshot& original,
                                        const std::function<void()>& poll);

// Applies transforms of patches to one open database. The service keeps the files of transforms open as long as the database,
// so this outlives it.
class CPatchApplier
{
public:
    // The files are made beside `scratchBase`.
    CPatchApplier(const CString& scratchBase, const CString& product)
        : m_scratchBase(scratchBase), m_product(product)
    {
    }
    // Rows that the pages changed or removed meanwhile are no hindrance when `isLenient`.
    void Apply(MSIHANDLE database, const ChosenPatch& chosen, bool isLenient);

private:
    CString m_scratchBase;
    CString m_product;
    std::vector<std::unique_ptr<CScratchFile>> m_files;
};

// `Data1.cab` of "#Data1.cab"; empty for a cabinet beside the package.
[[nodiscard]] CString StreamOfCabinet(const CString& cabinet);
