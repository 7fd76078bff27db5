#include "frame/path_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

TEST(FileNameTest, NoneOfTheNineCharactersMayStandInAName)
{
    const CString forbidden(L"\\/:*?\"<>|");
    for (int index = 0; index < forbidden.GetLength(); ++index) {
        EXPECT_FALSE(IsValidFileName(CString(L"a") + forbidden[index])) << Utf8(forbidden.Mid(index, 1));
    }
    EXPECT_TRUE(IsValidFileName(L"a;b [c] 'd'"));
}

TEST(PathTest, DrivesServersAndRelativePathsPass)
{
    for (const wchar_t* path :
         {L"C:\\a\\b", L"C:", L"\\\\server\\share\\a", L"a\\b", L"\\a", L"a\\", L" C:\\a "}) {
        EXPECT_TRUE(IsValidPath(path)) << Utf8(path);
    }
}

TEST(PathTest, TheEmptyTextPasses)
{
    EXPECT_TRUE(IsValidPath(L""));
    EXPECT_TRUE(IsValidPath(L"  "));
}

TEST(PathTest, OneOrTwoBackslashesAloneAreRefused)
{
    EXPECT_FALSE(IsValidPath(L"\\"));
    EXPECT_FALSE(IsValidPath(L"\\\\"));
    EXPECT_FALSE(IsValidPath(L" \\\\ "));
}

TEST(PathTest, ForbiddenCharactersAreRefused)
{
    for (const wchar_t* path : {L"C:\\a*", L"C:\\a?", L"C:\\<a", L"C:\\a>", L"C:\\a|b", L"\"C:\\a\""}) {
        EXPECT_FALSE(IsValidPath(path)) << Utf8(path);
    }
    EXPECT_TRUE(IsValidPath(L"C:/a"));
}

TEST(PathTest, TheOnlyColonIsTheDrives)
{
    for (const wchar_t* path : {L"C:\\a:b", L"1:\\a", L":a", L"ab:c", L"C::"}) {
        EXPECT_FALSE(IsValidPath(path)) << Utf8(path);
    }
}

TEST(PathTest, TwoBackslashesTogetherOnlyLead)
{
    EXPECT_TRUE(IsValidPath(L"\\\\server\\share"));
    EXPECT_FALSE(IsValidPath(L"C:\\a\\\\b"));
    EXPECT_FALSE(IsValidPath(L"\\\\\\server"));
    EXPECT_FALSE(IsValidPath(L"a\\\\"));
}

TEST(PathTest, APieceOfBlanksAloneIsRefused)
{
    EXPECT_FALSE(IsValidPath(L"C:\\ \\a"));
    EXPECT_TRUE(IsValidPath(L"C:\\ b \\a"));
}

TEST(UncTest, TheFormIsTwoLeadingBackslashes)
{
    EXPECT_TRUE(IsUncForm(L"\\\\server\\share"));
    EXPECT_TRUE(IsUncForm(L"\\\\"));
    EXPECT_TRUE(IsUncForm(L"\\\\?\\UNC\\server\\share"));
    EXPECT_FALSE(IsUncForm(L"\\\\?\\C:\\a"));
    EXPECT_FALSE(IsUncForm(L"\\server"));
    EXPECT_FALSE(IsUncForm(L"C:\\a"));
    EXPECT_FALSE(IsUncForm(L""));
}

TEST(UncTest, AServerAndAShareAreNeeded)
{
    EXPECT_TRUE(IsValidUncPath(L"\\\\server\\share"));
    EXPECT_TRUE(IsValidUncPath(L"\\\\server\\share\\a\\"));
    EXPECT_FALSE(IsValidUncPath(L"\\\\server"));
    EXPECT_FALSE(IsValidUncPath(L"\\\\server\\"));
    EXPECT_FALSE(IsValidUncPath(L"\\\\"));
    EXPECT_FALSE(IsValidUncPath(L"C:\\a\\b"));
}

TEST(UncTest, EachPieceIsAFileName)
{
    EXPECT_FALSE(IsValidUncPath(L"\\\\server\\sha*re"));
    EXPECT_FALSE(IsValidUncPath(L"\\\\server\\C:\\a"));
    EXPECT_FALSE(IsValidUncPath(L"\\\\server\\\\share"));
    EXPECT_FALSE(IsValidUncPath(L"\\\\server\\ \\share"));
}

TEST(RebuildTest, PiecesAreTrimmedAndJoinedWithABackslashAfterEach)
{
    EXPECT_EQ(RebuildPath(L"C:\\ a \\b"), CString(L"C:\\a\\b\\"));
    EXPECT_EQ(RebuildPath(L"C:\\\\a\\"), CString(L"C:\\a\\"));
    EXPECT_EQ(RebuildPath(L"\\\\server\\share"), CString(L"server\\share\\"));
    EXPECT_EQ(RebuildPath(L""), CString(L""));
}

TEST(SubstitutedTest, ATargetWithADriveInsideIsSubstituted)
{
    EXPECT_TRUE(IsSubstitutedTarget(L"\\??\\C:\\folder"));
    EXPECT_FALSE(IsSubstitutedTarget(L"\\Device\\HarddiskVolume1"));
    EXPECT_FALSE(IsSubstitutedTarget(L":x"));
}
