// A database that was built, back in the hands of the pages: its additions stand in one feature again.
#include "host/user_feature_rows.h"

#include "installer/query.h"
#include "installer/record.h"
#include "tests/installer/database_fixture.h"
#include "tests/rules/user_key.h"
#include "tests/support/processor_time.h"

namespace {

class UserFeatureRowsTest : public DatabaseTest
{
protected:
    void AddFeature(const wchar_t* feature)
    {
        ASSERT_EQ(RunStatement(Database(),
                               L"INSERT INTO `Feature` (`Feature`,`Level`,`Attributes`) VALUES (?,1,0)",
                               {feature}),
                  0u);
    }
    void Put(const wchar_t* feature, const CString& component)
    {
        ASSERT_EQ(RunStatement(Database(),
                               L"INSERT INTO `FeatureComponents` (`Feature_`,`Component_`) VALUES (?,?)",
                               {feature, component}),
                  0u);
    }
    Rows Features() { return Select(L"SELECT `Feature` FROM `Feature` ORDER BY `Feature`"); }
    Rows Assignments()
    {
        return Select(L"SELECT `Feature_`,`Component_` FROM `FeatureComponents` ORDER BY `Component_`");
    }
};

} // namespace

TEST_F(UserFeatureRowsTest, AdditionsOfFurtherFeaturesComeBackToTheFirst)
{
    for (const wchar_t* feature :
         {L"Main", L"_UserDeploymentFile", L"_UserDeploymentFile2", L"_UserDeploymentFile3"}) {
        AddFeature(feature);
    }
    Put(L"Main", L"Own");
    Put(L"_UserDeploymentFile", UserKey(1));
    Put(L"_UserDeploymentFile2", UserKey(2));
    Put(L"_UserDeploymentFile3", UserKey(3));
    EXPECT_EQ(GatherUserFeatures(Database()), 0u);
    EXPECT_EQ(Features(), (Rows{{L"Main"}, {L"_UserDeploymentFile"}}));
    EXPECT_EQ(Assignments(), (Rows{{L"Main", L"Own"},
                                   {L"_UserDeploymentFile", UserKey(1)},
                                   {L"_UserDeploymentFile", UserKey(2)},
                                   {L"_UserDeploymentFile", UserKey(3)}}));
}

TEST_F(UserFeatureRowsTest, AFeatureThatHoldsMoreThanAdditionsStaysAsItIs)
{
    AddFeature(L"_UserDeploymentFile");
    AddFeature(L"_UserDeploymentFile2");
    Put(L"_UserDeploymentFile2", L"Own");
    Put(L"_UserDeploymentFile2", UserKey(2));
    EXPECT_EQ(GatherUserFeatures(Database()), 0u);
    EXPECT_EQ(Features(), (Rows{{L"_UserDeploymentFile"}, {L"_UserDeploymentFile2"}}));
    EXPECT_EQ(Assignments(),
              (Rows{{L"_UserDeploymentFile2", L"Own"}, {L"_UserDeploymentFile2", UserKey(2)}}));
}

TEST_F(UserFeatureRowsTest, ADatabaseWithoutTheTableGivesTheCode)
{
    Run(L"DROP TABLE `Feature`");
    EXPECT_EQ(GatherUserFeatures(Database()), UINT{ERROR_BAD_QUERY_SYNTAX});
}

// Two statements for each of them took six seconds, without anything to see, whenever a large deployment was opened.
TEST_F(UserFeatureRowsTest, ThousandsOfAdditionsAreGatheredAtOnce)
{
    constexpr int ADDITIONS = 8000;
    AddFeature(L"_UserDeploymentFile");
    AddFeature(L"_UserDeploymentFile2");
    CQuery insert;
    ASSERT_EQ(insert.Open(Database(), L"INSERT INTO `FeatureComponents` (`Component_`,`Feature_`) VALUES "
                                      L"(?,'_UserDeploymentFile2')"),
              0u);
    for (int number = 0; number < ADDITIONS; ++number) {
        CInstallerHandle values;
        ASSERT_EQ(MakeTextRecord({UserKey(number)}, values), 0u);
        ASSERT_EQ(insert.Execute(values.get()), 0u);
        ASSERT_EQ(insert.Close(), 0u);
    }
    const double start = ProcessorSeconds();
    EXPECT_EQ(GatherUserFeatures(Database()), 0u);
    EXPECT_LT(ProcessorSeconds() - start, 3.0);
    EXPECT_EQ(
        Select(L"SELECT `Component_` FROM `FeatureComponents` WHERE `Feature_`='_UserDeploymentFile'").size(),
        static_cast<std::size_t>(ADDITIONS));
}
