// Install.cmd and Uninstall.cmd: what a workstation or a management system runs. No window header.
//
// The scripts stay ASCII unless a name has other letters; then they are UTF-8 without a mark (cmd takes a mark for
// a part of the first command) and switch the code page while they run. They find their folder by %~dp0, so the
// deployment installs from wherever it is moved.
#pragma once

#include "builder/build_plan.h"

[[nodiscard]] CString ComposeInstallScript(const BuildPlan& plan);
[[nodiscard]] CString ComposeUninstallScript(const BuildPlan& plan);

// True when the scripts have letters beyond ASCII.
[[nodiscard]] bool NeedsUtf8(const BuildPlan& plan);

// `Zolt 2027_27.0.0_Install_` before the computer's name.
[[nodiscard]] CString LogFileBase(const BuildDatabase& database, const wchar_t* action);

// The file that has a product's letters beyond ASCII in its name, for the names of logs: `Image\LogNames\1-Français`. Empty for
// a product without such letters. `database` is one of the plan's.
[[nodiscard]] CString LogNameFile(const BuildPlan& plan, const BuildDatabase& database);

// The text as it stands between quotes of a command: quotes and control characters out, as nothing else ends the quotes
// or the line.
[[nodiscard]] CString WithoutQuotes(const CString& text);
// The same in a script, between the quotes of `set "NAME=text"`: "%" stands twice.
[[nodiscard]] CString QuotedBatchText(const CString& text);
// The text back from there.
[[nodiscard]] CString UnquotedBatchText(const CString& quoted);

// True for one of the installer's display options: `/qn`, `/qb-!`.
[[nodiscard]] bool IsDisplayOption(const CString& text);
// The option as it stands in a command; `/qn` for a text that is none, as it can't stand between quotes.
[[nodiscard]] CString DisplayArgument(const CString& option);

// A product code as it stands in a command: as it is, or between quotes when it is no GUID in braces.
[[nodiscard]] CString CodeArgument(const CString& productCode);
