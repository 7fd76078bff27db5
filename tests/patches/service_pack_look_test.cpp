// How the page of service packs looks in each stage, and how the keyboard walks it. With ROLLOUT_PICTURES set to a folder, a
// picture of every state is saved there too.
#include "automation/picture.h"
#include "tests/patches/patch_download.h"
#include "tests/support/page_looks.h"

namespace {

class ServicePackLook : public PatchDownload
{
protected:
    // No text is cut off in this state and no control covers another.
    void LookAt(const wchar_t* state)
    {
        Look([this, state] { Check(state); });
    }
    void Check(const wchar_t* state)
    {
        ExpectTextsFit(Page());
        ExpectControlsApart(Page());
        ExpectMarksShowTheirWholePictures();
        Save(state);
    }
    // A picture that doesn't fit makes its label scroll, and so a stop for the keyboard.
    void ExpectMarksShowTheirWholePictures()
    {
        for (const int mark :
             {IDC_PATCH_FAILURE_MARK, IDC_PATCH_DOWNLOADED_MARK, IDC_PATCH_UP_TO_DATE_MARK}) {
            EXPECT_EQ(GetWindowLongW(Control(mark).GetWindow(), GWL_STYLE) & WS_TABSTOP, 0) << mark;
        }
    }
    void Save(const wchar_t* state)
    {
        wchar_t target[MAX_PATH] = {};
        if (GetEnvironmentVariableW(L"ROLLOUT_PICTURES", target, MAX_PATH) == 0) {
            return;
        }
        const wchar_t* shape = GetParam() == Shape::Wizard ? L"Wizard" : L"Tab";
        EXPECT_TRUE(SaveWindowPicture(GetAncestor(Page(), GA_ROOT),
                                      CString(target) + L"\\patches-" + state + L"-" + shape + L".png"));
    }
    void LeaveWithoutPatch()
    {
        Look([] {}); // once the page is up
        Step(L"choose no patch", [this] {
            return Control(IDC_PATCH_NONE).IsUsable() ? Control(IDC_PATCH_NONE).SetChecked(true)
                                                      : StepOutcome::Done();
        });
        ShowAndGoBack();
        WithChoice(-1);
    }
    void GiveFocus(int control)
    {
        Look([this, control] { SetFocus(Control(control).GetWindow()); });
        SeeFocus(control);
    }
    void SeeFocus(int control)
    {
        const CString words = L"the focus is not on " + NumberText(control);
        Await(host.Keep(words), [this, control] { return HasFocus(control); });
    }
    // The controls that Tab walks from the first radio on, up to the buttons of the frame.
    void ExpectWalk(std::initializer_list<int> controls)
    {
        for (const int control : controls) {
            Key(VK_TAB);
            SeeFocus(control);
        }
    }
};
INSTANTIATE_BOTH_SHAPES(ServicePackLook);
class ServicePackWizardLook : public ServicePackLook
{
};
INSTANTIATE_TEST_SUITE_P(Shapes, ServicePackWizardLook, testing::Values(Shape::Wizard), ShapeName);

} // namespace

TEST_P(ServicePackLook, NothingIsCutOffOrCoveredInAnyStage)
{
    LookAt(L"no-service");
    LeaveWithoutPatch();
    WithListed({AddPatch(L"first.msp", {PATCHED_PRODUCT, L"{1}", L"Zolt Drafting", L"Service Pack 1"}),
                AddPatch(L"second with a long name.msp", 2)});
    WithChoice(2);
    SelectPatch(0);
    LookAt(L"no-service-listed");
    LeaveWithoutPatch();
    WithListed({});
    WithAnswer(12017, 0);
    LookAt(L"connect-failed");
    LeaveWithoutPatch();
    WithAnswer(12002, 0);
    LookAt(L"timed-out");
    LeaveWithoutPatch();
    WithOffer();
    LookAt(L"available");
    Choose(IDC_PATCH_LISTED);
    LookAt(L"available-listed");
    LeaveWithoutPatch();
    WithAnswer(0, 0);
    LookAt(L"up-to-date");
    LeaveWithoutPatch();
    WithDownloadedPatch(AddPatch(L"sp1.msp", 1));
    WithChoice(1);
    LookAt(L"downloaded");
    LeaveWithoutPatch();
}

TEST_P(ServicePackLook, OutsideADeploymentNothingIsCutOffOrCovered)
{
    InMode(2);
    LookAt(L"outside-no-service");
    LeaveWithoutPatch();
    WithOffer();
    LookAt(L"outside-available");
    LeaveWithoutPatch();
}

TEST_P(ServicePackLook, ALongNameAndASizeOfAnOfferStayInTheirPlaces)
{
    WithOffer();
    SetField(answer.PatchName, CString(L'W', 259));
    SetField(answer.PatchSize, L"2147483647");
    Look([this] {
        Save(L"long-name"); // the name is cut off at its end, wherever that is
        ExpectControlsApart(Page());
        const RECT link = Place(IDC_PATCH_LINK), size = Place(IDC_PATCH_SIZE);
        EXPECT_LE(link.right, size.left);
    });
    LeaveWithoutPatch();
}

TEST_P(ServicePackLook, NothingIsCutOffOrCoveredWhileAPatchIsFetched)
{
    const auto steps = std::make_shared<CServedSteps>(std::string(64 * 1024, 'x'));
    Offer(L"/packs/ZoltSP1.msp", ServeInSteps(steps));
    StartDownload();
    Look([steps] { steps->Release(40 * 1024); });
    Await(L"nothing has come", [this] { return Progress() == 62; });
    LookAt(L"downloading");
    Look([steps] { steps->ReleaseAll(); });
    AwaitStage(L"downloaded");
    LookAt(L"downloaded-here");
    ShowAndGoBack();
}

TEST_P(ServicePackLook, TheFocusIsOnAControlThatCanHaveItInEachStageOfADownload)
{
    const auto expectFocus = [this] {
        const HWND focus = GetFocus();
        EXPECT_TRUE(IsChild(Page(), focus) && IsWindowEnabled(focus) && IsWindowVisible(focus))
            << Utf8(DescribeWindow(focus));
    };
    const auto steps = std::make_shared<CServedSteps>(good);
    Offer(L"/packs/ZoltSP1.msp", ServeInSteps(steps));
    GiveFocus(IDC_PATCH_ACTION);
    Key(VK_SPACE);
    AwaitStage(L"downloading");
    Look(expectFocus);
    Look([steps] { steps->ReleaseAll(); });
    AwaitStage(L"downloaded");
    Look(expectFocus);
    ShowAndGoBack();
}

// ---- the keyboard

TEST_P(ServicePackLook, TabWalksFromTheChoiceOverWhatBelongsToItToTheFrame)
{
    WithListed({AddPatch(L"first.msp", 1, L"First")});
    WithChoice(2);
    GiveFocus(IDC_PATCH_LISTED);
    ExpectWalk({IDC_PATCH_LIST, IDC_PATCH_BROWSE, IDC_PATCH_REMOVE, IDC_PATCH_APPEND});
    Key(VK_TAB);
    Await(L"the focus is still on the page's own controls", [this] { return !HasFocus(IDC_PATCH_APPEND); });
    ShowAndGoBack();
}

TEST_P(ServicePackLook, TabWalksOverTheOffersLinkAndButton)
{
    WithOffer();
    GiveFocus(IDC_PATCH_OFFERED);
    ExpectWalk({IDC_PATCH_LINK, IDC_PATCH_ACTION, IDC_PATCH_APPEND});
    LeaveWithoutPatch();
}

TEST_P(ServicePackLook, ArrowsChooseAmongTheThree)
{
    WithOffer();
    GiveFocus(IDC_PATCH_OFFERED);
    Key(VK_DOWN);
    SeeFocus(IDC_PATCH_LISTED);
    Look([this] { EXPECT_TRUE(IsChecked(IDC_PATCH_LISTED)); });
    Key(VK_DOWN);
    SeeFocus(IDC_PATCH_NONE);
    Look([this] { EXPECT_TRUE(IsChecked(IDC_PATCH_NONE)); });
    Key(VK_DOWN);
    SeeFocus(IDC_PATCH_OFFERED);
    Await(L"the offer is not chosen", [this] { return Form(IDC_PATCH_ACTION) == L"SE"; });
    LeaveWithoutPatch();
    EXPECT_EQ(product.m_patchFlag, -1);
}

TEST_P(ServicePackLook, ArrowsSkipAnOfferThatIsNotThere)
{
    GiveFocus(IDC_PATCH_NONE);
    Key(VK_DOWN);
    SeeFocus(IDC_PATCH_LISTED);
    Key(VK_DOWN);
    SeeFocus(IDC_PATCH_NONE);
    ShowAndGoBack();
}

TEST_P(ServicePackLook, SpacePressesTheFocusedButton)
{
    WithAnswer(12002, 0);
    GiveFocus(IDC_PATCH_ACTION);
    Key(VK_SPACE);
    Await(L"the service was not asked again", [this] { return queries.size() == 2; });
    ShowAndGoBack();
}

// On a tab page Enter goes to the next tab, whatever has the focus.
TEST_P(ServicePackWizardLook, EnterOnTheActionButtonDoesWhatItSays)
{
    WithAnswer(12002, 0);
    GiveFocus(IDC_PATCH_NONE);
    ExpectWalk({IDC_PATCH_ACTION});
    Key(VK_RETURN);
    Await(L"the service was not asked again", [this] { return queries.size() == 2; });
    ShowAndGoBack();
}

TEST_P(ServicePackLook, EachMnemonicOfThePageIsItsOwn)
{
    const auto mnemonics = [this] {
        std::map<wchar_t, int> found;
        for (const HWND child : ChildWindows(Page())) {
            const CString text = WindowText(child);
            const int mark = text.Find(L'&');
            if (IsWindowVisible(child) && mark >= 0 && text[mark + 1] != L'&' &&
                WindowClass(child).CompareNoCase(L"Button") == 0) {
                ++found[static_cast<wchar_t>(towupper(text[mark + 1]))];
            }
        }
        for (const auto& [letter, times] : found) {
            EXPECT_EQ(times, 1) << Utf8(CString(letter));
        }
        EXPECT_GT(found.size(), 4u);
    };
    WithOffer();
    Look(mnemonics);
    LeaveWithoutPatch();
    WithAnswer(12002, 0);
    Look(mnemonics);
    LeaveWithoutPatch();
}
