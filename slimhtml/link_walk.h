// Which link lies under the mouse, which one Tab goes to, and where a link stands.
#pragma once

#include "slimhtml/html_layout.h"

// The link at a point of the layout; -1 for none.
[[nodiscard]] int LinkAt(const HtmlDocument& document, const HtmlLayout& layout, int x, int y);

// The links that can be seen, in the order of the text.
[[nodiscard]] std::vector<int> FocusOrder(const HtmlDocument& document, const HtmlLayout& layout);

// The next link (`step` 1) or the one before (`step` -1). From none (-1) the walk enters at its end; -1 where it
// leaves.
[[nodiscard]] int NextLink(const std::vector<int>& order, int current, int step);

struct HtmlBox
{
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

// One box a line on which the link stands.
[[nodiscard]] std::vector<HtmlBox> LinkBoxes(const HtmlDocument& document, const HtmlLayout& layout,
                                             int link);

// Index of the first line whose bottom lies below `y`; the count of lines when there is none.
[[nodiscard]] int FirstLineBelow(const HtmlLayout& layout, int y);
