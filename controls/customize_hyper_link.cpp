#include "controls/customize_hyper_link.h"

#include <cwchar>

namespace {

constexpr int LINK_POINTS = 8;
constexpr int POINTS_PER_INCH = 72;
constexpr DWORD PAGE_LINK_STYLE =
    HLINK_UNDERLINED | HLINK_COMMANDBUTTON | HLINK_USETAGSBOLD | HLINK_NOTOOLTIP;
static_assert(PAGE_LINK_STYLE == 117);

} // namespace

void CCustomizeHyperLink::SetUp(HWND control, const wchar_t* target)
{
    if (!control || !target || !*target) {
        return;
    }
    SetLinkFont(MakeLinkFont());
    SetHyperLinkExtendedStyle(PAGE_LINK_STYLE);
    SetHyperLink(target);
    SubclassWindow(control);
    const RECT place = GetRectInParent();
    ::InvalidateRect(GetParent(), &place, TRUE);
    EnableWindow();
    ShowWindow(SW_SHOW);
}

CFontOwner CCustomizeHyperLink::MakeLinkFont() const
{
    LOGFONTW font = {};
    if (GetLinkFont()) {
        ::GetObjectW(GetLinkFont(), sizeof font, &font);
    }
    const CWindowDC screen(nullptr);
    font.lfHeight = -::MulDiv(LINK_POINTS, ::GetDeviceCaps(screen.get(), LOGPIXELSY), POINTS_PER_INCH);
    font.lfWeight = FW_NORMAL;
    font.lfCharSet = DEFAULT_CHARSET;
    font.lfUnderline = TRUE; // the style asks for it, and the base underlines only fonts of its own
    std::wcscpy(font.lfFaceName, L"Tahoma");
    return CFontOwner(::CreateFontIndirectW(&font));
}
