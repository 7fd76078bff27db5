// Colours as HTML writes them, and whether two of them can be distinguished.
#pragma once

#include "slimhtml/html_document.h"

// "#RRGGBB", "#RGB", with or without "#", or one of the common names; noHtmlColor for anything else.
[[nodiscard]] HtmlColor ParseHtmlColor(const CString& text) noexcept;

// The wanted colour, or black or white where it can hardly be distinguished from the background.
[[nodiscard]] HtmlColor ReadableColor(HtmlColor wanted, HtmlColor background) noexcept;
