#include "builder/deployment_builder.h"

#include "builder/build_check.h"
#include "builder/build_failure.h"
#include "builder/build_lock.h"
#include "builder/build_names.h"
#include "builder/patch_check.h"
#include "builder/shown_text.h"

#include <exception>
#include <optional>

namespace {

// Folders of the location that the build made itself; they go again when it fails.
class CMadeLocation
{
public:
    explicit CMadeLocation(const CString& location)
    {
        try {
            Make(WithoutClosingBackslash(location));
        } catch (...) {
            Remove();
            throw;
        }
    }
    CMadeLocation(const CMadeLocation&) = delete;
    CMadeLocation& operator=(const CMadeLocation&) = delete;
    ~CMadeLocation() { Remove(); }
    void Keep() { m_made.clear(); }

private:
    void Remove()
    {
        try {
            while (!m_made.empty()) {
                DeleteEmptyFolder(m_made.back());
                m_made.pop_back();
            }
        } catch (const BuildFailure&) {
            // Something lies in it by now: a log or another build's work.
        }
    }
    void Make(const CString& folder)
    {
        if (KindOfPath(folder) == PathKind::Nothing) {
            Make(FolderAbove(folder));
            MakeFolder(folder);
            m_made.push_back(folder);
        }
    }
    std::vector<CString> m_made; // outermost first
};

constexpr int FAILED_LOGS = 9; // more files of somebody else's by the same name are not stepped around

// True when the log of a failed build of that name may be written there: nothing is there, or an earlier one.
bool IsFailedLogPlace(const CString& path, const CString& name)
{
    const PathKind kind = KindOfPath(path);
    if (kind != PathKind::File) {
        return kind == PathKind::Nothing;
    }
    std::vector<char> head = {'\xEF', '\xBB', '\xBF'};
    AppendUtf8(head, FailedLogHead(name));
    std::vector<char> found(head.size());
    found.resize(ReadChunk(OpenForReading(path), found.data(), static_cast<DWORD>(found.size()), path));
    return found == head;
}

void RemoveFailedLogs(const BuildRun& run)
{
    try {
        for (int number = 1; number <= FAILED_LOGS; ++number) {
            const CString path = JoinFolder(run.plan.strLocation, FailedLogName(run.plan.strName, number));
            if (KindOfPath(path) == PathKind::File && IsFailedLogPlace(path, run.plan.strName)) {
                DeleteOneFile(path);
            }
        }
    } catch (const BuildFailure&) {
        // An older log tells of an older failure, with its time.
    }
}

// The staging folder takes its log along when it goes, so the log of a failure lies beside the deployment.
void KeepFailedLog(BuildRun& run, const BuildFailure& failure)
{
    try {
        RemoveFailedLogs(run);
        std::vector<char> bytes = {'\xEF', '\xBB', '\xBF'};
        AppendUtf8(bytes, FailedLogHead(run.plan.strName) + run.log.Text() +
                              ComposeLogEnd(failure.code, failure.message));
        CString path;
        for (int number = 1; number <= FAILED_LOGS && path.IsEmpty(); ++number) {
            const CString place = JoinFolder(run.plan.strLocation, FailedLogName(run.plan.strName, number));
            path = KindOfPath(place) == PathKind::Nothing ? place : CString();
        }
        if (!path.IsEmpty()) {
            const CFileOwner file = CreateForWriting(path);
            WriteChunk(file, bytes.data(), static_cast<DWORD>(bytes.size()), path);
        }
    } catch (const BuildFailure&) {
        // The location itself may be what failed; the caller has the message in any case.
    }
}

void RemoveStaging(BuildRun& run, CBuildLock& lock)
{
    if (run.oldIsAside) {
        // While the staging folder is there too, the next start knows that the old deployment has no successor.
        lock.KeepForCleanup();
        return;
    }
    try {
        if (KindOfPath(run.staging) == PathKind::Folder) {
            DeleteTree(run.staging);
        }
    } catch (const BuildFailure& failure) {
        lock.KeepForCleanup();
        run.Warn(L"The unfinished folder \"" + run.staging +
                 L"\" could not be removed; the next start of the program tries again. " + failure.message);
    }
}

// One code comes of files, the other of handles.
bool IsDiskFull(unsigned int code)
{
    return code == BUILD_DISK_FULL || code == BUILD_HANDLE_DISK_FULL;
}

void RunPhases(BuildRun& run)
{
    run.log.Write(run.plan.strBuiltBy + L" builds \"" + run.target + L"\"");
    CheckPlan(run);
    CMadeLocation location(run.plan.strLocation);
    CBuildLock lock(run.plan.strLocation, run.plan.strName, run.id);
    try {
        run.meter.Decided(ReviewRun(run)); // now that nothing refuses it any more
        run.meter.Start(run.list.bytes + run.list.userBytes);
        StageFolders(run);
        CopyFiles(run);
        BuildDatabases(run);
        ListCopiedFiles(run);
        RequirePatchesAsChosen(run.plan, run.manifest);
        JudgeOld(run);
        WriteOutputs(run);
        Publish(run);
        location.Keep();
    } catch (const BuildFailure& failure) {
        RemoveStaging(run, lock);
        if (failure.code == BUILD_CANCELLED) {
            throw;
        }
        BuildFailure shown = failure;
        if (IsDiskFull(failure.code)) {
            shown.message += L" " + RoomSentence(run);
        }
        KeepFailedLog(run, shown);
        throw shown;
    } catch (...) {
        RemoveStaging(run, lock);
        throw;
    }
    RemoveFailedLogs(run);
    if (run.oldIsAside) {
        lock.KeepForCleanup();
    }
}

OperationError OutOfMemory()
{
    return {BUILD_OUT_OF_MEMORY,
            L"There was not enough memory. Close other programs and start the build again."};
}

// Runs a step and tells how it ended. The one place where failures are caught for good.
template <class Step>
OperationError Guard(Step step)
{
    try {
        step();
        return {};
    } catch (const BuildFailure& failure) {
        return {failure.code, ShownText(failure.message)};
    } catch (const std::exception&) {
        return OutOfMemory();
    }
}

} // namespace

BuildResult BuildDeployment(const BuildPlan& plan, IBuildProgress& progress) noexcept
{
    BuildResult result;
    std::optional<BuildRun> run;
    result.error = Guard([&] {
        run.emplace(plan, progress);
        RunPhases(*run);
        result.strDeploymentFolder = run->target + L"\\";
    });
    if (run) {
        result.warnings = std::move(run->warnings);
    }
    return result;
}

OperationError ReviewBuild(const BuildPlan& plan, IBuildProgress& progress, BuildReview& review) noexcept
{
    review = {};
    std::optional<BuildRun> run;
    const OperationError error = Guard([&] {
        run.emplace(plan, progress);
        CheckPlan(*run);
        RequireLockFree(plan.strLocation, plan.strName);
        const CMadeLocation location(plan.strLocation); // for the probe alone
        ProbeRightToWrite(*run);
        review = ReviewRun(*run);
    });
    if (error && run) {
        review.warnings = std::move(run->warnings);
    }
    return error;
}

OperationError ReviewBuild(const BuildPlan& plan, BuildReview& review) noexcept
{
    CUnwatchedProgress progress;
    return ReviewBuild(plan, progress, review);
}

OperationError CheckBuild(const BuildPlan& plan, std::vector<CString>& warnings) noexcept
{
    BuildReview review;
    const OperationError error = ReviewBuild(plan, review);
    const OperationError added =
        Guard([&] { warnings.insert(warnings.end(), review.warnings.begin(), review.warnings.end()); });
    return error ? error : added;
}
