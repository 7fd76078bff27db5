// The lines that a review is made of. No window header.
#pragma once

#include "builder/shown_text.h"
#include "setup/review_document.h"

#include <cstddef>
#include <cstdint>

// A list of more lines than this ends with how many there are besides.
constexpr std::size_t MOST_REVIEW_LINES = 20;

// `text` may hold texts of others as they are. Blanks in front would look like a deeper line.
[[nodiscard]] inline ReviewNode ReviewLine(const CString& text)
{
    ReviewNode node;
    node.strText = ShownText(text).TrimLeft();
    return node;
}

// "1 file", "2 files"
[[nodiscard]] CString CountInWords(std::size_t count, const wchar_t* one, const wchar_t* many);
// "312 bytes", "45 MB (47185920 bytes)"; megabytes are rounded up.
[[nodiscard]] CString BytesInWords(std::uint64_t bytes);

// Appends the first lines, and how many there are besides.
template <class Items, class MakeLine>
void AppendLines(ReviewDocument& lines, const Items& items, MakeLine makeLine)
{
    std::size_t count = 0;
    for (const auto& item : items) {
        if (count++ == MOST_REVIEW_LINES) {
            break;
        }
        lines.push_back(makeLine(item));
    }
    if (items.size() > MOST_REVIEW_LINES) {
        lines.push_back(
            ReviewLine(L"and " + CountInWords(items.size() - MOST_REVIEW_LINES, L"more", L"more")));
    }
}
