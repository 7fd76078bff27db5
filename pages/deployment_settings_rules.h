// What the settings page decides without a window.
#pragma once

#include "frame/folder_check.h"
#include "include/product.h"

// True for a product that carries the property MC3_ENABLED. Null carries nothing.
[[nodiscard]] bool CarriesMc3(const CProduct* product);

// Next waits for a folder as long as a log is to be written.
[[nodiscard]] bool IsLogChoiceComplete(bool writesLog, const CString& folder);

// What becomes of a log folder that ValidateFolder judged.
enum class LogFolderVerdict
{
    Usable,
    NotNetwork, // refused: no path that other computers could use
    Doubtful,   // can't be reached or written to from here; the administrator decides
};
[[nodiscard]] LogFolderVerdict JudgeLogFolder(PathCheckResult result, const CString& folder);
