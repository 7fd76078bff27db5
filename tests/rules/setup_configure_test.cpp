#include "setup/configure_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <ostream>

void PrintTo(const ScreenRectangle& rectangle, std::ostream* stream)
{
    *stream << rectangle.left << "," << rectangle.top << " to " << rectangle.right << "," << rectangle.bottom;
}

namespace {

const ScreenRectangle SCREEN = {0, 0, 1000, 700};

TEST(SetupConfigure, ATabPageIsTheWizardPageWithAnotherEnding)
{
    EXPECT_EQ(TabTwin(L"OnlineResourcesDialog"), CString(L"OnlineResourcesPage"));
}

TEST(SetupConfigure, ANameWithoutTheWizardsEndingHasNoTabPage)
{
    for (const wchar_t* name : {L"", L"Dialog", L"OnlineResourcesPage", L"OnlineDialogs", L"dialog"}) {
        EXPECT_EQ(TabTwin(name), CString()) << Utf8(name);
    }
}

TEST(SetupConfigure, TheProductStandsInTheCaptionOnlyBesideOthers)
{
    EXPECT_EQ(TabCaption(L"Zolt 2027", L"Paths", false), CString(L"Paths"));
    EXPECT_EQ(TabCaption(L"Zolt 2027", L"Paths", true), CString(L"Zolt 2027 - Paths"));
}

TEST(SetupConfigure, AnAmpersandInACaptionIsNoMnemonic)
{
    EXPECT_EQ(TabCaption(L"Bolts & Nuts", L"Paths", true), CString(L"Bolts && Nuts - Paths"));
}

TEST(SetupConfigure, TheCounterHoldsTheIndexLowAndTheTotalHigh)
{
    EXPECT_EQ(CounterParameter(3, 12), 0x000C0003u);
}

TEST(SetupConfigure, TabsGoRoundAtBothEnds)
{
    EXPECT_EQ(TabAround(11, 1, 12), 0);
    EXPECT_EQ(TabAround(0, -1, 12), 11);
    EXPECT_EQ(TabAround(4, 1, 12), 5);
    EXPECT_EQ(TabAround(0, 1, 1), 0);
    EXPECT_EQ(TabAround(0, 1, 0), 0);
}

TEST(SetupConfigure, AWindowThatLiesInTheAreaStaysWhereItIs)
{
    EXPECT_EQ(FitInto({10, 20, 110, 220}, SCREEN), (ScreenRectangle{10, 20, 110, 220}));
}

TEST(SetupConfigure, AWindowOfAMonitorThatIsGoneComesBackToTheEdge)
{
    EXPECT_EQ(FitInto({1500, -400, 1600, -200}, SCREEN), (ScreenRectangle{900, 0, 1000, 200}));
    EXPECT_EQ(FitInto({-300, 650, -200, 850}, SCREEN), (ScreenRectangle{0, 500, 100, 700}));
}

TEST(SetupConfigure, AWindowLargerThanTheAreaIsCutToIt)
{
    EXPECT_EQ(FitInto({-50, 10, 1200, 900}, SCREEN), SCREEN);
}

TEST(SetupConfigure, AScrollBarOnOneSideDoesNotBringTheOther)
{
    EXPECT_EQ(WithScrollBars({0, 0, 500, 600}, SCREEN, 17, 18), (ScreenRectangle{0, 0, 500, 600}));
    EXPECT_EQ(WithScrollBars({0, 0, 500, 900}, SCREEN, 17, 18), (ScreenRectangle{0, 0, 517, 900}));
    EXPECT_EQ(WithScrollBars({0, 0, 1200, 600}, SCREEN, 17, 18), (ScreenRectangle{0, 0, 1200, 618}));
}

TEST(SetupConfigure, AMonitorLeftOfTheFirstHasNegativePlaces)
{
    const ScreenRectangle left = {-1280, 0, 0, 1024};
    EXPECT_EQ(FitInto({-100, 0, 100, 100}, left), (ScreenRectangle{-200, 0, 0, 100}));
}

TEST(SetupConfigure, CentredOnKeepsTheMiddle)
{
    EXPECT_EQ(CentredOn({100, 100, 300, 200}, 100, 300), (ScreenRectangle{150, 0, 250, 300}));
}

TEST(SetupConfigure, ACornerReadsBackAsItWasWritten)
{
    ScreenCorner corner;
    ASSERT_TRUE(ReadCorner(CornerText({-1280, 44}), corner));
    EXPECT_EQ(corner.x, -1280);
    EXPECT_EQ(corner.y, 44);
}

TEST(SetupConfigure, WhatIsNoCornerLeavesItUnchanged)
{
    ScreenCorner corner = {7, 8};
    for (const wchar_t* text : {L"", L",", L"1", L"1,", L",1", L"1,2,3", L"a,b", L"1, 2", L"--1,2", L"-,2",
                                L"99999999999999999999,1"}) {
        EXPECT_FALSE(ReadCorner(text, corner)) << Utf8(text);
        EXPECT_EQ(corner.x, 7) << Utf8(text);
    }
}

TEST(SetupConfigure, AViewScrollsNoFartherThanNeeded)
{
    EXPECT_EQ(ScrollToShow(0, 100, 300, 20, 50), 0) << "inside already";
    EXPECT_EQ(ScrollToShow(0, 100, 300, 150, 180), 80) << "below";
    EXPECT_EQ(ScrollToShow(150, 100, 300, 20, 50), 20) << "above";
    EXPECT_EQ(ScrollToShow(0, 100, 300, 120, 280), 120) << "larger than the view: its beginning";
    EXPECT_EQ(ScrollToShow(0, 100, 300, 290, 320), 200) << "not beyond the end";
    EXPECT_EQ(ScrollToShow(40, 400, 300, 0, 10), 0) << "nothing to scroll";
}

} // namespace
