// Gets the answers of a run from the disk and the command line.
#pragma once

#include "setup/answers.h"

// Reads the file that `line` names, if any, and joins it with the command line's answers. False with `error`.
[[nodiscard]] bool ReadAnswers(const CommandLine& line, const CString& currentFolder, CAnswers& answers,
                               AnswersError& error);
