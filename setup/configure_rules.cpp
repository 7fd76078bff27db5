#include "setup/configure_rules.h"

#include "base/number_text.h"
#include "include/page_table.h"

#include <algorithm>

namespace {

constexpr int FARTHEST = 1000000; // no screen's corner lies farther out

// Where a line of `length` begins so that it lies in [first, last); the beginning wins.
int MoveInto(int start, int length, int first, int last)
{
    return std::max(std::min(start, last - length), first);
}

} // namespace

CString TabTwin(const CString& wizardPage)
{
    const PageRow* page = FindWizardPage(wizardPage);
    return page ? TabExport(*page) : CString();
}

CString TabCaption(const CString& product, const CString& page, bool severalProducts)
{
    CString caption = severalProducts ? product + L" - " + page : page;
    caption.Replace(L"&", L"&&");
    return caption;
}

CString OfProduct(const CString& page, const CString& product)
{
    return product.IsEmpty() ? page : page + L" of " + product;
}

unsigned int CounterParameter(int index, int total)
{
    return static_cast<unsigned int>(index) | static_cast<unsigned int>(total) << 16;
}

int TabAround(int index, int distance, int total)
{
    return total > 0 ? ((index + distance) % total + total) % total : index;
}

ScreenRectangle FitInto(const ScreenRectangle& rectangle, const ScreenRectangle& area)
{
    const int width = std::min(rectangle.Width(), area.Width());
    const int height = std::min(rectangle.Height(), area.Height());
    const int left = MoveInto(rectangle.left, width, area.left, area.right);
    const int top = MoveInto(rectangle.top, height, area.top, area.bottom);
    return {left, top, left + width, top + height};
}

ScreenRectangle WithScrollBars(const ScreenRectangle& rectangle, const ScreenRectangle& area, int barWidth,
                               int barHeight)
{
    ScreenRectangle roomy = rectangle;
    if (rectangle.Height() > area.Height()) {
        roomy.right += barWidth;
    }
    if (rectangle.Width() > area.Width()) {
        roomy.bottom += barHeight;
    }
    return roomy;
}

ScreenRectangle CentredOn(const ScreenRectangle& anchor, int width, int height)
{
    const int left = anchor.left + (anchor.Width() - width) / 2;
    const int top = anchor.top + (anchor.Height() - height) / 2;
    return {left, top, left + width, top + height};
}

CString CornerText(const ScreenCorner& corner)
{
    return NumberText(corner.x) + L"," + NumberText(corner.y);
}

bool ReadCorner(const CString& text, ScreenCorner& corner)
{
    const int comma = text.Find(L',');
    const auto x = ReadWholeNumber(text.Left(comma), -FARTHEST, FARTHEST);
    const auto y = ReadWholeNumber(text.Mid(comma + 1), -FARTHEST, FARTHEST);
    if (comma < 0 || !x || !y) {
        return false;
    }
    corner = {static_cast<int>(*x), static_cast<int>(*y)};
    return true;
}

int ScrollToShow(int offset, int room, int extent, int first, int last)
{
    const int enough = std::max(offset, last - room);
    return std::max(0, std::min(std::min(enough, first), extent - room));
}
