// Publish: one rename makes the deployment. An old one steps aside for that moment and is deleted afterwards.
#include "host/build/build_run.h"

#include "host/build/build_failure.h"
#include "host/build/file_operations.h"

namespace {

// The first rename is undone; when even that fails, the next start does it.
void PutOldBack(BuildRun& run, const BuildFailure& why)
{
    try {
        RenameFolder(run.old, run.target);
        run.oldIsAside = false;
    } catch (const BuildFailure& failure) {
        throw BuildFailure{why.code, why.message + L" The old deployment lies whole in \"" + run.old +
                                         L"\"; the next start of the program puts it back. (" +
                                         failure.message + L")"};
    }
}

void DeleteOld(BuildRun& run)
{
    try {
        DeleteTree(run.old);
        run.oldIsAside = false;
    } catch (const BuildFailure& failure) {
        run.Warn(L"The new deployment stands, but the old one could not be deleted from \"" + run.old +
                 L"\"; the next start of the program tries again. " + failure.message);
    }
}

} // namespace

void Publish(BuildRun& run)
{
    run.Step(L"Publishing " + run.plan.strName);
    run.meter.Finish(); // the last moment to cancel
    if (KindOfPath(run.target) == PathKind::Nothing) {
        RenameFolder(run.staging, run.target);
        return;
    }
    RequireNothingOpenBelow(run.target);
    RenameFolder(run.target, run.old);
    run.oldIsAside = true;
    try {
        RenameFolder(run.staging, run.target);
    } catch (const BuildFailure& failure) {
        PutOldBack(run, failure);
        throw;
    }
    DeleteOld(run);
}
