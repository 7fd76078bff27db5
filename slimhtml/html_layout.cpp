#include "slimhtml/html_layout.h"

#include "slimhtml/line_breaks.h"

#include <algorithm>
#include <utility>

namespace {

// A word is measured in pieces of so many units, so that a text of one endless word stays linear.
constexpr int longestPiece = 256;
// Nor is more than that drawn at once, where a line goes on far beyond the label.
constexpr int longestFragment = 1024;
// Indents, in permille of the label's line height.
constexpr int indentStepPermille = 1600;
constexpr int markerGapPermille = 400;
constexpr int ruleHeightPermille = 400;

int Permille(int value, int permille) noexcept
{
    return static_cast<int>(static_cast<long long>(value) * permille / 1000);
}

// What stands in a line without a gap: a part of a text run, or an image.
struct Piece
{
    HtmlFragmentKind kind = HtmlFragmentKind::Text;
    int run = -1;
    int text = 0;
    int length = 0;
    HtmlSize size; // height of images alone
};

class CLayoutMaker
{
public:
    CLayoutMaker(const HtmlDocument& document, const HtmlLayoutOptions& options, IHtmlMeasurer& measurer)
        : m_document(document), m_options(options), m_measurer(measurer), m_base(measurer.Metrics(0)),
          m_baseHeight(std::max(1, m_base.ascent + m_base.descent))
    {
    }

    HtmlLayout Make()
    {
        m_y = m_options.marginVertical;
        for (std::size_t index = 0; index < m_document.blocks.size(); ++index) {
            const HtmlBlock& block = m_document.blocks[index];
            m_y += index > 0 ? Permille(m_baseHeight, block.spaceAbovePermille) : 0;
            BeginBlock(block);
            block.kind == HtmlBlockKind::Rule ? AddRule() : AddRuns(block);
        }
        m_layout.height = m_document.blocks.empty() ? 0 : m_y + m_options.marginVertical;
        return std::move(m_layout);
    }

private:
    void BeginBlock(const HtmlBlock& block)
    {
        // However narrow the label, two letters of width stay: one letter a line would serve nobody.
        const int inner = std::max(m_options.width - 2 * m_options.marginHorizontal, 2 * m_baseHeight);
        const int indent =
            std::min(Permille(m_baseHeight, block.indentSteps * indentStepPermille), inner / 2);
        m_left = m_options.marginHorizontal + indent;
        m_available = inner - indent;
        m_align = block.align == HtmlAlign::Default ? m_options.align : block.align;
        m_marker = block.marker;
        BeginLine();
    }

    void AddRuns(const HtmlBlock& block)
    {
        m_lastRunFont = block.runCount > 0 ? m_document.runs[block.firstRun].font : 0;
        for (int index = block.firstRun; index < block.firstRun + block.runCount; ++index) {
            const HtmlRun& run = m_document.runs[index];
            m_lastRunFont = run.font;
            switch (run.kind) {
            case HtmlRunKind::Text:
                AddText(index, run);
                break;
            case HtmlRunKind::LineBreak:
                FlushWord();
                EndLine();
                break;
            case HtmlRunKind::Image:
                AddImage(index, run);
                break;
            }
        }
        FlushWord();
        if (m_lineFragments > 0 || m_marker >= 0) {
            EndLine();
        }
    }

    void AddRule()
    {
        HtmlFragment rule;
        rule.kind = HtmlFragmentKind::Rule;
        rule.x = m_left;
        rule.width = m_available;
        rule.height = std::max(1, Permille(m_baseHeight, ruleHeightPermille));
        m_layout.fragments.push_back(rule);
        m_layout.lines.push_back(
            {m_y, rule.height, m_y + rule.height, static_cast<int>(m_layout.fragments.size()) - 1, 1});
        m_y += rule.height;
    }

    void AddText(int index, const HtmlRun& run)
    {
        const wchar_t* text = m_document.text.data();
        const int end = run.text + run.length;
        for (int at = run.text; at < end;) {
            if (text[at] == L' ') {
                FlushWord();
                m_spaceRun = index;
                m_spaceWidth = m_measurer.TextWidth(run.font, text + at, 1);
                ++at;
                continue;
            }
            const int first = at++;
            while (at < end && text[at] != L' ' && at - first < longestPiece &&
                   !CanBreakBetween(text[at - 1], text[at])) {
                ++at;
            }
            at += at < end && IsLowSurrogate(text[at]) && IsHighSurrogate(text[at - 1]) ? 1 : 0;
            AddPiece({HtmlFragmentKind::Text,
                      index,
                      first,
                      at - first,
                      {m_measurer.TextWidth(run.font, text + first, at - first), 0}});
        }
    }

    void AddImage(int index, const HtmlRun& run)
    {
        HtmlSize size;
        if (!m_measurer.ImageSize(run.image, size)) {
            AddText(index, run);
            return;
        }
        if (m_options.bWrap && size.width > m_available) {
            size.height = static_cast<int>(static_cast<long long>(size.height) * m_available / size.width);
            size.width = m_available;
        }
        FlushWord();
        m_word.push_back({HtmlFragmentKind::Image, index, 0, 0, size});
        m_wordWidth = size.width;
        FlushWord();
    }

    void AddPiece(const Piece& piece)
    {
        const wchar_t* text = m_document.text.data();
        if (!m_word.empty()) {
            const Piece& last = m_word.back();
            if (CanBreakBetween(text[last.text + last.length - 1], text[piece.text])) {
                FlushWord();
            }
        }
        m_word.push_back(piece);
        m_wordWidth += piece.size.width;
    }

    // Places the word that is complete now, on the next line when it has no room on this one.
    void FlushWord()
    {
        if (m_word.empty()) {
            return;
        }
        if (m_options.bWrap && m_lineFragments > 0 && m_x + m_spaceWidth + m_wordWidth > m_available) {
            EndLine();
        }
        const bool bTooWide = m_options.bWrap && m_wordWidth > m_available;
        if (m_lineFragments > 0) {
            m_x += m_spaceWidth;
        } else {
            m_spaceRun = -1;
        }
        for (const Piece& piece : m_word) {
            bTooWide&& piece.kind == HtmlFragmentKind::Text ? PlaceSplit(piece) : Place(piece);
            m_spaceRun = -1;
        }
        m_word.clear();
        m_wordWidth = 0;
        m_spaceWidth = 0;
    }

    // A word wider than the label is cut where the line ends.
    void PlaceSplit(Piece piece)
    {
        const wchar_t* text = m_document.text.data();
        const int font = m_document.runs[piece.run].font;
        while (m_x + piece.size.width > m_available && piece.length > 0) {
            int count = m_measurer.FitText(font, text + piece.text, piece.length, m_available - m_x);
            const auto splitsPair = [&] {
                return count > 0 && count < piece.length && IsHighSurrogate(text[piece.text + count - 1]) &&
                       IsLowSurrogate(text[piece.text + count]);
            };
            count -= splitsPair() ? 1 : 0;
            if (count <= 0 && m_lineFragments > 0) {
                EndLine();
                continue;
            }
            count = std::clamp(count, 1, piece.length);
            count += splitsPair() ? 1 : 0;
            Piece part = piece;
            part.length = count;
            part.size.width = m_measurer.TextWidth(font, text + part.text, count);
            Place(part);
            piece.text += count;
            piece.length -= count;
            piece.size.width = m_measurer.TextWidth(font, text + piece.text, piece.length);
            if (piece.length > 0) {
                EndLine();
            }
        }
        if (piece.length > 0) {
            Place(piece);
        }
    }

    void Place(const Piece& piece)
    {
        const HtmlFontMetrics metrics = piece.kind == HtmlFragmentKind::Image
                                            ? HtmlFontMetrics{piece.size.height, 0}
                                            : m_measurer.Metrics(m_document.runs[piece.run].font);
        m_ascent = std::max(m_ascent, metrics.ascent);
        m_descent = std::max(m_descent, metrics.descent);
        if (!ExtendLast(piece)) {
            m_layout.fragments.push_back(
                {piece.kind, m_x, piece.size.width, piece.size.height, piece.run, piece.text, piece.length});
            ++m_lineFragments;
        }
        m_x += piece.size.width;
    }

    // Words of one run are drawn at once, so that the spaces between them are underlined too.
    bool ExtendLast(const Piece& piece)
    {
        if (m_lineFragments == 0 || piece.kind != HtmlFragmentKind::Text) {
            return false;
        }
        HtmlFragment& last = m_layout.fragments.back();
        const int space = m_spaceRun >= 0 ? 1 : 0;
        if (last.kind != HtmlFragmentKind::Text || last.run != piece.run || last.length > longestFragment ||
            last.text + last.length + space != piece.text) {
            return false;
        }
        last.length += space + piece.length;
        last.width = m_x + piece.size.width - last.x;
        return true;
    }

    void BeginLine()
    {
        m_x = 0;
        m_ascent = 0;
        m_descent = 0;
        m_lineFragments = 0;
        m_spaceWidth = 0;
        m_spaceRun = -1;
    }

    void EndLine()
    {
        if (m_lineFragments == 0) {
            const HtmlFontMetrics metrics = m_measurer.Metrics(m_lastRunFont);
            m_ascent = metrics.ascent;
            m_descent = metrics.descent;
        }
        const int first = static_cast<int>(m_layout.fragments.size()) - m_lineFragments;
        const int spare = std::max(0, m_available - m_x);
        const int shift = m_align == HtmlAlign::Center ? spare / 2 : m_align == HtmlAlign::Right ? spare : 0;
        for (std::size_t index = first; index < m_layout.fragments.size(); ++index) {
            m_layout.fragments[index].x += m_left + shift;
        }
        AddMarker(shift);
        const int height = std::max(1, Permille(m_ascent + m_descent, m_options.lineSpacingPermille));
        m_layout.lines.push_back({m_y, height, m_y + height - m_descent, first,
                                  static_cast<int>(m_layout.fragments.size()) - first});
        m_y += height;
        BeginLine();
    }

    // The bullet or number stands left of its item's first line.
    void AddMarker(int shift)
    {
        if (m_marker < 0) {
            return;
        }
        const HtmlRun& run = m_document.runs[m_marker];
        const int width = m_measurer.TextWidth(run.font, m_document.text.data() + run.text, run.length);
        const int gap = Permille(m_baseHeight, markerGapPermille);
        m_layout.fragments.push_back({HtmlFragmentKind::Text, std::max(0, m_left + shift - gap - width),
                                      width, 0, m_marker, run.text, run.length});
        m_marker = -1;
    }

    const HtmlDocument& m_document;
    const HtmlLayoutOptions& m_options;
    IHtmlMeasurer& m_measurer;
    HtmlFontMetrics m_base;
    int m_baseHeight;
    HtmlLayout m_layout;

    int m_y = 0;
    int m_left = 0;      // of the block
    int m_available = 0; // width of the block
    HtmlAlign m_align = HtmlAlign::Left;
    int m_marker = -1; // not yet placed
    int m_lastRunFont = 0;

    int m_x = 0; // within the block
    int m_ascent = 0;
    int m_descent = 0;
    int m_lineFragments = 0;

    std::vector<Piece> m_word;
    int m_wordWidth = 0;
    int m_spaceRun = -1; // run of the space before the word; -1 for none
    int m_spaceWidth = 0;
};

} // namespace

HtmlLayout LayOutHtml(const HtmlDocument& document, const HtmlLayoutOptions& options, IHtmlMeasurer& measurer)
{
    return CLayoutMaker(document, options, measurer).Make();
}
