#include "builder/command_text.h"

#include "base/ascii.h"
#include "base/guid_text.h"
#include "base/name_rules.h"
#include "builder/build_names.h"
#include "builder/command_check.h"
#include "builder/command_settings.h"
#include "builder/product_identity.h"
#include "builder/script_lines.h"
#include "builder/shown_text.h"

namespace {

// PATCH takes full paths, joined by semicolons.
CString PatchArgument(const BuildDatabase& database)
{
    CString list;
    for (const CString& patch : database.patchTargets) {
        list += (list.IsEmpty() ? L"" : L";") + (L"%~dp0" + QuotedBatchText(patch));
    }
    return list.IsEmpty() ? list : L" PATCH=\"" + list + L"\"";
}

CString AsciiOnly(const CString& text)
{
    CString plain = text;
    for (int index = 0; index < plain.GetLength(); ++index) {
        if (plain[index] >= 0x7F) {
            plain.SetAt(index, L'_');
        }
    }
    return plain;
}

// A percent sign means one thing at a prompt and another in a script; in a line that is pasted there, PowerShell runs what a
// dollar sign or a backquote begins; and what nobody sees, or UTF-8 can't hold, doesn't belong into a name.
CString LogNamePart(const CString& text)
{
    const CString name = FileNamePart(text);
    CString part;
    for (int index = 0; index < name.GetLength(); ++index) {
        const bool fits = CString(L"%$`\x7F").Find(name[index]) < 0 && !IsHiddenUnit(name, index);
        part += fits ? name[index] : L'_';
    }
    return part;
}

CString LogProductName(const BuildDatabase& database)
{
    return LogNamePart(database.strProductName);
}

// What a name takes at most where file systems count bytes, as those behind many shares do: up to 255 of UTF-8.
int MostBytes(const CString& name)
{
    int bytes = 0;
    for (int index = 0; index < name.GetLength(); ++index) {
        bytes += name[index] < 0x80 ? 1 : name[index] < 0x800 ? 2 : 3;
    }
    return bytes;
}

constexpr int LOG_NAME_BYTES = 200; // leaves room for the number before it

CString LogNameEnding(const BuildDatabase& database, const wchar_t* action)
{
    return L"_" + AsciiOnly(LogNamePart(database.strProductVersion)) + L"_" + action + L"_";
}

// What the installer is to do with one product, as it stands behind the program's name.
struct InstallerRun
{
    const BuildDatabase* database;
    CString strArguments;
};

CString LoggedArguments(const InstallerRun& run)
{
    return run.strArguments + L" %DISPLAY_OPTION% /norestart /L*V \"%LOGS%\\%LOG%\"";
}

void Open(CCommandScript& script, const CString& purpose)
{
    script.Line(L"@echo off");
    script.Line(L"rem " + purpose);
    script.Line(L"rem Ends when all is done. Exit code: the installer's own. 0 success; 3010 success, "
                L"restart needed;");
    script.Line(L"rem 1641 success, restart begun; 1618 another installation is running, try again; all "
                L"else: see the");
    script.Line(L"rem log.");
    script.Line(L"setlocal EnableExtensions DisableDelayedExpansion");
    script.Line(L"");
    WriteWords(script);
}

// Before the first line with other letters: each line is read in the code page of its moment. The names decide, not the
// location: that one is never written into the scripts.
void SwitchCodePage(CCommandScript& script, bool ascii)
{
    if (ascii) {
        return;
    }
    script.Line(L"rem The names below are UTF-8; the console gets its own code page back at the end.");
    script.Line(L"for /f \"tokens=2 delims=:.\" %%P in ('chcp') do set \"CODE_PAGE=%%P\"");
    script.Line(L"chcp 65001 >nul 2>&1");
}

void WriteSettings(CCommandScript& script, const WorkstationCommands& commands)
{
    script.Line(L"rem ---- Settings "
                L"---------------------------------------------------------------------------------");
    script.Line(
        L"rem Where each computer writes its log. Computer accounts need the right to write there. When the");
    script.Line(
        L"rem folder is empty or can't be written to, the log goes to the computer's own Windows folder.");
    script.Set(LOG_FOLDER_SETTING, QuotedBatchText(commands.strLogFolder));
    script.Line(L"rem 1: each log in that folder is copied to the computer's own Windows folder as well.");
    script.Set(KEEP_LOCAL_LOG_SETTING, commands.bKeepLocalLog ? L"1" : L"0");
    script.Line(L"rem /qn shows nothing, /qb-! a progress bar without buttons and questions.");
    script.Set(DISPLAY_SETTING, DisplayArgument(commands.strDisplay));
    script.Line(
        L"rem "
        L"-----------------------------------------------------------------------------------------------");
    script.Line(L"");
}

void ChooseLogFolder(CCommandScript& script)
{
    script.Line(L"set \"LOCAL_LOGS=%windir%\\Logs\\Software\"");
    script.Line(L"set \"LOGS=%LOG_FOLDER%\"");
    script.Line(L"call :probe_log_folder");
    script.Line(L"if not errorlevel 1 goto log_folder_chosen");
    script.Line(L"set \"LOGS=%LOCAL_LOGS%\"");
    script.Line(L"call :probe_log_folder");
    script.Line(L"if not errorlevel 1 goto log_folder_chosen");
    script.Line(L"set \"LOGS=%TEMP%\"");
    script.Line(L":log_folder_chosen");
    script.Line(L"set \"RESULT=0\"");
    script.Line(L"");
}

void Run(CCommandScript& script, const InstallerRun& run)
{
    script.Line(L"start \"\" /wait \"%windir%\\System32\\msiexec.exe\" " + LoggedArguments(run));
    script.Line(L"set \"CODE=%ERRORLEVEL%\"");
    script.Line(L"call :keep_local_log");
    script.Line(L"call :judge");
    script.Line(L"if errorlevel 1 goto finish");
    script.Line(L"");
}

void Close(CCommandScript& script, bool uninstalls)
{
    script.Line(L":finish");
    script.Line(L"if defined CODE_PAGE chcp %CODE_PAGE% >nul 2>&1");
    script.Line(L"exit /b %RESULT%");
    script.Line(L"");
    script.Line(L"rem Goes on after success, keeps the wish for a restart, and stops at anything else with "
                L"its code.");
    script.Line(L":judge");
    script.Line(L"if \"%CODE%\"==\"0\" exit /b 0");
    if (uninstalls) {
        script.Line(L"rem Not installed, or removed already: what was wanted.");
        script.Line(L"if \"%CODE%\"==\"1605\" exit /b 0");
        script.Line(L"if \"%CODE%\"==\"1614\" exit /b 0");
    }
    script.Line(L"if \"%CODE%\"==\"1641\" goto restart");
    script.Line(L"if \"%CODE%\"==\"3010\" goto restart");
    script.Line(L"set \"RESULT=%CODE%\"");
    script.Line(L"exit /b 1");
    script.Line(L"");
    script.Line(L"rem A restart that has begun outweighs one that is only needed.");
    script.Line(L":restart");
    script.Line(L"if not \"%RESULT%\"==\"1641\" set \"RESULT=%CODE%\"");
    script.Line(L"exit /b 0");
    script.Line(L"");
    script.Line(L"rem A copy of the log for whoever sits before the computer. That it can't be made changes "
                L"nothing.");
    script.Line(L":keep_local_log");
    script.Line(L"if not \"%KEEP_LOCAL_LOG%\"==\"1\" exit /b 0");
    script.Line(L"if /i \"%LOGS%\"==\"%LOCAL_LOGS%\" exit /b 0");
    script.Line(L"if /i \"%LOGS%\"==\"%TEMP%\" exit /b 0");
    script.Line(L"if not exist \"%LOCAL_LOGS%\\\" md \"%LOCAL_LOGS%\" >nul 2>&1");
    script.Line(L"copy /y \"%LOGS%\\%LOG%\" \"%LOCAL_LOGS%\\%LOG%\" >nul 2>&1");
    script.Line(L"if errorlevel 1 copy /y \"%LOGS%\\%LOG%\" \"%TEMP%\\%LOG%\" >nul 2>&1");
    script.Line(L"exit /b 0");
    script.Line(L"");
    script.Line(
        L"rem Writes a file to see whether the log can be written; a log must never stop the installer.");
    script.Line(L":probe_log_folder");
    script.Line(L"if not defined LOGS exit /b 1");
    script.Line(L"if \"%LOGS:~-1%\"==\"\\\" set \"LOGS=%LOGS:~0,-1%\"");
    script.Line(L"if not exist \"%LOGS%\\\" md \"%LOGS%\" >nul 2>&1");
    script.Line(L"set \"PROBE=%LOGS%\\probe_%COMPUTERNAME%_%RANDOM%.tmp\"");
    script.Line(L"echo probe 2>nul >\"%PROBE%\"");
    script.Line(L"if not exist \"%PROBE%\" exit /b 1");
    script.Line(L"del /q \"%PROBE%\" >nul 2>&1");
    script.Line(L"exit /b 0");
}

// The letters of a log's name don't stand in the script, which each interpreter would read in its own code page, but in the
// name of a file, which all read alike. Without that file the log takes a name in ASCII: a log must stop nothing.
void SetLog(CCommandScript& script, const BuildPlan& plan, const BuildDatabase& database,
            const wchar_t* action)
{
    const CString ending = LogNameEnding(database, action) + L"%COMPUTERNAME%.log";
    script.Set(L"LOG", AsciiOnly(LogProductName(database)) + ending);
    const CString file = LogNameFile(plan, database);
    if (file.IsEmpty()) {
        return;
    }
    const int number = LastName(file).Find(L'-') + 1;
    script.Line(L"set \"NAME=\"");
    script.Line(L"for /r \"%~dp0" + FolderAbove(file) + L"\" %%F in (" + LastName(file).Left(number) +
                L"*) do set \"NAME=%%~nxF\"");
    script.Line(L"if defined NAME set \"LOG=%NAME:~" + NumberText(number) + L"%" + ending + L"\"");
}

struct ScriptKind
{
    const wchar_t* purpose;
    const wchar_t* action; // in the names of logs
    bool uninstalls;
    ScriptWords words;
};

constexpr ScriptKind INSTALL = {L"Installs this deployment on the computer where it is run, without asking.",
                                L"Install",
                                false,
                                {L"Install.cmd", L"installs"}};
constexpr ScriptKind UNINSTALL = {
    L"Removes this deployment's products from the computer where it is run, without asking.",
    L"Uninstall",
    true,
    {L"Uninstall.cmd", L"removes"}};

CString ComposeScript(const BuildPlan& plan, const ScriptKind& kind, const std::vector<InstallerRun>& runs)
{
    CCommandScript script;
    Open(script, kind.purpose);
    SwitchCodePage(script, !NeedsUtf8(plan));
    WriteSettings(script, plan.commands);
    script.Line(L"if defined CHECK_ONLY goto check");
    ChooseLogFolder(script);
    for (const InstallerRun& run : runs) {
        SetLog(script, plan, *run.database, kind.action);
        Run(script, run);
    }
    Close(script, kind.uninstalls);
    WriteUsage(script, kind.words);
    BeginCheck(script);
    for (const InstallerRun& run : runs) {
        SetLog(script, plan, *run.database, kind.action);
        ShowCommand(script, L"msiexec.exe " + LoggedArguments(run));
    }
    EndCheck(script);
    return script.Text();
}

} // namespace

CString WithoutQuotes(const CString& text)
{
    CString plain;
    for (int index = 0; index < text.GetLength(); ++index) {
        const wchar_t character = text[index];
        if (character >= 32 && character != 0x7F && character != L'"') {
            plain += character;
        }
    }
    return plain;
}

CString QuotedBatchText(const CString& text)
{
    CString quoted = WithoutQuotes(text);
    quoted.Replace(L"%", L"%%");
    return quoted;
}

CString UnquotedBatchText(const CString& quoted)
{
    CString text = quoted;
    text.Replace(L"%%", L"%");
    return text;
}

bool IsDisplayOption(const CString& text)
{
    constexpr int LONGEST = 5; // `/qb-!`
    if (text.Left(2).CompareNoCase(L"/q") != 0 || text.GetLength() > LONGEST) {
        return false;
    }
    int index = 2;
    if (index < text.GetLength() && CString(L"nbrfNBRF").Find(text[index]) >= 0) {
        ++index;
    }
    while (index < text.GetLength() && CString(L"+-!").Find(text[index]) >= 0) {
        ++index;
    }
    return index == text.GetLength();
}

CString DisplayArgument(const CString& option)
{
    return IsDisplayOption(option) ? option : CString(L"/qn");
}

CString CodeArgument(const CString& productCode)
{
    return IsBracedGuid(productCode) ? productCode : L"\"" + WithoutQuotes(productCode) + L"\"";
}

CString LogFileBase(const BuildDatabase& database, const wchar_t* action)
{
    return LogProductName(database) + LogNameEnding(database, action);
}

CString LogNameFile(const BuildPlan& plan, const BuildDatabase& database)
{
    const CString name = LogProductName(database);
    const bool needed = !IsAscii(name) && MostBytes(name) <= LOG_NAME_BYTES;
    for (std::size_t index = 0; needed && index < plan.databases.size(); ++index) {
        if (&plan.databases[index] == &database) {
            return L"Image\\LogNames\\" + NumberText(static_cast<long long>(index + 1)) + L"-" + name;
        }
    }
    return {};
}

bool NeedsUtf8(const BuildPlan& plan)
{
    bool ascii = IsAscii(plan.commands.strLogFolder);
    for (const BuildDatabase& database : plan.databases) {
        ascii = ascii && IsAscii(database.strTarget) && IsAscii(PatchArgument(database)) &&
                IsAscii(database.strProductCode);
    }
    return !ascii;
}

CString ComposeInstallScript(const BuildPlan& plan)
{
    std::vector<InstallerRun> runs;
    for (const BuildDatabase& database : plan.databases) {
        runs.push_back({&database, L"/i \"%~dp0" + QuotedBatchText(database.strTarget) + L"\"" +
                                       PatchArgument(database)});
    }
    return ComposeScript(plan, INSTALL, runs);
}

CString ComposeUninstallScript(const BuildPlan& plan)
{
    std::vector<InstallerRun> runs;
    // What was installed last, a language pack for instance, builds on what came before it.
    for (auto database = plan.databases.rbegin(); database != plan.databases.rend(); ++database) {
        CString code = CodeArgument(database->strProductCode);
        code.Replace(L"%", L"%%");
        runs.push_back({&*database, L"/x " + code});
    }
    return ComposeScript(plan, UNINSTALL, runs);
}
