#include "window/hyper_link_paint.h"

#include "base/handle.h"
#include "window/gdi.h"

#include <algorithm>

UINT LinkTextFormat(DWORD staticStyle, bool singleLine) noexcept
{
    UINT format = singleLine ? DT_SINGLELINE : DT_WORDBREAK;
    switch (staticStyle & SS_TYPEMASK) {
    case SS_CENTER:
        format |= DT_CENTER;
        break;
    case SS_RIGHT:
        format |= DT_RIGHT;
        break;
    case SS_LEFTNOWORDWRAP:
        format = DT_SINGLELINE;
        break;
    default:
        break;
    }
    if ((staticStyle & SS_NOPREFIX) != 0) {
        format |= DT_NOPREFIX;
    }
    return format;
}

namespace {

constexpr UINT alignmentMask = DT_CENTER | DT_RIGHT;

SIZE MeasureText(HDC dc, const CString& text, HFONT font, int width, UINT format) noexcept
{
    const CSelectObject selected(dc, font);
    RECT rectangle = {0, 0, width, 0};
    DrawTextW(dc, text, text.GetLength(), &rectangle, (format & ~alignmentMask) | DT_CALCRECT);
    return {rectangle.right, rectangle.bottom};
}

int AlignedLeft(const RECT& client, int width, UINT format) noexcept
{
    const int room = client.right - client.left - width;
    if (room <= 0 || (format & alignmentMask) == 0) {
        return client.left;
    }
    return client.left + ((format & DT_CENTER) != 0 ? room / 2 : room);
}

void DrawPart(HDC dc, const CString& text, HFONT font, RECT rectangle, UINT format) noexcept
{
    const CSelectObject selected(dc, font);
    DrawTextW(dc, text, text.GetLength(), &rectangle, format);
}

bool IsTagged(const TaggedLabel& label) noexcept
{
    return !label.before.IsEmpty() || !label.after.IsEmpty();
}

// In a line of parts the rectangles carry the alignment, and a part may not wrap.
UINT PartFormat(const TaggedLabel& label, UINT format) noexcept
{
    return IsTagged(label) ? (format & DT_NOPREFIX) | DT_SINGLELINE : format;
}

void ReadColor(HKEY key, const wchar_t* name, COLORREF& color)
{
    wchar_t text[64] = {};
    DWORD size = sizeof text - sizeof(wchar_t);
    if (RegGetValueW(key, nullptr, name, RRF_RT_REG_SZ, nullptr, text, &size) != ERROR_SUCCESS) {
        return;
    }
    if (const auto read = ParseColorText(text)) {
        color = *read;
    }
}

} // namespace

LinkLayout MeasureLink(HDC dc, const TaggedLabel& label, const LinkFonts& fonts, const RECT& client,
                       UINT format)
{
    const UINT partFormat = PartFormat(label, format);
    const int room = client.right - client.left;
    const SIZE before = MeasureText(dc, label.before, fonts.normal, room, partFormat);
    const SIZE link = MeasureText(dc, label.link, fonts.link, room, partFormat);
    const SIZE after = MeasureText(dc, label.after, fonts.normal, room, partFormat);

    const LONG beforeWidth = label.before.IsEmpty() ? 0 : before.cx;
    const LONG afterWidth = label.after.IsEmpty() ? 0 : after.cx;
    LONG at = AlignedLeft(client, static_cast<int>(beforeWidth + link.cx + afterWidth), format);
    const auto place = [&](LONG width, LONG height) {
        const RECT rectangle = {std::min(at, client.right), client.top, std::min(at + width, client.right),
                                std::min(client.top + height, client.bottom)};
        at += width;
        return rectangle;
    };
    LinkLayout layout;
    layout.before = place(beforeWidth, before.cy);
    layout.link = place(link.cx, link.cy);
    layout.after = place(afterWidth, after.cy);
    return layout;
}

void PaintLink(HDC dc, const TaggedLabel& label, const LinkFonts& fonts, const LinkLayout& layout,
               COLORREF linkColor, UINT format)
{
    const UINT partFormat = PartFormat(label, format);
    DrawPart(dc, label.before, fonts.normal, layout.before, partFormat);
    DrawPart(dc, label.after, fonts.normal, layout.after, partFormat);
    const COLORREF textColor = SetTextColor(dc, linkColor);
    DrawPart(dc, label.link, fonts.link, layout.link, partFormat);
    SetTextColor(dc, textColor);
}

HFONT MakeLinkFont(HFONT font, bool underlined, bool bold) noexcept
{
    LOGFONTW record = {};
    if (GetObjectW(font, sizeof record, &record) == 0) {
        return nullptr;
    }
    record.lfUnderline = underlined;
    if (bold) {
        record.lfWeight = FW_BOLD;
    }
    return CreateFontIndirectW(&record);
}

void ReadBrowserLinkColors(COLORREF& link, COLORREF& visited)
{
    CRegistryOwner key;
    if (RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Microsoft\\Internet Explorer\\Settings", 0,
                      KEY_QUERY_VALUE, key.put()) != ERROR_SUCCESS) {
        return; // a user who never changed the colours has no such key
    }
    ReadColor(key.get(), L"Anchor Color", link);
    ReadColor(key.get(), L"Anchor Color Visited", visited);
}
