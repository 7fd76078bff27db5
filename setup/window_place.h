// Where a window stood the last time, for each user of the machine.
#pragma once

#include "base/rectangle.h"
#include "base/string.h"
#include "setup/configure_rules.h"

#include <windows.h>

#include <optional>

// `key`: below HKEY_CURRENT_USER; an empty one remembers nothing. `window`: the name of the value.
[[nodiscard]] std::optional<ScreenCorner> ReadWindowCorner(const CString& key, const wchar_t* window);
// A place that can't be written is no loss that a user has to hear of.
void WriteWindowCorner(const CString& key, const wchar_t* window, const ScreenCorner& corner) noexcept;

// The work area of the monitor that is nearest to the rectangle.
ScreenRectangle WorkAreaNear(const ScreenRectangle& rectangle) noexcept;
