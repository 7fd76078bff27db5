#include "tests/slimhtml/label_test_window.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

WNDPROC ProcedureOf(HWND window)
{
    return reinterpret_cast<WNDPROC>(GetWindowLongPtrW(window, GWLP_WNDPROC));
}

} // namespace

TEST(LabelBindingTest, ShowsTheTextThatTheControlHadAsHtml)
{
    LabelTestWindow window(200, 60, L"<b>Zolt</b> &amp; more");
    CSlimHtmlCtrl label;
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    EXPECT_EQ(WindowText(window.Label()), CString(L"Zolt & more"));
}

TEST(LabelBindingTest, RefusesWhatIsNoWindow)
{
    CSlimHtmlCtrl label;
    EXPECT_FALSE(label.SubclassWindow(nullptr));
    EXPECT_EQ(label.GetWindow(), nullptr);
}

TEST(LabelBindingTest, RefusesASecondControl)
{
    LabelTestWindow window(200, 60);
    CSlimHtmlCtrl label;
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    EXPECT_FALSE(label.SubclassWindow(window.After()));
    EXPECT_EQ(label.GetWindow(), window.Label());
}

TEST(LabelBindingTest, RefusesAControlThatHasALabel)
{
    LabelTestWindow window(200, 60);
    CSlimHtmlCtrl first;
    CSlimHtmlCtrl second;
    ASSERT_TRUE(first.SubclassWindow(window.Label()));
    EXPECT_FALSE(second.SubclassWindow(window.Label()));
}

TEST(LabelBindingTest, TheObjectGoingFirstGivesTheControlItsProcedureBack)
{
    LabelTestWindow window(200, 60);
    const WNDPROC before = ProcedureOf(window.Label());
    auto label = std::make_unique<CSlimHtmlCtrl>();
    ASSERT_TRUE(label->SubclassWindow(window.Label()));
    ASSERT_NE(ProcedureOf(window.Label()), before);
    label.reset();
    EXPECT_EQ(ProcedureOf(window.Label()), before);
}

TEST(LabelBindingTest, TheObjectGoingFirstGivesTheControlItsStylesBack)
{
    LabelTestWindow window(120, 60);
    const LONG_PTR before = GetWindowLongPtrW(window.Label(), GWL_STYLE);
    auto label = std::make_unique<CSlimHtmlCtrl>();
    ASSERT_TRUE(label->SubclassWindow(window.Label()));
    label->LoadText(L"<p>one<p>two<p>three<p>four<p>five<p><a href=x>six</a>");
    ASSERT_NE(GetWindowLongPtrW(window.Label(), GWL_STYLE), before);
    label.reset();
    EXPECT_EQ(GetWindowLongPtrW(window.Label(), GWL_STYLE), before);
}

TEST(LabelBindingTest, TheControlGoingFirstUnbindsTheObject)
{
    LabelTestWindow window(200, 60);
    CSlimHtmlCtrl label;
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    DestroyWindow(window.Label());
    EXPECT_EQ(label.GetWindow(), nullptr);
    label.LoadText(L"nowhere to be shown");
    EXPECT_EQ(label.MeasureHeight(100), 0);
}

TEST(LabelBindingTest, AnObjectWhoseControlWentBindsAnew)
{
    LabelTestWindow first(200, 60, L"first");
    LabelTestWindow second(200, 60, L"<i>second</i>");
    CSlimHtmlCtrl label;
    ASSERT_TRUE(label.SubclassWindow(first.Label()));
    DestroyWindow(first.Label());
    ASSERT_TRUE(label.SubclassWindow(second.Label()));
    EXPECT_EQ(WindowText(second.Label()), CString(L"second"));
}

TEST(LabelBindingTest, AControlWhoseObjectWentBindsAnew)
{
    LabelTestWindow window(200, 60);
    {
        CSlimHtmlCtrl label;
        ASSERT_TRUE(label.SubclassWindow(window.Label()));
    }
    CSlimHtmlCtrl label;
    EXPECT_TRUE(label.SubclassWindow(window.Label()));
}

namespace {

WNDPROC belowIntruder = nullptr;
LRESULT CALLBACK Intruder(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    return CallWindowProcW(belowIntruder, window, message, wParam, lParam);
}

} // namespace

TEST(LabelBindingTest, AnObjectThatGoesBelowAnotherProcedureLeavesAWorkingControl)
{
    LabelTestWindow window(200, 60);
    {
        CSlimHtmlCtrl label;
        ASSERT_TRUE(label.SubclassWindow(window.Label()));
        belowIntruder = ProcedureOf(window.Label());
        SetWindowLongPtrW(window.Label(), GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Intruder));
    }
    SetWindowTextW(window.Label(), L"<b>plain again</b>");
    EXPECT_EQ(WindowText(window.Label()), CString(L"<b>plain again</b>"));
    EXPECT_NE(SendMessageW(window.Label(), WM_GETFONT, 0, 0), 0)
        << "the static control's own procedure was lost";
}

TEST(LabelBindingTest, CountingSeesTwentyObjectsMade)
{
    const int before = CountGdiObjects();
    std::vector<HPEN> pens;
    for (int index = 0; index < 20; ++index) {
        pens.push_back(CreatePen(PS_SOLID, 1, RGB(index, 1, 2)));
    }
    EXPECT_EQ(CountGdiObjects() - before, 20);
    for (const HPEN pen : pens) {
        DeleteObject(pen);
    }
    EXPECT_EQ(CountGdiObjects(), before);
}

TEST(LabelBindingTest, ThreeHundredLabelsLeaveNoDrawingObjectBehind)
{
    const CString page = FixtureFolder() + L"page_utf8.html";
    const auto bindOnce = [&page](bool objectFirst) {
        LabelTestWindow window(120, 60);
        CSlimHtmlCtrl label;
        EXPECT_TRUE(label.SubclassWindow(window.Label()));
        EXPECT_TRUE(label.LoadFile(page));
        label.LoadText(L"<h1>Head</h1><b>b<i>i</i></b><hr><a href=x>link</a><p>one<p>two<p>three");
        UpdateWindow(window.Label());
        if (!objectFirst) {
            DestroyWindow(window.Window());
        }
    };
    bindOnce(true); // what the system keeps from the first time on
    const int before = CountGdiObjects();
    for (int index = 0; index < 300; ++index) {
        bindOnce(index % 2 == 0);
    }
    EXPECT_EQ(CountGdiObjects(), before);
}
