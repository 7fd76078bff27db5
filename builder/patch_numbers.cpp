#include "builder/patch_numbers.h"

#include "builder/build_failure.h"
#include "builder/database_snapshot.h"
#include "builder/file_operations.h"
#include "builder/merge_decision.h"
#include "builder/named_table.h"
#include "builder/patch_package.h"
#include "builder/scratch_file.h"
#include "installer/database.h"

#include <algorithm>
#include <vector>

namespace {

class CNumberFinder
{
public:
    CNumberFinder(const BuildDatabase& database, const std::function<void()>& poll)
        : m_database(database), m_poll(poll), m_copy(database.strWorkingCopy + L".numbers"),
          m_applier(m_copy.Path(), database.strProductName)
    {
    }

    PatchNumbers Find(const std::vector<CString>& patches)
    {
        CopyBytes(m_database.strOriginal, m_copy.Path(), m_poll);
        CheckInstaller(OpenDatabase(m_copy.Path(), MSIDBOPEN_TRANSACT, m_patched), L"Opening the database",
                       m_copy.Path());
        m_snapshot = ReadSnapshot(m_patched.get(), m_copy.Path(), m_poll);
        for (const CString& patch : patches) {
            const CPatchPackage package(patch);
            for (const CString& transform : package.Transforms()) {
                Apply(package, transform);
                Apply(package, L"#" + transform); // which brings the patch's medium
            }
        }
        return {Highest(L"Media", L"DiskId"),
                std::max(Highest(L"Media", L"LastSequence"), Highest(L"File", L"Sequence"))};
    }

private:
    // Of several pairs those for other versions may not fit.
    void Apply(const CPatchPackage& package, const CString& transform)
    {
        try {
            if (FindTransformFault(m_snapshot, package.ReadTransform(transform)).IsEmpty()) {
                m_applier.Apply(m_patched.get(), {{package.Path(), package.Code()}, transform}, true);
                m_snapshot = ReadSnapshot(m_patched.get(), m_copy.Path(), m_poll);
            }
        } catch (const BuildFailure& failure) {
            if (failure.code == BUILD_CANCELLED) {
                throw;
            }
        }
    }

    long long Highest(const wchar_t* name, const wchar_t* column) const
    {
        long long highest = 0;
        const ReadTable table = TableToRead(m_snapshot, name);
        if (table.Exists()) {
            for (const auto& [key, row] : table.Rows()) {
                highest = std::max(highest, NumberOf(table.Value(row, column)));
            }
        }
        return highest;
    }

    const BuildDatabase& m_database;
    const std::function<void()>& m_poll;
    CScratchFile m_copy;
    CPatchApplier m_applier; // outlives the database
    CInstallerHandle m_patched;
    DatabaseSnapshot m_snapshot;
};

} // namespace

PatchNumbers FindPatchNumbers(const BuildDatabase& database, const std::function<void()>& poll)
{
    std::vector<CString> appended;
    for (const ListedPatch& patch : database.patches) {
        if (patch.use == ListedPatch::Use::Appended) {
            appended.push_back(patch.strSource);
        }
    }
    return appended.empty() ? PatchNumbers() : CNumberFinder(database, poll).Find(appended);
}
