// The steps that enter lines of additional files, a function a word, by the page's own commands.
#pragma once

#include "setup/page_lists.h"

using AnswerLines = std::vector<const PageAnswer*>;
using ListSteps = std::vector<ListStep>;

// A file may be picked together with those behind it that are of one folder, and come to one.
void AddFileSteps(const AnswerLines& lines, ListSteps& steps);
void AddFolderSteps(const PageAnswer& line, ListSteps& steps);
void AddFolderTreeSteps(const PageAnswer& line, ListSteps& steps);
void AddDriveSteps(const PageAnswer& line, ListSteps& steps);
void AddRenameSteps(const PageAnswer& line, ListSteps& steps);
void AddRemoveSteps(const PageAnswer& line, ListSteps& steps);

// Removes what was added but for what the lines ask for: that stays, as its sources may be gone.
void AddClearSteps(const PageAnswer& answer, const AnswerLines& lines, ListSteps& steps);
