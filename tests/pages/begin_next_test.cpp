// Next on the begin page: every refusal with its box and the buttons after it, and what the host learns.
#include "include/config_reader.h"
#include "tests/pages/begin_page.h"
#include "tests/support/test_network.h"

namespace {

// The system reads the list of network providers when the program starts, so this must come first of all.
const bool networkIsReady = PrepareTestNetwork();

class BeginNext : public BeginPage
{
protected:
    BeginNext()
    {
        EXPECT_TRUE(networkIsReady) << "the network provider could not be registered";
        WithLocation(folder.GetPath());
        WithName(L"Gamma");
    }

    static ExpectedBox LocalPathQuestion() { return QuestionBox(ResourceText(IDS_LOCATION_NOT_NETWORK)); }
    static ExpectedBox ReplaceQuestion(const wchar_t* name)
    {
        return YesNoBox(ResourceText(IDS_REPLACE_DEPLOYMENT, name));
    }

    // The page stays with these buttons and is left by Back.
    void ExpectStays(const wchar_t* buttons)
    {
        Await(L"Cancel is still disabled", [&] { return Control(IDC_CANCEL).IsEnabled(); });
        Look([this, buttons] { EXPECT_EQ(Buttons(), CString(buttons)) << "Back, Next, Cancel"; });
        ShowAndLeave();
        EXPECT_EQ(host.log.Changes(), Calls()) << "something was stored";
    }
    // A text whose length counts where `m_strMediaFile` does: the first limit is `total` then.
    void WithFirstPathOf(int total)
    {
        const int base = PathBase();
        const int fixed = base - CString(host.manager.m_strResourceFolder).GetLength() + 1;
        host.manager.m_strMediaFile = host.Keep(CString(L'm', total - fixed));
    }
    TestProduct& WithProductPathOf(int total)
    {
        const CString product = L"Zolt";
        return host.AddProduct(CString(L'p', total - PathBase() - product.GetLength() - 1), product);
    }
    int PathBase() const
    {
        const CString location = host.manager.m_strDeploymentLocation;
        const CString name = host.manager.m_strDeploymentName;
        const CString suffix = host.manager.m_strImageSuffix;
        return location.GetLength() + name.GetLength() + host.manager.imageFolder.GetLength() +
               suffix.GetLength() + 4;
    }
};

// ---- another product's deployment

TEST_F(BeginNext, ADeploymentOfAnotherProductIsRefused)
{
    host.AddDeployment(L"Other", L"{another code}");
    Press(IDC_NEXT);
    Answer(ErrorBox(ResourceText(IDS_OTHER_PRODUCTS_DEPLOYMENT)), IDOK);
    ExpectStays(L"EDE");
}

TEST_F(BeginNext, ASetupCodeInAnotherCaseIsTheSameProduct)
{
    host.AddDeployment(L"Alpha", L"{5c0ffee0-0000-4000-8000-000000000001}");
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_F(BeginNext, OnlyTheFirstDeploymentsCodeCounts)
{
    host.AddDeployment(L"Alpha");
    host.AddDeployment(L"Other", L"{another code}");
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_F(BeginNext, TheDeploymentsAreReadAnewFromTheTypedLocation)
{
    const CString other = folder.AddFolder(L"other");
    Type(IDC_LOCATION, other);
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"GetDeploymentList"),
              Calls({L"GetDeploymentList(" + folder.GetPath() + L")", L"GetDeploymentList(" + other + L")"}));
}

TEST_F(BeginNext, WithDeploymentsTheSetupCodeIsNotAsked)
{
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {});
    host.AddDeployment(L"Other", L"{another code}");
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"GetSetupCode"), Calls());
}

TEST_F(BeginNext, BackKeepsItsFormerStateAfterARefusal)
{
    context.bCanGoBack = FALSE;
    host.AddDeployment(L"Other", L"{another code}");
    Press(IDC_NEXT);
    Answer(ErrorBox(ResourceText(IDS_OTHER_PRODUCTS_DEPLOYMENT)), IDOK);
    Await(L"Cancel is still disabled", [&] { return Control(IDC_CANCEL).IsEnabled(); });
    Look([&] { EXPECT_EQ(Buttons(), CString(L"DDE")); });
    Press(IDC_CANCEL);
    AnswerCancelQuestion(IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_CANCEL);
}

TEST_F(BeginNext, TheNextEditEnablesNextAgain)
{
    host.AddDeployment(L"Other", L"{another code}");
    Press(IDC_NEXT);
    Answer(ErrorBox(ResourceText(IDS_OTHER_PRODUCTS_DEPLOYMENT)), IDOK);
    Await(L"Cancel is still disabled", [&] { return Control(IDC_CANCEL).IsEnabled(); });
    Type(IDC_NAME, L"Delta");
    Look([&] { EXPECT_EQ(Buttons(), CString(L"EEE")); });
    ShowAndLeave();
}

TEST_F(BeginNext, AllThreeButtonsAreDisabledWhileABoxIsUp)
{
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDNO, [&] { EXPECT_EQ(Buttons(), CString(L"DDD")); });
    ExpectStays(L"EEE");
}

// ---- path lengths

TEST_F(BeginNext, APathOf259CharactersIsTooLong)
{
    WithFirstPathOf(259);
    Press(IDC_NEXT);
    Answer(ErrorBox(ResourceText(IDS_PATH_TOO_LONG)), IDOK);
    ExpectStays(L"EDE");
}

TEST_F(BeginNext, APathOf258CharactersIsNotTooLong)
{
    WithFirstPathOf(258);
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_F(BeginNext, AProductsPathOf259CharactersIsTooLong)
{
    WithProductPathOf(100);
    WithProductPathOf(259);
    Press(IDC_NEXT);
    Answer(ErrorBox(ResourceText(IDS_PATH_TOO_LONG)), IDOK);
    ExpectStays(L"EDE");
}

TEST_F(BeginNext, AProductsPathOf258CharactersIsNotTooLong)
{
    WithProductPathOf(258);
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

// ---- location

TEST_F(BeginNext, BlanksAreNoLocation)
{
    Type(IDC_LOCATION, L"   ");
    Press(IDC_NEXT);
    Answer(ErrorBox(ResourceText(IDS_LOCATION_MISSING)), IDOK);
    ExpectStays(L"EDE");
}

TEST_F(BeginNext, AFolderWithoutTheRightToWriteIsRefused)
{
    const CTestDrive machine(L'P', DRIVE_FIXED, "/");
    Type(IDC_LOCATION, L"P:\\dev\\pts\\new");
    Press(IDC_NEXT);
    Answer(ErrorBox(ResourceText(IDS_LOCATION_ACCESS_DENIED, L"P:\\dev\\pts\\new\\")), IDOK);
    ExpectStays(L"EDE");
}

TEST_F(BeginNext, ALocationThatIsAFileIsRefused)
{
    const CString file = folder.AddFile(L"file.txt", "text");
    Type(IDC_LOCATION, file);
    Press(IDC_NEXT);
    Answer(ErrorBox(ResourceText(IDS_LOCATION_UNUSABLE, file + L"\\")), IDOK);
    ExpectStays(L"EDE");
}

TEST_F(BeginNext, ARelativeLocationIsRefused)
{
    Type(IDC_LOCATION, L"deployments");
    Press(IDC_NEXT);
    Answer(ErrorBox(ResourceText(IDS_LOCATION_UNUSABLE, L"deployments\\")), IDOK);
    ExpectStays(L"EDE");
}

TEST_F(BeginNext, AMappedDriveIsRefused)
{
    const CTestDrive drive(L'M', DRIVE_REMOTE, "/tmp");
    Type(IDC_LOCATION, L"M:\\deployments");
    Press(IDC_NEXT);
    Answer(ErrorBox(ResourceText(IDS_LOCATION_UNUSABLE, L"M:\\deployments\\")), IDOK);
    ExpectStays(L"EDE");
}

TEST_F(BeginNext, AShareThatIsNotThereIsRefused)
{
    Type(IDC_LOCATION, L"\\\\NOWHERE\\nothing");
    Press(IDC_NEXT);
    Answer(ErrorBox(ResourceText(IDS_LOCATION_UNUSABLE, L"\\\\NOWHERE\\nothing\\")), IDOK);
    ExpectStays(L"EDE");
}

TEST_F(BeginNext, ALocalPathIsAskedAboutAndTakenWithYes)
{
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_F(BeginNext, NoToALocalPathKeepsThePageWithNextEnabled)
{
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDNO);
    ExpectStays(L"EEE");
}

TEST_F(BeginNext, ALocalPathIsNotAskedAboutWithDeployments)
{
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {L"Alpha"});
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_F(BeginNext, AFolderThatIsNotEmptyAndADriveAreAccepted)
{
    folder.AddFile(L"file.txt", "text");
    for (const CString& location : {folder.GetPath(), CString(L"C:\\")}) {
        Type(IDC_LOCATION, location);
        Press(IDC_NEXT);
        Answer(LocalPathQuestion(), IDYES);
        EXPECT_EQ(ShowPage(), NAVIGATION_NEXT) << Utf8(location);
    }
}

TEST_F(BeginNext, ANetworkPathIsTakenWithoutAQuestion)
{
    const CTestShare share(L"ROLLOUT", L"Büro");
    Type(IDC_LOCATION, share.GetPath() + L"new one");
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetDeploymentLocation"),
              Calls({L"SetDeploymentLocation(\\\\ROLLOUT\\Büro\\new one\\)"}));
}

// ---- name

class BeginBadNames : public BeginNext, public testing::WithParamInterface<const wchar_t*>
{
};

TEST_P(BeginBadNames, AreRefusedSelectedAndFocused)
{
    Type(IDC_NAME, GetParam());
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES);
    Answer(WarningBox(ResourceText(IDS_NAME_INVALID)), IDOK);
    Await(L"Cancel is still disabled", [&] { return Control(IDC_CANCEL).IsEnabled(); });
    AwaitFocus();
    Look([&] {
        EXPECT_TRUE(HasFocus(IDC_NAME));
        EXPECT_EQ(Control(IDC_NAME).GetSelectedText(), Text(IDC_NAME));
    });
    // A question was answered, but with Yes: only a No leaves Next enabled.
    ExpectStays(L"EDE");
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, BeginBadNames,
                         testing::Values(L"a;b", L";", L"   ", L"a\\b", L"a/b", L"a:b", L"a*b", L"a?b",
                                         L"a\"b", L"a<b", L"a>b", L"a|b"));

TEST_F(BeginNext, BlanksAroundTheNameAreTakenOff)
{
    Type(IDC_NAME, L"  Gamma \t");
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetDeploymentName"), Calls({L"SetDeploymentName(Gamma)"}));
}

TEST_F(BeginNext, TheNameOfADeploymentIsAskedAboutAndTakenWithYes)
{
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {L"Alpha", L"Gamma"});
    Press(IDC_NEXT);
    Answer(ReplaceQuestion(L"Gamma"), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_F(BeginNext, NoToTheNameOfADeploymentKeepsThePageWithNextEnabled)
{
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {L"GAMMA"});
    Press(IDC_NEXT);
    Answer(ReplaceQuestion(L"Gamma"), IDNO);
    AwaitFocus();
    Look([&] {
        EXPECT_TRUE(HasFocus(IDC_NAME));
        EXPECT_EQ(Control(IDC_NAME).GetSelectedText(), CString(L"Gamma"));
    });
    ExpectStays(L"EEE");
}

TEST_F(BeginNext, TheNameOfADeploymentIsAskedAboutWhenItIsMadeFromAnother)
{
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {L"Alpha", L"Gamma"});
    Press(IDC_NEXT);
    Answer(ReplaceQuestion(L"Gamma"), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_F(BeginNext, TheNameOfADeploymentInATypedFolderIsAskedAbout)
{
    host.AddDeployment(L"Gamma");
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES);
    Answer(ReplaceQuestion(L"Gamma"), IDNO);
    ExpectStays(L"EEE");
}

TEST_F(BeginNext, ModifyingDoesNotAskAboutTheName)
{
    WithDeployments(Setup::SETUPMODE_MODIFY_DEPLOYMENT, {L"Gamma"});
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_F(BeginNext, EveryDeploymentOfTheNameIsAskedAboutAndTheLastAnswerCounts)
{
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {L"Gamma", L"GAMMA"});
    Press(IDC_NEXT);
    Answer(ReplaceQuestion(L"Gamma"), IDNO);
    Answer(ReplaceQuestion(L"Gamma"), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

TEST_F(BeginNext, YesToTheNameOfADeploymentMakesUpForABadName)
{
    WithName(L"a;b");
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {L"a;b"});
    Press(IDC_NEXT);
    Answer(WarningBox(ResourceText(IDS_NAME_INVALID)), IDOK);
    Answer(ReplaceQuestion(L"a;b"), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
}

// ---- platform

TEST_F(BeginNext, APlatformThatIsNotAllowedIsRefused)
{
    host.manager.platformAllowed = false;
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES);
    Answer(ErrorBox(ResourceText(IDS_PLATFORM_NOT_ALLOWED, L"Gamma")), IDOK);
    ExpectStays(L"EDE");
    EXPECT_EQ(host.log.Of(L"IsTargetPlatformAllowed"), Calls({L"IsTargetPlatformAllowed(3)"}));
}

// ---- storing

TEST_F(BeginNext, TheHostIsCalledInOrder)
{
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Changes(),
              Calls({L"SetDeploymentPlatform(3)", L"SetDeploymentLocation(" + folder.GetPath() + L")",
                     L"SetBaseDeploymentName()", L"SetDeploymentName(Gamma)", L"SetSetupMode(4)"}));
}

TEST_F(BeginNext, AnotherBaseIsLoadedInOrder)
{
    CConfigReader reader;
    host.manager.m_pConfigReader = &reader;
    host.manager.m_strBaseDeploymentName = L"Alpha";
    host.manager.loadAnswer = false; // nobody asks
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {L"Alpha", L"Beta"});
    SelectLine(IDC_DEPLOYMENTS, L"Beta");
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Changes(),
              Calls({L"SetDeploymentPlatform(3)", L"SetDeploymentLocation(" + folder.GetPath() + L")",
                     L"SetBaseDeploymentName(Beta)", L"SetDeploymentName(Gamma)", L"ReloadProductData()",
                     L"LoadDeploymentInfo(Beta)", L"DeleteProductList()", L"Init()", L"Reset()",
                     L"SetSetupMode(5)"}));
    EXPECT_EQ(host.language.initReader, &reader);
}

TEST_F(BeginNext, ABaseThatDiffersOnlyInCaseIsNotLoaded)
{
    host.manager.m_strBaseDeploymentName = L"ALPHA";
    WithDeployments(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, {L"Alpha"});
    Press(IDC_NEXT);
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"LoadDeploymentInfo"), Calls());
    EXPECT_EQ(host.log.Of(L"ReloadProductData"), Calls());
}

TEST_F(BeginNext, AModeThatTheHostRefusesLeavesThePageWithoutButtons)
{
    host.manager.setModeAnswer = false;
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES);
    Await(L"the host was not asked", [&] { return host.log.Of(L"SetSetupMode").size() == 1; });
    Look([&] { EXPECT_EQ(Buttons(), CString(L"DDD")); });
    Look([&] { DestroyWindow(Page()); }); // only the host's closing ends it
    EXPECT_NE(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetDeploymentName").size(), 1u) << "what was stored stays stored";
}

// Next ran on a host between two modes then.
TEST_F(BeginNext, AnEditAfterAModeThatTheHostRefusesBringsNoButtonBack)
{
    WithDeployments(Setup::SETUPMODE_CREATE_DEPLOYMENT, {L"Alpha"});
    host.manager.setModeAnswer = false;
    Press(IDC_NEXT);
    Await(L"the host was not asked", [&] { return host.log.Of(L"SetSetupMode").size() == 1; });
    Type(IDC_NAME, L"Delta");
    Look([&] { EXPECT_EQ(Buttons(), CString(L"DDD")); });
    Type(IDC_LOCATION, folder.GetPath() + L"below");
    Look([&] { EXPECT_EQ(Buttons(), CString(L"DDD")); });
    Press(IDC_MODE_MODIFY);
    Look([&] { EXPECT_EQ(Buttons(), CString(L"DDD")); });
    Look([&] { DestroyWindow(Page()); });
    EXPECT_NE(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetSetupMode").size(), 1u);
}

TEST_F(BeginNext, BackStoresNothing)
{
    Type(IDC_NAME, L"Delta");
    ShowAndLeave();
    EXPECT_EQ(host.log.Changes(), Calls());
}

// ---- while it runs

TEST_F(BeginNext, ASecondNextWhileTheFirstAsksDoesNothing)
{
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDYES, [&] {
        SendMessageW(Page(), WM_COMMAND, MAKEWPARAM(IDC_NEXT, BN_CLICKED), 0);
        EXPECT_EQ(host.log.Of(L"GetDeploymentList").size(), 2u) << "the handler ran twice";
    });
    EXPECT_EQ(ShowPage(), NAVIGATION_NEXT);
    EXPECT_EQ(host.log.Of(L"SetSetupMode").size(), 1u);
}

TEST_F(BeginNext, TheWaitCursorShowsWhileNextRuns)
{
    const HCURSOR wait = LoadCursorW(nullptr, IDC_WAIT);
    Press(IDC_NEXT);
    Answer(LocalPathQuestion(), IDNO, [&] {
        SetCursor(LoadCursorW(nullptr, IDC_ARROW));
        SendMessageW(Page(), WM_SETCURSOR, reinterpret_cast<WPARAM>(Page()),
                     MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        EXPECT_EQ(GetCursor(), wait);
    });
    Await(L"Cancel is still disabled", [&] { return Control(IDC_CANCEL).IsEnabled(); });
    Look([&] {
        SendMessageW(Page(), WM_SETCURSOR, reinterpret_cast<WPARAM>(Page()),
                     MAKELPARAM(HTCLIENT, WM_MOUSEMOVE));
        EXPECT_NE(GetCursor(), wait);
    });
    ShowAndLeave();
}

} // namespace
