#include "builder/build_run.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/shown_text.h"

#include <objbase.h>

namespace {

constexpr unsigned long long REPORT_EVERY_MILLISECONDS = 50;

std::uint32_t NewBuildId()
{
    GUID guid = {};
    if (FAILED(CoCreateGuid(&guid))) {
        throw BuildFailure{BUILD_INSTALLER_FAILED,
                           L"Windows could not make a number for this build. Start the build again."};
    }
    return static_cast<std::uint32_t>(guid.Data1);
}

} // namespace

void CProgressMeter::Start(std::uint64_t total)
{
    m_total = total;
    Report();
}

void CProgressMeter::Add(std::uint64_t bytes)
{
    m_done += bytes;
    if (m_done > m_total) {
        m_total = m_done; // a source grew since it was measured
    }
    if (GetTickCount64() - m_reportedAt >= REPORT_EVERY_MILLISECONDS) {
        Report();
    }
}

void CProgressMeter::Finish()
{
    m_done = m_total;
    Report();
}

void CProgressMeter::Report()
{
    m_reportedAt = GetTickCount64();
    if (!m_progress.OnProgress(m_done, m_total, m_file)) {
        throw BuildFailure{BUILD_CANCELLED, L"The build was canceled. Nothing was changed."};
    }
}

void CBuildLog::Write(const CString& line)
{
    SYSTEMTIME now = {};
    GetSystemTime(&now);
    CString stamp;
    stamp.Format(L"%04u-%02u-%02uT%02u:%02u:%02uZ  ", now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute,
                 now.wSecond);
    m_text += stamp + ShownText(line) + L"\r\n";
}

BuildRun::BuildRun(const BuildPlan& thePlan, IBuildProgress& theProgress)
    : plan(thePlan), meter(theProgress), id(NewBuildId()), target(JoinFolder(plan.strLocation, plan.strName)),
      staging(JoinFolder(plan.strLocation, StagingFolderName(plan.strName, id))),
      old(JoinFolder(plan.strLocation, OldFolderName(plan.strName, id)))
{
}

void BuildRun::Step(const CString& sentence)
{
    log.Write(sentence);
    meter.Step(sentence);
}

void BuildRun::Warn(const CString& sentence)
{
    log.Write(L"Warning: " + sentence);
    warnings.push_back(ShownText(sentence));
}
