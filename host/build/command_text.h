// Install.cmd and Uninstall.cmd: what a workstation or a management system runs. No window header.
//
// The scripts stay ASCII unless a name has other letters; then they are UTF-8 without a mark (cmd takes a mark for
// a part of the first command) and switch the code page while they run. They find their folder by %~dp0, so the
// deployment installs from wherever it is moved.
#pragma once

#include "host/build/build_plan.h"

CString ComposeInstallScript(const BuildPlan& plan);
CString ComposeUninstallScript(const BuildPlan& plan);

// `Zolt 2027_27.0.0_Install_` before the computer's name.
CString LogFileBase(const BuildDatabase& database, const wchar_t* action);

// The text as it stands between the quotes of `set "NAME=text"`: "%" doubled, quotes and control characters out.
CString QuotedBatchText(const CString& text);

// `NAME="value"` for the installer's command line from `NAME=value`; quotes inside the value are doubled.
CString PropertyArgument(const CString& assignment);
