// What a run is about to do, said for people before anything is built: a tree of lines, from which the window of the review, its
// text and its JSON come.
#pragma once

#include "base/string.h"

#include <vector>

struct ReviewNode
{
    CString strText;        // one line, in words; texts of others stand in it as ShownText has them
    bool bChanged = false;  // stands out: it differs from what the page proposed, or from the media
    bool bWarning = false;  // stands out: somebody should know
    CString strPage;        // the export of the wizard page that a link leads back to; empty without one
    CString strProductCode; // of the product whose page it is; empty for a page that belongs to none
    std::vector<ReviewNode> children;
};

using ReviewDocument = std::vector<ReviewNode>;

// The mark of a line: two characters (see below).
[[nodiscard]] CString MarkOf(const ReviewNode& node);

// Each line on one of its own, indented by its depth; changed lines and warnings are marked. Ends in a line break.
//
//   line = mark { "  " } text CR LF      two blanks for each line that it stands below
//   mark = "! " | "* " | "  "            a warning; otherwise what is changed; otherwise neither
[[nodiscard]] CString ComposeReviewText(const ReviewDocument& review);

// The same lines in the same order: {"version": 1, "review": [line]}, each line with its "text", with "changed" and "warning"
// where they are true, with the "page" and the code of the "product" where it has one, and with the "lines" below it.
[[nodiscard]] CString ComposeReviewJson(const ReviewDocument& review);
