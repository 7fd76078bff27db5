#include "setup/deployment_commands.h"

#include "base/system_text.h"
#include "setup/exit_codes.h"
#include "setup/record_file.h"
#include "setup/resource.h"
#include "setup/texts.h"

namespace {

// What a command found. Text and JSON hold the same.
struct CommandResult
{
    RunOutcome outcome;
    CString strText; // lines ending in CR LF
    CString strJson;
};

CommandResult Verify(const CommandLine&)
{
    return {{SETUP_FAILED, L"This version can't verify deployments yet."}, {}, {}};
}

void LogLines(const CString& text, CRunLog& log)
{
    for (int start = 0; start < text.GetLength();) {
        const int end = text.Find(L"\r\n", start);
        const int length = (end < 0 ? text.GetLength() : end) - start;
        log.Line(text.Mid(start, length));
        start += length + 2;
    }
}

// The verdict of a run whose report isn't there would be looked for in vain.
RunOutcome WriteReport(const CString& file, const CommandResult& result)
{
    const bool asJson = file.Right(5).CompareNoCase(L".json") == 0;
    if (const unsigned long code = ReplaceTextFile(file, asJson ? result.strJson : result.strText, !asJson)) {
        return {SETUP_FAILED, SetupText(IDS_REPORT_FAILED, {file, SystemErrorText(code)})};
    }
    return result.outcome;
}

} // namespace

RunOutcome RunDeploymentCommand(const CommandLine& line, CRunLog& log)
{
    if (const RunOutcome refusal = PrepareReport(line, {line.strVerify}); refusal.exitCode != SETUP_DONE) {
        return refusal;
    }
    if (const CString reason = log.TryFile(); !reason.IsEmpty()) {
        return {SETUP_FAILED, SetupText(IDS_LOG_FAILED, {line.strLog, reason})};
    }
    const CommandResult result = Verify(line);
    LogLines(result.strText, log);
    const bool isWritten = !line.strReport.IsEmpty() && !result.strText.IsEmpty();
    return isWritten ? WriteReport(line.strReport, result) : result.outcome;
}
