// Character references of HTML: "&amp;", "&#8212;", "&#x2014;".
#pragma once

#include <cstdint>

struct HtmlReference
{
    std::uint32_t point = 0; // the character; 0 when the text there is no reference
    int length = 0;          // units that the reference takes, "&" and ";" included
};

// Reads the reference that starts at text[0], which is "&". Names are those of Latin 1 and of common punctuation and
// symbols. The semicolon may be missing behind numbers and behind the names that old pages write so ("&amp", "&lt",
// "&gt", "&quot", "&nbsp", "&copy", "&reg"), the latter unless a letter, digit or "=" follows: a link target "?a&copy=1"
// stays as it is. Numbers that are no character give U+FFFD; those from 128 to 159 are read by code page 1252.
HtmlReference ReadHtmlReference(const wchar_t* text, int length) noexcept;
