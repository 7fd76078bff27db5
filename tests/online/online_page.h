// Both shapes of an online page under one script: what a test notes is played against the wizard page and against the
// tab page.
#pragma once

#include "tests/support/page_test.h"

#include <string>

enum class Shape
{
    Wizard,
    Tab,
};

std::string ShapeName(const testing::TestParamInfo<Shape>& shape);

// A page that is exported in both shapes.
struct PageOfBothShapes
{
    int (*dialog)(PageContext*);
    TabFunction page;
};

class OnlinePage : public PageTest, public testing::WithParamInterface<Shape>
{
protected:
    explicit OnlinePage(const PageOfBothShapes& page);

    // The buttons that leave the page in this shape.
    int Next() const { return GetParam() == Shape::Wizard ? IDC_NEXT : IDC_NEXT_TAB; }
    int Back() const { return GetParam() == Shape::Wizard ? IDC_BACK : IDC_PREVIOUS_TAB; }

    // Plays the steps; the result of a tab page is reported as the wizard page's.
    int ShowPage();
    // Leaves by Back and plays: for tests that only look.
    void ShowAndGoBack();

    // Which of the controls are enabled: an E for each that is, a D for each that isn't.
    CString States(std::initializer_list<int> ids) const;
    CString Text(int id) const { return Control(id).GetText(); }
    bool IsChecked(int id) const { return Control(id).IsChecked(); }

    PageOfBothShapes m_functions;
};

// The page of notices and feeds on a product with properties in memory.
class NoticePage : public OnlinePage
{
protected:
    NoticePage();

    // "(none)" for a property that isn't there.
    CString Property(const wchar_t* name) const;
    void WithProperty(const wchar_t* name, const CString& value) { product.msiProperties[name] = value; }
    // Everything is set, as the page stores it; tests change single ones.
    void WithStoredPage();

    // Fills the system's caches for lists and boxes, once for the program.
    void MeetBoxesOnce();

    // Updates from the list at that location.
    void ChooseList(const CString& location);
    // The site manager's channel with that feed.
    void ChooseFeed(const CString& location);

    TestProduct& product;
    CTestFolder folder;
};

// A warning with Yes and No, and an error with OK.
ExpectedBox AskingBox(unsigned int text);
ExpectedBox RefusingBox(unsigned int text);

#define INSTANTIATE_BOTH_SHAPES(suite)                                                                       \
    INSTANTIATE_TEST_SUITE_P(Shapes, suite, testing::Values(Shape::Wizard, Shape::Tab), ShapeName)
