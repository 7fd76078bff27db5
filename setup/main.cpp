// Setup.exe: reads the command line, runs the wizard, tells how it ended.
#include "setup/answers_input.h"
#include "setup/exit_codes.h"
#include "setup/media_choice.h"
#include "setup/paths.h"
#include "setup/resource.h"
#include "setup/run_log.h"
#include "setup/texts.h"
#include "setup/wizard.h"
#include "window/handle.h"
#include "window/module.h"
#include "window/scope_exit.h"

#include <commctrl.h>
#include <objbase.h>
#include <ole2.h>
#include <shellapi.h>

#include <exception>
#include <new>

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
    for (CString* path : {&line.strMedia, &line.strAnswers, &line.strOut, &line.strPictures, &line.strLog}) {
        if (!path->IsEmpty()) {
            *path = FullPath(*path);
        }
    }
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
    return {SETUP_CANCELLED, L"cancelled", true};
}

RunOutcome RunWizard(const CommandLine& line, CRunLog& log)
{
    Answers answers;
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
    CWizard wizard(line, answers, log);
    const RunOutcome outcome = wizard.Run(media);
    log.Finish(outcome); // while the host's log is open
    return outcome;
}

RunOutcome RunGuarded(const CommandLine& line, CRunLog& log)
{
    try {
        return RunWizard(line, log);
    } catch (const std::bad_alloc&) {
        return {SETUP_FAILED, SetupText(IDS_OUT_OF_MEMORY)};
    } catch (const std::exception& exception) {
        const CString what = TextFromUtf8(exception.what(), std::char_traits<char>::length(exception.what()));
        return {SETUP_FAILED, SetupText(IDS_BUILD_BROKE_OFF, {what})};
    }
}

// Without a complaint the user has asked for the usage.
unsigned int TellUsage(const CString& complaint)
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

unsigned int RunSetup()
{
    CommandLine line;
    const CString complaint = ParseCommandLine(Arguments(), line);
    UseLanguage(line.strLanguage);
    if (!complaint.IsEmpty() || line.bHelp) {
        return TellUsage(complaint);
    }
    MakePathsFull(line);
    CRunLog log(line.IsUnattended(), line.strLog);
    const RunOutcome outcome = RunGuarded(line, log);
    log.Finish(outcome);
    if (!line.IsUnattended() && !outcome.bTold && outcome.exitCode != SETUP_DONE) {
        ShowBox(outcome.strCause, MB_ICONERROR);
    }
    return outcome.exitCode;
}

} // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, wchar_t*, int)
{
    _Module.Init(instance);
    const scope_exit endModule([] { _Module.Term(); });
    const INITCOMMONCONTROLSEX classes = {sizeof(classes), ICC_PROGRESS_CLASS | ICC_STANDARD_CLASSES};
    InitCommonControlsEx(&classes);
    const bool oleStarted = SUCCEEDED(OleInitialize(nullptr)); // folder pickers and the taskbar need it
    const scope_exit endOle([oleStarted] {
        if (oleStarted) {
            OleUninitialize();
        }
    });
    return static_cast<int>(RunSetup());
}
