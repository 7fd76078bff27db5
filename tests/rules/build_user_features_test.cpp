// The features that additions are spread over, decided on snapshots.
#include "builder/user_features.h"
#include "tests/rules/user_key.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

// A product with one feature and one component of its own.
class UserFeatures : public testing::Test
{
protected:
    UserFeatures()
    {
        database[L"Feature"] = {{L"Feature", L"Feature_Parent", L"Title", L"Description", L"Display",
                                 L"Level", L"Directory_", L"Attributes"},
                                {L"s38", L"S38", L"L64", L"L255", L"I2", L"i2", L"S72", L"i2"},
                                1,
                                {}};
        database[L"FeatureComponents"] = {{L"Feature_", L"Component_"}, {L"s38", L"s72"}, 2, {}};
        database[L"Directory"] = {{L"Directory"}, {L"s72"}, 1, {{{L"INSTALLDIR"}, {L"INSTALLDIR"}}}};
        AddFeature(L"Main");
        Put(L"Main", L"Own");
    }

    void AddFeature(const CString& name)
    {
        database[L"Feature"].rows[{name}] = {name, L"", L"", L"", L"", L"1", L"", L"0"};
    }

    void Put(const CString& feature, const CString& component)
    {
        database[L"FeatureComponents"].rows[{feature, component}] = {feature, component};
    }

    static std::vector<CString> Keys(int count)
    {
        std::vector<CString> keys;
        for (int number = 0; number < count; ++number) {
            keys.push_back(UserKey(number));
        }
        return keys;
    }

    std::size_t CountIn(const CString& feature) const
    {
        std::size_t count = 0;
        for (const auto& row : database.at(L"FeatureComponents").rows) {
            count += row.second[0] == feature ? 1 : 0;
        }
        return count;
    }

    CString FeatureNames() const
    {
        CString names;
        for (const auto& row : database.at(L"Feature").rows) {
            names += row.second[0] + L" ";
        }
        return names;
    }

    RowValues RowOf(const CString& feature) const { return database.at(L"Feature").rows.at({feature}); }

    DatabaseSnapshot database;
};

} // namespace

TEST_F(UserFeatures, SixteenHundredComponentsFillOneFeature)
{
    FinishUserFeatures(database, Keys(1600));
    EXPECT_EQ(FeatureNames(), L"Main _UserDeploymentFile ");
    EXPECT_EQ(CountIn(L"_UserDeploymentFile"), 1600u);
}

TEST_F(UserFeatures, MoreComponentsAreSpreadOverFurtherFeatures)
{
    FinishUserFeatures(database, Keys(3300));
    EXPECT_EQ(FeatureNames(), L"Main _UserDeploymentFile _UserDeploymentFile2 _UserDeploymentFile3 ");
    EXPECT_EQ(CountIn(L"_UserDeploymentFile"), 1600u);
    EXPECT_EQ(CountIn(L"_UserDeploymentFile2"), 1600u);
    EXPECT_EQ(CountIn(L"_UserDeploymentFile3"), 100u);
    EXPECT_EQ(CountIn(L"Main"), 1u);
}

TEST_F(UserFeatures, AFurtherFeatureInstallsLikeTheFirst)
{
    FinishUserFeatures(database, {UserKey(1)});
    RowValues changed = RowOf(L"_UserDeploymentFile"); // as an administrator's other tool left it
    changed[1] = L"Main";
    changed[5] = L"3";
    database[L"Feature"].rows[{L"_UserDeploymentFile"}] = changed;
    FinishUserFeatures(database, Keys(1601));
    changed[0] = L"_UserDeploymentFile2";
    EXPECT_EQ(RowOf(L"_UserDeploymentFile2"), changed);
}

TEST_F(UserFeatures, SpreadingTwiceComesToTheSame)
{
    FinishUserFeatures(database, Keys(3300));
    const DatabaseSnapshot once = database;
    FinishUserFeatures(database, Keys(3300));
    EXPECT_TRUE(CompareSnapshots(once, database).empty());
}

TEST_F(UserFeatures, AFeatureThatIsNotNeededAnyMoreGoes)
{
    FinishUserFeatures(database, Keys(3300));
    FinishUserFeatures(database, Keys(5));
    EXPECT_EQ(FeatureNames(), L"Main _UserDeploymentFile ");
    EXPECT_EQ(CountIn(L"_UserDeploymentFile"), 5u);
    EXPECT_EQ(database[L"FeatureComponents"].rows.size(), 6u);
}

TEST_F(UserFeatures, AProductsOwnFeatureOfSuchANameStays)
{
    AddFeature(L"_UserDeploymentFile2");
    Put(L"_UserDeploymentFile2", L"Own");
    FinishUserFeatures(database, Keys(1601));
    EXPECT_EQ(FeatureNames(), L"Main _UserDeploymentFile _UserDeploymentFile2 _UserDeploymentFile3 ");
    EXPECT_EQ(CountIn(L"_UserDeploymentFile2"), 1u);
    EXPECT_EQ(CountIn(L"_UserDeploymentFile3"), 1u);
}

TEST_F(UserFeatures, TheFirstComponentsFillTheFirstFeature)
{
    std::vector<CString> keys = Keys(1601);
    std::swap(keys.front(), keys.back());
    FinishUserFeatures(database, keys);
    EXPECT_EQ(database[L"FeatureComponents"].rows.count({L"_UserDeploymentFile", UserKey(1600)}), 1u);
    EXPECT_EQ(database[L"FeatureComponents"].rows.count({L"_UserDeploymentFile2", UserKey(0)}), 1u);
}

TEST(UserFeatureNames, AreNumberedFromTwo)
{
    for (const wchar_t* name : {L"_UserDeploymentFile2", L"_UserDeploymentFile10"}) {
        EXPECT_TRUE(IsFurtherFeatureName(name)) << Utf8(name);
    }
    for (const wchar_t* name : {L"_UserDeploymentFile", L"_UserDeploymentFile1", L"_UserDeploymentFile02",
                                L"_UserDeploymentFile2x", L"_UserDeploymentFiles2", L"Main2", L""}) {
        EXPECT_FALSE(IsFurtherFeatureName(name)) << Utf8(name);
    }
}
