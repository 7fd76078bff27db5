#include "slimhtml/label_keys.h"

#include "slimhtml/link_walk.h"

#include <algorithm>

namespace {

constexpr int wheelNotch = 120;
constexpr int wholePage = -1; // the user's setting for "a screen at a time"
constexpr int mostLines = 100;

LabelDecision DecideScroll(LabelKey key, const ScrollRange& range)
{
    const int page = std::max(range.line, range.page - range.line); // one line stays for the eye
    int position = range.position;
    switch (key) {
    case LabelKey::Up:
        position -= range.line;
        break;
    case LabelKey::Down:
        position += range.line;
        break;
    case LabelKey::PageUp:
        position -= page;
        break;
    case LabelKey::PageDown:
        position += page;
        break;
    case LabelKey::Home:
        position = 0;
        break;
    case LabelKey::End:
        position = range.height;
        break;
    default:
        return {};
    }
    return {LabelAction::Scroll, ClampScroll(range, position)};
}

} // namespace

int ClampScroll(const ScrollRange& range, int position) noexcept
{
    return std::clamp(position, 0, std::max(0, range.height - range.page));
}

int ScrollIntoView(const ScrollRange& range, int top, int bottom) noexcept
{
    int position = range.position;
    if (bottom > position + range.page) {
        position = bottom - range.page;
    }
    return ClampScroll(range, std::min(position, top));
}

int ScrollByWheel(const ScrollRange& range, int delta, int linesANotch, int& rest) noexcept
{
    const int step =
        linesANotch == wholePage ? range.page : range.line * std::clamp(linesANotch, 0, mostLines);
    rest += delta * step;
    const int pixels = rest / wheelNotch;
    rest -= pixels * wheelNotch;
    return ClampScroll(range, range.position - pixels);
}

LabelDecision DecideKey(LabelKey key, const std::vector<int>& focusOrder, int focusedLink,
                        const ScrollRange& range)
{
    if (key == LabelKey::Next || key == LabelKey::Previous) {
        // Backwards from no link the focus goes on to the control before: only Tab enters here.
        const bool bEnters = focusedLink < 0;
        const int link = bEnters && key == LabelKey::Previous
                             ? -1
                             : NextLink(focusOrder, focusedLink, key == LabelKey::Next ? 1 : -1);
        return link < 0 ? LabelDecision() : LabelDecision{LabelAction::FocusLink, link};
    }
    if (key == LabelKey::Activate) {
        return focusedLink < 0 ? LabelDecision() : LabelDecision{LabelAction::ActivateLink, focusedLink};
    }
    return range.height > range.page ? DecideScroll(key, range) : LabelDecision();
}
