// How the online pages look and how the keyboard walks them. With ROLLOUT_PICTURES set to a folder, a picture of every
// state is saved there too.
#include "automation/picture.h"
#include "tests/online/online_page.h"
#include "tests/support/page_looks.h"

namespace {

class OnlineLook : public NoticePage
{
protected:
    // No text is cut off in this state and no control covers another. Pictures are named by the shape:
    // `notices-off-Wizard.png`.
    void LookAt(const wchar_t* state)
    {
        Look([this, state] {
            ExpectTextsFit(Page());
            ExpectControlsApart(Page());
            wchar_t target[MAX_PATH] = {};
            if (GetEnvironmentVariableW(L"ROLLOUT_PICTURES", target, MAX_PATH) == 0) {
                return;
            }
            const wchar_t* shape = GetParam() == Shape::Wizard ? L"Wizard" : L"Tab";
            EXPECT_TRUE(SaveWindowPicture(GetAncestor(Page(), GA_ROOT),
                                          CString(target) + L"\\" + state + L"-" + shape + L".png"));
        });
    }
    // A tab page's window is not the active one until somebody goes there.
    void Begin(int id)
    {
        Look([this, id] { SetFocus(GetDlgItem(Page(), id)); });
        Await(L"the field has not got the focus", [this, id] { return HasFocus(id); });
    }
    void SendCounter()
    {
        if (GetParam() == Shape::Tab) {
            Look([this] { SendMessageW(Page(), PAGE_MESSAGE_COUNTER, MAKEWPARAM(1, 3), 0); });
        }
    }
};
INSTANTIATE_BOTH_SHAPES(OnlineLook);

} // namespace

TEST_P(OnlineLook, TheNoticesFitInEachState)
{
    context.strHelpFile = L"NoticeDeskFeedBoard.html";
    SendCounter();
    LookAt(L"notices-fresh");
    SetChecked(IDC_SITE_CHANNEL, true);
    ChooseList(L"\\\\server\\share\\A rather long folder name\\updates.npl");
    Type(IDC_FEED_LOCATION, L"\\\\server\\share\\feed.xml");
    LookAt(L"notices-on");
    SetChecked(IDC_UPDATES, false);
    SetChecked(IDC_SITE_CHANNEL, false);
    SetChecked(IDC_FEEDS, false);
    LookAt(L"notices-off");
    ShowAndGoBack();
}

TEST_P(OnlineLook, TabWalksTheFieldsInTheirOrderAndSkipsWhatIsDisabled)
{
    SetChecked(IDC_SITE_CHANNEL, true);
    Begin(IDC_UPDATES);
    for (const int next : {IDC_UPDATE_SOURCE, IDC_CHANNEL_NOTICES, IDC_SITE_CHANNEL, IDC_FEED_LOCATION,
                           IDC_FEED_BROWSE, IDC_DISPLAY_NAME, IDC_FEEDS, IDC_CUSTOM_FEEDS, Back(), Next()}) {
        Key(VK_TAB);
        Await(L"the focus did not go on", [this, next] { return HasFocus(next); });
    }
    ShowAndGoBack();
}

TEST_P(OnlineLook, TheSpaceBarChecksABoxAndTheArrowChoosesTheList)
{
    Begin(IDC_SITE_CHANNEL);
    Key(VK_SPACE);
    Await(L"the box is not checked", [this] { return IsChecked(IDC_SITE_CHANNEL); });
    Look([this] { EXPECT_TRUE(Control(IDC_FEED_LOCATION).IsEnabled()); });
    Begin(IDC_UPDATE_SOURCE);
    Key(VK_DOWN);
    Await(L"the list is not chosen", [this] { return Control(IDC_UPDATE_SOURCE).GetSelection() == 1; });
    Look([this] { EXPECT_TRUE(Control(IDC_LIST_LOCATION).IsEnabled()); });
    ShowAndGoBack();
}

TEST_P(OnlineLook, EnterInAFieldGoesForward)
{
    Begin(IDC_UPDATES);
    Key(VK_RETURN);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

namespace {

class ResourcesLook : public OnlineLook
{
protected:
    ResourcesLook() { m_functions = {OnlineResourcesDialog, OnlineResourcesPage}; }

    void ExpectFocus(int control)
    {
        Step(L"the focus", [this, control] {
            return HasFocus(control) ? StepOutcome::Done()
                                     : StepOutcome::NotYet(L"not " + NumberText(control) + L" but " +
                                                           DescribeWindow(GetFocus()) + L" has it");
        });
    }
    // In front of the steps that wait.
    void AwaitChange(int box, bool before)
    {
        script.AddNext(L"the box changed", [this, box, before] {
            return Until(IsChecked(box) != before, L"the mnemonic did not reach its box");
        });
    }
};
INSTANTIATE_BOTH_SHAPES(ResourcesLook);

} // namespace

TEST_P(ResourcesLook, TheResourcesFit)
{
    context.strHelpFile = L"OnlineResources.html";
    SendCounter();
    LookAt(L"resources");
    ShowAndGoBack();
}

TEST_P(ResourcesLook, TabWalksTheBoxesInTheirOrder)
{
    Begin(IDC_PARTS_BAY);
    for (const int next :
         {IDC_MEMBER_BAY, IDC_ROUND_TRIP, IDC_SEND_COMPUTER_NAME, IDC_SEARCH_LOCATIONS, Back(), Next()}) {
        Key(VK_TAB);
        ExpectFocus(next);
    }
    Begin(IDC_SEARCH_LOCATIONS);
    for (const int next : {IDC_SEND_COMPUTER_NAME, IDC_ROUND_TRIP, IDC_MEMBER_BAY, IDC_PARTS_BAY}) {
        Key(VK_TAB, KeyModifier::Shift);
        ExpectFocus(next);
    }
    ShowAndGoBack();
}

TEST_P(ResourcesLook, TheSpaceBarChangesABoxAndEnterGoesForward)
{
    Begin(IDC_MEMBER_BAY);
    Key(VK_SPACE);
    Await(L"the box is still checked", [this] { return !IsChecked(IDC_MEMBER_BAY); });
    Key(VK_RETURN);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_P(ResourcesLook, EachMnemonicReachesItsBox)
{
    for (const int box :
         {IDC_PARTS_BAY, IDC_MEMBER_BAY, IDC_ROUND_TRIP, IDC_SEND_COMPUTER_NAME, IDC_SEARCH_LOCATIONS}) {
        Begin(box == IDC_PARTS_BAY ? IDC_MEMBER_BAY : IDC_PARTS_BAY);
        Step(L"press a mnemonic", [this, box, before = false]() mutable {
            const CString text = Text(box);
            const int mark = text.Find(L'&');
            EXPECT_GE(mark, 0) << Utf8(text);
            before = IsChecked(box);
            PostMessageW(GetFocus(), WM_SYSCHAR, text[mark + 1], LPARAM(1) << 29);
            AwaitChange(box, before);
            return StepOutcome::Done();
        });
    }
    ShowAndGoBack();
}

namespace {

class DialogLook : public OnlineLook
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, DialogLook, testing::Values(Shape::Wizard), ShapeName);

} // namespace

TEST_P(DialogLook, TheNoticesOpenWithTheFocusOnTheirFirstField)
{
    Look([this] { EXPECT_TRUE(HasFocus(IDC_UPDATES)); });
    ShowAndGoBack();
}

TEST_P(DialogLook, TheResourcesOpenWithTheFocusOnTheirFirstBox)
{
    m_functions = {OnlineResourcesDialog, OnlineResourcesPage};
    Look([this] { EXPECT_TRUE(HasFocus(IDC_PARTS_BAY)); });
    ShowAndGoBack();
}
