// Added files: packed into cabinets or laid beside the product's own, as added_files.h has decided.
#pragma once

#include "builder/added_files.h"
#include "builder/build_run.h"

// Writes them into the staging folder. Each file's size is then that of the bytes that really went in; true when one
// differs from what was decided, as its source has changed meanwhile.
[[nodiscard]] bool WriteAddedFiles(BuildRun& run, const BuildDatabase& database, AddedFiles& added);
