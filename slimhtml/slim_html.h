// CSlimHtmlCtrl: a static control turned into a label that shows simple HTML, with wrapping, scrolling and links.
// Exported by SlimHtml.dll; used by the page frame and by the wizard program.
#pragma once

#include "window/string.h"

#include <windows.h>

#include <memory>

#if defined(SLIMHTML_EXPORTS)
#define SLIMHTML_API __declspec(dllexport)
#else
#define SLIMHTML_API __declspec(dllimport)
#endif

// How a label draws its text. All zero is a valid record.
struct RenderFormat
{
    float fTextScale = 0;           // factor of the text size; 0 counts as 1
    float fLineSpacing = 0;         // factor of the line height; 0 counts as 1
    COLORREF clrText = 0;           // colour of text to which the HTML gives none
    COLORREF clrBackground = 0;     // used with bFillBackground
    BOOL bFillBackground = FALSE;   // first flag: fill with clrBackground
    BOOL bParentBackground = FALSE; // second flag: the parent's background (WM_CTLCOLORSTATIC) shows through
    int nAlignment = 0;             // DT_LEFT, DT_CENTER or DT_RIGHT
    int nWrap = 0;                  // 1: lines wrap at the label's width
    int nReserved = 0;
    int nMarginHorizontal = 0; // pixels at 96 dpi
    int nMarginVertical = 0;
};

// What a label tells its owner. Called on the label's thread; the label doesn't own the object.
struct ISlimHtmlNotify
{
    // The user activated a link, by mouse or keyboard.
    virtual int OnLinkClicked(HWND control, const wchar_t* target) = 0;
    virtual int OnReserved1(HWND control, const wchar_t* text) = 0;
    virtual int OnReserved2(HWND control, const wchar_t* text) = 0;
    // The label is about to handle a key. Setting *handled leaves the key to the owner.
    virtual int OnKeyHandled(HWND control, int reserved, bool* handled) = 0;

protected:
    ~ISlimHtmlNotify() = default;
};

class SLIMHTML_API CSlimHtmlCtrl
{
public:
    CSlimHtmlCtrl();
    ~CSlimHtmlCtrl(); // gives the control its former window procedure back, if it still lives
    CSlimHtmlCtrl(const CSlimHtmlCtrl&) = delete;
    CSlimHtmlCtrl& operator=(const CSlimHtmlCtrl&) = delete;

    // Binds to a static control and takes over its painting and keyboard. False when it is no window or bound.
    bool SubclassWindow(HWND control);
    HWND GetWindow() const; // null while unbound

    void SetRenderFormat(const RenderFormat& format);
    const RenderFormat& GetRenderFormat() const;

    // Parses and shows HTML. Never fails: broken markup shows as the text that it holds. The control's window text
    // becomes the plain text, so that assistive tools read it.
    void LoadText(const wchar_t* html);
    // Shows a file (UTF-8, or UTF-16 with a byte order mark); images are looked for beside it. False when it can't be
    // read; the label then keeps what it shows.
    bool LoadFile(const wchar_t* path);

    void SetNotify(ISlimHtmlNotify* notify);

    // Offers a message of the thread's loop; true when the label consumed it (keys of a focused link, scrolling).
    bool PreTranslateMessage(MSG* message);

    // Height in pixels that the text needs at that width, margins included.
    int MeasureHeight(int width) const;
    // True when the text is higher than the label, so that it scrolls.
    bool IsScrollable() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> m_implementation;
};
