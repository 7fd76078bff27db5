// Reads HTML into a document.
#pragma once

#include "slimhtml/html_document.h"

// Longer texts are cut: no label shows them, and positions must fit their integers.
constexpr int longestHtml = 8 * 1024 * 1024;

// Never fails: unknown tags are left out, broken ones show as text. Time and memory are linear in the length.
[[nodiscard]] HtmlDocument ParseHtml(const wchar_t* text, int length);
