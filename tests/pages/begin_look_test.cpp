// What the begin page shows: layouts, places, list, platforms, focus, title.
#include "tests/pages/begin_page.h"
#include "tests/pages/template_places.h"

#include <utility>
#include <vector>

namespace {

constexpr int choiceControls[] = {IDC_MODE_HEADING, IDC_MODE_CREATE, IDC_MODE_CREATE_FROM, IDC_MODE_MODIFY};
constexpr int nameControls[] = {IDC_NAME_HEADING, IDC_NAME};
constexpr int listControls[] = {IDC_DEPLOYMENTS_HEADING, IDC_DEPLOYMENTS};
constexpr int platformControls[] = {IDC_PLATFORM_HEADING, IDC_PLATFORM_X86, IDC_PLATFORM_X64};

class BeginLook : public BeginPage
{
protected:
    void ExpectVisible(std::initializer_list<int> ids, bool visible)
    {
        for (const int id : ids)
            EXPECT_EQ(Control(id).IsVisible(), visible) << Utf8(Control(id).Describe());
    }
    template <std::size_t count>
    void ExpectVisible(const int (&ids)[count], bool visible)
    {
        for (const int id : ids)
            EXPECT_EQ(Control(id).IsVisible(), visible) << Utf8(Control(id).Describe());
    }
    // The control stands with its upper left corner where the template has the other.
    void ExpectAt(int id, int anchor)
    {
        const CTemplateDialog bare(IDD_BEGIN_DEPLOYMENT);
        const RECT came = Control(id).GetRectangle();
        const RECT wanted = bare.Place(anchor);
        EXPECT_EQ(std::pair(came.left, came.top), std::pair(wanted.left, wanted.top))
            << "control " << id << " at anchor " << anchor;
    }
    void ExpectNoOverlap()
    {
        std::vector<HWND> shown;
        for (HWND child : ChildWindows(Page())) {
            const int id = GetDlgCtrlID(child);
            const bool isBackground = id == IDC_PANEL || id == IDC_BANNER || id == IDC_SIDE_PANE;
            if (GetParent(child) == Page() && IsWindowVisible(child) && !isBackground)
                shown.push_back(child);
        }
        for (std::size_t first = 0; first < shown.size(); ++first) {
            for (std::size_t second = first + 1; second < shown.size(); ++second) {
                const RECT a = CControl(shown[first]).GetRectangle();
                const RECT b = CControl(shown[second]).GetRectangle();
                RECT common = {};
                EXPECT_FALSE(IntersectRect(&common, &a, &b))
                    << Utf8(DescribeWindow(shown[first])) << " and " << Utf8(DescribeWindow(shown[second]));
            }
        }
    }
};

TEST_F(BeginLook, WithoutDeploymentsOnlyLocationNameAndPlatformShow)
{
    Look([&] {
        ExpectVisible(choiceControls, false);
        ExpectVisible(listControls, false);
        ExpectVisible(nameControls, true);
        ExpectVisible(platformControls, true);
        ExpectVisible({IDC_LOCATION, IDC_LOCATION_BROWSE, IDC_LOCATION_HEADING_NEW}, true);
        ExpectVisible({IDC_LOCATION_HEADING_EXISTING}, false);
        ExpectNoOverlap();
    });
    ShowAndLeave();
}

TEST_F(BeginLook, WithoutDeploymentsTheControlsStandAtTheirAnchors)
{
    Look([&] {
        ExpectAt(IDC_LOCATION, IDC_ANCHOR_LOCATION_PLAIN);
        ExpectAt(IDC_LOCATION_BROWSE, IDC_ANCHOR_BROWSE_PLAIN);
        ExpectAt(IDC_NAME_HEADING, IDC_ANCHOR_NAME_HEADING_PLAIN);
        ExpectAt(IDC_NAME, IDC_ANCHOR_NAME_PLAIN);
    });
    ShowAndLeave();
}

TEST_F(BeginLook, CreatingShowsTheChoiceAndNoList)
{
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {L"Alpha"});
    Look([&] {
        ExpectVisible(choiceControls, true);
        ExpectVisible(listControls, false);
        ExpectVisible(nameControls, true);
        ExpectVisible(platformControls, true);
        ExpectVisible({IDC_LOCATION, IDC_LOCATION_BROWSE, IDC_LOCATION_HEADING_EXISTING}, true);
        ExpectVisible({IDC_LOCATION_HEADING_NEW}, false);
        ExpectAt(IDC_LOCATION, IDC_LOCATION);
        ExpectAt(IDC_LOCATION_BROWSE, IDC_LOCATION_BROWSE);
        ExpectAt(IDC_NAME_HEADING, IDC_ANCHOR_NAME_HEADING_CREATE);
        ExpectAt(IDC_NAME, IDC_ANCHOR_NAME_CREATE);
        EXPECT_TRUE(Control(IDC_MODE_CREATE).IsChecked());
        EXPECT_TRUE(HasFocus(IDC_MODE_CREATE));
        ExpectNoOverlap();
    });
    ShowAndLeave();
}

TEST_F(BeginLook, CreatingFromADeploymentShowsListAndName)
{
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {L"Alpha"});
    Look([&] {
        ExpectVisible(choiceControls, true);
        ExpectVisible(listControls, true);
        ExpectVisible(nameControls, true);
        ExpectVisible(platformControls, true);
        ExpectAt(IDC_LOCATION, IDC_LOCATION);
        ExpectAt(IDC_NAME_HEADING, IDC_ANCHOR_NAME_HEADING_CREATE_FROM);
        ExpectAt(IDC_NAME, IDC_ANCHOR_NAME_CREATE_FROM);
        EXPECT_TRUE(Control(IDC_MODE_CREATE_FROM).IsChecked());
        EXPECT_TRUE(HasFocus(IDC_MODE_CREATE_FROM));
        ExpectNoOverlap();
    });
    ShowAndLeave();
}

TEST_F(BeginLook, ModifyingShowsTheListAndHidesTheName)
{
    WithDeployments(Setup::SETUPMODE_MODIFY_DEPLOYMENT, {L"Alpha"});
    Look([&] {
        ExpectVisible(choiceControls, true);
        ExpectVisible(listControls, true);
        ExpectVisible(nameControls, false);
        EXPECT_FALSE(Control(IDC_NAME).IsEnabled());
        ExpectVisible(platformControls, true);
        ExpectAt(IDC_LOCATION, IDC_LOCATION);
        EXPECT_TRUE(Control(IDC_MODE_MODIFY).IsChecked());
        EXPECT_TRUE(HasFocus(IDC_MODE_MODIFY));
        ExpectNoOverlap();
    });
    ShowAndLeave();
}

TEST_F(BeginLook, TheAnchorsNeverShow)
{
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {L"Alpha"});
    const auto look = [&] {
        ExpectVisible({IDC_ANCHOR_LOCATION_PLAIN, IDC_ANCHOR_BROWSE_PLAIN, IDC_ANCHOR_NAME_HEADING_PLAIN,
                       IDC_ANCHOR_NAME_PLAIN, IDC_ANCHOR_NAME_HEADING_CREATE, IDC_ANCHOR_NAME_CREATE,
                       IDC_ANCHOR_NAME_HEADING_CREATE_FROM, IDC_ANCHOR_NAME_CREATE_FROM},
                      false);
    };
    Look(look);
    Press(IDC_MODE_CREATE);
    Look(look);
    ShowAndLeave();
}

TEST_F(BeginLook, AModeThatIsNotAboutDeploymentsShowsNoLayout)
{
    WithDeployments(Setup::SETUPMODE_INSTALL, {L"Alpha"});
    WithLocation(L"\\\\server\\share");
    WithName(L"Office");
    Look([&] {
        for (const int id : {IDC_MODE_CREATE, IDC_MODE_CREATE_FROM, IDC_MODE_MODIFY})
            EXPECT_FALSE(Control(id).IsChecked()) << id;
        EXPECT_TRUE(Control(IDC_DEPLOYMENTS).GetLines().empty());
        EXPECT_FALSE(Control(IDC_NEXT).IsEnabled());
        ExpectVisible(choiceControls, false);
        ExpectVisible(nameControls, false);
        ExpectVisible(listControls, false);
        ExpectVisible(platformControls, true);
        for (const int id : {IDC_PLATFORM_X86, IDC_PLATFORM_X64})
            EXPECT_FALSE(Control(id).IsEnabled()) << id;
        ExpectVisible(
            {IDC_LOCATION, IDC_LOCATION_BROWSE, IDC_LOCATION_HEADING_NEW, IDC_LOCATION_HEADING_EXISTING},
            false);
    });
    ShowAndLeave();
}

TEST_F(BeginLook, WithoutDeploymentsTheLocationHasTheFocus)
{
    Look([&] { EXPECT_TRUE(HasFocus(IDC_LOCATION)); });
    ShowAndLeave();
}

TEST_F(BeginLook, TheHostsTextsStandInTheEdits)
{
    WithLocation(L"\\\\server\\share");
    WithName(L"Büro & Co");
    Look([&] {
        EXPECT_EQ(Text(IDC_LOCATION), CString(L"\\\\server\\share"));
        EXPECT_EQ(Text(IDC_NAME), CString(L"Büro & Co"));
    });
    ShowAndLeave();
}

TEST_F(BeginLook, TheDeploymentsAreReadFromTheHostsLocationOnce)
{
    WithLocation(L"\\\\server\\share");
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {L"Alpha"});
    Press(IDC_MODE_CREATE);
    Press(IDC_MODE_MODIFY);
    ShowAndLeave();
    EXPECT_EQ(host.log.Of(L"GetDeploymentList"), Calls({L"GetDeploymentList(\\\\server\\share)"}));
}

// ---- platforms

struct PlatformCase
{
    int mode; // 0: without deployments
    bool imageX86;
    bool imageX64;
    bool enabled;
};

class BeginPlatforms : public BeginLook, public testing::WithParamInterface<PlatformCase>
{
};

TEST_P(BeginPlatforms, AreEnabledOnlyWithoutDeploymentsAndWithBothImages)
{
    if (GetParam().mode)
        WithDeployments(static_cast<Setup::tagSETUPMODE>(GetParam().mode), {L"Alpha"});
    host.manager.imageX86 = GetParam().imageX86;
    host.manager.imageX64 = GetParam().imageX64;
    Look([&] {
        for (const int id : {IDC_PLATFORM_X86, IDC_PLATFORM_X64}) {
            EXPECT_TRUE(Control(id).IsVisible()) << id;
            EXPECT_EQ(Control(id).IsEnabled(), GetParam().enabled) << id;
        }
    });
    ShowAndLeave();
}

INSTANTIATE_TEST_SUITE_P(
    OfEachLayout, BeginPlatforms,
    testing::Values(PlatformCase{0, true, true, true}, PlatformCase{0, true, false, false},
                    PlatformCase{0, false, true, false}, PlatformCase{0, false, false, false},
                    PlatformCase{4, true, true, false}, PlatformCase{5, true, true, false},
                    PlatformCase{6, true, true, false}));

TEST_F(BeginLook, ThePlatformOfTheHostIsChecked)
{
    host.manager.m_platform = Setup::PLATFORM_X86;
    Look([&] {
        EXPECT_TRUE(Control(IDC_PLATFORM_X86).IsChecked());
        EXPECT_FALSE(Control(IDC_PLATFORM_X64).IsChecked());
    });
    ShowAndLeave();
}

TEST_F(BeginLook, AnyOtherPlatformIsTheSecond)
{
    host.manager.m_platform = static_cast<Setup::tagPLATFORM>(0);
    Look([&] {
        EXPECT_FALSE(Control(IDC_PLATFORM_X86).IsChecked());
        EXPECT_TRUE(Control(IDC_PLATFORM_X64).IsChecked());
    });
    ShowAndLeave();
}

// ---- the list

TEST_F(BeginLook, TheListHasTheDisplayNamesInTheHostsOrder)
{
    WithDeployments(Setup::SETUPMODE_MODIFY_DEPLOYMENT, {L"Gamma", L"Alpha", L"Beta"});
    Look([&] {
        EXPECT_EQ(Control(IDC_DEPLOYMENTS).GetLines(), (std::vector<CString>{L"Gamma", L"Alpha", L"Beta"}));
    });
    ShowAndLeave();
}

TEST_F(BeginLook, TheListSelectsTheDeploymentOfThatNameInAnyCase)
{
    WithName(L"BETA");
    WithDeployments(Setup::SETUPMODE_MODIFY_DEPLOYMENT, {L"Alpha", L"Beta"});
    Look([&] { EXPECT_EQ(Control(IDC_DEPLOYMENTS).GetSelectedLine(), CString(L"Beta")); });
    ShowAndLeave();
}

TEST_F(BeginLook, TheListSelectsTheFirstWhenNoNameFits)
{
    WithName(L"Delta");
    WithDeployments(Setup::SETUPMODE_MODIFY_DEPLOYMENT, {L"Beta", L"Alpha"});
    Look([&] { EXPECT_EQ(Control(IDC_DEPLOYMENTS).GetSelectedLine(), CString(L"Beta")); });
    ShowAndLeave();
}

// The host opens the first deployment of a name, so that is the one to show as chosen.
TEST_F(BeginLook, OfTwoDeploymentsOfOneNameTheFirstIsSelected)
{
    WithName(L"Beta");
    WithDeployments(Setup::SETUPMODE_MODIFY_DEPLOYMENT, {L"Alpha", L"Beta", L"Beta"});
    Look([&] { EXPECT_EQ(Control(IDC_DEPLOYMENTS).GetSelection(), 1); });
    ShowAndLeave();
}

TEST_F(BeginLook, AnEmptyListHasNoSelection)
{
    WithDeployments(Setup::SETUPMODE_MODIFY_DEPLOYMENT, {});
    Look([&] { EXPECT_EQ(Control(IDC_DEPLOYMENTS).GetSelection(), -1); });
    ShowAndLeave();
}

TEST_F(BeginLook, TheListIsFilledOnce)
{
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {L"Alpha", L"Beta"});
    Press(IDC_MODE_CREATE_FROM);
    Press(IDC_MODE_CREATE);
    Press(IDC_MODE_MODIFY);
    Look([&] { EXPECT_EQ(Control(IDC_DEPLOYMENTS).GetLines(), (std::vector<CString>{L"Alpha", L"Beta"})); });
    ShowAndLeave();
}

} // namespace
