#include "slimhtml/link_walk.h"

#include <algorithm>

namespace {

int LinkOf(const HtmlDocument& document, const HtmlFragment& fragment)
{
    return fragment.run < 0 ? -1 : document.runs[fragment.run].link;
}

} // namespace

int LinkAt(const HtmlDocument& document, const HtmlLayout& layout, int x, int y)
{
    const int index = FirstLineBelow(layout, y);
    if (index == static_cast<int>(layout.lines.size()) || layout.lines[index].top > y) {
        return -1;
    }
    const HtmlLine& line = layout.lines[index];
    for (int at = line.firstFragment; at < line.firstFragment + line.fragmentCount; ++at) {
        const HtmlFragment& fragment = layout.fragments[at];
        if (x >= fragment.x && x < fragment.x + fragment.width) {
            return LinkOf(document, fragment);
        }
    }
    return -1;
}

std::vector<int> FocusOrder(const HtmlDocument& document, const HtmlLayout& layout)
{
    std::vector<int> order;
    for (const HtmlFragment& fragment : layout.fragments) {
        const int link = LinkOf(document, fragment);
        // Links are numbered as they come, so a larger number is a new one.
        if (link >= 0 && (order.empty() || link > order.back())) {
            order.push_back(link);
        }
    }
    return order;
}

int NextLink(const std::vector<int>& order, int current, int step)
{
    if (order.empty()) {
        return -1;
    }
    const auto found = std::find(order.begin(), order.end(), current);
    if (found == order.end()) {
        return step > 0 ? order.front() : order.back();
    }
    if (step > 0) {
        return found + 1 == order.end() ? -1 : *(found + 1);
    }
    return found == order.begin() ? -1 : *(found - 1);
}

std::vector<HtmlBox> LinkBoxes(const HtmlDocument& document, const HtmlLayout& layout, int link)
{
    std::vector<HtmlBox> boxes;
    for (const HtmlLine& line : layout.lines) {
        HtmlBox box;
        for (int at = line.firstFragment; at < line.firstFragment + line.fragmentCount; ++at) {
            const HtmlFragment& fragment = layout.fragments[at];
            if (LinkOf(document, fragment) != link) {
                continue;
            }
            const int right = fragment.x + fragment.width;
            box = box.right == 0 ? HtmlBox{fragment.x, line.top, right, line.top + line.height}
                                 : HtmlBox{std::min(box.left, fragment.x), box.top,
                                           std::max(box.right, right), box.bottom};
        }
        if (box.right > 0) {
            boxes.push_back(box);
        }
    }
    return boxes;
}

int FirstLineBelow(const HtmlLayout& layout, int y)
{
    const auto found =
        std::partition_point(layout.lines.begin(), layout.lines.end(),
                             [y](const HtmlLine& line) { return line.top + line.height <= y; });
    return static_cast<int>(found - layout.lines.begin());
}
