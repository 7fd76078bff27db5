// How the online pages look and how the keyboard walks them. With ROLLOUT_PICTURES set to a folder, a picture of every
// state is saved there.
#include "automation/picture.h"
#include "tests/online/online_page.h"

namespace {

class OnlineLook : public NoticePage
{
protected:
    // Named by the shape: `notices-Wizard-off.png`.
    void Picture(const wchar_t* state)
    {
        Look([this, state] {
            wchar_t target[MAX_PATH] = {};
            if (GetEnvironmentVariableW(L"ROLLOUT_PICTURES", target, MAX_PATH) == 0) {
                return;
            }
            const wchar_t* shape = GetParam() == Shape::Wizard ? L"Wizard" : L"Tab";
            EXPECT_TRUE(SaveWindowPicture(GetAncestor(Page(), GA_ROOT),
                                          CString(target) + L"\\" + state + L"-" + shape + L".png"));
        });
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

TEST_P(OnlineLook, PicturesOfTheNotices)
{
    context.strHelpFile = L"NoticeDeskFeedBoard.html";
    SendCounter();
    Picture(L"notices-fresh");
    SetChecked(IDC_SITE_CHANNEL, true);
    ChooseList(L"\\\\server\\share\\A rather long folder name\\updates.npl");
    Type(IDC_FEED_LOCATION, L"\\\\server\\share\\feed.xml");
    Picture(L"notices-on");
    SetChecked(IDC_UPDATES, false);
    SetChecked(IDC_SITE_CHANNEL, false);
    SetChecked(IDC_FEEDS, false);
    Picture(L"notices-off");
    ShowAndGoBack();
}
