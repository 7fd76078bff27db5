// What Install.cmd and Uninstall.cmd say of themselves: their words, and a check that shows what they would run and whether the
// account that runs them can read the deployment. No window header.
#pragma once

#include "builder/script_lines.h"

struct ScriptWords
{
    const wchar_t* file; // name of the script
    const wchar_t* verb; // what it does with the products: "installs"
};

// Reads the words behind the script's name: sets CHECK_ONLY, or leads to the usage. Stands before anything is done.
void WriteWords(CCommandScript& script);

// The sections that the words lead to; behind all that runs by itself. Between BeginCheck and EndCheck stand the commands,
// with LOG set for each as where they are run.
void WriteUsage(CCommandScript& script, const ScriptWords& words);
void BeginCheck(CCommandScript& script);
void ShowCommand(CCommandScript& script, const CString& command);
void EndCheck(CCommandScript& script);
