// How the frame's HTML labels draw.
#pragma once

#include "slimhtml/slim_html.h"

// White text on the banner's picture, as wide as the text needs.
[[nodiscard]] RenderFormat BannerFormat();

// Wrapped text with a margin on the page's background: step label, side pane, footer.
[[nodiscard]] RenderFormat PaneFormat();
