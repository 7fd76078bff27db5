// What the administrator's choices on the begin page change, and when Next may be pressed.
#include "tests/pages/begin_page.h"

namespace {

class BeginChoice : public BeginPage
{
};

TEST_F(BeginChoice, ANewDeploymentStartsWithoutAName)
{
    WithName(L"Alpha");
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {L"Alpha"});
    Press(IDC_MODE_CREATE);
    Await(L"the list still shows", [&] { return !Control(IDC_DEPLOYMENTS).IsVisible(); });
    Look([&] {
        EXPECT_EQ(Text(IDC_NAME), CString());
        EXPECT_TRUE(Control(IDC_MODE_CREATE).IsChecked());
        EXPECT_FALSE(Control(IDC_MODE_CREATE_FROM).IsChecked());
    });
    ShowAndLeave();
}

TEST_F(BeginChoice, ADeploymentFromAnotherStartsWithoutAName)
{
    WithName(L"beta");
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {L"Alpha", L"Beta"});
    Press(IDC_MODE_CREATE_FROM);
    Await(L"the list isn't shown", [&] { return Control(IDC_DEPLOYMENTS).IsVisible(); });
    Look([&] {
        EXPECT_EQ(Text(IDC_NAME), CString());
        EXPECT_TRUE(Control(IDC_NAME).IsVisible());
        // The list looks for the name when it is filled, and the name is gone by then.
        EXPECT_EQ(Control(IDC_DEPLOYMENTS).GetSelectedLine(), CString(L"Alpha"));
    });
    ShowAndLeave();
}

TEST_F(BeginChoice, SwitchingToModifyMakesTheSelectedBaseTheNameAndHidesTheEdit)
{
    WithLocation(folder.GetPath());
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {L"Alpha", L"Beta"});
    SelectLine(IDC_DEPLOYMENTS, L"Beta");
    Press(IDC_MODE_MODIFY);
    Await(L"the name still shows", [&] { return !Control(IDC_NAME).IsVisible(); });
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetDeploymentName"), Calls({L"SetDeploymentName(Beta)"}));
    EXPECT_EQ(host.log.Of(L"SetBaseDeploymentName"), Calls({L"SetBaseDeploymentName(Beta)"}));
}

TEST_F(BeginChoice, SwitchingToModifyWithoutABaseTakesTheFirstDeployment)
{
    WithLocation(folder.GetPath());
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {L"Beta", L"Alpha"});
    Press(IDC_MODE_MODIFY);
    Await(L"the list isn't shown", [&] { return Control(IDC_DEPLOYMENTS).IsVisible(); });
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetDeploymentName"), Calls({L"SetDeploymentName(Beta)"}));
}

TEST_F(BeginChoice, SelectingALineOnModifyChangesNameAndBase)
{
    WithLocation(folder.GetPath());
    WithName(L"Alpha");
    WithDeployments(Setup::SETUPMODE_MODIFY_DEPLOYMENT, {L"Alpha", L"Beta"});
    SelectLine(IDC_DEPLOYMENTS, L"Beta");
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetDeploymentName"), Calls({L"SetDeploymentName(Beta)"}));
    EXPECT_EQ(host.log.Of(L"SetBaseDeploymentName"), Calls({L"SetBaseDeploymentName(Beta)"}));
}

TEST_F(BeginChoice, SelectingALineOnCreateFromChangesTheBaseAlone)
{
    WithLocation(folder.GetPath());
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {L"Alpha", L"Beta"});
    Type(IDC_NAME, L"Gamma");
    SelectLine(IDC_DEPLOYMENTS, L"Beta");
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetDeploymentName"), Calls({L"SetDeploymentName(Gamma)"}));
    EXPECT_EQ(host.log.Of(L"SetBaseDeploymentName"), Calls({L"SetBaseDeploymentName(Beta)"}));
}

// The system sends that click also when Tab comes to the radio.
TEST_F(BeginChoice, AClickOnTheCheckedRadioKeepsNameAndBase)
{
    WithLocation(folder.GetPath());
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {L"Alpha", L"Beta"});
    Type(IDC_NAME, L"Gamma");
    SelectLine(IDC_DEPLOYMENTS, L"Beta");
    Press(IDC_MODE_CREATE_FROM);
    Look([&] {
        EXPECT_EQ(Text(IDC_NAME), CString(L"Gamma"));
        EXPECT_EQ(Control(IDC_DEPLOYMENTS).GetSelectedLine(), CString(L"Beta"));
    });
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetDeploymentName"), Calls({L"SetDeploymentName(Gamma)"}));
    EXPECT_EQ(host.log.Of(L"SetBaseDeploymentName"), Calls({L"SetBaseDeploymentName(Beta)"}));
}

TEST_F(BeginChoice, CreatingAnewDropsTheBase)
{
    WithLocation(folder.GetPath());
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {L"Alpha"});
    Press(IDC_MODE_CREATE);
    Await(L"the list still shows", [&] { return !Control(IDC_DEPLOYMENTS).IsVisible(); });
    Type(IDC_NAME, L"Gamma");
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetBaseDeploymentName"), Calls({L"SetBaseDeploymentName()"}));
    EXPECT_EQ(host.log.Of(L"SetSetupMode"), Calls({L"SetSetupMode(4)"}));
}

TEST_F(BeginChoice, ThePlatformRadiosSetThePlatform)
{
    WithLocation(folder.GetPath());
    WithName(L"Alpha");
    Press(IDC_PLATFORM_X86);
    Press(IDC_NEXT);
    Answer(QuestionBox(ResourceText(IDS_LOCATION_NOT_NETWORK)), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetDeploymentPlatform"), Calls({L"SetDeploymentPlatform(2)"}));
}

TEST_F(BeginChoice, QuotesAroundTheLocationAreTakenOff)
{
    WithName(L"Alpha");
    Type(IDC_LOCATION, L"\"" + folder.AddFolder(L"a b") + L"\"");
    Press(IDC_NEXT);
    Answer(QuestionBox(ResourceText(IDS_LOCATION_NOT_NETWORK)), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetDeploymentLocation"),
              Calls({L"SetDeploymentLocation(" + folder.GetPath() + L"a b\\)"}));
}

// ---- Next

TEST_F(BeginChoice, WithoutDeploymentsNextNeedsLocationAndName)
{
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()) << "both empty"; });
    Type(IDC_LOCATION, L"C:\\a");
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()) << "no name"; });
    Type(IDC_NAME, L"Alpha");
    Look([&] { EXPECT_TRUE(Control(IDC_NEXT).IsEnabled()) << "both there"; });
    Type(IDC_LOCATION, L"");
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()) << "no location"; });
    ShowAndLeave();
}

TEST_F(BeginChoice, QuotesAloneAreNoLocation)
{
    WithName(L"Alpha");
    Type(IDC_LOCATION, L"\"\"");
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()); });
    ShowAndLeave();
}

TEST_F(BeginChoice, CreatingNeedsNoSelection)
{
    WithLocation(L"C:\\a");
    WithName(L"Alpha");
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {});
    Look([&] { EXPECT_TRUE(Control(IDC_NEXT).IsEnabled()); });
    ShowAndLeave();
}

TEST_F(BeginChoice, CreatingFromNeedsASelection)
{
    WithLocation(L"C:\\a");
    WithName(L"Alpha");
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {});
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()); });
    ShowAndLeave();
}

TEST_F(BeginChoice, CreatingFromNeedsAName)
{
    WithLocation(L"C:\\a");
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {L"Alpha"});
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()); });
    Type(IDC_NAME, L"Beta");
    Look([&] { EXPECT_TRUE(Control(IDC_NEXT).IsEnabled()); });
    ShowAndLeave();
}

TEST_F(BeginChoice, ModifyingNeedsALocation)
{
    WithName(L"Alpha");
    WithDeployments(Setup::SETUPMODE_MODIFY_DEPLOYMENT, {L"Alpha"});
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()); });
    Type(IDC_LOCATION, L"C:\\a");
    Look([&] { EXPECT_TRUE(Control(IDC_NEXT).IsEnabled()); });
    ShowAndLeave();
}

TEST_F(BeginChoice, ModifyingWithNoDeploymentIsNotPossible)
{
    WithLocation(L"C:\\a");
    WithName(L"Alpha");
    WithDeployments(Setup::SETUPMODE_MODIFY_DEPLOYMENT, {});
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()); });
    ShowAndLeave();
}

TEST_F(BeginChoice, SwitchingTheModeUpdatesNext)
{
    WithLocation(L"C:\\a");
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {L"Alpha"});
    Look([&] { EXPECT_FALSE(Control(IDC_NEXT).IsEnabled()) << "no name yet"; });
    Press(IDC_MODE_MODIFY);
    Await(L"Next isn't enabled with the first deployment's name",
          [&] { return Control(IDC_NEXT).IsEnabled(); });
    Press(IDC_MODE_CREATE);
    Await(L"Next is still enabled without a name", [&] { return !Control(IDC_NEXT).IsEnabled(); });
    ShowAndLeave();
}

} // namespace
