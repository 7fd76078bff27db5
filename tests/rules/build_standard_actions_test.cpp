// Where the standard actions of additions stand among a package's own.
#include "builder/standard_actions.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <initializer_list>

namespace {

class StandardActions : public testing::Test
{
protected:
    StandardActions()
    {
        database[L"InstallExecuteSequence"] = {
            {L"Action", L"Condition", L"Sequence"}, {L"s72", L"S255", L"I2"}, 1, {}};
    }

    void Has(const wchar_t* action, const wchar_t* number)
    {
        database[L"InstallExecuteSequence"].rows[{action}] = {action, L"", number};
    }

    CString NumberTextOf(const wchar_t* action) const
    {
        const auto& rows = database.at(L"InstallExecuteSequence").rows;
        const auto row = rows.find({action});
        return row == rows.end() ? CString(L"(none)") : row->second[2];
    }

    int NumberOf(const wchar_t* action) const { return std::atoi(Utf8(NumberTextOf(action)).c_str()); }

    // Each action's number is above that of the one before it.
    void ExpectOrder(std::initializer_list<const wchar_t*> actions) const
    {
        int last = 0;
        for (const wchar_t* action : actions) {
            EXPECT_GT(NumberOf(action), last) << Utf8(action);
            last = NumberOf(action);
        }
    }

    DatabaseSnapshot database;
};

} // namespace

TEST_F(StandardActions, TheSuggestedNumbersAreTakenWhereTheyFit)
{
    Has(L"InstallInitialize", L"1500");
    Has(L"InstallFinalize", L"6600");
    EXPECT_EQ(AddMissingActions(database), L"");
    EXPECT_EQ(NumberTextOf(L"RemoveFiles"), L"3500");
    EXPECT_EQ(NumberTextOf(L"RemoveFolders"), L"3600");
    EXPECT_EQ(NumberTextOf(L"CreateFolders"), L"3700");
    EXPECT_EQ(NumberTextOf(L"InstallFiles"), L"4000");
}

TEST_F(StandardActions, APackageWithoutASequenceGetsTheSuggestedNumbers)
{
    EXPECT_EQ(AddMissingActions(database), L"");
    EXPECT_EQ(NumberTextOf(L"RemoveFiles"), L"3500");
    EXPECT_EQ(NumberTextOf(L"InstallFiles"), L"4000");
}

TEST_F(StandardActions, TheyFollowABeginningWithHighNumbers)
{
    Has(L"CostFinalize", L"6000");
    Has(L"InstallValidate", L"6100");
    Has(L"InstallInitialize", L"6200");
    Has(L"InstallFinalize", L"6500");
    EXPECT_EQ(AddMissingActions(database), L"");
    ExpectOrder(
        {L"InstallInitialize", L"RemoveFiles", L"CreateFolders", L"InstallFiles", L"InstallFinalize"});
    ExpectOrder({L"RemoveFiles", L"RemoveFolders", L"InstallFinalize"});
}

TEST_F(StandardActions, TheyComeBeforeAnEndWithALowNumber)
{
    Has(L"InstallInitialize", L"150");
    Has(L"InstallFinalize", L"200");
    EXPECT_EQ(AddMissingActions(database), L"");
    ExpectOrder(
        {L"InstallInitialize", L"RemoveFiles", L"CreateFolders", L"InstallFiles", L"InstallFinalize"});
    ExpectOrder({L"RemoveFiles", L"RemoveFolders", L"InstallFinalize"});
}

TEST_F(StandardActions, FourNumbersAreRoomEnough)
{
    Has(L"InstallInitialize", L"10");
    Has(L"InstallFinalize", L"15");
    EXPECT_EQ(AddMissingActions(database), L"");
    ExpectOrder({L"InstallInitialize", L"RemoveFiles", L"CreateFolders", L"InstallFiles", L"RemoveFolders",
                 L"InstallFinalize"});
}

TEST_F(StandardActions, NoNumberIsGivenTwice)
{
    Has(L"InstallInitialize", L"1500");
    Has(L"SomeAction", L"3500");
    Has(L"OtherAction", L"3501");
    Has(L"LastAction", L"4000");
    Has(L"InstallFinalize", L"6600");
    EXPECT_EQ(AddMissingActions(database), L"");
    EXPECT_EQ(NumberTextOf(L"RemoveFiles"), L"3502");
    EXPECT_EQ(NumberTextOf(L"InstallFiles"), L"4001");
}

TEST_F(StandardActions, TakenNumbersBeforeTheEndLeaveRoomForAllOfThem)
{
    Has(L"InstallInitialize", L"10");
    for (const wchar_t* number : {L"12", L"14", L"16", L"18"}) {
        Has((CString(L"Action") + number), number);
    }
    Has(L"InstallFinalize", L"19");
    EXPECT_EQ(AddMissingActions(database), L"");
    EXPECT_EQ(NumberTextOf(L"RemoveFiles"), L"11");
    EXPECT_EQ(NumberTextOf(L"CreateFolders"), L"13");
    EXPECT_EQ(NumberTextOf(L"InstallFiles"), L"15");
    EXPECT_EQ(NumberTextOf(L"RemoveFolders"), L"17");
}

TEST_F(StandardActions, FilesArriveBeforeTheActionsThatNeedThem)
{
    Has(L"InstallInitialize", L"1500");
    Has(L"PatchFiles", L"1700");
    Has(L"CreateShortcuts", L"1600");
    Has(L"InstallFinalize", L"6600");
    EXPECT_EQ(AddMissingActions(database), L"");
    ExpectOrder(
        {L"InstallInitialize", L"RemoveFiles", L"CreateFolders", L"InstallFiles", L"CreateShortcuts"});
    EXPECT_EQ(NumberTextOf(L"RemoveFolders"), L"3600");
}

TEST_F(StandardActions, FilesGoBehindTheActionsThatNeedThem)
{
    Has(L"InstallInitialize", L"5000");
    Has(L"SelfUnregModules", L"5300");
    Has(L"StopServices", L"5200");
    Has(L"SelfRegModules", L"5500");
    Has(L"InstallFinalize", L"6600");
    EXPECT_EQ(AddMissingActions(database), L"");
    ExpectOrder({L"SelfUnregModules", L"RemoveFiles", L"CreateFolders", L"InstallFiles", L"SelfRegModules"});
}

TEST_F(StandardActions, UsersOfFilesThatLeaveNoRoomAreNoHindrance)
{
    Has(L"InstallInitialize", L"1500");
    Has(L"SelfRegModules", L"1501");
    Has(L"InstallFinalize", L"6600");
    EXPECT_EQ(AddMissingActions(database), L"");
    ExpectOrder(
        {L"InstallInitialize", L"RemoveFiles", L"CreateFolders", L"InstallFiles", L"InstallFinalize"});
}

TEST_F(StandardActions, AMissingOneFitsToThoseThatAreThere)
{
    Has(L"InstallInitialize", L"4100");
    Has(L"RemoveFiles", L"4500");
    Has(L"InstallFiles", L"4600");
    Has(L"InstallFinalize", L"6600");
    EXPECT_EQ(AddMissingActions(database), L"");
    ExpectOrder({L"InstallInitialize", L"CreateFolders", L"InstallFiles"});
    ExpectOrder({L"RemoveFiles", L"RemoveFolders", L"InstallFinalize"});
    EXPECT_EQ(NumberTextOf(L"RemoveFiles"), L"4500");
    EXPECT_EQ(NumberTextOf(L"InstallFiles"), L"4600");
}

TEST_F(StandardActions, OneThatIsNeverRunIsGivenANumber)
{
    Has(L"InstallInitialize", L"1500");
    Has(L"InstallFiles", L"");
    Has(L"CreateFolders", L"-1");
    EXPECT_EQ(AddMissingActions(database), L"");
    EXPECT_EQ(NumberTextOf(L"InstallFiles"), L"4000");
    EXPECT_EQ(NumberTextOf(L"CreateFolders"), L"3700");
}

TEST_F(StandardActions, AUserOfFilesBeforeTheBeginningIsNoHindrance)
{
    Has(L"BindImage", L"100");
    Has(L"InstallInitialize", L"1500");
    Has(L"CreateShortcuts", L"1600");
    EXPECT_EQ(AddMissingActions(database), L"");
    ExpectOrder({L"InstallInitialize", L"InstallFiles", L"CreateShortcuts"});
}

TEST_F(StandardActions, NoRoomIsRefusedWithTheNamesOfTheNeighbours)
{
    Has(L"InstallInitialize", L"1500");
    Has(L"InstallFinalize", L"1504"); // one number too few
    const CString refused = AddMissingActions(database);
    for (const wchar_t* word : {L"InstallExecuteSequence", L"InstallInitialize (1500)",
                                L"InstallFinalize (1504)", L"RemoveFiles"}) {
        EXPECT_GE(refused.Find(word), 0) << Utf8(word) << " is missing in: " << Utf8(refused);
    }
}

TEST_F(StandardActions, AnEndBeforeTheBeginningIsRefused)
{
    Has(L"InstallInitialize", L"1500");
    Has(L"InstallFinalize", L"1400");
    EXPECT_GE(AddMissingActions(database).Find(L"InstallFinalize (1400)"), 0);
}
