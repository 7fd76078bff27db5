// What the page of a made deployment shows on the screen: its lines letter by letter, and its label.
#include "slimhtml/slim_html.h"
#include "tests/support/page_test.h"
#include "window/drawing_handles.h"
#include "window/gdi.h"

#include <algorithm>
#include <vector>

namespace {

constexpr COLORREF WHITE = RGB(255, 255, 255);

// The client area of a window as it paints itself, row by row.
std::vector<COLORREF> Painted(HWND window)
{
    RECT client = {};
    GetClientRect(window, &client);
    const CWindowDC screen(nullptr);
    const CDcOwner memory(CreateCompatibleDC(screen.get()));
    const CBitmapOwner bitmap(CreateCompatibleBitmap(screen.get(), client.right, client.bottom));
    const CSelectObject selected(memory.get(), bitmap.get());
    SendMessageW(window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(memory.get()), PRF_CLIENT);
    std::vector<COLORREF> pixels;
    for (int y = 0; y < client.bottom; ++y) {
        for (int x = 0; x < client.right; ++x)
            pixels.push_back(GetPixel(memory.get(), x, y));
    }
    return pixels;
}

long long Inked(const std::vector<COLORREF>& pixels)
{
    return static_cast<long long>(pixels.size()) - std::count(pixels.begin(), pixels.end(), WHITE);
}

class CompleteLook : public PageTest
{
protected:
    void ShowAndLeave()
    {
        Press(IDC_BACK);
        EXPECT_EQ(Show(DeploymentCompleteDialog), NAVIGATION_BACK);
    }
    // A static of the page's own making, as large as the control and with its font.
    HWND MakeTwin(int control, const CString& text, DWORD style) const
    {
        const HWND original = Control(control).GetWindow();
        const RECT place = Control(control).GetRectangle();
        const HWND twin = CreateWindowExW(0, L"STATIC", text, WS_CHILD | style, place.left, place.top,
                                          place.right - place.left, place.bottom - place.top, Page(), nullptr,
                                          GetModuleHandleW(nullptr), nullptr);
        SendMessageW(twin, WM_SETFONT, static_cast<WPARAM>(SendMessageW(original, WM_GETFONT, 0, 0)), FALSE);
        return twin;
    }
    // The line looks like this text, drawn without regard to "&".
    void ExpectLooksLike(int control, const CString& text) const
    {
        const HWND twin = MakeTwin(control, text, SS_NOPREFIX | SS_EDITCONTROL);
        const std::vector<COLORREF> line = Painted(Control(control).GetWindow());
        EXPECT_GT(Inked(line), 50) << "nothing is drawn";
        EXPECT_EQ(line == Painted(twin), true) << "not drawn as: " << Utf8(text);
        DestroyWindow(twin);
    }
};

TEST_F(CompleteLook, AnAmpersandShowsAsOne)
{
    host.manager.m_strCompleteLine1 = L"Pen & Paper && Co";
    host.manager.m_strCompleteLine2 = L"\\\\server\\R&D\\Alpha";
    Look([&] {
        ExpectLooksLike(IDC_RESULT_LINE1, ResourceText(IDS_COMPLETE_LINE1) + L"Pen & Paper && Co");
        ExpectLooksLike(IDC_RESULT_LINE2, ResourceText(IDS_COMPLETE_LINE2) + L"\\\\server\\R&D\\Alpha");
    });
    ShowAndLeave();
}

// The label's format can't be asked for; another one of the same format must draw the same.
TEST_F(CompleteLook, TheResultLabelDrawsInTheFormatOfThePage)
{
    RenderFormat format;
    format.fTextScale = 1.0f;
    format.clrText = 0xFFFFFF;
    format.bParentBackground = TRUE;
    format.nWrap = 1;
    format.nMarginHorizontal = 10;
    format.nMarginVertical = 10;
    Look([&] {
        // Words without a color of their own show the default one, on a ground that leaves it; they fill several lines.
        const CString text = L"<body bgcolor=\"#C02020\">" + CString(L"White words on red. ") +
                             CString(L"They go on and on, until the line is full and wraps. ") +
                             CString(L"And then they go on in the next one.");
        const HWND label = Control(IDC_RESULT_LABEL).GetWindow();
        for (const CString& shown : {ResourceText(IDS_COMPLETE_TEXT), text}) {
            SendMessageW(label, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(shown.GetString()));
            CSlimHtmlCtrl likeness;
            const HWND twin = MakeTwin(IDC_RESULT_LABEL, L"", SS_NOTIFY);
            ASSERT_TRUE(likeness.SubclassWindow(twin));
            likeness.SetRenderFormat(format);
            likeness.LoadText(shown);
            const std::vector<COLORREF> drawn = Painted(label);
            EXPECT_GT(Inked(drawn), 500) << "nothing is drawn";
            EXPECT_TRUE(drawn == Painted(twin)) << "another format: " << Utf8(shown);
            DestroyWindow(twin);
        }
    });
    ShowAndLeave();
}

TEST_F(CompleteLook, ThePageOpensWithTheTextOfTheLibraryInItsLabel)
{
    Look([&] {
        const HWND label = Control(IDC_RESULT_LABEL).GetWindow();
        const std::vector<COLORREF> opened = Painted(label);
        const CString text = ResourceText(IDS_COMPLETE_TEXT);
        SendMessageW(label, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.GetString()));
        EXPECT_TRUE(opened == Painted(label)) << "another text";
    });
    ShowAndLeave();
}

// ---- keys

WNDPROC g_formerProcedure = nullptr;
int g_keysThatReachedTheLabel = 0;

LRESULT CALLBACK CountKeys(HWND label, UINT message, WPARAM wParam, LPARAM lParam)
{
    g_keysThatReachedTheLabel += message == WM_KEYDOWN || message == WM_GETDLGCODE;
    return CallWindowProcW(g_formerProcedure, label, message, wParam, lParam);
}

// The label acts on the key before the dialog sees it: the dialog doesn't even ask whose the key is.
TEST_F(CompleteLook, TheResultLabelIsOfferedKeysBeforeTheDialog)
{
    Look([&] {
        const HWND label = Control(IDC_RESULT_LABEL).GetWindow();
        const CString text = L"<a href=\"one\">first</a> and <a href=\"two\">second</a>";
        SendMessageW(label, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(text.GetString()));
        SetFocus(label);
        g_formerProcedure = reinterpret_cast<WNDPROC>(
            SetWindowLongPtrW(label, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(CountKeys)));
        g_keysThatReachedTheLabel = 0;
    });
    std::vector<COLORREF> onFirst;
    Look([&] { onFirst = Painted(Control(IDC_RESULT_LABEL).GetWindow()); });
    Key(VK_TAB);
    Await(L"the focus didn't go to the second link",
          [&] { return Painted(Control(IDC_RESULT_LABEL).GetWindow()) != onFirst; });
    Look([&] {
        EXPECT_EQ(g_keysThatReachedTheLabel, 0);
        EXPECT_TRUE(HasFocus(IDC_RESULT_LABEL));
        SetWindowLongPtrW(Control(IDC_RESULT_LABEL).GetWindow(), GWLP_WNDPROC,
                          reinterpret_cast<LONG_PTR>(g_formerProcedure));
    });
    ShowAndLeave();
}

} // namespace
