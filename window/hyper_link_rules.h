// The text forms of a link: a label with tags, and a colour in the browser's settings.
#pragma once

#include "base/string.h"

#include <cstdint>
#include <optional>

// A label in three parts; the parts before and after the link are plain text.
struct TaggedLabel
{
    CString before;
    CString link;
    CString after;

    CString PlainText() const { return before + link + after; }
};

//   label = text "<A>" link text "</A>" text          the tags in either case; the first of each counts
//
// Nothing for a label without that form: no tags, one of them alone, or "</A>" before "<A>".
std::optional<TaggedLabel> SplitTaggedLabel(const CString& label);

//   colour = number "," number "," number             red, green, blue; decimal, 0 to 255
//
// The colour as 0x00BBGGRR. Nothing for another form: blanks, signs, a missing or a fourth number, a larger one.
std::optional<std::uint32_t> ParseColorText(const CString& text);
