#include "include/page_table.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <set>

namespace {

std::ptrdiff_t CountOfRole(PageRole role)
{
    return std::count_if(std::begin(PAGE_TABLE), std::end(PAGE_TABLE),
                         [role](const PageRow& page) { return page.role == role; });
}

TEST(PageTable, NoTwoPagesShareAnExportASectionAHelpFileOrADialog)
{
    std::multiset<std::string> names;
    for (const PageRow& page : PAGE_TABLE) {
        names.insert(Utf8(WizardExport(page)));
        names.insert(Utf8(page.helpFile));
        if (page.bTab) {
            names.insert(Utf8(TabExport(page)));
        }
        if (page.section) {
            names.insert(Utf8(page.section));
        }
        for (const int id : {page.wizardTemplate, page.tabTemplate}) {
            if (id != 0) {
                names.insert("dialog " + std::to_string(id));
            }
        }
    }
    for (const std::string& name : names) {
        EXPECT_EQ(names.count(name), 1u) << name;
    }
}

TEST(PageTable, ThePagesThatAreShownAfterTheBuildAreTwoAndComeLast)
{
    EXPECT_EQ(CountOfRole(PageRole::Complete), 1);
    EXPECT_EQ(CountOfRole(PageRole::Failed), 1);
    EXPECT_TRUE(std::is_partitioned(std::begin(PAGE_TABLE), std::end(PAGE_TABLE),
                                    [](const PageRow& page) { return !page.IsOutcome(); }));
}

TEST(PageTable, OnePageChoosesNameAndPlaceAndComesFirst)
{
    EXPECT_EQ(CountOfRole(PageRole::Target), 1);
    EXPECT_EQ(&PageOfRole(PageRole::Target), std::begin(PAGE_TABLE));
}

TEST(PageTable, APageHasACaptionAndADialogForItsTabOrNeither)
{
    for (const PageRow& page : PAGE_TABLE) {
        EXPECT_EQ(page.caption != 0, page.bTab) << Utf8(page.stem);
        EXPECT_EQ(page.tabTemplate != 0, page.bTab && page.IsWritten()) << Utf8(page.stem);
    }
}

TEST(PageTable, ATabsCaptionIsAText)
{
    EXPECT_EQ(FindPage(L"OnlineResourcesPage")->caption, static_cast<unsigned int>(IDS_TAB_ONLINE_RESOURCES));
    EXPECT_EQ(FindPage(L"NoticeDeskFeedBoardPage")->caption, static_cast<unsigned int>(IDS_TAB_NOTICES));
}

TEST(PageTable, AWrittenPageHasItsAnswers)
{
    for (const PageRow& page : PAGE_TABLE) {
        EXPECT_EQ(page.section != nullptr, page.IsWritten()) << Utf8(page.stem);
    }
}

TEST(PageTable, ATabPageBelongsToAProduct)
{
    for (const PageRow& page : PAGE_TABLE) {
        EXPECT_TRUE(page.bOfProduct || !page.bTab) << Utf8(page.stem);
    }
}

// Its settings hold for the deployment, and it sets all products that carry one at once.
TEST(PageTable, TheSettingsPageBelongsToNoProduct)
{
    EXPECT_FALSE(FindPageOfSection(L"settings")->bOfProduct);
}

TEST(PageTable, APageIsFoundByTheExportOfEitherShape)
{
    EXPECT_EQ(FindPage(L"OnlineResourcesDialog"), FindPage(L"OnlineResourcesPage"));
    for (const PageRow& page : PAGE_TABLE) {
        EXPECT_EQ(FindPage(WizardExport(page)), &page);
        EXPECT_EQ(FindWizardPage(WizardExport(page)), &page);
        EXPECT_EQ(FindTabPage(WizardExport(page)), nullptr);
        if (page.bTab) {
            EXPECT_EQ(FindPage(TabExport(page)), &page);
            EXPECT_EQ(FindTabPage(TabExport(page)), &page);
            EXPECT_EQ(FindWizardPage(TabExport(page)), nullptr);
        }
    }
}

TEST(PageTable, ANameOfAnotherSpellingIsNoPage)
{
    for (const wchar_t* name :
         {L"", L"Dialog", L"Page", L"BeginDeployment", L"BeginDeploymentPage", L"begindeploymentdialog",
          L"BeginDeploymentDialog ", L"XBeginDeploymentDialog"}) {
        EXPECT_EQ(FindPage(name), nullptr) << Utf8(name);
    }
}

TEST(PageTable, APageIsFoundByItsSection)
{
    EXPECT_EQ(FindPageOfSection(L"resources"), FindPage(L"OnlineResourcesDialog"));
    EXPECT_EQ(FindPageOfSection(L""), nullptr);
    EXPECT_EQ(FindPageOfSection(L"Resources"), nullptr);
}

} // namespace
