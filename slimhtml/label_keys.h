// What a key or a turn of the wheel means to a label: scrolling, walking its links, activating one.
#pragma once

#include <vector>

struct ScrollRange
{
    int position = 0; // pixels of the text above the label's upper edge
    int page = 0;     // pixels that the label shows
    int height = 0;   // of the text
    int line = 1;     // pixels of a line
};

// The nearest position that the range allows.
[[nodiscard]] int ClampScroll(const ScrollRange& range, int position) noexcept;

// The least move that shows a part of the text; the upper end of it when it is higher than the label.
[[nodiscard]] int ScrollIntoView(const ScrollRange& range, int top, int bottom) noexcept;

// Turns of the wheel add up: `rest` keeps what is less than a line.
[[nodiscard]] int ScrollByWheel(const ScrollRange& range, int delta, int linesANotch, int& rest) noexcept;

enum class LabelKey
{
    Other,
    Next, // Tab
    Previous,
    Activate, // Enter or Space
    Up,
    Down,
    PageUp,
    PageDown,
    Home,
    End
};

enum class LabelAction
{
    None, // the key is not the label's
    FocusLink,
    ActivateLink,
    Scroll
};

struct LabelDecision
{
    LabelAction action = LabelAction::None;
    int value = 0; // the link or the position
};

// Scrolling keys are the label's whenever its text scrolls, also at its ends: the focus must not jump away there.
[[nodiscard]] LabelDecision DecideKey(LabelKey key, const std::vector<int>& focusOrder, int focusedLink,
                                      const ScrollRange& range);
