#include "slimhtml/label_painter.h"

#include "slimhtml/html_colors.h"
#include "slimhtml/link_walk.h"
#include "window/drawing_handles.h"
#include "window/gdi.h"

namespace {

struct LabelColors
{
    HtmlColor text;
    HtmlColor link;
    bool bOwnColors; // false: the document's colours give way to the user's
};

bool IsHighContrast()
{
    HIGHCONTRASTW state = {};
    state.cbSize = sizeof(state);
    return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof(state), &state, 0) &&
           (state.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

// Fills with one colour and returns it.
HtmlColor Fill(HDC dc, const RECT& client, COLORREF color)
{
    const CBrushOwner brush(CreateSolidBrush(color));
    FillRect(dc, &client, brush.get());
    return color;
}

// Fills with the parent's brush. Returns its colour, or noHtmlColor for a pattern.
HtmlColor FillAsParent(HWND control, HDC dc, const RECT& client)
{
    const HWND parent = GetParent(control);
    auto* brush = reinterpret_cast<HBRUSH>(SendMessageW(
        parent, WM_CTLCOLORSTATIC, reinterpret_cast<WPARAM>(dc), reinterpret_cast<LPARAM>(control)));
    LOGBRUSH description = {};
    if (!brush || GetObjectW(brush, sizeof(description), &description) == 0) {
        return Fill(dc, client, GetSysColor(COLOR_BTNFACE));
    }
    POINT origin = {};
    MapWindowPoints(parent, control, &origin, 1);
    SetBrushOrgEx(dc, origin.x, origin.y, nullptr); // a pattern goes on where the parent's ends
    FillRect(dc, &client, brush);
    return description.lbStyle == BS_SOLID ? description.lbColor : noHtmlColor;
}

HtmlColor PaintBackground(HWND control, HDC dc, const RECT& client, const LabelPicture& picture,
                          bool highContrast)
{
    if (highContrast) {
        return Fill(dc, client, GetSysColor(COLOR_WINDOW));
    }
    if (picture.document.background != noHtmlColor) {
        return Fill(dc, client, picture.document.background);
    }
    if (picture.format.bFillBackground) {
        return Fill(dc, client, picture.format.clrBackground);
    }
    return picture.format.bParentBackground ? FillAsParent(control, dc, client)
                                            : Fill(dc, client, GetSysColor(COLOR_BTNFACE));
}

// A default colour, made readable on the background.
HtmlColor ReadableDefault(HtmlColor color, HtmlColor background)
{
    return background == noHtmlColor ? color : ReadableColor(color, background);
}

// The system's colour of links where it can be read (some schemes give links a light grey), then the usual blue, then
// the text's own colour: the underline still marks a link.
HtmlColor DefaultLinkColor(HtmlColor text, HtmlColor background)
{
    for (const HtmlColor color : {HtmlColor{GetSysColor(COLOR_HOTLIGHT)}, HtmlColor{RGB(0x00, 0x66, 0xCC)}}) {
        if (ReadableDefault(color, background) == color && color != GetSysColor(COLOR_WINDOWTEXT)) {
            return color;
        }
    }
    return text;
}

// The format's colours are defaults for any background: a white default on a white page would show nothing.
LabelColors ChooseColors(HWND control, const LabelPicture& picture, HtmlColor background, bool highContrast)
{
    if (highContrast) {
        return {GetSysColor(COLOR_WINDOWTEXT), GetSysColor(COLOR_HOTLIGHT), false};
    }
    if (!IsWindowEnabled(control)) {
        return {GetSysColor(COLOR_GRAYTEXT), GetSysColor(COLOR_GRAYTEXT), false};
    }
    const HtmlDocument& document = picture.document;
    const HtmlColor text = document.textColor != noHtmlColor
                               ? document.textColor
                               : ReadableDefault(picture.format.clrText, background);
    const HtmlColor link =
        document.linkColor != noHtmlColor ? document.linkColor : DefaultLinkColor(text, background);
    return {text, link, true};
}

HtmlColor ColorOf(const HtmlRun& run, const LabelColors& colors)
{
    if (colors.bOwnColors && run.color != noHtmlColor) {
        return run.color;
    }
    return run.link >= 0 ? colors.link : colors.text;
}

void DrawRule(HDC dc, const HtmlLine& line, const HtmlFragment& fragment, int scroll)
{
    const int middle = line.top + line.height / 2 - scroll;
    RECT edge = {fragment.x, middle, fragment.x + fragment.width, middle + 2};
    DrawEdge(dc, &edge, EDGE_ETCHED, BF_TOP);
}

// Leaves the fragment's font selected: the next one mostly has the same.
void DrawFragment(HDC dc, const LabelPicture& picture, const LabelColors& colors, const HtmlLine& line,
                  const HtmlFragment& fragment, bool bLast, HFONT& selected)
{
    const int baseline = line.baseline - picture.scroll;
    switch (fragment.kind) {
    case HtmlFragmentKind::Rule:
        DrawRule(dc, line, fragment, picture.scroll);
        break;
    case HtmlFragmentKind::Image:
        picture.images.Draw(dc, picture.document.runs[fragment.run].image,
                            {fragment.x, baseline - fragment.height, fragment.x + fragment.width, baseline});
        break;
    case HtmlFragmentKind::Text: {
        const HtmlRun& run = picture.document.runs[fragment.run];
        SetTextColor(dc, ColorOf(run, colors));
        if (const HFONT font = picture.fonts.Font(run.font); font != selected) {
            SelectObject(dc, font);
            selected = font;
        }
        const wchar_t* text = picture.document.text.data() + fragment.text;
        // Some systems (Wine) draw the letters of small fonts nearer to each other or further apart than they measure them:
        // what follows on the line would touch them or stand far away. Where nothing follows, their own distances look better.
        const int* advances = bLast ? nullptr : picture.fonts.Advances(run.font, text, fragment.length);
        ExtTextOutW(dc, fragment.x, baseline, 0, nullptr, text, static_cast<UINT>(fragment.length), advances);
        break;
    }
    }
}

void DrawLines(HDC dc, const RECT& client, const LabelPicture& picture, const LabelColors& colors)
{
    const auto count = static_cast<int>(picture.layout.lines.size());
    HFONT selected = nullptr;
    for (int index = FirstLineBelow(picture.layout, picture.scroll); index < count; ++index) {
        const HtmlLine& line = picture.layout.lines[index];
        if (line.top - picture.scroll >= client.bottom) {
            break;
        }
        const int end = line.firstFragment + line.fragmentCount;
        for (int at = line.firstFragment; at < end; ++at) {
            const HtmlFragment& fragment = picture.layout.fragments[at];
            if (fragment.x < client.right && fragment.x + fragment.width > 0) {
                DrawFragment(dc, picture, colors, line, fragment, at + 1 == end, selected);
            }
        }
    }
}

void DrawFocus(HDC dc, const RECT& client, const LabelPicture& picture)
{
    SetTextColor(dc, 0x000000);
    SetBkColor(dc, 0xFFFFFF);
    if (picture.bFocusedWhole) {
        DrawFocusRect(dc, &client);
    }
    if (picture.focusedLink < 0) {
        return;
    }
    for (const HtmlBox& box : LinkBoxes(picture.document, picture.layout, picture.focusedLink)) {
        const RECT frame = {box.left - 1, box.top - picture.scroll, box.right + 1,
                            box.bottom - picture.scroll};
        DrawFocusRect(dc, &frame);
    }
}

} // namespace

void PaintLabel(HWND control, HDC dc, const LabelPicture& picture)
{
    RECT client = {};
    GetClientRect(control, &client);
    const CSavedDC state(dc);
    const bool bHighContrast = IsHighContrast();
    const HtmlColor background = PaintBackground(control, dc, client, picture, bHighContrast);
    const LabelColors colors = ChooseColors(control, picture, background, bHighContrast);
    SetBkMode(dc, TRANSPARENT);
    SetTextAlign(dc, TA_LEFT | TA_BASELINE);
    DrawLines(dc, client, picture, colors);
    DrawFocus(dc, client, picture);
}

void PaintLabelBuffered(HWND control, HDC dc, const RECT& dirty, const LabelPicture& picture)
{
    RECT client = {};
    GetClientRect(control, &client);
    if (IsRectEmpty(&client)) {
        return;
    }
    const CDcOwner memory(CreateCompatibleDC(dc));
    const CBitmapOwner bitmap(CreateCompatibleBitmap(dc, client.right, client.bottom));
    if (!memory || !bitmap) {
        PaintLabel(control, dc, picture);
        return;
    }
    const CSelectObject selected(memory.get(), bitmap.get());
    PaintLabel(control, memory.get(), picture);
    BitBlt(dc, dirty.left, dirty.top, dirty.right - dirty.left, dirty.bottom - dirty.top, memory.get(),
           dirty.left, dirty.top, SRCCOPY);
}
