// Publish: one rename makes the deployment. An old one steps aside for that moment and is deleted afterwards.
#include "builder/build_run.h"

#include "builder/build_check.h"
#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/file_operations.h"

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

// What came into the old folder while it was judged is kept as well.
std::vector<CString> FilesToKeep(const BuildRun& run)
{
    std::vector<CString> own = run.judgement.Own();
    if (run.judgement.hasManifest) {
        const std::vector<CString> late = FindLateFiles(run.old, run.judgement);
        own.insert(own.end(), late.begin(), late.end());
    }
    return own;
}

void RetireOld(BuildRun& run)
{
    try {
        const std::vector<CString> own = FilesToKeep(run);
        const CString kept =
            RetireDeployment(run.old, run.plan.strLocation, run.plan.strName, run.judgement.hasManifest, own);
        run.oldIsAside = false;
        if (!kept.IsEmpty()) {
            run.Warn(DescribeKept(run.judgement.hasManifest, own, kept));
        }
    } catch (const BuildFailure& failure) {
        run.Warn(L"The new deployment stands, but the old one could not be deleted from \"" + run.old +
                 L"\"; the next start of the program tries again. " + failure.message);
    }
}

} // namespace

// While the build can still be cancelled: it takes as long as reading the old deployment once.
void JudgeOld(BuildRun& run)
{
    if (run.replaces) {
        run.Step(L"Checking " + run.plan.strName + L" for added or changed files");
        run.judgement = FindOwnFiles(run.target, run.readOfOld, [&run] { run.meter.Poll(); });
        if (!run.judgement.IsAllOurs()) {
            // The log is closed before they are moved, so it can't name the folder yet.
            run.log.Write(
                DescribeKept(run.judgement.hasManifest, run.judgement.Own(),
                             JoinFolder(run.plan.strLocation, KeptFolderName(run.plan.strName, L"..."))));
        }
    }
}

void Publish(BuildRun& run)
{
    run.Step(L"Publishing " + run.plan.strName);
    run.meter.Finish(); // the last moment to cancel where nothing is replaced
    if (!CheckTarget(run)) {
        RenameFolder(run.staging, run.target);
        return;
    }
    RequireNothingOpenBelow(run.target, [&run] { run.meter.Poll(); }); // here a cancel is still noticed
    RenameFolder(run.target, run.old);
    run.oldIsAside = true;
    try {
        RenameFolder(run.staging, run.target);
    } catch (const BuildFailure& failure) {
        PutOldBack(run, failure);
        throw;
    }
    RetireOld(run);
}
