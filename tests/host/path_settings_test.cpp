// The paths of a real product over visits of their page and from one deployment to the next: what the host holds as the
// first values, and the marker that is measured by them.
#include "paths/path_properties.h"
#include "tests/host/through_host.h"

#include <msiquery.h>

#include <vector>

namespace {

constexpr const wchar_t* MARKER = L"NIW_Custom_Paths_Are_Set";
constexpr const wchar_t* MENU = L"ZOLTProfile_MenuFile";
constexpr const wchar_t* SUPPORT = L"ZOLTProfile_SupportPath";

class PathSettingsTest : public ThroughHostTest
{
protected:
    void Start()
    {
        MakeMedia(scratch + L"media\\");
        Begin(Open(scratch + L"media"), Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    }
    // The wizard on the image of the deployment North.
    void StartOnNorth(Setup::tagSETUPMODE mode, const wchar_t* name)
    {
        Begin(Open(location + L"North"), mode, L"North", name);
    }
    void BuildAgain()
    {
        StartOnNorth(Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"North");
        Build();
    }

    CProduct& Product() { return *host->GetSetupManager().m_pProducts->at(0); }
    // A visit of the page: what it shows when it is entered.
    CPathProperties Enter()
    {
        CPathProperties paths(Product(), Product().GetMsiHandle());
        paths.LoadDirectoryMap();
        paths.ReadAllPathProperties();
        return paths;
    }
    // A visit on which one path is changed.
    void Visit(PathProperty property, const CString& path)
    {
        CPathProperties paths = Enter();
        paths[property] = path;
        paths.SaveAllPathProperties();
    }
    void VisitWithoutChange() { Enter().SaveAllPathProperties(); }

    CString Text(bool (CProduct::*get)(const wchar_t*, wchar_t*, int*), const wchar_t* name)
    {
        std::vector<wchar_t> buffer(80000);
        int size = static_cast<int>(buffer.size());
        return (Product().*get)(name, buffer.data(), &size) ? CString(buffer.data()) : CString(L"(none)");
    }
    CString HeldByHost(const wchar_t* name) { return Text(&CProduct::GetProperty, name); }
    CString InDatabase(const wchar_t* name) { return Text(&CProduct::GetMsiProperty, name); }
};

} // namespace

// Dropped as empty, the first value was what had been filled in, and the marker went off at the next visit.
TEST_F(PathSettingsTest, AnEmptyPathThatIsFilledInIsMarkedOverBackAndNext)
{
    Start();
    VisitWithoutChange();
    EXPECT_EQ(HeldByHost(MENU), CString());
    EXPECT_EQ(InDatabase(MENU), CString(L"[NULL]"));
    EXPECT_EQ(InDatabase(MARKER), CString(L"0"));
    Visit(PATH_MENU_FILE, L"C:\\menu.zmenu");
    EXPECT_EQ(InDatabase(MARKER), CString(L"1"));
    VisitWithoutChange();
    EXPECT_EQ(InDatabase(MARKER), CString(L"1"));
    EXPECT_EQ(HeldByHost(MENU), CString());
    Visit(PATH_MENU_FILE, L"");
    EXPECT_EQ(InDatabase(MARKER), CString(L"0"));
}

TEST_F(PathSettingsTest, TheFirstValueStaysWhenTheDeploymentIsModified)
{
    Start();
    Visit(PATH_MENU_FILE, L"C:\\menu.zmenu");
    Build();
    StartOnNorth(Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"North");
    EXPECT_EQ(HeldByHost(MENU), CString());
    VisitWithoutChange();
    EXPECT_EQ(InDatabase(MENU), CString(L"C:\\menu.zmenu"));
    EXPECT_EQ(InDatabase(MARKER), CString(L"1"));
    Visit(PATH_MENU_FILE, L"");
    EXPECT_EQ(InDatabase(MARKER), CString(L"0"));
}

TEST_F(PathSettingsTest, TheFirstValueGoesAlongWithADeploymentThatIsBasedOnAnother)
{
    Start();
    Visit(PATH_SUPPORT, L"C:\\support");
    Build();
    StartOnNorth(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"South");
    EXPECT_EQ(HeldByHost(SUPPORT), CString());
    VisitWithoutChange();
    EXPECT_EQ(InDatabase(MARKER), CString(L"1"));
    Build();
    Begin(Open(location + L"South"), Setup::SETUPMODE_MODIFY_DEPLOYMENT, L"South", L"South");
    EXPECT_EQ(HeldByHost(SUPPORT), CString());
    EXPECT_EQ(InDatabase(SUPPORT), CString(L"C:\\support"));
}

TEST_F(PathSettingsTest, ANewProductObjectHasTheValuesOfItsPackageAsTheFirst)
{
    Start();
    Visit(PATH_MENU_FILE, L"C:\\menu.zmenu");
    CSetupManager& manager = host->GetSetupManager();
    EXPECT_EQ(manager.ResetSetupMode(), 0);
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    EXPECT_EQ(HeldByHost(MENU), CString(L"(none)"));
    Visit(PATH_MENU_FILE, L"C:\\other.zmenu");
    EXPECT_EQ(HeldByHost(MENU), CString());
    EXPECT_EQ(InDatabase(MARKER), CString(L"1"));
}

TEST_F(PathSettingsTest, PathsOfAnyLengthComeThroughAllModesWhole)
{
    Start();
    const std::vector<int> lengths = {400, 511, 512, 1023, 1024, 5000, 70000};
    const auto pathOf = [](int length) { return CString(L'p', length - 1) + L"]"; };
    for (std::size_t index = 0; index < lengths.size(); ++index) {
        const wchar_t* name = PathPropertyName(PATH_STORE_ORDER[index]);
        Product().SetProperty(name, pathOf(lengths[index]));
        Product().SetMsiProperty(name, pathOf(lengths[index]), false);
    }
    Build();
    BuildAgain();
    StartOnNorth(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"South");
    for (std::size_t index = 0; index < lengths.size(); ++index) {
        const wchar_t* name = PathPropertyName(PATH_STORE_ORDER[index]);
        EXPECT_TRUE(HeldByHost(name) == pathOf(lengths[index])) << lengths[index];
        EXPECT_TRUE(InDatabase(name) == pathOf(lengths[index])) << lengths[index];
    }
}

TEST_F(PathSettingsTest, APathOfAnyTextComesThroughAllModesAsItWasHeld)
{
    Start();
    const CString path = L" <a> & \"b\" 'c';\t[K]\x0416\u4E2D\xD83D\xDE00 ";
    Product().SetProperty(MENU, path);
    Product().SetProperty(SUPPORT, L" ");
    Build();
    BuildAgain();
    StartOnNorth(Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"South");
    EXPECT_EQ(HeldByHost(MENU), path);
    EXPECT_EQ(HeldByHost(SUPPORT), CString(L" "));
}

TEST_F(PathSettingsTest, APathOfSeparatorsAloneLeavesNoPropertyInTheDatabase)
{
    Start();
    Visit(PATH_SUPPORT, L";;");
    EXPECT_EQ(InDatabase(SUPPORT), CString(L"(none)"));
    EXPECT_EQ(Enter()[PATH_SUPPORT], CString());
}
