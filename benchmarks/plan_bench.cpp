// The review of a build, composed and written as text and as JSON, beside the decisions alone that a build makes: of the
// sample, with a changed database, and with one of 50,000 changed rows.
#include "benchmarks/measurement.h"

#include "builder/build_check.h"
#include "builder/build_lock.h"
#include "builder/deployment_builder.h"
#include "installer/database.h"
#include "setup/review_compose.h"

#include <windows.h>

#include <msiquery.h>

namespace {

constexpr int CHANGED_ROWS = 50000;

void Require(unsigned int code, const CString& what)
{
    if (code != 0) {
        throw CannotMeasure{what + L" failed with code " + NumberText(static_cast<long long>(code))};
    }
}

void RunStatement(MSIHANDLE database, const CString& statement)
{
    MSIHANDLE view = 0;
    Require(MsiDatabaseOpenViewW(database, statement, &view), statement);
    const UINT code = MsiViewExecute(view, 0);
    MsiCloseHandle(view);
    Require(code, statement);
}

// The sample's 64-bit product with a working copy that is open and changed, as the host has it behind the pages.
class CSampleBuild
{
public:
    explicit CSampleBuild(const BenchOptions& options) : m_work(options.strScratch + L"\\plan.msi")
    {
        m_plan.strLocation = options.strScratch;
        m_plan.strName = L"planned";
        m_plan.strBuiltBy = L"bench";
        m_plan.strMediaName = L"Zolt 2027";
        m_plan.folders.push_back({options.strMedia + L"\\x64\\Zolt", L"Image\\x64\\Zolt"});
        BuildDatabase database;
        database.strOriginal = options.strMedia + L"\\x64\\Zolt\\Zolt2027.msi";
        database.strTarget = L"Image\\x64\\Zolt\\Zolt2027.msi";
        database.strProductName = L"Zolt 2027";
        database.strProductCode = L"{6F0C2A0C-9A3B-4D53-8B4A-0E2F5D0B7A11}";
        database.strProductVersion = L"27.0.0";
        database.strMaker = L"Velkmora";
        if (!CopyFileW(database.strOriginal, m_work, FALSE)) {
            throw CannotMeasure{L"Can't copy " + database.strOriginal};
        }
        SetFileAttributesW(m_work, FILE_ATTRIBUTE_NORMAL);
        Require(OpenDatabase(m_work, MSIDBOPEN_TRANSACT, m_database), L"Opening " + m_work);
        database.strWorkingCopy = m_work;
        database.hDatabase = m_database.get();
        m_plan.databases.push_back(database);
        RunStatement(m_database.get(),
                     L"INSERT INTO `Property` (`Property`, `Value`) VALUES ('BENCH', 'changed')");
    }
    CSampleBuild(const CSampleBuild&) = delete;
    CSampleBuild& operator=(const CSampleBuild&) = delete;
    ~CSampleBuild()
    {
        m_database.reset();
        DeleteFileW(m_work);
    }

    void ChangeManyRows()
    {
        RunStatement(m_database.get(),
                     L"CREATE TABLE `Bench` (`Key` LONG NOT NULL, `Value` CHAR(72) PRIMARY KEY `Key`)");
        MSIHANDLE view = 0;
        Require(MsiDatabaseOpenViewW(m_database.get(), L"INSERT INTO `Bench` (`Key`, `Value`) VALUES (?, ?)",
                                     &view),
                L"Opening the table");
        const MSIHANDLE record = MsiCreateRecord(2);
        for (int row = 0; row < CHANGED_ROWS; ++row) {
            MsiRecordSetInteger(record, 1, row);
            MsiRecordSetStringW(record, 2, L"value " + NumberText(row));
            Require(MsiViewExecute(view, record), L"Adding a row");
        }
        MsiCloseHandle(record);
        MsiCloseHandle(view);
    }

    const BuildPlan& Plan() const { return m_plan; }

private:
    CString m_work;
    CInstallerHandle m_database;
    BuildPlan m_plan;
};

// What a build's check does, and nothing that reports it; what was read is freed within the time, on both sides.
double Decide(const BuildPlan& plan)
{
    CUnwatchedProgress progress;
    const double start = NowMilliseconds();
    {
        BuildRun run(plan, progress);
        CheckPlan(run);
        RequireLockFree(plan.strLocation, plan.strName);
        ProbeRightToWrite(run);
    }
    return NowMilliseconds() - start;
}

double ReviewAndCompose(const BuildPlan& plan)
{
    const double start = NowMilliseconds();
    BuildReview review;
    const OperationError error = ReviewBuild(plan, review);
    const ReviewDocument document = ComposeReview({}, review, error);
    const int length = ComposeReviewText(document).GetLength() + ComposeReviewJson(document).GetLength();
    const double end = NowMilliseconds();
    if (error || length == 0) {
        throw CannotMeasure{L"The review was refused: " + error.message};
    }
    return end - start;
}

Comparison MeasurePlan(int rounds, const CString& what, const BuildPlan& plan)
{
    Comparison comparison = {what, "ms", {}, {}, 1.1};
    Decide(plan); // warms up
    for (int round = 0; round < rounds; ++round) {
        if (round % 2 == 0) {
            comparison.bare.push_back(Decide(plan));
        }
        comparison.ours.push_back(ReviewAndCompose(plan));
        if (round % 2 != 0) {
            comparison.bare.push_back(Decide(plan));
        }
    }
    return comparison;
}

} // namespace

std::vector<Comparison> MeasurePlans(const BenchOptions& options)
{
    CSampleBuild build(options);
    std::vector<Comparison> comparisons = {MeasurePlan(options.runs, L"review of the sample", build.Plan())};
    build.ChangeManyRows();
    comparisons.push_back(MeasurePlan(options.builds, L"review, 50,000 changed rows", build.Plan()));
    return comparisons;
}
