// The settings page's rules and those of the shares: what is decided without a window and without the system.
#include "pages/deployment_settings_rules.h"
#include "pages/share_rules.h"
#include "tests/support/empty_product.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

// A product with nothing but the marks by which carriers are recognised.
class MarkedProduct : public EmptyProduct
{
public:
    MarkedProduct(unsigned int kind, bool flag1, bool flag2)
    {
        m_productKind = kind;
        m_bCarrierFlag1 = flag1;
        m_bCarrierFlag2 = flag2;
    }
};

bool Carries(unsigned int kind, bool flag1, bool flag2)
{
    const MarkedProduct product(kind, flag1, flag2);
    return CarriesMc3(&product);
}

constexpr const wchar_t* NETWORK_FOLDER = L"\\\\server\\share\\Logs\\";
constexpr const wchar_t* LOCAL_FOLDER = L"C:\\Logs\\";

} // namespace

// ---- carrying products ----

TEST(CarryingProductTest, KindEightWithBothFlagsCarries)
{
    EXPECT_TRUE(Carries(8, true, true));
}

TEST(CarryingProductTest, OneFlagIsNotEnough)
{
    EXPECT_FALSE(Carries(8, true, false));
    EXPECT_FALSE(Carries(8, false, true));
    EXPECT_FALSE(Carries(8, false, false));
}

TEST(CarryingProductTest, NoOtherKindCarries)
{
    for (const unsigned int kind : {0u, 1u, 7u, 9u, 12u, 16u, 24u, 0x80000008u}) {
        EXPECT_FALSE(Carries(kind, true, true)) << "kind " << kind;
    }
}

TEST(CarryingProductTest, NullCarriesNothing)
{
    EXPECT_FALSE(CarriesMc3(nullptr));
}

// ---- the log's choice ----

// The page itself opens with its default, which is never empty.
TEST(LogChoiceTest, WithALogAndAnEmptyFolderNextIsDisabledAtInit)
{
    EXPECT_FALSE(IsLogChoiceComplete(true, L""));
}

TEST(LogChoiceTest, EveryOtherChoiceIsComplete)
{
    EXPECT_TRUE(IsLogChoiceComplete(true, L"x"));
    EXPECT_TRUE(IsLogChoiceComplete(false, L""));
    EXPECT_TRUE(IsLogChoiceComplete(false, L"x"));
}

// Blanks are looked at when the edit is left, not before.
TEST(LogChoiceTest, BlanksAreAFolder)
{
    EXPECT_TRUE(IsLogChoiceComplete(true, L"  "));
}

// ---- the verdict ----

struct VerdictCase
{
    PathCheckResult result;
    LogFolderVerdict network; // of a folder in network form
    LogFolderVerdict local;
};

void PrintTo(const VerdictCase& row, std::ostream* stream)
{
    *stream << "result " << row.result;
}

class LogFolderVerdictTest : public testing::TestWithParam<VerdictCase>
{
};

TEST_P(LogFolderVerdictTest, ResultAndFormDecide)
{
    EXPECT_EQ(JudgeLogFolder(GetParam().result, NETWORK_FOLDER), GetParam().network) << "in network form";
    EXPECT_EQ(JudgeLogFolder(GetParam().result, LOCAL_FOLDER), GetParam().local) << "in local form";
}

constexpr LogFolderVerdict USABLE = LogFolderVerdict::Usable;
constexpr LogFolderVerdict REFUSED = LogFolderVerdict::NotNetwork;
constexpr LogFolderVerdict ASKED = LogFolderVerdict::Doubtful;

INSTANTIATE_TEST_SUITE_P(
    OfEachResult, LogFolderVerdictTest,
    testing::Values(VerdictCase{PCR_OK, USABLE, USABLE}, VerdictCase{PCR_EMPTY, ASKED, REFUSED},
                    VerdictCase{PCR_TOO_LONG, ASKED, REFUSED}, VerdictCase{PCR_NO_DRIVE, ASKED, REFUSED},
                    VerdictCase{PCR_BAD_DRIVE_KIND, ASKED, REFUSED}, VerdictCase{PCR_FAILED, ASKED, REFUSED},
                    VerdictCase{PCR_NOT_EMPTY, USABLE, USABLE}, VerdictCase{PCR_NOT_UNC, ASKED, REFUSED},
                    VerdictCase{PCR_NETWORK_FAILED, ASKED, REFUSED},
                    VerdictCase{PCR_ACCESS_DENIED, ASKED, ASKED}, VerdictCase{PCR_IS_ROOT, USABLE, USABLE}));

TEST(LogFolderFormTest, AServerAloneIsNoNetworkFolder)
{
    EXPECT_EQ(JudgeLogFolder(PCR_NETWORK_FAILED, L"\\\\server"), REFUSED);
    EXPECT_EQ(JudgeLogFolder(PCR_EMPTY, L""), REFUSED);
}

// ---- the computer's name in network form ----

TEST(ComputerRootTest, TwoBackslashesStandBeforeTheName)
{
    EXPECT_EQ(ComputerRoot(L"OFFICE"), CString(L"\\\\OFFICE"));
    EXPECT_EQ(ComputerRoot(L""), CString(L"\\\\"));
}

// ---- the drive list ----

TEST(DriveListTest, ADriveIsFoundInAnyCaseAtAnyPlace)
{
    constexpr wchar_t DRIVES[] = L"A:\\\0C:\\\0Z:\\\0";
    for (const wchar_t* path : {L"A:\\x", L"a:\\", L"c:", L"C:\\deep\\folder\\", L"z:\\x"}) {
        EXPECT_TRUE(IsDriveInList(path, DRIVES)) << Utf8(path);
    }
}

TEST(DriveListTest, AnotherDriveIsNotFound)
{
    constexpr wchar_t DRIVES[] = L"A:\\\0C:\\\0";
    for (const wchar_t* path : {L"B:\\x", L"D:\\", L"C", L"", L"\\\\C:\\"}) {
        EXPECT_FALSE(IsDriveInList(path, DRIVES)) << Utf8(path);
    }
    EXPECT_FALSE(IsDriveInList(L"C:\\", L"\0"));
}

// ---- mapped drives ----

TEST(MappedPathTest, TheRestOfThePathFollowsTheShare)
{
    EXPECT_EQ(MappedPath(L"\\\\srv\\data", L"X:\\sub\\"), CString(L"\\\\srv\\data\\sub"));
    EXPECT_EQ(MappedPath(L"\\\\srv\\data", L"X:\\sub\\deeper"), CString(L"\\\\srv\\data\\sub\\deeper"));
    EXPECT_EQ(MappedPath(L"\\\\srv\\data", L"X:\\s"), CString(L"\\\\srv\\data\\s"));
}

TEST(MappedPathTest, TheRootIsTheShareAlone)
{
    EXPECT_EQ(MappedPath(L"\\\\srv\\data", L"X:\\"), CString(L"\\\\srv\\data"));
    EXPECT_EQ(MappedPath(L"\\\\srv\\data", L"X:"), CString(L"\\\\srv\\data"));
}

TEST(MappedPathTest, BackslashesAtTheEndsAreTrimmed)
{
    EXPECT_EQ(MappedPath(L"\\\\srv\\data\\\\", L"X:\\\\sub\\\\"), CString(L"\\\\srv\\data\\sub"));
    EXPECT_EQ(MappedPath(L"\\\\srv\\data\\", L"X:\\"), CString(L"\\\\srv\\data"));
}

// ---- shares ----

TEST(ShareOfPathTest, AnEmptyMapHasNoShareForAnyPath)
{
    CString found = L"before";
    EXPECT_FALSE(FindShareOfPath({}, L"C:\\tools\\x", found));
    EXPECT_EQ(found, CString(L"before"));
}

// Kept on purpose: the first share in the order of the names takes every path, wherever the path lies.
TEST(ShareOfPathTest, TheFirstShareTakesEveryPath)
{
    const ShareMap shares{{L"\\\\PC\\second", L"D:\\OTHER"}, {L"\\\\PC\\first", L"Q:"}};
    CString found;
    EXPECT_TRUE(FindShareOfPath(shares, L"D:\\OTHER\\x", found));
    EXPECT_EQ(found, CString(L"\\\\PC\\first\\D:\\OTHER\\x"));
}

// Kept on purpose: all characters of the share's path are cut from the end, in any order, and case counts.
TEST(ShareOfPathTest, TheSharesPathIsASetOfCharacters)
{
    CString found;
    EXPECT_TRUE(FindShareOfPath({{L"\\\\PC\\tools", L"C:\\TOOLS"}}, L"C:\\TOOLS\\xSLOT", found));
    EXPECT_EQ(found, CString(L"\\\\PC\\tools\\C:\\TOOLS\\x"));
    EXPECT_TRUE(FindShareOfPath({{L"\\\\PC\\tools", L"C:\\TOOLS"}}, L"C:\\tools", found));
    EXPECT_EQ(found, CString(L"\\\\PC\\tools\\C:\\tools"));
}

TEST(ShareOfPathTest, AShareWithoutALocalPathTakesThePathAsWell)
{
    CString found;
    EXPECT_TRUE(FindShareOfPath({{L"\\\\PC\\tools", L""}}, L"C:\\x\\", found));
    EXPECT_EQ(found, CString(L"\\\\PC\\tools\\C:\\x"));
}

TEST(ShareOfPathTest, WhereNothingIsLeftOfThePathTheShareStandsAlone)
{
    CString found;
    EXPECT_TRUE(FindShareOfPath({{L"\\\\PC\\tools", L"C:\\TOOLS"}}, L"C:\\TOOLS", found));
    EXPECT_EQ(found, CString(L"\\\\PC\\tools"));
}
