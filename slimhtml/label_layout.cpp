// How a label's text is fitted into the control: fonts, margins, scroll bar, tab stop.
#include "slimhtml/label.h"

#include "slimhtml/link_walk.h"

#include <algorithm>

namespace {

constexpr int standardDpi = 96;

HtmlAlign AlignOf(int drawTextFormat)
{
    if (drawTextFormat == DT_CENTER) {
        return HtmlAlign::Center;
    }
    return drawTextFormat == DT_RIGHT ? HtmlAlign::Right : HtmlAlign::Left;
}

class CFlag
{
public:
    explicit CFlag(bool& flag) : m_flag(flag) { m_flag = true; }
    ~CFlag() { m_flag = false; }
    CFlag(const CFlag&) = delete;
    CFlag& operator=(const CFlag&) = delete;

private:
    bool& m_flag;
};

} // namespace

bool CLabel::ImageSize(int image, HtmlSize& size)
{
    HtmlSize own;
    if (!m_images.OwnSize(image, own)) {
        return false;
    }
    size = DisplaySize(m_document.images[image], own, Dpi());
    return true;
}

int CLabel::Margin(int ofPage, int ofFormat) const
{
    return MulDiv(std::max(0, ofPage != noHtmlMargin ? ofPage : ofFormat), Dpi(), standardDpi);
}

int CLabel::Dpi() const
{
    return Window() ? static_cast<int>(GetDpiForWindow(Window())) : standardDpi;
}

int CLabel::ScrollBarWidth() const
{
    return GetSystemMetricsForDpi(SM_CXVSCROLL, static_cast<UINT>(Dpi()));
}

void CLabel::ResetFonts()
{
    auto* font = reinterpret_cast<HFONT>(SendMessageW(Window(), WM_GETFONT, 0, 0));
    m_fonts.Reset(&m_document, font, m_format.fTextScale);
}

HtmlLayout CLabel::LayOutAt(int width, int marginVertical)
{
    HtmlLayoutOptions options;
    options.width = width;
    options.marginHorizontal = Margin(m_document.marginHorizontal, m_format.nMarginHorizontal);
    options.marginVertical = marginVertical;
    options.lineSpacingPermille =
        m_format.fLineSpacing > 0 ? static_cast<int>(std::min(m_format.fLineSpacing, 10.0F) * 1000) : 1000;
    options.bWrap = m_format.nWrap != 0;
    options.align = AlignOf(m_format.nAlignment);
    return LayOutHtml(m_document, options, *this);
}

int CLabel::MeasureHeight(int width)
{
    if (!Window()) {
        return 0;
    }
    return LayOutAt(width, Margin(m_document.marginVertical, m_format.nMarginVertical)).height;
}

void CLabel::LayOut()
{
    // Showing the scroll bar changes the size, which comes back here.
    if (!Window() || m_bLayingOut) {
        return;
    }
    const CFlag layingOut(m_bLayingOut);
    FitToClient();
    m_focusOrder = FocusOrder(m_document, m_layout);
    if (std::find(m_focusOrder.begin(), m_focusOrder.end(), m_focusedLink) == m_focusOrder.end()) {
        m_focusedLink = -1;
    }
    m_range.position = ClampScroll(m_range, m_range.position);
    UpdateScrollBar();
    UpdateTabStop();
    Redraw();
}

void CLabel::FitToClient()
{
    RECT client = {};
    GetClientRect(Window(), &client);
    const int barWidth = ScrollBarWidth();
    const auto fullWidth = static_cast<int>(client.right) + (m_bScrollBar ? barWidth : 0);
    const auto height = static_cast<int>(client.bottom);
    int margin = Margin(m_document.marginVertical, m_format.nMarginVertical);
    m_layout = LayOutAt(fullWidth, margin);
    const int textHeight = m_layout.height - 2 * margin;
    if (m_layout.height > height && textHeight <= height) {
        // A label of one line has no room for the margins: they give way before the text scrolls.
        margin = std::max(0, (height - textHeight) / 2);
        m_layout = LayOutAt(fullWidth, margin);
    }
    const bool bScrolls = m_layout.height > height;
    // A bar without room for its own arrows helps nobody; keys and wheel scroll anyway.
    const bool bRoomForBar = height >= 2 * barWidth && fullWidth >= 4 * barWidth;
    if (bScrolls && bRoomForBar) {
        m_layout = LayOutAt(fullWidth - barWidth, margin);
    }
    ShowScrollBar(bScrolls && bRoomForBar);
    const HtmlFontMetrics metrics = m_fonts.Metrics(0);
    m_range.height = m_layout.height;
    m_range.page = height;
    m_range.line = std::max(1, metrics.ascent + metrics.descent);
}

void CLabel::ShowScrollBar(bool show)
{
    if (show != m_bScrollBar) {
        m_bScrollBar = show;
        ::ShowScrollBar(Window(), SB_VERT, show);
    }
}

void CLabel::UpdateScrollBar()
{
    if (!m_bScrollBar) {
        return;
    }
    SCROLLINFO info = {};
    info.cbSize = sizeof(info);
    info.fMask = SIF_PAGE | SIF_POS | SIF_RANGE;
    info.nMax = std::max(0, m_range.height - 1);
    info.nPage = static_cast<UINT>(m_range.page);
    info.nPos = m_range.position;
    SetScrollInfo(Window(), SB_VERT, &info, TRUE);
}

// A label that only shows text is no stop for the keyboard.
void CLabel::UpdateTabStop()
{
    const LONG_PTR style = GetWindowLongPtrW(Window(), GWL_STYLE);
    const LONG_PTR wanted = IsInteractive() ? style | WS_TABSTOP : style & ~static_cast<LONG_PTR>(WS_TABSTOP);
    if (wanted != style) {
        SetWindowLongPtrW(Window(), GWL_STYLE, wanted);
    }
}
