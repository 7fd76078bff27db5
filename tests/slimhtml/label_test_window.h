// A dialog-like window with a label between two buttons, driven by messages as a user would.
#pragma once

#include "slimhtml/slim_html.h"
#include "tests/support/text.h"

#include <windows.h>

#include <functional>
#include <vector>

class LabelTestWindow
{
public:
    static constexpr int beforeId = 10;
    static constexpr int labelId = 11;
    static constexpr int afterId = 12;

    LabelTestWindow(int width, int height, const wchar_t* text = L"");
    ~LabelTestWindow();
    LabelTestWindow(const LabelTestWindow&) = delete;
    LabelTestWindow& operator=(const LabelTestWindow&) = delete;

    [[nodiscard]] HWND Window() const { return m_window; }
    [[nodiscard]] HWND Label() const { return m_label; }
    [[nodiscard]] HWND Before() const { return m_before; }
    [[nodiscard]] HWND After() const { return m_after; }

    // The format of the page frame's labels.
    static RenderFormat FrameFormat();

    // Handles what waits in the queue, keys offered to `label` first and then to the dialog's own handling.
    void Pump(CSlimHtmlCtrl* label = nullptr);
    // Presses a key in the focused window.
    void Press(WPARAM key, CSlimHtmlCtrl* label = nullptr, bool shift = false);
    // Presses and releases the left button over the label.
    void Click(int x, int y);

    // The colour of a pixel of the label as it paints itself.
    [[nodiscard]] COLORREF Pixel(int x, int y) const;
    // True when any pixel within the label has that colour.
    [[nodiscard]] bool Shows(COLORREF color) const;
    // Writes what the window shows to a PNG in the folder that the variable ROLLOUT_PICTURES names, if it is set.
    void SavePicture(const wchar_t* name) const;

    HBRUSH background = nullptr; // answered to the label; white when null

private:
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);

    // As a dialog: a window that becomes active again has its focus where it was. False when there is nothing to restore.
    bool RestoreFocus(bool active);

    HWND m_lastFocus = nullptr;
    HFONT m_font = nullptr;
    HWND m_window = nullptr;
    HWND m_before = nullptr;
    HWND m_label = nullptr;
    HWND m_after = nullptr;
};

// Pixels of a window's client area, 0x00BBGGRR, row by row.
struct Picture
{
    int width = 0;
    int height = 0;
    std::vector<COLORREF> pixels;
};
[[nodiscard]] Picture ReadPicture(HWND window);

[[nodiscard]] CString WindowText(HWND window);
// Folder of the fixtures, with its backslash.
[[nodiscard]] CString FixtureFolder();
// Drawing objects that the process holds.
[[nodiscard]] int CountGdiObjects();

// Writes down what a label reports.
class RecordingNotify : public ISlimHtmlNotify
{
public:
    std::vector<CString> calls;
    bool bTakesKeys = true;
    std::function<void(const wchar_t*)> onLink;

    virtual ~RecordingNotify() = default;
    int OnLinkClicked(HWND control, const wchar_t* target) override;
    int OnReserved1(HWND control, const wchar_t* text) override;
    int OnReserved2(HWND control, const wchar_t* text) override;
    int OnKeyHandled(HWND control, int reserved, bool* handled) override;
};
