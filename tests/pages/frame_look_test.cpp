// What the frame shows on every page: title, icon, labels, panel, colours, place.
#include "automation/picture.h"
#include "base/handle.h"
#include "tests/pages/contact_page.h"
#include "window/drawing_handles.h"
#include "window/gdi.h"

namespace {

class FrameLook : public ContactPage
{
protected:
    // The colour on the screen at a place of the page's client area.
    COLORREF ColorAt(int x, int y)
    {
        RedrawWindow(Page(), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
        POINT place = {x, y};
        ClientToScreen(Page(), &place);
        const CWindowDC screen(nullptr);
        return GetPixel(screen.get(), place.x, place.y);
    }
    RECT PageRectangle()
    {
        RECT rectangle = {};
        GetWindowRect(Page(), &rectangle);
        return rectangle;
    }
};

CString Words(const RECT& rectangle)
{
    return NumberText(rectangle.left) + L"," + NumberText(rectangle.top) + L"," +
           NumberText(rectangle.right) + L"," + NumberText(rectangle.bottom);
}

// ---- title

struct TitleCase
{
    int mode;
    const wchar_t* name;
    const wchar_t* title;
};

class Titles : public FrameLook, public testing::WithParamInterface<TitleCase>
{
};

TEST_P(Titles, NameTheProductAndInDeploymentModesTheDeployment)
{
    host.manager.m_setupMode = static_cast<Setup::tagSETUPMODE>(GetParam().mode);
    host.manager.m_strDeploymentName = GetParam().name;
    Look([&] { EXPECT_EQ(WindowText(Page()), CString(GetParam().title)); });
    ShowAndLeave();
}

INSTANTIATE_TEST_SUITE_P(OfEachMode, Titles,
                         testing::Values(TitleCase{4, L"Alpha", L"Zolt 2027 - Alpha"},
                                         TitleCase{5, L"Alpha", L"Zolt 2027 - Alpha"},
                                         TitleCase{6, L"Alpha", L"Zolt 2027 - Alpha"},
                                         TitleCase{2, L"Alpha", L"Zolt 2027"},
                                         TitleCase{3, L"Alpha", L"Zolt 2027"},
                                         TitleCase{4, L"", L"Zolt 2027"},
                                         TitleCase{4, nullptr, L"Zolt 2027"}));

// ---- icon

TEST_F(FrameLook, TheLibrarysIconIsTheWindowsLargeIcon)
{
    Look([&] { EXPECT_NE(SendMessageW(Page(), WM_GETICON, ICON_BIG, 0), 0); });
    ShowAndLeave();
}

// A one-image icon file of 16 by 16 pixels, all of one colour.
void WriteIconFile(const CString& path)
{
    constexpr int side = 16;
    std::vector<unsigned char> bytes = {0, 0, 1, 0, 1, 0, side, side, 0, 0, 1, 0, 32, 0};
    const auto number = [&](unsigned value) {
        for (int shift = 0; shift < 32; shift += 8)
            bytes.push_back(static_cast<unsigned char>(value >> shift));
    };
    constexpr unsigned pixels = side * side * 4;
    constexpr unsigned mask = side * 4;
    number(40 + pixels + mask);
    number(22);
    for (const unsigned value : {40u, 16u, 32u, 1u | (32u << 16), 0u, pixels + mask, 0u, 0u, 0u, 0u})
        number(value);
    for (int pixel = 0; pixel < side * side; ++pixel)
        number(0xFF2040C0);
    bytes.resize(bytes.size() + mask);
    const CFileOwner file(CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    DWORD written = 0;
    ASSERT_TRUE(WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr));
}

TEST_F(FrameLook, TheHostsIconFileTakesTheLibrarysIconsPlace)
{
    const CString path = folder / L"host.ico";
    WriteIconFile(path);
    host.ui.m_strIconFile = path;
    Look([&] {
        HICON icon = reinterpret_cast<HICON>(SendMessageW(Page(), WM_GETICON, ICON_BIG, 0));
        ICONINFO information = {};
        ASSERT_TRUE(GetIconInfo(icon, &information));
        const CBitmapOwner mask(information.hbmMask);
        const CBitmapOwner color(information.hbmColor);
        BITMAP size = {};
        GetObjectW(color.get(), sizeof(size), &size);
        EXPECT_EQ(size.bmWidth, 16);
        EXPECT_EQ(size.bmHeight, 16);
        const CDcOwner memory(CreateCompatibleDC(nullptr));
        const CSelectObject selected(memory.get(), color.get());
        EXPECT_EQ(GetPixel(memory.get(), 8, 8), RGB(0x20, 0x40, 0xC0));
    });
    ShowAndLeave();
}

// ---- labels

TEST_F(FrameLook, TheBannerNamesTheProduct)
{
    Look([&] {
        EXPECT_GE(Control(IDC_BANNER).GetText().Find(L"Zolt 2027"), 0) << Utf8(Control(IDC_BANNER).GetText());
        EXPECT_EQ(Control(IDC_BANNER).GetText().Find(L"[ProductName]"), -1);
    });
    ShowAndLeave();
}

TEST_F(FrameLook, TheStepLabelHoldsTheHostsArgument)
{
    host.ui.m_strStepArgument = L"Seven";
    Look([&] {
        if (Control(IDC_STEP_LABEL).Exists()) {
            EXPECT_GE(Control(IDC_STEP_LABEL).GetText().Find(L"Seven"), 0)
                << Utf8(Control(IDC_STEP_LABEL).GetText());
        }
    });
    ShowAndLeave();
}

TEST_F(FrameLook, TheSidePaneShowsTheHelpFileOfTheHostsFolder)
{
    WithResourceFolder();
    folder.AddFile(L"help.html", "<p>Words of <b>help</b></p>");
    context.strHelpFile = L"help.html";
    Look([&] {
        EXPECT_EQ(Control(IDC_SIDE_PANE).GetText().Find(L"Words of help"), 0)
            << Utf8(Control(IDC_SIDE_PANE).GetText());
        EXPECT_TRUE(Control(IDC_SIDE_PANE).IsVisible());
        EXPECT_TRUE(Control(IDC_SIDE_PANE).IsEnabled());
        EXPECT_TRUE(GetWindowLongW(Control(IDC_SIDE_PANE).GetWindow(), GWL_STYLE) & SS_NOTIFY);
    });
    ShowAndLeave();
}

TEST_F(FrameLook, AMissingHelpFileLeavesThePageUsable)
{
    WithResourceFolder();
    context.strHelpFile = L"nowhere.html";
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_F(FrameLook, Message1031PutsATextIntoTheSidePane)
{
    Look([&] {
        SendMessageW(Page(), PAGE_MESSAGE_SIDE_PANE, 0, reinterpret_cast<LPARAM>(L"<p>Sent words</p>"));
        EXPECT_EQ(Control(IDC_SIDE_PANE).GetText().Find(L"Sent words"), 0);
        SendMessageW(Page(), PAGE_MESSAGE_SIDE_PANE, 0, reinterpret_cast<LPARAM>(L""));
        EXPECT_EQ(Control(IDC_SIDE_PANE).GetText().Find(L"Sent words"), 0) << "an empty text counts";
    });
    ShowAndLeave();
}

TEST_F(FrameLook, TheFooterShowsAndControl1031Hides)
{
    Look([&] {
        if (Control(IDC_FOOTER).Exists()) {
            EXPECT_TRUE(Control(IDC_FOOTER).IsVisible());
        }
        EXPECT_FALSE(Control(IDC_HIDDEN_AT_START).IsVisible());
    });
    ShowAndLeave();
}

// ---- painting

TEST_F(FrameLook, ThePanelIsWhiteWithASilverOutline)
{
    Look([&] {
        ASSERT_TRUE(Control(IDC_PANEL).Exists());
        EXPECT_FALSE(Control(IDC_PANEL).IsVisible());
        const RECT panel = Control(IDC_PANEL).GetRectangle();
        const int middle = (panel.top + panel.bottom) / 2;
        EXPECT_EQ(ColorAt(panel.left, middle), RGB(0xC0, 0xC0, 0xC0)) << "left edge";
        EXPECT_EQ(ColorAt(panel.right - 1, middle), RGB(0xC0, 0xC0, 0xC0)) << "right edge";
        EXPECT_EQ(ColorAt(panel.left + 10, panel.top), RGB(0xC0, 0xC0, 0xC0)) << "upper edge";
        EXPECT_EQ(ColorAt(panel.left + 10, panel.bottom - 1), RGB(0xC0, 0xC0, 0xC0)) << "lower edge";
        EXPECT_EQ(ColorAt(panel.left + 2, middle), RGB(255, 255, 255)) << "inside";
    });
    ShowAndLeave();
}

TEST_F(FrameLook, ThePageIsWhiteAroundThePanel)
{
    Look([&] {
        const RECT panel = Control(IDC_PANEL).GetRectangle();
        EXPECT_EQ(ColorAt(panel.left, panel.bottom + 2), RGB(255, 255, 255));
        RECT client = {};
        GetClientRect(Page(), &client);
        EXPECT_EQ(ColorAt(client.left + 2, client.bottom - 3), RGB(255, 255, 255));
    });
    ShowAndLeave();
}

TEST_F(FrameLook, ErasingIsAnsweredWithoutErasing)
{
    Look([&] {
        const CDcOwner memory(CreateCompatibleDC(nullptr));
        const CBitmapOwner bitmap(CreateBitmap(8, 8, 1, 32, nullptr));
        const CSelectObject selected(memory.get(), bitmap.get());
        SetPixel(memory.get(), 1, 1, RGB(1, 2, 3));
        EXPECT_NE(SendMessageW(Page(), WM_ERASEBKGND, reinterpret_cast<WPARAM>(memory.get()), 0), 0);
        EXPECT_EQ(GetPixel(memory.get(), 1, 1), RGB(1, 2, 3));
    });
    ShowAndLeave();
}

TEST_F(FrameLook, ControlsStandOnTheStockWhiteBrush)
{
    Look([&] {
        const CDcOwner memory(CreateCompatibleDC(nullptr));
        const LRESULT white = reinterpret_cast<LRESULT>(GetStockObject(WHITE_BRUSH));
        for (const UINT message :
             {WM_CTLCOLOREDIT, WM_CTLCOLORLISTBOX, WM_CTLCOLORBTN, WM_CTLCOLORDLG, WM_CTLCOLORSTATIC}) {
            EXPECT_EQ(SendMessageW(Page(), message, reinterpret_cast<WPARAM>(memory.get()),
                                   reinterpret_cast<LPARAM>(Control(IDC_NEXT).GetWindow())),
                      white)
                << "message " << message;
        }
        EXPECT_NE(SendMessageW(Page(), WM_CTLCOLORSCROLLBAR, reinterpret_cast<WPARAM>(memory.get()),
                               reinterpret_cast<LPARAM>(Control(IDC_NEXT).GetWindow())),
                  white);
    });
    ShowAndLeave();
}

// ---- place

TEST_F(FrameLook, TheFirstPageOpensInTheMiddleOfTheScreen)
{
    RECT work = {};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    Look([&] {
        const RECT page = PageRectangle();
        EXPECT_NEAR(page.left + page.right, work.left + work.right, 2);
        EXPECT_NEAR(page.top + page.bottom, work.top + work.bottom, 2);
    });
    ShowAndLeave();
}

class Places : public FrameLook
{
protected:
    // The size that the page has on its own.
    SIZE PageSize()
    {
        SIZE size = {};
        Look([&] {
            const RECT page = PageRectangle();
            size = {page.right - page.left, page.bottom - page.top};
        });
        ShowAndLeave();
        host.ui.stored.clear();
        return size;
    }
    // Opens the page with a saved rectangle whose size differs from the page's and gives where it came up.
    RECT PlaceWithSaved(const RECT& saved)
    {
        host.ui.saved = true;
        host.ui.position = saved;
        RECT place = {};
        Look([&] { place = PageRectangle(); });
        ShowAndLeave();
        return place;
    }
};

TEST_F(Places, APageThreePixelsLargerGrowsByOneOnEachSide)
{
    const SIZE size = PageSize();
    const RECT place = PlaceWithSaved({100, 120, 100 + size.cx - 3, 120 + size.cy - 3});
    EXPECT_EQ(Words(place), Words({99, 119, 100 + size.cx - 3 + 1, 120 + size.cy - 3 + 1}));
    ASSERT_FALSE(host.ui.stored.empty());
    EXPECT_EQ(Words(host.ui.stored.front()), Words(place));
}

TEST_F(Places, APageFivePixelsSmallerShrinksByTwoOnEachSide)
{
    const SIZE size = PageSize();
    const RECT place = PlaceWithSaved({100, 120, 100 + size.cx + 5, 120 + size.cy + 5});
    EXPECT_EQ(Words(place), Words({102, 122, 100 + size.cx + 5 - 2, 120 + size.cy + 5 - 2}));
}

TEST_F(Places, APageOfTheSameSizeOpensAtTheSamePlace)
{
    const SIZE size = PageSize();
    const RECT saved = {37, 41, 37 + size.cx, 41 + size.cy};
    EXPECT_EQ(Words(PlaceWithSaved(saved)), Words(saved));
}

TEST_F(Places, AMoveIsStored)
{
    Look([&] {
        SetWindowPos(Page(), nullptr, 61, 62, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
        EXPECT_EQ(Words(host.ui.position), Words(PageRectangle()));
        EXPECT_EQ(host.ui.position.left, 61);
    });
    ShowAndLeave();
}

TEST_F(Places, AMinimisedPageIsNotStored)
{
    Look([&] {
        const std::size_t before = host.ui.stored.size();
        ShowWindow(Page(), SW_MINIMIZE);
        EXPECT_TRUE(IsIconic(Page()));
        EXPECT_EQ(host.ui.stored.size(), before);
        ShowWindow(Page(), SW_RESTORE);
    });
    ShowAndLeave();
}

// ---- AutoPlay

TEST_F(FrameLook, AutoPlayIsAnsweredWithOneAndOtherRegisteredMessagesAreNot)
{
    Look([&] {
        EXPECT_EQ(SendMessageW(Page(), RegisterWindowMessageW(L"QueryCancelAutoPlay"), 0, 0), 1);
        EXPECT_EQ(SendMessageW(Page(), RegisterWindowMessageW(L"RolloutOtherMessage"), 0, 0), 0);
    });
    ShowAndLeave();
}

} // namespace
