// Setup.exe: reads the command line, runs the wizard in a guarded process, reports how it ended.
#include "base/handle.h"
#include "base/scope_exit.h"
#include "setup/answers_input.h"
#include "setup/answers_output.h"
#include "setup/crash_notes.h"
#include "setup/deployment_commands.h"
#include "setup/exit_codes.h"
#include "setup/media_choice.h"
#include "setup/paths.h"
#include "setup/record_file.h"
#include "setup/resource.h"
#include "setup/run_guard.h"
#include "setup/run_log.h"
#include "setup/run_record.h"
#include "setup/texts.h"
#include "setup/wizard.h"
#include "window/module.h"

#include <commctrl.h>
#include <objbase.h>
#include <ole2.h>
#include <shellapi.h>

#include <exception>
#include <new>
#include <optional>

CAppModule _Module;

namespace {

std::vector<CString> Arguments()
{
    std::vector<CString> arguments;
    int count = 0;
    const CLocalOwner words(CommandLineToArgvW(GetCommandLineW(), &count));
    for (int index = 1; words && index < count; ++index) {
        arguments.emplace_back(static_cast<wchar_t**>(words.get())[index]);
    }
    return arguments;
}

// From here on no path depends on the current folder.
void MakePathsFull(CommandLine& line)
{
    for (CString* path :
         {&line.strMedia, &line.strAnswers, &line.strPictures, &line.strLog, &line.strRecord, &line.strVerify,
          &line.strCompare, &line.strCompareWith, &line.strReport, &line.strPlan}) {
        if (!path->IsEmpty()) {
            *path = FullPath(*path);
        }
    }
    line.strOut =
        ResolveAnswerPath({CurrentFolder(), CString()}, line.strOut); // the page is to see it as it was typed
}

void ShowBox(const CString& text, UINT icon)
{
    MessageBoxW(nullptr, text, SetupText(IDS_PROGRAM_TITLE), MB_OK | icon);
}

void UseLanguage(const CString& locale)
{
    const LCID language = locale.IsEmpty() ? 0 : LocaleNameToLCID(locale, 0);
    if (language != 0) { // an unknown one is the host's to refuse, which knows the media's languages
        SetThreadUILanguage(LANGIDFROMLCID(language));
    }
}

RunOutcome CancelledOutcome()
{
    return {SETUP_CANCELLED, L"canceled", true};
}

// `wizard` stays for what is written of the run, however that ends.
RunOutcome RunWizard(const CommandLine& line, CAnswers& answers, std::optional<CWizard>& wizard, CRunLog& log)
{
    AnswersError error;
    if (!ReadAnswers(line, CurrentFolder(), answers, error)) {
        return {SETUP_BAD_ANSWERS, error.Text()};
    }
    CString media = line.strMedia.IsEmpty() ? MediaBesideProgram() : line.strMedia;
    if (line.strMedia.IsEmpty() && !FileOrFolderExists(media)) {
        if (line.IsUnattended()) {
            return {SETUP_FAILED, SetupText(IDS_MEDIA_NOT_GIVEN, {media})};
        }
        media = AskForMedia();
        if (media.IsEmpty()) {
            return CancelledOutcome();
        }
    }
    wizard.emplace(line, answers, log);
    return wizard->Run(media);
}

template <class Work>
RunOutcome RunCaught(Work work)
{
    try {
        return work();
    } catch (const std::bad_alloc&) {
        return {SETUP_FAILED, SetupText(IDS_OUT_OF_MEMORY)};
    } catch (const std::exception& exception) {
        const CString what = TextFromUtf8(exception.what(), std::char_traits<char>::length(exception.what()));
        return {SETUP_FAILED, SetupText(IDS_BUILD_BROKE_OFF, {what})};
    }
}

// A deployment may stand by now, but its run was to leave a file that isn't there. What ended the run before counts more, and
// a person is shown both.
RunOutcome WriteRecord(const CommandLine& line, std::optional<CWizard>& wizard, const RunOutcome& outcome,
                       CRunLog& log)
{
    const CString failure =
        wizard ? wizard->WriteRecord(outcome) : CAnswersOutput(line, nullptr, log).WriteRecord({}, outcome);
    if (failure.IsEmpty()) {
        return outcome;
    }
    if (outcome.exitCode == SETUP_DONE) {
        return {SETUP_FAILED, failure};
    }
    log.Line(L"Warning: " + failure);
    if (!line.IsUnattended()) {
        ShowBox(failure, MB_ICONWARNING);
    }
    return outcome;
}

// From the moment when the answers are read, each end of the run is written to the file of --record.
RunOutcome RunRecorded(const CommandLine& line, CRunLog& log)
{
    if (const CString reason = log.TryFile(); !reason.IsEmpty()) {
        return {SETUP_FAILED, SetupText(IDS_LOG_FAILED, {line.strLog, reason})};
    }
    if (const RunOutcome refusal = PrepareRecord(line); refusal.exitCode != SETUP_DONE) {
        return refusal;
    }
    if (const RunOutcome refusal = PreparePlan(line); refusal.exitCode != SETUP_DONE) {
        return refusal;
    }
    CAnswers answers;
    std::optional<CWizard> wizard;
    const RunOutcome ended = RunCaught([&] { return RunWizard(line, answers, wizard, log); });
    const RunOutcome outcome = RunCaught([&] { return WriteRecord(line, wizard, ended, log); });
    log.Finish(outcome); // while the host's log is open
    return outcome;
}

// Without a complaint the user has asked for the usage.
unsigned int PrintUsage(const CString& complaint)
{
    CRunLog log(true, CString());
    log.Say(CommandLineUsage());
    if (complaint.IsEmpty()) {
        if (!log.HasConsole()) {
            ShowBox(CommandLineUsage(), MB_ICONINFORMATION);
        }
        return SETUP_DONE;
    }
    log.Finish({SETUP_BAD_COMMAND_LINE, complaint});
    if (!log.HasConsole()) {
        ShowBox(SetupText(IDS_BAD_COMMAND_LINE, {complaint}), MB_ICONERROR);
    }
    return SETUP_BAD_COMMAND_LINE;
}

// A log by its full path, chosen before the host is there to choose one: should opening the media break off, the guard
// writes to it.
CString FreshLog()
{
    wchar_t folder[MAX_PATH + 1] = {};
    const DWORD length = GetTempPathW(ARRAYSIZE(folder), folder);
    LARGE_INTEGER now = {};
    QueryPerformanceCounter(&now);
    CString name;
    name.Format(L"RolloutSetup-%08X.log", now.LowPart ^ (GetCurrentProcessId() << 16));
    return CString(folder, static_cast<int>(length)) + name;
}

// The work itself, in the guarded process.
unsigned int RunInRecord(CommandLine& line)
{
    const INITCOMMONCONTROLSEX classes = {sizeof(classes), ICC_PROGRESS_CLASS | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
    const bool oleStarted = SUCCEEDED(OleInitialize(nullptr)); // folder pickers and the taskbar need it
    const scope_exit endOle([oleStarted] {
        if (oleStarted) {
            OleUninitialize();
        }
    });
    const RunOutcome misplaced = CheckOutputPlaces(line);
    if (misplaced.exitCode != SETUP_DONE) {
        line.strLog.Empty();
    }
    CRunLog log(line.IsUnattended(),
                line.strLog); // a run that opens no media leaves no log that nobody asked for
    if (line.strLog.IsEmpty()) {
        line.strLog = FreshLog();
    }
    NoteRunLog(line.strLog);
    const RunOutcome outcome = RunCaught([&] {
        if (misplaced.exitCode != SETUP_DONE) {
            return misplaced;
        }
        return line.IsDeploymentCommand() ? RunDeploymentCommand(line, log) : RunRecorded(line, log);
    });
    log.Finish(outcome);
    if (!line.IsUnattended() && !outcome.bShown && outcome.exitCode != SETUP_DONE) {
        ShowBox(outcome.strCause, MB_ICONERROR);
    }
    return outcome.exitCode;
}

unsigned int GuardAndTell(const CommandLine& line)
{
    const CRunLog console(line.IsUnattended(),
                          CString()); // attached before the run, so that it finds the console too
    GuardedEnd end = GuardRun(line.IsUnattended() ? line.QuietSeconds() : 0);
    if (end.bSaid) {
        return end.outcome.exitCode;
    }
    const CString file = end.strLog.IsEmpty() ? line.strLog : end.strLog;
    if (!file.IsEmpty()) {
        end.outcome.strCause = SetupText(IDS_SEE_LOG, {end.outcome.strCause, file});
    }
    CRunLog log(line.IsUnattended(), file);
    log.Finish(end.outcome);
    if (!line.IsUnattended()) {
        ShowBox(end.outcome.strCause, MB_ICONERROR | MB_SETFOREGROUND);
    }
    return end.outcome.exitCode;
}

unsigned int RunSetup()
{
    CommandLine line;
    const CString complaint = ParseCommandLine(Arguments(), line);
    UseLanguage(line.strLanguage);
    if (!complaint.IsEmpty() || line.bHelp) {
        return PrintUsage(complaint);
    }
    MakePathsFull(line);
    CRunRecord* const record = new CRunRecord; // never unmapped: a crash at the very end is noted too
    if (!record->OpenOwn()) {
        return GuardAndTell(line);
    }
    UseRunRecord(record->get());
    NoteCrashes();
    return RunInRecord(line);
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t*, int)
{
    // Pages load libraries by bare names. The program's folder replaces the current one in the search; an empty text
    // would remove that too, but some systems ignore it.
    SetDllDirectoryW(FolderOfProgram());
    _Module.Init(instance);
    const scope_exit endModule([] { _Module.Term(); });
    return static_cast<int>(RunSetup());
}
