// What the configure dialog decides without a window: which pages are tabs, their captions, ways from tab to tab, places
// on the screen.
#pragma once

#include "base/rectangle.h"
#include "base/string.h"

// ---- pages and captions

// The export of the tab page that shows the same as a wizard page, given by its export; empty for a page without one.
[[nodiscard]] CString TabTwin(const CString& wizardPage);

// What stands on the tab: the page's name, behind the product's where there is more than one. An ampersand is doubled,
// since the control takes a single one for a mnemonic.
[[nodiscard]] CString TabCaption(const CString& product, const CString& page, bool severalProducts);

// A page's name in a sentence: "resources of Zolt Viewer 2027", or "resources" for an empty product.
[[nodiscard]] CString OfProduct(const CString& page, const CString& product);

// ---- ways

// The parameter of the counter message. Counts above 65535 don't occur.
[[nodiscard]] unsigned int CounterParameter(int index, int total);

// The tab that lies `distance` behind `index`, round the ends; `index` when there is no other.
[[nodiscard]] int TabAround(int index, int distance, int total);

// ---- places, in pixels

// The rectangle moved as little as needed into `area`; what is larger than the area is cut to its size.
[[nodiscard]] ScreenRectangle FitInto(const ScreenRectangle& rectangle, const ScreenRectangle& area);

// A window's rectangle with room for the scroll bars of what is shown in it: a bar that comes because the area is too
// low, or too narrow, takes room across, so the other would come too.
[[nodiscard]] ScreenRectangle WithScrollBars(const ScreenRectangle& rectangle, const ScreenRectangle& area,
                                             int barWidth, int barHeight);

// A rectangle of that size around the middle of another.
[[nodiscard]] ScreenRectangle CentredOn(const ScreenRectangle& anchor, int width, int height);

// A remembered corner as text, "120,-40". False, with the corner unchanged, for anything that isn't one.
struct ScreenCorner
{
    int x = 0;
    int y = 0;
};
[[nodiscard]] CString CornerText(const ScreenCorner& corner);
[[nodiscard]] bool ReadCorner(const CString& text, ScreenCorner& corner);

// How far a view of `room` pixels is scrolled so that [first, last) of what it shows lies inside, moved as little as
// needed from `offset`; the beginning wins when it doesn't fit. Never beyond `extent`, the size of what is shown.
[[nodiscard]] int ScrollToShow(int offset, int room, int extent, int first, int last);
