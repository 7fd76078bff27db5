// ValidateFolder against real folders, shares and drives of the prefix: every result, by the platform's own means.
#include "automation/control.h"
#include "automation/script.h"
#include "automation/window_finder.h"
#include "frame/folder_check.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_network.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

// The system reads the list of network providers when the program starts, so this must come first of all.
const bool networkIsReady = PrepareTestNetwork();

PathCheckResult ValidateLocal(const CString& text)
{
    CString path = text;
    return ValidateFolder(path, false);
}

PathCheckResult ValidateNetwork(const CString& text)
{
    CString path = text;
    return ValidateFolder(path, true);
}

CString CanonicalLocal(const CString& text)
{
    CString path = text;
    (void)ValidateFolder(path, false);
    return path;
}

// `C:\aaa...\` of that many characters, the backslash at the end included.
CString PathOfLength(int length)
{
    CString path = L"C:\\";
    while (path.GetLength() < length) {
        const int rest = length - path.GetLength();
        const int part = rest > 101 ? 50 : rest - 1;
        path += CString(L'a', part) + L"\\";
    }
    return path;
}

class Folders : public testing::Test
{
protected:
    Folders() { EXPECT_TRUE(networkIsReady) << "the network provider could not be registered"; }

    CTestFolder folder;
    // The machine below has folders in which nobody, root included, can make anything: in dev\pts access is denied, in
    // proc there is no such thing.
    CTestDrive machine{L'P', DRIVE_FIXED, "/"};
};

using LocalFolders = Folders;
using NetworkFolders = Folders;

TEST_F(LocalFolders, AnEmptyFolderIsUsable)
{
    EXPECT_EQ(ValidateLocal(folder.GetPath()), PCR_OK);
}

TEST_F(LocalFolders, AFolderThatCanBeCreatedIsUsable)
{
    EXPECT_EQ(ValidateLocal(folder / L"new"), PCR_OK);
}

TEST_F(LocalFolders, AProbeOfANewFolderLeavesNothingBehind)
{
    folder.AddFile(L"keeps.txt", "the folder");
    EXPECT_EQ(ValidateLocal(folder / L"new\\deeper\\deepest"), PCR_OK);
    EXPECT_FALSE(FolderExists(folder / L"new"));
    EXPECT_TRUE(FolderExists(folder.GetPath()));
}

TEST_F(LocalFolders, AProbeOfANewFolderRemovesEmptyParentsThatWereThereBefore)
{
    folder.AddFile(L"keeps.txt", "the folder");
    folder.AddFolder(L"empty before");
    EXPECT_EQ(ValidateLocal(folder / L"empty before\\new"), PCR_OK);
    EXPECT_FALSE(FolderExists(folder / L"empty before"));
}

TEST_F(LocalFolders, AProbeOfAnEmptyFolderLeavesTheFolder)
{
    const CString empty = folder.AddFolder(L"empty");
    EXPECT_EQ(ValidateLocal(empty), PCR_OK);
    EXPECT_TRUE(FolderExists(empty));
}

TEST_F(LocalFolders, NothingLeftOfTheTextIsEmpty)
{
    for (const wchar_t* text : {L"", L"   ", L"\t \t", L"\"\"", L"\"  \""})
        EXPECT_EQ(ValidateLocal(text), PCR_EMPTY) << '[' << Utf8(text) << ']';
}

TEST_F(LocalFolders, APathOf259CharactersIsTooLong)
{
    ASSERT_EQ(PathOfLength(259).GetLength(), 259);
    EXPECT_EQ(ValidateLocal(PathOfLength(259)), PCR_TOO_LONG);
}

TEST_F(LocalFolders, APathOf258CharactersIsNotTooLong)
{
    ASSERT_EQ(PathOfLength(258).GetLength(), 258);
    EXPECT_EQ(ValidateLocal(PathOfLength(258)), PCR_FAILED) << "the system makes no folder of that length";
}

TEST_F(LocalFolders, AFolderThatIsTooLongToMakeLeavesNothingBehind)
{
    for (const int length : {247, 248, 249, 250, 257, 258}) {
        (void)ValidateLocal(PathOfLength(length));
        EXPECT_FALSE(FolderExists(PathOfLength(60))) << "after a path of " << length << " characters";
    }
}

// The system's name for the probe's file doesn't fit its buffer there.
TEST_F(LocalFolders, AFolderTooLongForATemporaryFileFails)
{
    const CString path = folder.GetPath() + CString(L'b', 257 - folder.GetPath().GetLength()) + L"\\";
    ASSERT_TRUE(CreateDirectoryW(L"\\\\?\\" + path, nullptr)) << "error " << GetLastError();
    EXPECT_EQ(ValidateLocal(path), PCR_FAILED);
    EXPECT_TRUE(RemoveDirectoryW(L"\\\\?\\" + path)) << "error " << GetLastError();
}

TEST_F(LocalFolders, APathLongerThanTheSystemsLimitIsRefused)
{
    const PathCheckResult result = ValidateLocal(PathOfLength(400));
    EXPECT_TRUE(result != PCR_OK && result != PCR_NOT_EMPTY && result != PCR_IS_ROOT) << result;
}

TEST_F(LocalFolders, ARootWithoutADriveLetterIsNoDrive)
{
    EXPECT_EQ(ValidateLocal(L"1:\\folder"), PCR_NO_DRIVE);
}

TEST_F(LocalFolders, ADriveThatIsNotThereIsOfABadKind)
{
    ASSERT_EQ(GetDriveTypeW(L"Q:\\"), static_cast<UINT>(DRIVE_NO_ROOT_DIR));
    EXPECT_EQ(ValidateLocal(L"Q:\\folder"), PCR_BAD_DRIVE_KIND);
}

TEST_F(LocalFolders, AMappedNetworkDriveIsOfABadKind)
{
    const CTestDrive drive(L'M', DRIVE_REMOTE, "/tmp");
    EXPECT_EQ(ValidateLocal(drive.GetPath() + L"folder"), PCR_BAD_DRIVE_KIND);
}

TEST_F(LocalFolders, ADiscDriveIsOfABadKind)
{
    const CTestDrive drive(L'D', DRIVE_CDROM, "/tmp");
    EXPECT_EQ(ValidateLocal(drive.GetPath() + L"folder"), PCR_BAD_DRIVE_KIND);
}

TEST_F(LocalFolders, ASubstitutedDriveIsOfABadKind)
{
    const CSubstitutedDrive drive(L'S', L"C:\\windows");
    ASSERT_EQ(GetDriveTypeW(drive.GetPath()), static_cast<UINT>(DRIVE_FIXED));
    EXPECT_EQ(ValidateLocal(drive.GetPath() + L"folder"), PCR_BAD_DRIVE_KIND);
}

TEST_F(LocalFolders, ARemovableDriveIsUsable)
{
    const CTestDrive drive(L'R', DRIVE_REMOVABLE, "/tmp");
    EXPECT_EQ(ValidateLocal(drive.GetPath() + L"rollout removable"), PCR_OK);
}

TEST_F(LocalFolders, ARelativePathFails)
{
    for (const wchar_t* text : {L"folder", L"folder\\below", L"..\\folder"})
        EXPECT_EQ(ValidateLocal(text), PCR_FAILED) << Utf8(text);
}

TEST_F(LocalFolders, AFileFails)
{
    EXPECT_EQ(ValidateLocal(folder.AddFile(L"file.txt", "text")), PCR_FAILED);
}

TEST_F(LocalFolders, ANameThatNoFolderCanHaveFails)
{
    EXPECT_EQ(ValidateLocal(folder / L"a?b"), PCR_FAILED);
}

TEST_F(LocalFolders, AFolderThatCantBeCreatedFails)
{
    EXPECT_EQ(ValidateLocal(machine.GetPath() + L"proc\\new"), PCR_FAILED);
}

TEST_F(LocalFolders, AFolderWithAFileIsNotEmpty)
{
    folder.AddFile(L"file.txt", "text");
    EXPECT_EQ(ValidateLocal(folder.GetPath()), PCR_NOT_EMPTY);
}

TEST_F(LocalFolders, AFolderThatRefusesFilesIsDenied)
{
    EXPECT_EQ(ValidateLocal(machine.GetPath() + L"dev\\pts"), PCR_ACCESS_DENIED);
}

TEST_F(LocalFolders, AParentThatRefusesFoldersIsDenied)
{
    EXPECT_EQ(ValidateLocal(machine.GetPath() + L"dev\\pts\\new"), PCR_ACCESS_DENIED);
}

TEST_F(LocalFolders, AParentThatIsAFileIsDenied)
{
    EXPECT_EQ(ValidateLocal(folder.AddFile(L"file.txt", "text") + L"\\new"), PCR_ACCESS_DENIED);
}

TEST_F(LocalFolders, ADriveIsARoot)
{
    for (const wchar_t* text : {L"C:\\", L"C:", L"c:\\.", L"C:\\folder\\.."})
        EXPECT_EQ(ValidateLocal(text), PCR_IS_ROOT) << Utf8(text);
}

TEST_F(LocalFolders, BlanksAroundAPartAreTakenAway)
{
    EXPECT_EQ(CanonicalLocal(L"C:\\ first \\  second  \\third"), CString(L"C:\\first\\second\\third\\"));
}

TEST_F(LocalFolders, QuotesAndBlanksAroundThePathAreTakenAway)
{
    EXPECT_EQ(CanonicalLocal(L"\"C:\\a b\""), CString(L"C:\\a b\\"));
    EXPECT_EQ(CanonicalLocal(L" \tC:\\a b \t"), CString(L"C:\\a b\\"));
}

TEST_F(LocalFolders, DotsAreResolved)
{
    EXPECT_EQ(CanonicalLocal(L"C:\\a\\.\\b\\..\\c"), CString(L"C:\\a\\c\\"));
}

TEST_F(NetworkFolders, ALocalPathIsNotOfTheNetwork)
{
    EXPECT_EQ(ValidateNetwork(folder.GetPath()), PCR_NOT_UNC);
    EXPECT_EQ(ValidateNetwork(L"folder"), PCR_NOT_UNC);
}

TEST_F(NetworkFolders, NothingLeftOfTheTextIsEmpty)
{
    EXPECT_EQ(ValidateNetwork(L"\"  \""), PCR_EMPTY);
}

TEST_F(NetworkFolders, AnEmptyShareIsUsable)
{
    const CTestShare share(L"ROLLOUT", L"deployments");
    EXPECT_EQ(ValidateNetwork(share.GetPath()), PCR_OK);
    EXPECT_TRUE(FolderExists(share.GetPath()));
}

TEST_F(NetworkFolders, ANewFolderOnAShareIsUsableAndLeavesNothingBehind)
{
    const CTestShare share(L"ROLLOUT", L"deployments");
    WriteFileBytes(share.GetPath() + L"keeps.txt", "the share");
    EXPECT_EQ(ValidateNetwork(share.GetPath() + L"Büro\\new one"), PCR_OK);
    EXPECT_FALSE(FolderExists(share.GetPath() + L"Büro"));
}

TEST_F(NetworkFolders, AShareWithAFileIsNotEmpty)
{
    const CTestShare share(L"ROLLOUT", L"deployments");
    WriteFileBytes(share.GetPath() + L"file.txt", "text");
    EXPECT_EQ(ValidateNetwork(share.GetPath()), PCR_NOT_EMPTY);
}

TEST_F(NetworkFolders, APathComesBackWithABackslashAtItsEnd)
{
    const CTestShare share(L"ROLLOUT", L"deployments");
    CString path = share.GetPath() + L"a\\..\\b";
    EXPECT_EQ(ValidateFolder(path, true), PCR_OK);
    EXPECT_EQ(path, share.GetPath() + L"b\\");
}

TEST_F(NetworkFolders, AShareThatIsNotThereFails)
{
    EXPECT_EQ(ValidateNetwork(L"\\\\NOWHERE\\nothing\\folder"), PCR_NETWORK_FAILED);
}

// They once overran the system's buffers; a local path of that length is refused before.
TEST_F(NetworkFolders, PathsOf258To300CharactersFailAndLeaveNothingBehind)
{
    const CTestShare share(L"ROLLOUT", L"deployments");
    for (const int length : {258, 259, 260, 261, 280, 300}) {
        CString path = share.GetPath() + L"new\\";
        while (path.GetLength() < length) {
            const int rest = length - path.GetLength();
            path += CString(L'a', rest > 101 ? 50 : rest - 1) + L"\\";
        }
        ASSERT_EQ(path.GetLength(), length);
        EXPECT_EQ(ValidateNetwork(path), PCR_NETWORK_FAILED) << length;
        EXPECT_FALSE(FolderExists(share.GetPath() + L"new")) << length;
    }
}

TEST_F(NetworkFolders, AShareThatIsNotThereFailsWithPathsOf259To300CharactersToo)
{
    for (const int length : {259, 260, 300}) {
        const CString server = L"\\\\NOWHERE\\";
        EXPECT_EQ(ValidateNetwork(server + CString(L's', length - server.GetLength())), PCR_NETWORK_FAILED)
            << length;
    }
}

TEST_F(NetworkFolders, AFileOnAShareFails)
{
    const CTestShare share(L"ROLLOUT", L"deployments");
    WriteFileBytes(share.GetPath() + L"file.txt", "text");
    EXPECT_EQ(ValidateNetwork(share.GetPath() + L"file.txt"), PCR_NETWORK_FAILED);
}

TEST_F(NetworkFolders, ANameThatNoFolderCanHaveFails)
{
    const CTestShare share(L"ROLLOUT", L"deployments");
    EXPECT_EQ(ValidateNetwork(share.GetPath() + L"a?b"), PCR_NETWORK_FAILED);
}

// Windows asks for a name and a password here, and who cancels has no share. Wine never asks, so that is the refusal of
// a share that wants a password; should it learn to ask, this test has to cancel the question.
TEST_F(NetworkFolders, AShareThatWantsAPasswordFails)
{
    const CTestShare share(L"LOCKED", L"deployments");
    bool asked = false;
    CScript script;
    script.Add(L"cancel the question", [&] {
        HWND question = FindWindowWithControls({IDOK, IDCANCEL});
        asked = question != nullptr;
        return asked ? CControl(question, IDCANCEL).Click() : StepOutcome::NotYet(L"nothing is asked");
    });
    script.Start();
    EXPECT_EQ(ValidateNetwork(share.GetPath()), PCR_NETWORK_FAILED);
    EXPECT_FALSE(asked);
}

TEST_F(Folders, AWriteProbeReportsWhetherAFileCanBeMade)
{
    EXPECT_EQ(TestWrite(folder.GetPath()), PCR_OK);
    EXPECT_EQ(TestWrite(machine.GetPath() + L"dev\\pts\\"), PCR_ACCESS_DENIED);
    EXPECT_EQ(TestWrite(folder / L"not there\\"), PCR_FAILED);
}

TEST_F(Folders, AWriteProbeLeavesNoFile)
{
    EXPECT_EQ(TestWrite(folder.GetPath()), PCR_OK);
    EXPECT_EQ(ValidateLocal(folder.GetPath()), PCR_OK) << "the folder is not empty any more";
}

TEST_F(Folders, OnlyFixedDrivesAndTheNetworkCountAsLocalOrNetwork)
{
    const CTestDrive removable(L'R', DRIVE_REMOVABLE, "/tmp");
    const CTestDrive mapped(L'M', DRIVE_REMOTE, "/tmp");
    const CSubstitutedDrive substituted(L'S', L"C:\\windows");
    EXPECT_TRUE(IsLocalOrNetworkPath(L"C:\\folder"));
    EXPECT_TRUE(IsLocalOrNetworkPath(L"\\\\SERVER\\share\\folder"));
    EXPECT_TRUE(IsLocalOrNetworkPath(mapped.GetPath() + L"folder"));
    EXPECT_FALSE(IsLocalOrNetworkPath(L"folder"));
    EXPECT_FALSE(IsLocalOrNetworkPath(removable.GetPath() + L"folder"));
    EXPECT_FALSE(IsLocalOrNetworkPath(substituted.GetPath() + L"folder"));
}

} // namespace
