#include "host/build/notes_text.h"

#include "host/build/build_failure.h"
#include "host/build/build_names.h"
#include "host/build/command_text.h"

#include <algorithm>

namespace {

CString PatchLine(const BuildDatabase& database, const CString& folder)
{
    CString list;
    for (const CString& patch : database.patchTargets) {
        list += (list.IsEmpty() ? L"" : L";") + JoinFolder(folder, patch);
    }
    return list.IsEmpty() ? list : L" PATCH=\"" + list + L"\"";
}

CString LogArgument(const BuildPlan& plan, const BuildDatabase& database, const wchar_t* action)
{
    const CString folder = plan.commands.strLogFolder.IsEmpty() ? CString(L"%windir%\\Logs\\Software")
                                                                : plan.commands.strLogFolder;
    return L" /L*V \"" + JoinFolder(folder, LogFileBase(database, action)) + L"%COMPUTERNAME%.log\"";
}

void AppendProduct(CString& text, const BuildPlan& plan, const BuildDatabase& database, const CString& folder)
{
    const CString package = L"\"" + JoinFolder(folder, database.strTarget) + L"\"";
    CString properties;
    for (const CString& assignment : database.installProperties) {
        properties += L" " + PropertyArgument(assignment);
    }
    text += L"\r\n" + database.strProductName + L"\r\n";
    text += L"  Product code:   " + database.strProductCode + L"\r\n";
    text += L"  Version:        " + database.strProductVersion + L"\r\n";
    text += L"  Maker:          " + database.strMaker + L"\r\n";
    text += L"  Detection rule: MSI product code " + database.strProductCode +
            L", version equal to or above " + database.strProductVersion + L"\r\n";
    text += L"  Install:\r\n    msiexec /i " + package + PatchLine(database, folder) + properties + L" " +
            plan.commands.strDisplay + L" /norestart" + LogArgument(plan, database, L"Install") + L"\r\n";
    text += L"  Repair:\r\n    msiexec /fomus " + database.strProductCode + L" " + plan.commands.strDisplay +
            L" /norestart" + LogArgument(plan, database, L"Repair") + L"\r\n";
    text += L"  Uninstall:\r\n    msiexec /x " + database.strProductCode + L" " + plan.commands.strDisplay +
            L" /norestart" + LogArgument(plan, database, L"Uninstall") + L"\r\n";
    text += L"  Group policy:\r\n    Add the package by its full UNC path: " +
            JoinFolder(folder, database.strTarget) +
            L"\r\n    Computer accounts need read access to the folder.\r\n";
    for (const CString& patch : database.patchTargets) {
        text += L"  Patch:          " + patch + L"\r\n";
    }
}

const wchar_t g_exitCodes[] =
    L"\r\nExit codes (the installer's own, handed on unchanged)\r\n"
    L"  0           success\r\n"
    L"  1602        cancelled by the user\r\n"
    L"  1603        failed, see the log\r\n"
    L"  1605, 1614  not installed; success for Uninstall.cmd, which then ends with 0\r\n"
    L"  1612, 1619  the source or the package can't be opened\r\n"
    L"  1618        another installation is running, try again\r\n"
    L"  1641, 3010  success, restart begun or needed\r\n";

} // namespace

CString ComposeReadMe(const BuildPlan& plan, const CString& workstationPath)
{
    CString text = plan.strName + L"\r\n\r\n";
    text += L"A deployment of " + plan.strMediaName + L", built by " + plan.strBuiltBy + L".\r\n\r\n";
    text += L"On a workstation, in a start script or from a management system, with rights to install:\r\n";
    text += L"    \"" + workstationPath + L"\\Install.cmd\"\r\n";
    text += L"    \"" + workstationPath + L"\\Uninstall.cmd\"\r\n\r\n";
    text += L"Both show nothing, wait until all is done, and end with the installer's code. Their settings "
            L"stand at\r\n"
            L"their top. The folder can be moved or shared under another name; the lines below then need its "
            L"new\r\n"
            L"path. Workstations only read it; write access is needed for the log folder alone.\r\n";
    for (const BuildDatabase& database : plan.databases) {
        AppendProduct(text, plan, database, workstationPath);
    }
    text += g_exitCodes;
    text += L"\r\nFiles\r\n"
            L"  Manifest.txt               SHA-256, size and path of every file, to check that nothing was "
            L"changed\r\n"
            L"  Changes.txt, Changes.json  what differs from the vendor's databases, row by row\r\n"
            L"  Build.log                  how this folder was built\r\n"
            L"  Deployment.xml             the settings, for the wizard\r\n"
            L"  Image\\                     the products\r\n";
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
                entry.strPath + L"\r\n";
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
    return L"\r\nCode:   " + NumberText(code) + L"\r\nCause:  " + cause + L"\r\nRemedy: " + RemedyOf(code) +
           L"\r\n";
}
