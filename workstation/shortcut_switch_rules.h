// The command line of a custom shortcut: switches for the program that the shortcut starts.
//
//     command = [piece] { "/" piece }     white space around a piece doesn't count, and an empty piece is none
//     piece   = name [ blank value ]      blank: a space, a tab or a line feed
//     name    = one of SHORTCUT_SWITCHES, in either case
//
// The first piece needs no slash: "nologo" is the switch too. A value isn't looked at, but can hold no slash: what follows
// one is the next piece.
#pragma once

#include "base/string.h"

#include <optional>

inline constexpr const wchar_t* SHORTCUT_SWITCHES[] = {
    L"b", L"t", L"c", L"v", L"ld", L"s", L"r", L"nologo", L"p", L"nossm", L"set", L"w", L"pl", L"nohardware"};

// The first piece whose name is none of the switches; nothing for a command line that is good.
[[nodiscard]] std::optional<CString> FindBadSwitch(const CString& command);
