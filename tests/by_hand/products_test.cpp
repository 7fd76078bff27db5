// The pages of a product, walked once for each of the sample's two products, forward and back.
#include "automation/window_finder.h"
#include "include/resource_ids.h"
#include "tests/by_hand/by_hand_fixture.h"

namespace {

constexpr const wchar_t* FIRST = L"Zolt 2027 deployment - Zolt 2027";
constexpr const wchar_t* SECOND = L"Zolt 2027 deployment - Zolt Viewer 2027";
constexpr const wchar_t* NONE = L"Zolt 2027 deployment";

class ProductsByHand : public ByHandTest
{
protected:
    // Up to the first page of a product.
    void StartWalk()
    {
        Start(SampleMedia());
        EnterFirstPage(L"Office");
        ConfirmLocalLocation();
        ExpectPage(Shown::SettingsPage, NONE);
        StrikeKey(VK_RETURN);
    }

    HWND ExpectPage(Shown shown, const wchar_t* step)
    {
        HWND page = WaitFor(shown);
        EXPECT_EQ(WindowText(GetDlgItem(page, IDC_STEP_LABEL)), CString(step));
        return page;
    }

    void Next(Shown shown, const wchar_t* step)
    {
        ExpectPage(shown, step);
        StrikeKey(VK_RETURN);
    }

    void Back(Shown shown, const wchar_t* step)
    {
        ExpectPage(shown, step);
        StrikeKey('B', {VK_MENU});
    }

    void Uncheck(HWND page, int control)
    {
        ClickOn(GetDlgItem(page, control));
        WaitUntil(L"the box without its mark", [&] { return IsDlgButtonChecked(page, control) == 0; });
    }
};

TEST_F(ProductsByHand, NextAndBackGoThroughTheirPagesInOrderAndTheStepNamesThem)
{
    StartWalk();
    Next(Shown::WorkstationsPage, FIRST);
    Next(Shown::PathsPage, FIRST);
    Next(Shown::FilesPage, FIRST);
    Next(Shown::ResourcesPage, FIRST);
    Next(Shown::NoticesPage, FIRST);
    Next(Shown::ServicePackPage, FIRST);
    Next(Shown::WorkstationsPage, SECOND);
    Next(Shown::PathsPage, SECOND);
    Next(Shown::FilesPage, SECOND);
    Next(Shown::ResourcesPage, SECOND);
    Next(Shown::NoticesPage, SECOND);
    Next(Shown::ServicePackPage, SECOND);
    Back(Shown::ContactPage, NONE);
    Back(Shown::ServicePackPage, SECOND);
    Back(Shown::NoticesPage, SECOND);
    Back(Shown::ResourcesPage, SECOND);
    Back(Shown::FilesPage, SECOND);
    Back(Shown::PathsPage, SECOND);
    Back(Shown::WorkstationsPage, SECOND);
    Back(Shown::ServicePackPage, FIRST);
    Back(Shown::NoticesPage, FIRST);
    Back(Shown::ResourcesPage, FIRST);
    Back(Shown::FilesPage, FIRST);
    Back(Shown::PathsPage, FIRST);
    Back(Shown::WorkstationsPage, FIRST);
    ExpectPage(Shown::SettingsPage, NONE);
    StrikeKey(VK_ESCAPE);
    AnswerCancelQuestion('Y');
    EXPECT_EQ(WaitForEnd(), 1602u);
}

TEST_F(ProductsByHand, WhatIsChosenForOneIsNotChosenForTheOther)
{
    StartWalk();
    Next(Shown::WorkstationsPage, FIRST);
    Next(Shown::PathsPage, FIRST);
    Next(Shown::FilesPage, FIRST);
    Next(Shown::ResourcesPage, FIRST);
    Next(Shown::NoticesPage, FIRST);
    Next(Shown::ServicePackPage, FIRST);
    Next(Shown::WorkstationsPage, SECOND);
    Next(Shown::PathsPage, SECOND);
    Next(Shown::FilesPage, SECOND);
    HWND page = ExpectPage(Shown::ResourcesPage, SECOND);
    EXPECT_TRUE(IsDlgButtonChecked(page, IDC_PARTS_BAY));
    Uncheck(page, IDC_PARTS_BAY);
    StrikeKey('B', {VK_MENU});
    Back(Shown::FilesPage, SECOND);
    Back(Shown::PathsPage, SECOND);
    Back(Shown::WorkstationsPage, SECOND);
    Back(Shown::ServicePackPage, FIRST);
    Back(Shown::NoticesPage, FIRST);
    page = ExpectPage(Shown::ResourcesPage, FIRST);
    EXPECT_TRUE(IsDlgButtonChecked(page, IDC_PARTS_BAY));
    StrikeKey(VK_RETURN);
    Next(Shown::NoticesPage, FIRST);
    Next(Shown::ServicePackPage, FIRST);
    Next(Shown::WorkstationsPage, SECOND);
    Next(Shown::PathsPage, SECOND);
    Next(Shown::FilesPage, SECOND);
    page = ExpectPage(Shown::ResourcesPage, SECOND);
    EXPECT_FALSE(IsDlgButtonChecked(page, IDC_PARTS_BAY));
    StrikeKey(VK_ESCAPE);
    AnswerCancelQuestion('Y');
    EXPECT_EQ(WaitForEnd(), 1602u);
}

TEST_F(ProductsByHand, CancelOnAPageOfTheSecondLeavesNothing)
{
    StartWalk();
    Next(Shown::WorkstationsPage, FIRST);
    Next(Shown::PathsPage, FIRST);
    Next(Shown::FilesPage, FIRST);
    Next(Shown::ResourcesPage, FIRST);
    Next(Shown::NoticesPage, FIRST);
    Next(Shown::ServicePackPage, FIRST);
    Next(Shown::WorkstationsPage, SECOND);
    Next(Shown::PathsPage, SECOND);
    Next(Shown::FilesPage, SECOND);
    ExpectPage(Shown::ResourcesPage, SECOND);
    StrikeKey(VK_ESCAPE);
    AnswerCancelQuestion('Y');
    ExpectEnd(1602, Join({LogOfOpening(), LogOfMode(L"Office"), LogOfCanceledPage()}),
              {LocalLocationQuestion(), CancelQuestion()});
    EXPECT_EQ(ListLocation(), Lines());
}

} // namespace
