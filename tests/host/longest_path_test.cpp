// The rule of the begin page measures what the build copies, so neither follows a link to a folder.
#include "host/longest_path.h"
#include "include/setup_manager.h"
#include "tests/host/package_maker.h"

#include <gtest/gtest.h>

namespace {

class LongestPathTest : public testing::Test
{
protected:
    ScratchFolder scratch{L"longest"};
    ScratchFolder work{L"work"};
};

} // namespace

TEST_F(LongestPathTest, OnlyFilesCount)
{
    WriteFileBytes(scratch + L"x64\\a\\b\\file.txt", "x");
    ASSERT_EQ(MakeFolders(scratch + L"x64\\an empty folder of a long name"), 0u);
    EXPECT_EQ(LongestPath(scratch, L"x64\\"), CString(L"x64\\a\\b\\file.txt"));
    EXPECT_EQ(LongestPath(scratch, L"no such folder\\"), CString());
}

TEST_F(LongestPathTest, FilesAreFoundHoweverDeepTheyLie)
{
    CString path;
    for (int level = 0; level < 100; ++level) {
        path += L"d\\";
    }
    WriteFileBytes(static_cast<const CString&>(scratch) + path + L"file.txt", "x");
    EXPECT_EQ(LongestPath(scratch, L"d\\"), path + L"file.txt");
}

// One such link made every path too long; two held the start of the wizard for ever.
TEST_F(LongestPathTest, MediaWithLinksThatGoRoundOpenWithTheLengthOfTheirFiles)
{
    MakeMedia(scratch + L"media\\");
    WriteFileBytes(scratch + L"media\\x64\\Zolt\\data\\the longest name of all files.txt", "x");
    const FolderLink self(scratch + L"media\\x64\\Zolt\\self", scratch + L"media\\x64\\Zolt");
    const FolderLink up(scratch + L"media\\x64\\Zolt\\data\\up", scratch + L"media\\x64");
    if (!self.IsThere() || !up.IsThere()) {
        GTEST_SKIP() << "links are made outside of the prefix, which this system doesn't have";
    }
    std::vector<FolderItem> items;
    ASSERT_EQ(ListFolder(scratch + L"media\\x64\\Zolt", items), 0u);
    for (const FolderItem& item : items) {
        EXPECT_EQ(item.isLink, item.strName == L"self") << Utf8(item.strName);
    }
    const HostOwner host = OpenHost(scratch + L"media", work);
    ASSERT_TRUE(host);
    CSetupManager& manager = host->GetSetupManager();
    const CString rest =
        CString(manager.m_strMediaFile).Mid(CString(manager.m_strResourceFolder).GetLength());
    EXPECT_EQ(rest, CString(L"x64\\Zolt\\data\\the longest name of all files.txt"));
}
