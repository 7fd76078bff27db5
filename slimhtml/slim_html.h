// CSlimHtmlCtrl: a static control turned into a label that shows simple HTML, with wrapping, scrolling and links.
// Exported by SlimHtml.dll; used by the page frame and by the wizard program.
#pragma once

#include "base/string.h"

#include <windows.h>

#include <memory>

#if defined(SLIMHTML_EXPORTS)
#define SLIMHTML_API __declspec(dllexport)
#else
#define SLIMHTML_API __declspec(dllimport)
#endif

// How a label draws its text. All zero is a valid record: black text on the dialog's face, one line a paragraph.
// The page's own colours and margins (<body bgcolor text link leftmargin topmargin>, <font color>) win over these; in high
// contrast the user's colours win over all. A default text colour that can't be distinguished from the background gives way
// to black or white.
struct RenderFormat
{
    float fTextScale = 0;           // factor of the control's font; 0 counts as 1
    float fLineSpacing = 0;         // factor of the line height; 0 counts as 1
    COLORREF clrText = 0;           // of text to which the page gives no colour
    COLORREF clrBackground = 0;     // used with bFillBackground
    BOOL bFillBackground = FALSE;   // first flag: fill with clrBackground
    BOOL bParentBackground = FALSE; // second flag: the brush that the parent answers to WM_CTLCOLORSTATIC
    int nAlignment = DT_LEFT;       // DT_LEFT, DT_CENTER or DT_RIGHT, where the page says nothing
    int nWrap = 0;                  // 1: lines wrap at the label's width; 0: at breaks alone
    int nReserved = 0;
    int nMarginHorizontal = 0; // pixels at 96 dpi, scaled with the control's dpi
    int nMarginVertical = 0;   // likewise; gives way where the text would not fit otherwise
};

// What a label reports to its owner. Called on the label's thread; the label doesn't own the object. The results are not
// looked at.
struct ISlimHtmlNotify
{
    // The user activated a link, by mouse or keyboard. `target` is the page's href as it stands, valid during the call.
    // The owner may load another page into the label or destroy label and control from here.
    virtual int OnLinkClicked(HWND control, const wchar_t* target) = 0;
    virtual int OnReserved1(HWND control, const wchar_t* text) = 0; // never called
    virtual int OnReserved2(HWND control, const wchar_t* text) = 0; // never called
    // A key was pressed for which the label has a use: walking or activating its links, scrolling. `*handled` comes in
    // false. An owner that sets it gives the key to the label; left false, the key goes on to the dialog. May be asked
    // more than once a key. A label without an owner takes its keys. `reserved` is 0.
    virtual int OnKeyHandled(HWND control, int reserved, bool* handled) = 0;

protected:
    ~ISlimHtmlNotify() = default;
};

// All calls belong on the control's thread. A label takes the keyboard focus (WS_TABSTOP) only while it has links or
// scrolls; Tab and Shift+Tab walk its links before they leave it, Enter and Space activate one, arrow and page keys
// scroll. The control stays a static to assistive tools, named by its text.
class SLIMHTML_API CSlimHtmlCtrl
{
public:
    CSlimHtmlCtrl();
    ~CSlimHtmlCtrl(); // gives the control its former window procedure and styles back, if it still lives
    CSlimHtmlCtrl(const CSlimHtmlCtrl&) = delete;
    CSlimHtmlCtrl& operator=(const CSlimHtmlCtrl&) = delete;

    // Binds to a static control and shows its text as HTML. False when that is no window of this thread, when it has a
    // label already, or when this label is bound. Ends with the control; the label can then be bound anew.
    bool SubclassWindow(HWND control);
    HWND GetWindow() const; // null while unbound

    void SetRenderFormat(const RenderFormat& format); // also before binding
    const RenderFormat& GetRenderFormat() const;

    // Parses and shows HTML; nothing while unbound. Never fails: broken markup shows as the text that it holds. The
    // control's window text becomes the plain text. Setting the window text of a bound control does the same as this.
    // The text is the caller's own, so it may name PNG and GIF images anywhere by full paths: "C:\a.gif" or
    // "\\server\share\a.gif", nothing else. What comes from elsewhere is quoted before it becomes part of the text.
    void LoadText(const wchar_t* html);
    // Shows a file of at most 16 MB (UTF-8, or UTF-16 with a byte order mark). PNG and GIF images are read from its
    // folder or below, and from nowhere else. False while unbound or when the file can't be read; the label then keeps what it shows.
    bool LoadFile(const wchar_t* path);

    // Null takes the owner off. The object must outlive the label or be taken off.
    void SetNotify(ISlimHtmlNotify* notify);

    // Offers a message of the thread's loop before IsDialogMessage sees it; true when the label consumed it. Without
    // this call keys reach the label through WM_GETDLGCODE.
    bool PreTranslateMessage(MSG* message);

    // Height in pixels that the text needs at that width, margins included; 0 while unbound.
    int MeasureHeight(int width) const;
    // True when the text is higher than the label, so that it scrolls.
    bool IsScrollable() const;

private:
    class Implementation;
    std::unique_ptr<Implementation> m_implementation;
};
