// What a link control decides without a window: the parts of its label and the colours in the user's settings.
#pragma once

#include "window/string.h"

#include <cstdint>

// A label in its three parts. Without tags all of it is the link.
struct LinkLabel
{
    CString strBefore;
    CString strLink;
    CString strAfter;
    bool bHasTags = false;
};

// Cuts at the first "<A>" and the "</A>" that follows it, in any case. A label that lacks either has no tags.
[[nodiscard]] LinkLabel SplitLinkLabel(const CString& label);

// "0,102,204", red, green, blue, as 0x00bbggrr. False, with `colour` untouched, for a text of any other form.
[[nodiscard]] bool ParseColour(const CString& text, std::uint32_t& colour);

// The link text's colour: labels with and without tags use the pair the other way round; the hosts' templates count on it.
[[nodiscard]] std::uint32_t LinkColour(bool hasTags, bool visited, std::uint32_t paintA,
                                       std::uint32_t paintB);
