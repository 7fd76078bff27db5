// The label behind CSlimHtmlCtrl: a bound static control, its document, and what mouse and keyboard do to it.
#pragma once

#include "slimhtml/control_subclass.h"
#include "slimhtml/label_fonts.h"
#include "slimhtml/label_images.h"
#include "slimhtml/label_keys.h"
#include "slimhtml/label_painter.h"
#include "slimhtml/slim_html.h"

class CLabel final : private IControlMessages, private IHtmlMeasurer
{
public:
    ~CLabel();

    [[nodiscard]] bool Bind(HWND control);
    [[nodiscard]] HWND Window() const { return m_binding.Window(); }
    void SetFormat(const RenderFormat& format);
    [[nodiscard]] const RenderFormat& Format() const { return m_format; }
    // Images of a file's page are looked for in its folder, which ends in a backslash; those of a text bear full paths.
    void Load(const wchar_t* html, int length, const CString& folder);
    void SetNotify(ISlimHtmlNotify* notify) { m_notify = notify; }
    [[nodiscard]] bool PreTranslateMessage(const MSG& message);
    [[nodiscard]] int MeasureHeight(int width);
    [[nodiscard]] bool IsScrollable() const { return m_range.height > m_range.page; }

private:
    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void OnControlGone() override;

    HtmlFontMetrics Metrics(int font) override { return m_fonts.Metrics(font); }
    int TextWidth(int font, const wchar_t* text, int length) override
    {
        return m_fonts.TextWidth(font, text, length);
    }
    int FitText(int font, const wchar_t* text, int length, int width) override
    {
        return m_fonts.FitText(font, text, length, width);
    }
    bool ImageSize(int image, HtmlSize& size) override;

    // label_layout.cpp
    void ResetFonts();
    void LayOut();
    HtmlLayout LayOutAt(int width, int marginVertical);
    void FitToClient();
    void ShowScrollBar(bool show);
    void UpdateScrollBar();
    void UpdateTabStop();
    // Pixels of the device: the page's margin where it has one, otherwise the format's.
    [[nodiscard]] int Margin(int ofPage, int ofFormat) const;
    [[nodiscard]] int Dpi() const;
    [[nodiscard]] int ScrollBarWidth() const;

    // label.cpp
    void OnPaint();
    void OnPrint(HDC dc);
    void OnSetText(const wchar_t* text);
    LRESULT OnHitTest(WPARAM wParam, LPARAM lParam);
    LRESULT OnGetDialogCode(WPARAM wParam, LPARAM lParam);
    void OnSetFocus(HWND loser);
    void OnKillFocus(HWND winner);
    bool OnSetCursor(LPARAM lParam);
    bool OnButtonDown(LPARAM lParam);
    void OnButtonUp(LPARAM lParam);
    void OnVerticalScroll(int code);
    void OnWheel(int delta);

    [[nodiscard]] bool IsInteractive() const { return !m_focusOrder.empty() || IsScrollable(); }
    [[nodiscard]] int LinkUnder(POINT point) const;
    [[nodiscard]] LabelDecision Decide(WPARAM virtualKey) const;
    [[nodiscard]] bool OwnerAgrees() const;
    void Act(const LabelDecision& decision);
    void FocusLink(int link);
    void ScrollTo(int position);
    void Activate(int link);
    void Redraw();
    [[nodiscard]] LabelPicture Picture();

    HtmlDocument m_document;
    CString m_folder;
    RenderFormat m_format;
    ISlimHtmlNotify* m_notify = nullptr;

    CLabelFonts m_fonts;
    CLabelImages m_images;
    HtmlLayout m_layout;
    std::vector<int> m_focusOrder;
    ScrollRange m_range;
    bool m_bLayingOut = false;
    bool m_bScrollBar = false;
    bool m_bPainted = false;
    LONG_PTR m_formerStyle = 0;

    int m_focusedLink = -1;
    int m_pressedLink = -1; // the mouse went down on it
    bool m_bFocusByMouse = false;
    int m_wheelRest = 0;
    CControlSubclass m_binding{this}; // last: its end must not find the rest gone
};
