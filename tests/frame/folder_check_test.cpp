// Local folders, tried on the real disk.
#include "frame/folder_check.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <algorithm>

namespace {

PathCheckResult Validate(const CString& path)
{
    CString checked(path);
    return ValidateFolder(checked, false);
}

} // namespace

TEST(FolderCheckTest, ADriveRootGivesTen)
{
    EXPECT_EQ(Validate(L"C:\\"), PCR_IS_ROOT);
    EXPECT_EQ(Validate(L"C:"), PCR_IS_ROOT);
}

TEST(FolderCheckTest, AnExistingFolderIsEmptyOrNot)
{
    const CTestFolder folder;
    const CString below = folder.AddFolder(L"below");
    EXPECT_EQ(Validate(below), PCR_OK);
    EXPECT_EQ(Validate(folder.GetPath()), PCR_NOT_EMPTY);
    EXPECT_TRUE(FolderExists(below));
}

TEST(FolderCheckTest, AProbeOfANewFolderLeavesNothingBehind)
{
    const CTestFolder folder;
    folder.AddFile(L"keeps.txt", "x");
    EXPECT_EQ(Validate(folder / L"a\\b\\c"), PCR_OK);
    EXPECT_FALSE(FolderExists(folder / L"a"));
    EXPECT_TRUE(FolderExists(folder.GetPath()));
}

TEST(FolderCheckTest, AProbeRemovesParentsThatWereEmptyBefore)
{
    const CTestFolder folder;
    folder.AddFile(L"keeps.txt", "x");
    folder.AddFolder(L"empty");
    EXPECT_EQ(Validate(folder / L"empty\\new"), PCR_OK);
    EXPECT_FALSE(FolderExists(folder / L"empty"));
}

TEST(FolderCheckTest, AProbeOfAnExistingFolderLeavesNoFile)
{
    const CTestFolder folder;
    EXPECT_EQ(Validate(folder.GetPath()), PCR_OK);
    WIN32_FIND_DATAW found = {};
    const HANDLE search = ::FindFirstFileW(folder / L"_AI*", &found);
    EXPECT_EQ(search, INVALID_HANDLE_VALUE);
}

TEST(FolderCheckTest, AFileInPlaceOfTheFolderFails)
{
    const CTestFolder folder;
    EXPECT_EQ(Validate(folder.AddFile(L"file", "x")), PCR_FAILED);
}

TEST(FolderCheckTest, NothingLeftAfterTrimmingIsEmpty)
{
    for (const wchar_t* path : {L"", L"  \t ", L"\"\"", L"\"  \""}) {
        EXPECT_EQ(Validate(path), PCR_EMPTY) << Utf8(path);
    }
}

TEST(FolderCheckTest, QuotesBlanksAndDotsAreTakenOffThePath)
{
    const CTestFolder folder;
    folder.AddFile(L"keeps.txt", "x");
    CString path = L"\" " + (folder / L" a \\x\\..\\b ") + L"\"";
    EXPECT_EQ(ValidateFolder(path, false), PCR_OK);
    EXPECT_EQ(path, folder / L"a\\b\\");
}

TEST(FolderCheckTest, ALocalTextIsNotUnc)
{
    CString path(L" C:\\a ");
    EXPECT_EQ(ValidateFolder(path, true), PCR_NOT_UNC);
    EXPECT_EQ(path, CString(L"C:\\a\\"));
}

TEST(FolderCheckTest, ARelativePathFails)
{
    EXPECT_EQ(Validate(L"a\\b"), PCR_FAILED);
    EXPECT_EQ(Validate(L"\\a"), PCR_FAILED);
}

TEST(FolderCheckTest, APathOf259CharactersIsTooLong)
{
    // With its backslash at the end; short parts, so that the system has nothing else to refuse.
    const auto longPath = [](int length) {
        CString path(L"C:\\");
        while (path.GetLength() < length - 1) {
            path += (path.GetLength() % 50 == 0) ? L"\\" : L"a";
        }
        return path + L'\\';
    };
    EXPECT_EQ(Validate(longPath(259)), PCR_TOO_LONG);
    EXPECT_EQ(Validate(longPath(400)), PCR_TOO_LONG);
    EXPECT_NE(Validate(longPath(258)), PCR_TOO_LONG);
}

TEST(FolderCheckTest, ADriveThatIsNotThereIsOfTheWrongKind)
{
    EXPECT_EQ(Validate(L"Q:\\a"), PCR_BAD_DRIVE_KIND);
}

TEST(FolderCheckTest, TheDriveDecidesLocalOrNetwork)
{
    EXPECT_TRUE(IsLocalOrNetworkPath(L"C:\\a"));
    EXPECT_TRUE(IsLocalOrNetworkPath(L"\\\\server\\share"));
    EXPECT_FALSE(IsLocalOrNetworkPath(L"a\\b"));
    EXPECT_FALSE(IsLocalOrNetworkPath(L"Q:\\a"));
}
