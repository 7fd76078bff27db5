// What a user adds, on a product of opened media: real rows, real properties.
#include "base/handle.h"
#include "tests/msi/user_file_fixture.h"

#include <winioctl.h>

#include <utility>

namespace {

CString WithHyphens(const CString& key)
{
    CString guid = key.Mid(5);
    guid.Replace(L'_', L'-');
    return guid;
}

} // namespace

// ---- the feature -------------------------------------------------------------------------------------------------

TEST_F(UserFileTest, TheFirstFileWritesTheFeatureAndTheNextWritesNone)
{
    AddFile(L"a.txt");
    const Rows one = {{L"_UserDeploymentFile", NULL_VALUE, L"User Deployment Files",
                       L"User deployment files.", L"0", L"1", L"INSTALLDIR", L"16"}};
    const CString query = L"SELECT * FROM `Feature` WHERE `Feature`='_UserDeploymentFile'";
    EXPECT_EQ(Select(query), one);
    AddFile(L"b.txt");
    EXPECT_EQ(Select(query), one);
}

TEST_F(UserFileTest, AFeatureThatIsThereIsFoundAndNotChanged)
{
    Run(L"INSERT INTO `Feature` (`Feature`,`Level`,`Attributes`) VALUES ('_UserDeploymentFile',5,0)");
    AddFolder(L"folder");
    EXPECT_TRUE(g_bUserFeatureExists);
    EXPECT_EQ(Select(L"SELECT `Level`,`Title` FROM `Feature` WHERE `Feature`='_UserDeploymentFile'"),
              (Rows{{L"5", NULL_VALUE}}));
}

// On purpose: the flag is the module's, the database the product's.
TEST_F(UserFileTest, ASecondProductGetsNoFeatureInTheSameRun)
{
    AddFile(L"a.txt");
    CProduct* pack = product->GetLPChildren().at(0);
    CUserFileWriter second(pack, pack->GetMsiHandle());
    CString key;
    EXPECT_TRUE(second.AddUserFile(Source(L"b.txt"), L"INSTALLDIR", key));
    EXPECT_EQ(::Select(pack->GetMsiHandle(), L"SELECT `Feature` FROM `Feature` WHERE `Level`=1"),
              (Rows{{L"Main"}}));
    EXPECT_EQ(::Select(pack->GetMsiHandle(), L"SELECT `Feature_` FROM `FeatureComponents`"),
              (Rows{{L"_UserDeploymentFile"}}));
}

TEST_F(UserFileTest, AProductWithoutAFeatureManagerGetsTheFeatureToo)
{
    CFeatureManager* manager = std::exchange(product->m_pFeatureManager, nullptr);
    AddFile(L"a.txt");
    product->m_pFeatureManager = manager;
    EXPECT_EQ(Select(L"SELECT `Level` FROM `Feature` WHERE `Feature`='_UserDeploymentFile'"), (Rows{{L"1"}}));
}

TEST_F(UserFileTest, WithoutAFeatureNothingIsAddedAndTheNextTryTriesAgain)
{
    Drop(L"Feature");
    CString key = L"kept";
    EXPECT_FALSE(writer.AddUserFile(Source(L"a.txt"), L"INSTALLDIR", key));
    EXPECT_FALSE(writer.AddUserFolder(L"folder", L"INSTALLDIR", key));
    EXPECT_FALSE(g_bUserFeatureExists);
    EXPECT_EQ(key, CString(L"kept"));
    EXPECT_EQ(FilledTables(), CString());
}

// ---- keys --------------------------------------------------------------------------------------------------------

TEST_F(UserFileTest, AKeyHas41CharactersAndNoHyphenAndTheComponentItsGuidInBraces)
{
    const CString key = AddFile(L"a.txt");
    EXPECT_EQ(key.GetLength(), 41) << Utf8(key);
    EXPECT_EQ(key.Left(5), CString(L"TARN_"));
    EXPECT_EQ(key.Find(L'-'), -1) << Utf8(key);
    EXPECT_EQ(key, CString(key).MakeUpper());
    EXPECT_EQ(Select(L"SELECT `ComponentId` FROM `Component`"), (Rows{{L"{" + WithHyphens(key) + L"}"}}));
}

TEST_F(UserFileTest, TheKeyOfAParentMayLieInTheTextThatTakesTheNewOne)
{
    CString key = AddFolder(L"folder");
    const CString parent = key;
    EXPECT_TRUE(writer.AddUserFile(Source(L"a.txt"), key, key));
    EXPECT_EQ(Select(L"SELECT `Directory_` FROM `CreateFolder` WHERE `Component_`='" + key + L"'"),
              (Rows{{parent}}));
}

// ---- files -------------------------------------------------------------------------------------------------------

TEST_F(UserFileTest, AFileIsARowInEachOfFiveTables)
{
    product->m_fileSequence = 7;
    product->m_x64Marker = 0;
    const CString source = Source(L"It's a file.txt", "12345");
    CString key;
    ASSERT_TRUE(writer.AddUserFile(source, L"INSTALLDIR", key));
    EXPECT_EQ(Select(L"SELECT * FROM `File`"), (Rows{{key, key, L"It's a file.txt|It's a file.txt", L"5",
                                                      NULL_VALUE, NULL_VALUE, L"0", L"8"}}));
    EXPECT_EQ(Select(L"SELECT * FROM `Component`"),
              (Rows{{key, L"{" + WithHyphens(key) + L"}", L"INSTALLDIR", L"0", NULL_VALUE, NULL_VALUE}}));
    EXPECT_EQ(Select(L"SELECT * FROM `FeatureComponents`"), (Rows{{L"_UserDeploymentFile", key}}));
    EXPECT_EQ(Select(L"SELECT * FROM `CreateFolder`"), (Rows{{L"INSTALLDIR", key}}));
    EXPECT_EQ(Select(L"SELECT * FROM `TarnCustomFile`"), (Rows{{key, source, L"0"}}));
}

TEST_F(UserFileTest, ComponentsAre64BitExactlyWhenTheMarkerIsAboveZero)
{
    for (const int marker : {-1, 0, 1, 2}) {
        product->m_x64Marker = marker;
        const CString key = AddFile(L"a.txt");
        EXPECT_EQ(Select(L"SELECT `Attributes` FROM `Component` WHERE `Component`='" + key + L"'"),
                  (Rows{{marker > 0 ? L"256" : L"0"}}))
            << marker;
    }
}

TEST_F(UserFileTest, AFileInTheCurrentFolderGetsItsShortName)
{
    wchar_t before[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, before);
    const CString source = Source(L"A long file name.text");
    SetCurrentDirectoryW(static_cast<const CString&>(sources));
    wchar_t shortName[MAX_PATH] = L"";
    const DWORD length = GetShortPathNameW(L"A long file name.text", shortName, MAX_PATH);
    CString key;
    EXPECT_TRUE(writer.AddUserFile(source, L"INSTALLDIR", key));
    SetCurrentDirectoryW(before);
    ASSERT_LT(length, 21u);
    EXPECT_EQ(Select(L"SELECT `FileName` FROM `File`"),
              (Rows{{CString(shortName) + L"|A long file name.text"}}));
}

TEST_F(UserFileTest, ASourceThatCanNotBeOpenedHasTheSize0AndIsStillWritten)
{
    CString key;
    EXPECT_TRUE(writer.AddUserFile(L"Q:\\gone\\a.txt", L"INSTALLDIR", key));
    EXPECT_EQ(Select(L"SELECT `FileName`,`FileSize` FROM `File`"), (Rows{{L"a.txt|a.txt", L"0"}}));
    EXPECT_EQ(Select(L"SELECT `SourceFileName` FROM `TarnCustomFile`"), (Rows{{L"Q:\\gone\\a.txt"}}));
}

TEST_F(UserFileTest, ASourceThatIsOpenForReadingElsewhereStillReportsItsSize)
{
    const CString source = Source(L"a.txt", "123");
    const CFileOwner reader(
        CreateFileW(source, GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(reader);
    CString key;
    EXPECT_TRUE(writer.AddUserFile(source, L"INSTALLDIR", key));
    EXPECT_EQ(Select(L"SELECT `FileSize` FROM `File`"), (Rows{{L"3"}}));
}

namespace {

void MakeSparseFile(const CString& path, long long size)
{
    const CFileOwner file(CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
    ASSERT_TRUE(file) << GetLastError();
    DWORD returned = 0;
    // Where sparse files need no asking for, the call may fail.
    DeviceIoControl(file.get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &returned, nullptr);
    LARGE_INTEGER end = {};
    end.QuadPart = size;
    ASSERT_TRUE(SetFilePointerEx(file.get(), end, nullptr, FILE_BEGIN) && SetEndOfFile(file.get()))
        << GetLastError();
}

constexpr long long GIGABYTE = 1LL << 30;

class FileSizeTest : public UserFileTest
{
protected:
    bool AddOfSize(long long size)
    {
        const CString source = static_cast<const CString&>(sources) + L"large.bin";
        MakeSparseFile(source, size);
        CString key;
        return writer.AddUserFile(source, L"INSTALLDIR", key);
    }
};

} // namespace

TEST_F(FileSizeTest, AFileAbove4GigabytesStoresTheLow32Bits)
{
    EXPECT_TRUE(AddOfSize(4 * GIGABYTE + 5));
    EXPECT_EQ(Select(L"SELECT `FileSize` FROM `File`"), (Rows{{L"5"}}));
}

// The column holds signed numbers.
TEST_F(FileSizeTest, AFileOf3GigabytesStoresItsBitsAsANegativeNumber)
{
    EXPECT_TRUE(AddOfSize(3 * GIGABYTE));
    EXPECT_EQ(Select(L"SELECT `FileSize` FROM `File`"), (Rows{{NumberText(-GIGABYTE)}}));
}

// Read as a signed number these sizes are the service's null, and the column must have a value.
TEST_F(FileSizeTest, AFileOfExactly2Or6GigabytesIsRefusedAndLeavesNoRowOfItsOwn)
{
    EXPECT_FALSE(AddOfSize(2 * GIGABYTE));
    EXPECT_FALSE(AddOfSize(6 * GIGABYTE));
    EXPECT_EQ(FilledTables(), CString());
}

TEST_F(FileSizeTest, AFileThatIsRefusedForItsSizeLeavesTheUserFeatureAndItsNumberTaken)
{
    product->m_fileSequence = 7;
    EXPECT_FALSE(AddOfSize(2 * GIGABYTE));
    EXPECT_EQ(Select(L"SELECT `Level` FROM `Feature` WHERE `Feature`='_UserDeploymentFile'"), (Rows{{L"1"}}));
    EXPECT_EQ(product->m_fileSequence, 8);
}

TEST_F(FileSizeTest, FilesOfAByteLessAndOneMoreThan2GigabytesAreWritten)
{
    EXPECT_TRUE(AddOfSize(2 * GIGABYTE - 1));
    EXPECT_EQ(Select(L"SELECT `FileSize` FROM `File`"), (Rows{{L"2147483647"}}));
    Run(L"DELETE FROM `File`");
    EXPECT_TRUE(AddOfSize(2 * GIGABYTE + 1));
    EXPECT_EQ(Select(L"SELECT `FileSize` FROM `File`"), (Rows{{L"-2147483647"}}));
}

TEST_F(UserFileTest, AfterARemovalTheThirdFileGetsTheNumberOfTheSecond)
{
    const CString first = AddFile(L"a.txt");
    const CString second = AddFile(L"b.txt");
    EXPECT_TRUE(writer.RemoveUserFile(L"INSTALLDIR", first));
    const CString third = AddFile(L"c.txt");
    EXPECT_EQ(SequenceOf(third), SequenceOf(second));
}

TEST_F(UserFileTest, AFileThatCanNotBeWrittenStillCounts)
{
    product->m_fileSequence = 7;
    Drop(L"File");
    CString key;
    EXPECT_FALSE(writer.AddUserFile(Source(L"a.txt"), L"INSTALLDIR", key));
    EXPECT_EQ(product->m_fileSequence, 8);
}

TEST_F(UserFileTest, ARemovedFileIsGoneFromAllTablesAndOthersStay)
{
    const CString first = AddFile(L"a.txt");
    const CString second = AddFile(L"a.txt");
    EXPECT_TRUE(writer.RemoveUserFile(L"INSTALLDIR", first));
    EXPECT_EQ(Select(L"SELECT `File` FROM `File`"), (Rows{{second}}));
    EXPECT_EQ(Select(L"SELECT `Component` FROM `Component`"), (Rows{{second}}));
    EXPECT_EQ(Select(L"SELECT `Component_` FROM `FeatureComponents`"), (Rows{{second}}));
    EXPECT_EQ(Select(L"SELECT `Component_` FROM `CreateFolder`"), (Rows{{second}}));
    EXPECT_EQ(Select(L"SELECT `Component_` FROM `TarnCustomFile`"), (Rows{{second}}));
}

// ---- folders -----------------------------------------------------------------------------------------------------

TEST_F(UserFileTest, AFolderIsARowInEachOfFiveTablesAndCreatesItself)
{
    product->m_x64Marker = 1;
    const CString key = AddFolder(L"Tom's folder");
    EXPECT_EQ(Select(L"SELECT * FROM `Directory` WHERE `Directory`='" + key + L"'"),
              (Rows{{key, L"INSTALLDIR", L"Tom's folder"}}));
    EXPECT_EQ(Select(L"SELECT * FROM `Component`"),
              (Rows{{key, L"{" + WithHyphens(key) + L"}", key, L"256", NULL_VALUE, NULL_VALUE}}));
    EXPECT_EQ(Select(L"SELECT * FROM `FeatureComponents`"), (Rows{{L"_UserDeploymentFile", key}}));
    EXPECT_EQ(Select(L"SELECT * FROM `CreateFolder`"), (Rows{{key, key}}));
    EXPECT_EQ(Select(L"SELECT * FROM `TarnCustomFile`"), (Rows{{key, L"Tom's folder", L"2"}}));
}

TEST_F(UserFileTest, AFolderDoesNotCountAsAFile)
{
    const int before = product->m_fileSequence;
    AddFolder(L"folder");
    EXPECT_EQ(product->m_fileSequence, before);
}

TEST_F(UserFileTest, ANewNameOfAFolderChangesDefaultDirAndSourceFileNameAndKeepsTheKey)
{
    const CString key = AddFolder(L"before");
    EXPECT_TRUE(writer.UpdateUserItem(L"INSTALLDIR", key, L"after", false));
    EXPECT_EQ(Select(L"SELECT * FROM `Directory` WHERE `Directory`='" + key + L"'"),
              (Rows{{key, L"INSTALLDIR", L"after"}}));
    EXPECT_EQ(Select(L"SELECT * FROM `TarnCustomFile`"), (Rows{{key, L"after", L"2"}}));
}

TEST_F(UserFileTest, ARemovedFolderIsGoneFromAllTables)
{
    const CString key = AddFolder(L"folder");
    EXPECT_TRUE(writer.RemoveUserFolder(key));
    EXPECT_EQ(FilledTables(), CString());
}

TEST_F(UserFileTest, AFolderMayLieInAFolder)
{
    const CString outer = AddFolder(L"outer");
    const CString inner = AddFolder(L"inner", outer);
    EXPECT_EQ(Select(L"SELECT `Directory_Parent` FROM `Directory` WHERE `Directory`='" + inner + L"'"),
              (Rows{{outer}}));
}

// ---- drives ------------------------------------------------------------------------------------------------------

TEST_F(UserFileTest, ALowerCaseDriveIsWrittenInUpperCaseEverywhere)
{
    const CString key = AddDrive(L"d:");
    EXPECT_EQ(Select(L"SELECT * FROM `Directory` WHERE `Directory`='" + key + L"'"),
              (Rows{{key, L"TARGETDIR", L"DRIVE_D"}}));
    EXPECT_EQ(Select(L"SELECT * FROM `CustomAction`"), (Rows{{key, L"51", key, L"D:"}}));
    EXPECT_EQ(Select(L"SELECT * FROM `InstallExecuteSequence`"), (Rows{{key, NULL_VALUE, L"1"}}));
    EXPECT_EQ(ReadProperty(Database(), key + L"_SUBST"), CString(L"D:"));
}

TEST_F(UserFileTest, ADriveNeedsNeitherFeatureNorComponent)
{
    AddDrive(L"D:");
    EXPECT_FALSE(g_bUserFeatureExists);
    EXPECT_EQ(FilledTables(), CString(L"Directory CustomAction InstallExecuteSequence "));
}

TEST_F(UserFileTest, ARemovedDriveIsGoneFromAllTablesAndBothItsPropertiesToo)
{
    const CString key = AddDrive(L"D:");
    ASSERT_TRUE(product->SetMsiProperty(key, L"D:\\", false));
    EXPECT_TRUE(writer.RemoveUserDrive(key));
    EXPECT_EQ(FilledTables(), CString());
    EXPECT_EQ(Select(L"SELECT * FROM `Property` WHERE `Property`='" + key + L"'"), Rows());
    EXPECT_EQ(Select(L"SELECT * FROM `Property` WHERE `Property`='" + key + L"_SUBST'"), Rows());
}

TEST_F(UserFileTest, AnotherLetterOfADriveChangesDirectoryActionAndProperty)
{
    const CString key = AddDrive(L"D:");
    EXPECT_TRUE(writer.UpdateUserItem(L"TARGETDIR", key, L"E:", true));
    EXPECT_EQ(Select(L"SELECT * FROM `Directory` WHERE `Directory`='" + key + L"'"),
              (Rows{{key, L"TARGETDIR", L"DRIVE_E"}}));
    EXPECT_EQ(Select(L"SELECT * FROM `CustomAction`"), (Rows{{key, L"51", key, L"E:"}}));
    EXPECT_EQ(ReadProperty(Database(), key + L"_SUBST"), CString(L"E:"));
}

// Only the folder's name is made upper case here.
TEST_F(UserFileTest, ALowerCaseLetterOfAnUpdateStaysInActionAndProperty)
{
    const CString key = AddDrive(L"D:");
    EXPECT_TRUE(writer.UpdateUserItem(L"TARGETDIR", key, L"e:", true));
    EXPECT_EQ(Select(L"SELECT `DefaultDir` FROM `Directory` WHERE `Directory`='" + key + L"'"),
              (Rows{{L"DRIVE_E"}}));
    EXPECT_EQ(Select(L"SELECT `Target` FROM `CustomAction`"), (Rows{{L"e:"}}));
    EXPECT_EQ(ReadProperty(Database(), key + L"_SUBST"), CString(L"e:"));
}
