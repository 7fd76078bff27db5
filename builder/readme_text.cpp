#include "builder/readme_text.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/command_text.h"
#include "builder/copy_list.h"
#include "builder/deployment_place.h"
#include "builder/shown_text.h"

#include <algorithm>

namespace {

// Between single quotes PowerShell changes nothing but the quotes themselves, and takes the typographic ones for quotes too.
CString InSingleQuotes(const CString& text)
{
    CString quoted;
    for (int index = 0; index < text.GetLength(); ++index) {
        quoted += text[index];
        if (CString(L"'\x2018\x2019\x201A\x201B").Find(text[index]) >= 0) {
            quoted += text[index];
        }
    }
    return quoted;
}

// Waits for the program and shows its exit code. The arguments are one text, which is handed on as it is.
CString PowerShellStart(const wchar_t* program, const CString& arguments)
{
    return CString(L"(Start-Process ") + program + L" -Wait -PassThru -ArgumentList ('" + arguments +
           L"')).ExitCode";
}

// A call of the installer to paste, as it stands at a prompt, in a script, where "%" of a name stands twice, and in
// PowerShell.
class CPasteLine
{
public:
    // The same in all.
    void Add(const CString& arguments)
    {
        m_prompt += arguments;
        m_script += arguments;
        m_powerShell += InSingleQuotes(arguments);
    }
    // A variable of the environment, for the interpreter to replace.
    void AddVariable(const CString& name)
    {
        m_prompt += L"%" + name + L"%";
        m_script += L"%" + name + L"%";
        m_powerShell += L"' + $env:" + name + L" + '";
    }
    // What must come through as it is, between quotes.
    void AddName(const CString& name)
    {
        m_prompt += WithoutQuotes(name);
        m_script += QuotedBatchText(name);
        m_powerShell += InSingleQuotes(WithoutQuotes(name));
    }
    // What is quoted already where it needs to be.
    void AddArgument(const CString& argument)
    {
        m_prompt += argument;
        CString doubled = argument;
        doubled.Replace(L"%", L"%%");
        m_script += doubled;
        m_powerShell += InSingleQuotes(argument);
    }
    void AppendTo(CString& text) const
    {
        text += L"    msiexec " + m_prompt + L"\r\n";
        if (!(m_prompt == m_script)) {
            text += L"    in a script (.cmd), where a percent sign of a name stands twice:\r\n";
            text += L"    msiexec " + m_script + L"\r\n";
        }
        text += L"    in PowerShell:\r\n    " + PowerShellStart(L"msiexec.exe", m_powerShell) + L"\r\n";
    }

private:
    CString m_prompt;
    CString m_script;
    CString m_powerShell;
};

// Another script ends at a line that runs a script without `call`. That one reads its line a second time, which would
// change "%" and "^" in a name; for such names cmd runs the script, with "@" before the quotes so that it keeps them.
CString CallOfScript(const CString& script)
{
    const bool readTwice = script.FindOneOf(L"%^") >= 0;
    return (readTwice ? L"cmd /d /c @\"" : L"call \"") + QuotedBatchText(script) + L"\"";
}

bool HasLogNames(const BuildPlan& plan)
{
    return std::any_of(plan.databases.begin(), plan.databases.end(),
                       [&](const BuildDatabase& database) { return !LogNameFile(plan, database).IsEmpty(); });
}

void AppendScripts(CString& text, const BuildPlan& plan, const CString& folder)
{
    const CString scripts[] = {JoinFolder(folder, L"Install.cmd"), JoinFolder(folder, L"Uninstall.cmd")};
    text += L"On a workstation or from a management system, with rights to install:\r\n";
    for (const CString& script : scripts) {
        text += L"    \"" + WithoutQuotes(script) + L"\"\r\n";
    }
    text += L"In a batch file (.cmd, a start script), which the lines above would end, use these:\r\n";
    for (const CString& script : scripts) {
        text += L"    " + CallOfScript(script) + L"\r\n";
    }
    if (NeedsUtf8(plan) || !IsAscii(folder) || HasLogNames(plan)) {
        text += L"Some of these lines and of those below have letters beyond ASCII. Save a batch file that "
                L"has them as\r\n"
                L"UTF-8 without a byte order mark, with this line before them:\r\n    chcp 65001 >nul\r\n";
    }
    text += L"In PowerShell:\r\n";
    for (const CString& script : scripts) {
        // Of two pairs of quotes cmd takes the outer one off and reads the path between the inner one.
        const CString path = InSingleQuotes(WithoutQuotes(script));
        text += L"    " + PowerShellStart(L"cmd.exe", L"/d /c \"\"" + path + L"\"\"") + L"\r\n";
    }
}

void AddPatches(CPasteLine& line, const BuildDatabase& database, const CString& folder)
{
    for (std::size_t index = 0; index < database.patchTargets.size(); ++index) {
        line.Add(index == 0 ? L" PATCH=\"" : L";");
        line.AddName(JoinFolder(folder, database.patchTargets[index]));
    }
    if (!database.patchTargets.empty()) {
        line.Add(L"\"");
    }
}

void AddLog(CPasteLine& line, const BuildPlan& plan, const BuildDatabase& database, const wchar_t* action)
{
    line.Add(L" " + DisplayArgument(plan.commands.strDisplay) + L" /norestart /L*V \"");
    if (plan.commands.strLogFolder.IsEmpty()) {
        line.AddVariable(L"windir");
        line.Add(L"\\Logs\\Software\\");
        line.AddName(LogFileBase(database, action));
    } else {
        line.AddName(JoinFolder(plan.commands.strLogFolder, LogFileBase(database, action)));
    }
    line.AddVariable(L"COMPUTERNAME");
    line.Add(L".log\"");
}

void AppendInstallLine(CString& text, const BuildPlan& plan, const BuildDatabase& database,
                       const CString& folder)
{
    CPasteLine line;
    line.Add(L"/i \"");
    line.AddName(JoinFolder(folder, database.strTarget));
    line.Add(L"\"");
    AddPatches(line, database, folder);
    AddLog(line, plan, database, L"Install");
    line.AppendTo(text);
}

void AppendCodeLine(CString& text, const BuildPlan& plan, const BuildDatabase& database,
                    const wchar_t* option, const wchar_t* action)
{
    CPasteLine line;
    line.Add(CString(option) + L" ");
    line.AddArgument(CodeArgument(database.strProductCode));
    AddLog(line, plan, database, action);
    line.AppendTo(text);
}

void AppendPatches(CString& text, const BuildDatabase& database, bool appended)
{
    bool isFirst = true;
    for (const ListedPatch& patch : database.patches) {
        if ((patch.use == ListedPatch::Use::Appended) != appended) {
            continue;
        }
        if (isFirst) {
            text +=
                appended
                    ? L"  Patches, installed along with it in this order (by full paths, which must hold no "
                      L"semicolon):\r\n"
                    : L"  Patches, merged into the package and its files:\r\n";
            isFirst = false;
        }
        const CString name = patch.strName.IsEmpty() ? LastName(patch.strTarget) : patch.strName;
        const CString file = patch.strTarget.IsEmpty() ? CString(L"(not kept)") : ShownText(patch.strTarget);
        text += L"    " + ShownText(name.IsEmpty() ? CString(L"(no name)") : name) +
                L"\r\n      Patch code:   " + ShownText(patch.strCode) + L"\r\n      File:         " + file +
                L"\r\n";
    }
}

void AppendProduct(CString& text, const BuildPlan& plan, const BuildDatabase& database, const CString& folder)
{
    const CString code = ShownText(database.strProductCode);
    const CString version = ShownText(database.strProductVersion);
    text += L"\r\n" + ShownText(database.strProductName) + L"\r\n";
    text += L"  Product code:   " + code + L"\r\n";
    text += L"  Version:        " + version + L"\r\n";
    text += L"  Maker:          " + ShownText(database.strMaker) + L"\r\n";
    text +=
        L"  Detection rule: MSI product code " + code + L", version equal to or above " + version + L"\r\n";
    text += L"  Install:\r\n";
    AppendInstallLine(text, plan, database, folder);
    text += L"  Repair:\r\n";
    AppendCodeLine(text, plan, database, L"/fomus", L"Repair");
    text += L"  Uninstall:\r\n";
    AppendCodeLine(text, plan, database, L"/x", L"Uninstall");
    text += L"  Group policy:\r\n    Add the package by its full UNC path: " +
            ShownText(JoinFolder(folder, database.strTarget)) +
            L"\r\n    Computer accounts need read access to the folder.\r\n";
    if (!database.patchTargets.empty()) {
        text += L"    Group policy installs the package without the patches below. Merge them to have them "
                L"come with "
                L"it.\r\n";
    }
    AppendPatches(text, database, true);
    AppendPatches(text, database, false);
}

const wchar_t g_exitCodes[] =
    L"\r\nExit codes (the installer's own, passed on unchanged)\r\n"
    L"  0           success\r\n"
    L"  1602        canceled by the user\r\n"
    L"  1603        failed, see the log\r\n"
    L"  1605, 1614  not installed; success for Uninstall.cmd, which then ends with 0\r\n"
    L"  1612, 1619  the source or the package can't be opened\r\n"
    L"  1618        another installation is running, try again\r\n"
    L"  1641, 3010  success, restart begun or needed\r\n";

} // namespace

CString ComposeReadMe(const BuildPlan& plan, const CString& workstationPath, bool hasAdditions)
{
    CString text = ShownText(plan.strName) + L"\r\n\r\n";
    text += L"A deployment of " + ShownText(plan.strMediaName) + L", built by " + ShownText(plan.strBuiltBy) +
            L".\r\n\r\n";
    AppendScripts(text, plan, workstationPath);
    text += CString(L"\r\nBoth show ") +
            (plan.commands.strDisplay == L"/qn" ? L"nothing" : L"a progress bar") +
            L", wait until everything is done, and end with the installer's code. You can\r\n"
            L"change their settings at the top of each file. The folder can be moved or shared under another "
            L"name; the lines below then need its "
            L"new\r\n"
            L"path. Workstations only read it; write access is needed for the log folder alone.\r\n"
            L"Try them first with the word /check behind the name: it shows what each would run, and checks "
            L"that the "
            L"account\r\n"
            L"that runs it can read every file. It installs and removes nothing. The word /? shows the "
            L"words.\r\n";
    for (const BuildDatabase& database : plan.databases) {
        AppendProduct(text, plan, database, workstationPath);
    }
    text += g_exitCodes;
    text += L"\r\nWhether this folder is still what was built, by the deployment wizard's program:\r\n"
            L"    Setup.exe --verify \"" +
            WithoutQuotes(workstationPath) +
            L"\"\r\n"
            L"It reads every file and writes nothing. Exit codes: 0 it is; 28 it isn't, and what differs is "
            L"named; 29 that\r\n"
            L"can't be determined. Settings at the top of Install.cmd and Uninstall.cmd may have been "
            L"changed.\r\n";
    text += L"\r\nFiles\r\n"
            L"  Manifest.txt               SHA-256, size and path of every file, to check that nothing was "
            L"changed\r\n"
            L"  Changes.txt, Changes.json  what differs from the maker's databases, row by row\r\n"
            L"  Build.log                  how this folder was built\r\n"
            L"  Deployment.xml             the settings, for the wizard\r\n";
    if (hasAdditions) {
        text +=
            L"  Additions.txt              the files, folders and drives that were added, with where they "
            L"came from\r\n";
    }
    if (HasAnswers(plan)) {
        text +=
            L"  Answers.txt                the answers this was built from: Setup.exe --answers builds it "
            L"again\r\n";
    }
    text += L"  Image\\                     the products\r\n";
    if (HasLogNames(plan)) {
        text +=
            L"  Image\\LogNames\\            files whose names give the logs their letters beyond ASCII\r\n";
    }
    return text;
}

CString ComposeManifest(std::vector<ManifestEntry> entries)
{
    std::sort(entries.begin(), entries.end(), [](const ManifestEntry& left, const ManifestEntry& right) {
        return left.strPath.CompareNoCase(right.strPath) < 0;
    });
    CString text = L"# SHA-256, size in bytes and path of every file of the deployment but this one\r\n";
    for (const ManifestEntry& entry : entries) {
        text += entry.strSha256 + L" " + NumberText(static_cast<long long>(entry.size)) + L" " +
                ShownText(entry.strPath) + L"\r\n";
    }
    return text;
}

CString DescribeKept(bool hasManifest, const std::vector<CString>& own, const CString& keptFolder)
{
    constexpr std::size_t NAMED = 10;
    if (!hasManifest) {
        return L"The old deployment had no readable Manifest.txt that could tell its own files from others. "
               L"It was "
               L"kept whole in \"" +
               keptFolder + L"\".";
    }
    CString names;
    for (std::size_t index = 0; index < own.size() && index < NAMED; ++index) {
        names += (index > 0 ? CString(L", \"") : CString(L"\"")) + own[index] + L"\"";
    }
    if (own.size() > NAMED) {
        names += L" and " + NumberText(static_cast<long long>(own.size() - NAMED)) + L" more";
    }
    return L"Files that were added to the old deployment or changed in it were kept in \"" + keptFolder +
           L"\": " + names + L".";
}

CString ComposeLogEnd(unsigned int code, const CString& cause)
{
    return L"\r\nCode:   " + NumberText(code) + L"\r\nCause:  " + ShownText(cause) + L"\r\nRemedy: " +
           RemedyOf(code) + L"\r\n";
}
