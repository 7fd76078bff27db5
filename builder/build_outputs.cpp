// Outputs: the texts beside the image.
//
// Texts for people are UTF-8 with a mark of byte order: Notepad of every Windows 10 then shows them rightly, and
// search and compare tools still see plain lines, which UTF-16 would deny them. JSON and XML have no mark, as their
// readers refuse or ignore it; nor have the scripts, as cmd takes it for a part of the first command.
#include "builder/build_run.h"

#include "builder/build_failure.h"
#include "builder/build_names.h"
#include "builder/command_text.h"

void WriteOutputs(BuildRun& run)
{
    run.Step(L"Writing the commands and notes");
    for (const BuildText& text : run.plan.texts) {
        WriteIntoStaging(run, text.strTarget, text.strText, text.bByteOrderMark);
    }
    for (const BuildDatabase& database : run.plan.databases) {
        const CString logName = LogNameFile(run.plan, database);
        if (!logName.IsEmpty()) {
            WriteIntoStaging(run, logName,
                             L"The name of this file is the name of the product in the names of logs.\r\n",
                             false);
        }
    }
    WriteIntoStaging(run, L"Install.cmd", ComposeInstallScript(run.plan), false);
    WriteIntoStaging(run, L"Uninstall.cmd", ComposeUninstallScript(run.plan), false);
    WriteIntoStaging(run, L"ReadMe.txt", ComposeReadMe(run.plan, run.target, !run.additions.empty()), true);
    if (!run.additions.empty()) {
        WriteIntoStaging(run, ADDITIONS_FILE, ComposeAdditions(run.additions), true);
    }
    WriteIntoStaging(run, L"Changes.txt", ComposeChangesText(run.changes), true);
    WriteIntoStaging(run, L"Changes.json", ComposeChangesJson(run.changes), false);
    // The log and the manifest come last: one tells all steps, the other names all files. The folder appears by a
    // rename after them, so a log that is seen at all belongs to a build that succeeded.
    run.log.Write(L"Files: " + NumberText(static_cast<long long>(run.manifest.size() + 2)));
    WriteIntoStaging(run, L"Build.log",
                     run.log.Text() + ComposeLogEnd(BUILD_OK, L"The deployment is complete."), true);
    WriteIntoStaging(run, L"Manifest.txt", ComposeManifest(run.manifest), true);
}
