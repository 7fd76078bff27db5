#include "base/path_text.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

TEST(PathText, LongPathsGetTheFormWithoutALimit)
{
    EXPECT_EQ(UnlimitedPath(L"C:\\a"), CString(L"\\\\?\\C:\\a"));
    EXPECT_EQ(UnlimitedPath(L"\\\\server\\share\\a"), CString(L"\\\\?\\UNC\\server\\share\\a"));
    EXPECT_EQ(UnlimitedPath(L"\\\\?\\C:\\a"), CString(L"\\\\?\\C:\\a"));
    EXPECT_EQ(UnlimitedPath(L"a\\b"), CString(L"a\\b"));
    EXPECT_EQ(UnlimitedPath(L"\\\\.\\pipe\\a"), CString(L"\\\\.\\pipe\\a"));
}

TEST(PathText, FoldersAreDistinctFromTheirNeighbours)
{
    EXPECT_TRUE(IsSameOrBelow(L"C:\\media", L"c:\\MEDIA\\"));
    EXPECT_TRUE(IsSameOrBelow(L"C:\\media\\x", L"C:\\media"));
    EXPECT_TRUE(IsSameOrBelow(L"C:\\media\\x", L"C:\\media\\\\"));
    EXPECT_FALSE(IsSameOrBelow(L"C:\\media2", L"C:\\media"));
    EXPECT_TRUE(IsSameOrBelow(L"C:\\media", L"C:\\"));
    EXPECT_EQ(FolderAbove(L"C:\\a\\b\\"), CString(L"C:\\a"));
    EXPECT_EQ(FolderAbove(L"C:\\a"), CString(L"C:\\"));
    EXPECT_EQ(FolderAbove(L"a"), CString());
    EXPECT_EQ(LastName(L"C:\\a\\b\\"), CString(L"b"));
    EXPECT_EQ(JoinFolder(L"C:\\", L"a"), CString(L"C:\\a"));
    EXPECT_EQ(JoinFolder(L"", L"a"), CString(L"a"));
}

// The log folder of a deployment is stored as it was entered but for that.
TEST(PathText, AClosingBackslashComesWhereThereIsNone)
{
    EXPECT_EQ(WithClosingBackslash(L"C:\\a"), CString(L"C:\\a\\"));
    EXPECT_EQ(WithClosingBackslash(L"C:\\a\\\\"), CString(L"C:\\a\\\\"));
    EXPECT_EQ(WithClosingBackslash(L"C:"), CString(L"C:\\"));
    EXPECT_EQ(WithClosingBackslash(L""), CString(L"\\"));
}

TEST(PathText, OnlyALongPathIsHandedOverInTheFormWithoutALimit)
{
    const CString fits = L"C:\\" + CString(L'a', 236);
    EXPECT_EQ(FilePath(fits), fits);
    EXPECT_EQ(FilePath(fits + L"a"), L"\\\\?\\" + fits + L"a");
    const CString share = L"\\\\server\\share\\" + CString(L'a', 240);
    EXPECT_EQ(FilePath(share), L"\\\\?\\UNC" + share.Mid(1));
    EXPECT_EQ(FilePath(FilePath(share)), FilePath(share));
    const CString relative(L'a', 300);
    EXPECT_EQ(FilePath(relative), relative) << "the form is one of full paths";
}

TEST(PathText, TheFolderOfAFileKeepsItsBackslash)
{
    EXPECT_EQ(FolderOfFile(L"C:\\a\\b.txt"), CString(L"C:\\a\\"));
    EXPECT_EQ(FolderOfFile(L"a\\b.txt"), CString(L"a\\"));
    EXPECT_EQ(FolderOfFile(L"C:\\a\\"), CString(L"C:\\a\\"));
    EXPECT_EQ(FolderOfFile(L"b.txt"), CString());
}

TEST(PathText, AParentFolderIsThePathWithoutItsLastPart)
{
    EXPECT_EQ(ParentFolder(L"C:\\a\\b\\"), CString(L"C:\\a\\"));
    EXPECT_EQ(ParentFolder(L"C:\\a\\b"), CString(L"C:\\a\\"));
    EXPECT_EQ(ParentFolder(L"C:\\a\\"), CString(L"C:\\"));
    EXPECT_EQ(ParentFolder(L"\\\\server\\share\\a"), CString(L"\\\\server\\share\\"));
    EXPECT_EQ(ParentFolder(L"\\\\server\\share"), CString(L"\\\\server\\"));
    EXPECT_EQ(ParentFolder(L"C:\\a\\b\\\\"), CString(L"C:\\a\\"));
}

TEST(PathText, NoFolderStandsAboveADriveOrAServer)
{
    EXPECT_EQ(ParentFolder(L"C:\\"), CString());
    EXPECT_EQ(ParentFolder(L"\\\\server\\"), CString());
    EXPECT_EQ(ParentFolder(L"a"), CString());
    EXPECT_EQ(ParentFolder(L""), CString());
}
