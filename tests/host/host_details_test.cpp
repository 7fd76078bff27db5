// What the host leaves behind, refuses and says: working copies, files that can't be replaced, small messages.
#include "host/system_reason.h"
#include "host/xml_limits.h"
#include "tests/host/through_host.h"

namespace {

class HostDetails : public ThroughHostTest
{
protected:
    CSetupManager& OpenMediaFolder()
    {
        MakeMedia(scratch + L"media\\");
        return Open(scratch + L"media");
    }

    OperationError Refusal(const CString& path)
    {
        OperationError error;
        const HostOwner opened(OpenSetupHost(OptionsFor(path, work), error));
        EXPECT_FALSE(opened) << "the media were opened";
        return error;
    }

    // The folders of working copies of the living host.
    std::vector<CString> WorkCopies()
    {
        std::vector<CString> names;
        std::vector<FolderItem> parents;
        EXPECT_EQ(ListFolder(work + L"work\\", parents), 0u);
        for (const FolderItem& parent : parents) {
            std::vector<FolderItem> items;
            EXPECT_TRUE(!parent.isFolder ||
                        ListFolder(work + L"work\\" + parent.strName + L"\\", items) == ERROR_SUCCESS);
            for (const FolderItem& item : items) {
                if (item.isFolder) {
                    names.push_back(item.strName);
                }
            }
        }
        return names;
    }
};

} // namespace

// ---- working copies

TEST_F(HostDetails, EachWayThroughTheFirstPageKeepsOneSetOfWorkingCopies)
{
    CSetupManager& manager = OpenMediaFolder();
    EXPECT_EQ(WorkCopies().size(), 1u);
    for (const auto platform : {Setup::PLATFORM_X86, Setup::PLATFORM_X64, Setup::PLATFORM_X86}) {
        manager.SetDeploymentPlatform(platform);
        ASSERT_TRUE(manager.SetSetupMode(Setup::SETUPMODE_CREATE_DEPLOYMENT));
        EXPECT_EQ(WorkCopies().size(), 1u);
    }
    for (int turn = 0; turn < 3; ++turn) {
        ASSERT_EQ(manager.ResetSetupMode(), 0);
        EXPECT_EQ(WorkCopies().size(), 1u);
    }
}

TEST_F(HostDetails, AResetThatFailsKeepsTheWorkingCopiesInUseAlone)
{
    CSetupManager& manager = OpenMediaFolder();
    const std::vector<CString> before = WorkCopies();
    ASSERT_TRUE(DeleteFileW(scratch + L"media\\x64\\ZoltDe\\ZoltDe.msi"));
    EXPECT_NE(manager.ResetSetupMode(), 0);
    EXPECT_EQ(WorkCopies(), before);
}

// ---- locations and files

TEST_F(HostDetails, ThePackagesOwnFolderIsALocationLikeAnyOther)
{
    MakePackage(scratch + L"downloads\\Tool.msi");
    CSetupManager& manager = Open(scratch + L"downloads\\Tool.msi");
    EXPECT_EQ(manager.CheckForDeploymentLocation(scratch + L"downloads"),
              Setup::DEPLOYMENTLOCATION_HAS_OTHER_FILES);
    ASSERT_EQ(MakeFolders(scratch + L"downloads\\empty"), 0u);
    EXPECT_EQ(manager.CheckForDeploymentLocation(scratch + L"downloads\\empty"),
              Setup::DEPLOYMENTLOCATION_EMPTY);
}

TEST_F(HostDetails, AFullDiskIsReportedWithWhatIsNeededAndFree)
{
    WriteFileBytes(scratch + L"package.msi", std::string((2u << 20) + 1, 'x'));
    const CString reason = ReasonOfCopy(ERROR_DISK_FULL, scratch + L"package.msi", scratch);
    EXPECT_HOLDS(reason, L"it needs 3 MB, and \"" + CString(scratch) + L"\" has ");
    EXPECT_HOLDS(reason, L" MB free");
    EXPECT_EQ(ReasonOfCopy(ERROR_ACCESS_DENIED, scratch + L"package.msi", scratch),
              SystemReason(ERROR_ACCESS_DENIED));
}

// ---- media

// "Check that it is there and that you may read it" was no help.
TEST_F(HostDetails, ADescriptionBeyondTheLimitIsReportedByTheLimit)
{
    MakeMedia(scratch + L"media\\");
    WriteFileBytes(scratch + L"media\\Setup.xml", std::string(60u << 20, ' '));
    const OperationError error = Refusal(scratch + L"media");
    EXPECT_EQ(error.code, unsigned{ERROR_FILE_TOO_LARGE});
    EXPECT_HOLDS(error.message, L"media\\Setup.xml: The file is larger than the " +
                                    NumberText(static_cast<long long>(XML_BYTES_LIMIT)) +
                                    L" bytes that are accepted.");
}

TEST_F(HostDetails, ADeploymentWithoutItsImageIsReportedAsThat)
{
    MakeDeployment(location, L"North", DescribeTestDeployment(L"North"));
    RemoveFolder(location + L"North\\Image");
    const OperationError error = Refusal(location + L"North");
    EXPECT_HOLDS(error.message, L"North\\\" is a deployment whose image is damaged: the file ");
    EXPECT_HOLDS(error.message, L"Image\\Setup.xml\" is missing.");
}

// ---- modes

TEST_F(HostDetails, ANewDeploymentHasNoBaseHoweverItsModeIsEntered)
{
    DeploymentFile file = DescribeTestDeployment(L"North");
    file.strBaseName = L"Earlier";
    file.products[0].patches.clear();
    MakeDeployment(location, L"North", file);
    CSetupManager& manager = Open(location + L"North");
    manager.SetBaseDeploymentName(L"");
    manager.SetDeploymentName(L"East");
    ASSERT_TRUE(manager.SetSetupMode(Setup::SETUPMODE_CREATE_DEPLOYMENT));
    Build();
    DeploymentFile built;
    ASSERT_FALSE(ReadDeploymentFile(location + L"East\\Deployment.xml", built));
    EXPECT_EQ(built.strBaseName, CString());
}

// ---- the check

TEST_F(HostDetails, TheCheckRefusesWhatTheBuildWouldAndBuildsNothing)
{
    CSetupManager& manager = OpenMediaFolder();
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    std::vector<CString> warnings;
    EXPECT_EQ(host->CheckBuild(warnings).code, 0u);
    manager.m_bNetworkLog = true;
    manager.m_strNetworkLogFolder = L"\\\\server\\a>b";
    const OperationError error = host->CheckBuild(warnings);
    EXPECT_EQ(error.code, unsigned{ERROR_BAD_PATHNAME});
    EXPECT_HOLDS(error.message,
                 L"The log folder \"\\\\server\\a>b\" holds a character that paths can't have");
    CSilentProgress progress;
    EXPECT_EQ(host->Build(progress).error.message, error.message);
    std::vector<FolderItem> items;
    ASSERT_EQ(ListFolder(location, items), 0u);
    EXPECT_TRUE(items.empty());
}

TEST_F(HostDetails, TheCheckRefusesAPlaceThatIsTaken)
{
    CSetupManager& manager = OpenMediaFolder();
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    WriteFileBytes(location + L"North", "a file");
    std::vector<CString> warnings;
    EXPECT_EQ(host->CheckBuild(warnings).code, unsigned{ERROR_ALREADY_EXISTS});
}

// The program logs what it shows; the host's own lines would stand there a second time.
TEST_F(HostDetails, TheWarningsOfABuildAreTheCallersToLog)
{
    CSetupManager& manager = OpenMediaFolder();
    Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    manager.m_bNetworkLog = true;
    manager.m_strNetworkLogFolder = L"\\\\NOSUCHSERVER\\logs";
    CSilentProgress progress;
    const BuildResult result = host->Build(progress);
    ASSERT_EQ(result.error.code, 0u) << Utf8(result.error.message);
    ASSERT_EQ(result.warnings.size(), 1u);
    const CString log = ReadText(work + L"Setup.log");
    EXPECT_EQ(log.Find(L"can't be written to from here"), -1) << Utf8(log);
    EXPECT_HOLDS(log, L"Build ended with code 0.");
}
