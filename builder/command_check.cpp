#include "builder/command_check.h"

namespace {

// Codes of the scripts themselves, apart from the installer's.
constexpr const wchar_t* UNREADABLE = L"2";
constexpr const wchar_t* UNKNOWN_WORD = L"20"; // as of the wizard's own command line

} // namespace

void WriteWords(CCommandScript& script)
{
    script.Line(L"set \"CHECK_ONLY=\"");
    script.Line(L"set \"CODE_PAGE=\"");
    script.Line(L"if \"%~1\"==\"\" goto words_read");
    script.Line(L"if \"%~1\"==\"/?\" goto usage");
    script.Line(L"if /i not \"%~1\"==\"/check\" goto unknown_word");
    script.Line(L"set \"CHECK_ONLY=1\"");
    script.Line(L":words_read");
    script.Line(L"");
}

// The sign for help itself can't be shown: a line with it makes the interpreter show its own help.
void WriteUsage(CCommandScript& script, const ScriptWords& words)
{
    const CString file = words.file;
    script.Line(L"");
    script.Line(L":unknown_word");
    script.Line(L"echo " + file + L" has no such option. Nothing was done.");
    script.Line(L"set \"RESULT=" + CString(UNKNOWN_WORD) + L"\"");
    script.Line(L"goto show_usage");
    script.Line(L":usage");
    script.Line(L"set \"RESULT=0\"");
    script.Line(L":show_usage");
    script.Line(L"echo " + file + L"           " + words.verb +
                L" the products of this deployment, without asking");
    script.Line(L"echo " + file +
                L" /check    shows what that would run, and checks that this account can read every file");
    script.Line(L"echo Exit codes: those of the installer. Of /check: 0 when all can be read, " +
                CString(UNREADABLE) + L" when something can't.");
    script.Line(L"echo The settings for the log and the display stand at the top of the file.");
    script.Line(L"exit /b %RESULT%");
}

void BeginCheck(CCommandScript& script)
{
    script.Line(L"");
    script.Line(
        L"rem Changes nothing on this computer but for a file in the log folder, which goes at once.");
    script.Line(L":check");
    script.Line(L"set \"RESULT=0\"");
    script.Line(L"echo Checked as \"%USERDOMAIN%\\%USERNAME%\" on \"%COMPUTERNAME%\". Nothing is installed "
                L"or removed.");
    script.Line(L"set \"LOCAL_LOGS=%windir%\\Logs\\Software\"");
    script.Line(L"set \"LOGS=%LOCAL_LOGS%\"");
    script.Line(L"if not defined LOG_FOLDER goto logs_known");
    script.Line(L"set \"LOGS=%LOG_FOLDER%\"");
    script.Line(L"if not exist \"%LOGS%\\\" goto no_log_folder");
    script.Line(L"call :probe_log_folder");
    script.Line(L"if not errorlevel 1 goto logs_known");
    script.Line(L":no_log_folder");
    script.Line(L"echo This account can't write to the log folder \"%LOG_FOLDER%\", or it isn't there yet. "
                L"If it can't be made, "
                L"the");
    script.Line(L"echo logs go to \"%LOCAL_LOGS%\".");
    script.Line(L":logs_known");
    script.Line(L"echo Commands:");
}

void ShowCommand(CCommandScript& script, const CString& command)
{
    script.Line(L"echo     " + command);
}

// Reading each file to its end is the one check that every interpreter has. The names are UTF-8.
void EndCheck(CCommandScript& script)
{
    script.Line(L"echo Files:");
    script.Line(L"if not exist \"%~dp0Manifest.txt\" goto no_manifest");
    script.Line(L"if defined CODE_PAGE goto names_readable");
    script.Line(L"for /f \"tokens=2 delims=:.\" %%P in ('chcp') do set \"CODE_PAGE=%%P\"");
    script.Line(L"chcp 65001 >nul 2>&1");
    script.Line(L":names_readable");
    script.Line(L"for /f \"usebackq skip=1 tokens=2*\" %%A in (\"%~dp0Manifest.txt\") do (");
    script.Line(L"    if exist \"%~dp0%%B\" (");
    script.Line(L"        ver >nul");
    script.Line(L"        type \"%~dp0%%B\" >nul 2>&1");
    script.Line(L"        if errorlevel 1 (");
    script.Line(L"            echo     can't be read: \"%~dp0%%B\"");
    script.Line(L"            set \"RESULT=" + CString(UNREADABLE) + L"\"");
    script.Line(L"        )");
    script.Line(L"    ) else (");
    script.Line(L"        echo     missing: \"%~dp0%%B\"");
    script.Line(L"        set \"RESULT=" + CString(UNREADABLE) + L"\"");
    script.Line(L"    )");
    script.Line(L")");
    script.Line(L"if \"%RESULT%\"==\"0\" echo     All are there, and this account can read them.");
    script.Line(L"goto finish");
    script.Line(L":no_manifest");
    script.Line(L"echo     missing: \"%~dp0Manifest.txt\", which names all others");
    script.Line(L"set \"RESULT=" + CString(UNREADABLE) + L"\"");
    script.Line(L"goto finish");
}
