// The settings at the top of Install.cmd and Uninstall.cmd, which an administrator may change there: read back from a
// script, and put back to tell whether anything else was changed. No window header.
//
//   setting = `set "` NAME `=` value `"`       a line of its own; the first one of the name counts
//   value   = bytes but quotes and control characters; for KEEP_LOCAL_LOG 0 or 1, for DISPLAY_OPTION a display option
#pragma once

#include "builder/build_plan.h"

#include <string>

inline constexpr wchar_t LOG_FOLDER_SETTING[] = L"LOG_FOLDER";
inline constexpr wchar_t KEEP_LOCAL_LOG_SETTING[] = L"KEEP_LOCAL_LOG";
inline constexpr wchar_t DISPLAY_SETTING[] = L"DISPLAY_OPTION";

struct SettingChange
{
    const wchar_t* name = L"";    // of the variable
    const wchar_t* inWords = L""; // "log folder"
    CString strBuilt;
    CString strNow;
};

// The script with its settings as `built` says. False when it lacks one of them, or one has a value that such a setting
// can't have. `changes` has those that were others.
[[nodiscard]] bool RestoreSettings(const std::string& script, const WorkstationCommands& built,
                                   std::string& restored, std::vector<SettingChange>& changes);
