// The settings of a workstation that the page has besides the custom shortcuts: how their properties are read, and which
// names of a profile are accepted.
#pragma once

#include "base/string.h"

#include <optional>

// A check box and its property. Any other value than the one for "on" is off; where the property is empty, it is on.
struct WorkstationSwitch
{
    const wchar_t* property;
    const wchar_t* on;
    const wchar_t* off;
};

inline constexpr WorkstationSwitch DESKTOP_SHORTCUT = {L"TARN_DESKTOPSHORTCUT_1", L"1", L"0"};
inline constexpr WorkstationSwitch BROWSER_REQUIRED = {L"ZOLT_IE_REQUIRED", L"1", L"0"};
// With the installer's mark of an integer.
inline constexpr WorkstationSwitch SHEET_FORMAT = {L"ZOLT_SHEETX_FORMAT", L"#1", L"#0"};

inline constexpr wchar_t PROFILE_NAME_PROPERTY[] = L"ZOLTDEFAULTPROFILENAME";
// Whatever it says, a row of this name hides the check box of the desktop shortcut.
inline constexpr wchar_t HIDE_DESKTOP_SHORTCUT_PROPERTY[] = L"TARN_DO_NOT_SHOW_SHORTCUT_CHECKBOX";

[[nodiscard]] bool IsSwitchedOn(const WorkstationSwitch& setting, const CString& value);
[[nodiscard]] const wchar_t* SwitchValue(const WorkstationSwitch& setting, bool on);

// A name of a file, or the empty text. It may begin with "<<" and end with ">>", each without the other too: the marks of
// names that the product brings itself.
[[nodiscard]] bool IsProfileNameAccepted(const CString& name);

// The label with the product in place of each "[ProductName]"; nothing where none stands.
[[nodiscard]] std::optional<CString> LabelWithProduct(const CString& label, const CString& product);
