#include "setup/deployment_commands.h"

#include "base/system_text.h"
#include "setup/compare_command.h"
#include "setup/exit_codes.h"
#include "setup/paths.h"
#include "setup/program_libraries.h"
#include "setup/record_file.h"
#include "setup/resource.h"
#include "setup/run_record.h"
#include "setup/texts.h"

namespace {

// Nobody watches; the guarding process sees that something gets done.
class CLifeSigns final : public IBuildProgress
{
public:
    explicit CLifeSigns(CRunLog& log) : m_log(log) {}
    void OnStep(const CString& sentence) override { m_log.Line(sentence); }
    bool OnProgress(std::uint64_t, std::uint64_t, const CString&) override
    {
        NoteSignOfLife();
        return true;
    }

private:
    CRunLog& m_log;
};

unsigned int ExitCodeOf(VerifyVerdict verdict)
{
    switch (verdict) {
    case VerifyVerdict::AsBuilt:
        return SETUP_DONE;
    case VerifyVerdict::Differs:
        return SETUP_DEPLOYMENT_DIFFERS;
    case VerifyVerdict::Undetermined:
        break;
    }
    return SETUP_UNDETERMINED;
}

CommandResult Verify(const CommandLine& line, CRunLog& log)
{
    CHostLibrary library;
    CLifeSigns progress(log);
    VerifyResult result;
    CString complaint = library.Load(FolderOfProgram());
    if (complaint.IsEmpty()) {
        complaint = library.Verify(line.strVerify, progress, result);
    }
    if (!complaint.IsEmpty()) {
        return {{SETUP_FAILED, complaint}, {}, {}};
    }
    return {{ExitCodeOf(result.verdict), VerdictSentence(result)},
            ComposeVerifyText(result),
            ComposeVerifyJson(result)};
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
    if (const RunOutcome refusal = PrepareReport(line); refusal.exitCode != SETUP_DONE) {
        return refusal;
    }
    if (const CString reason = log.TryFile(); !reason.IsEmpty()) {
        return {SETUP_FAILED, SetupText(IDS_LOG_FAILED, {line.strLog, reason})};
    }
    const CommandResult result = line.strCompare.IsEmpty() ? Verify(line, log) : RunCompareCommand(line);
    log.Text(result.strText);
    const bool isWritten = !line.strReport.IsEmpty() && !result.strText.IsEmpty();
    return isWritten ? WriteReport(line.strReport, result) : result.outcome;
}
