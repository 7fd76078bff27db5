// Deployments of earlier versions of the program, made from today's by writing what they record in the older form: each is
// verified and compared by what it has, and what can't be checked is said.
#include "base/path_text.h"
#include "builder/deployment_place.h"
#include "builder/deployment_verify.h"
#include "host/deployment_check.h"
#include "host/deployment_comparison.h"
#include "tests/host/damaged_copy.h"
#include "tests/host/through_host.h"

namespace {

constexpr const wchar_t* CHANGES = L"Changes.json";
constexpr const wchar_t* PATCH = L"Image\\x64\\Zolt\\ServicePacks\\sp.msp";

VerifyResult Verify(const CString& folder)
{
    CSilentProgress progress;
    VerifyResult result;
    VerifyDeploymentFolder(folder, progress, result);
    return result;
}

class EarlierVersions : public ThroughHostTest
{
protected:
    void SetUp() override
    {
        MakeMedia(scratch + L"media\\");
        ThroughHostTest::SetUp();
        CSetupManager& manager = Open(scratch + L"media");
        Begin(manager, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"Office");
        manager.m_bNetworkLog = true;
        manager.m_strNetworkLogFolder = L"\\\\server\\logs\\";
        host->SetAnswersText(L"rollout-answers 1\r\n");
        Build();
        host.reset();
        built = ReadTree(location + L"Office");
    }

    CString CopyFolder(const wchar_t* name = L"Office") { return scratch + L"moved\\" + name; }

    // Nobody kept the answers then, and the deployment file named patches by their files alone.
    static void MakeOlder(const DamagedCopy& copy)
    {
        copy.Unlist(ANSWERS_FILE);
        copy.Replace(DEPLOYMENT_FILE, "<Deployment version=\"2\"", "<Deployment version=\"1\"");
        copy.ListAnew(DEPLOYMENT_FILE);
    }

    // A patch as a deployment file of version 1 names it, and as a build of that time copied it.
    static void AddPatch(const DamagedCopy& copy)
    {
        copy.Replace(
            DEPLOYMENT_FILE, "includePatch=\"-1\"/>",
            "includePatch=\"-1\"><Patch file=\"x64\\Zolt\\ServicePacks\\sp.msp\" merged=\"0\"/></Product>");
        copy.ListAnew(DEPLOYMENT_FILE);
        copy.Write(PATCH, "patch");
        std::string line(64, '0');
        copy.Append(L"Manifest.txt", line.append(" 0 ").append(Utf8(PATCH)).append("\r\n"));
        copy.ListAnew(PATCH);
    }

    Tree built;
};

void ExpectGood(const VerifyResult& result, const std::vector<CString>& unrecorded)
{
    EXPECT_EQ(result.verdict, VerifyVerdict::AsBuilt) << Utf8(ComposeVerifyText(result));
    EXPECT_TRUE(result.findings.empty()) << Utf8(ComposeVerifyText(result));
    ASSERT_EQ(result.unrecorded.size(), unrecorded.size()) << Utf8(ComposeVerifyText(result));
    for (std::size_t index = 0; index < unrecorded.size(); ++index) {
        EXPECT_HOLDS(result.unrecorded[index], unrecorded[index]);
    }
}

} // namespace

TEST_F(EarlierVersions, OneOfTodayRecordsAllThatIsChecked)
{
    const DamagedCopy copy(built, CopyFolder());
    ExpectGood(Verify(copy.Folder()), {});
}

TEST_F(EarlierVersions, ADeploymentWithoutAnswersAndWithAFileOfVersion1IsWhatWasBuilt)
{
    const DamagedCopy copy(built, CopyFolder());
    MakeOlder(copy);
    ExpectGood(Verify(copy.Folder()), {});
}

TEST_F(EarlierVersions, ASettingOfTheCommandsIsToldByAFileOfVersion1)
{
    const DamagedCopy copy(built, CopyFolder());
    MakeOlder(copy);
    copy.Replace(L"Install.cmd", "set \"LOG_FOLDER=\\\\server\\logs\\\"",
                 "set \"LOG_FOLDER=\\\\other\\logs\"");
    const VerifyResult result = Verify(copy.Folder());
    EXPECT_EQ(result.verdict, VerifyVerdict::AsBuilt) << Utf8(ComposeVerifyText(result));
    ASSERT_EQ(result.findings.size(), 1u);
    EXPECT_EQ(result.findings[0].kind, FindingKind::Setting);
}

// It was checked by its content and nothing said that its code wasn't.
TEST_F(EarlierVersions, APatchThatIsNamedByItsFileAloneIsKnownByItsContent)
{
    const DamagedCopy copy(built, CopyFolder());
    MakeOlder(copy);
    AddPatch(copy);
    ExpectGood(Verify(copy.Folder()), {L"codes of some patches, as Deployment.xml names their files alone"});
    copy.FlipLastByte(PATCH);
    const VerifyResult result = Verify(copy.Folder());
    ASSERT_EQ(result.findings.size(), 1u);
    EXPECT_EQ(result.findings[0].strPath, CString(PATCH));
}

// The codes of the databases went unchecked without a word.
TEST_F(EarlierVersions, ADeploymentWithoutCodesOfItsDatabasesSaysSo)
{
    const DamagedCopy copy(built, CopyFolder());
    MakeOlder(copy);
    copy.Unlist(CHANGES);
    ExpectGood(Verify(copy.Folder()), {L"codes of the databases, as the deployment has no Changes.json"});
}

TEST_F(EarlierVersions, ARecordOfAnotherFormIsSaidAlthoughItIsWhatWasBuilt)
{
    const DamagedCopy copy(built, CopyFolder());
    copy.Replace(DEPLOYMENT_FILE, "<Deployment version=\"2\"", "<Deployment version=\"3\"");
    copy.ListAnew(DEPLOYMENT_FILE);
    copy.Write(CHANGES, "{\"version\": 2}");
    copy.ListAnew(CHANGES);
    ExpectGood(
        Verify(copy.Folder()),
        {L"product codes, patches and the settings of the commands, as Deployment.xml, which is what was "
         L"built, can't be read: ",
         L"codes of the databases, as Changes.json, which is what was built, has none that can be read"});
}

TEST_F(EarlierVersions, OneIsComparedWithItselfAndWithOneOfToday)
{
    const DamagedCopy older(built, CopyFolder(L"Older"));
    const DamagedCopy other(built, CopyFolder(L"Other"));
    const DamagedCopy today(built, CopyFolder(L"Today"));
    MakeOlder(older);
    MakeOlder(other);
    for (const CString& folder : {other.Folder(), today.Folder()}) {
        TwoDeployments compared;
        OperationError error;
        EXPECT_TRUE(CompareTwoDeployments(older.Folder(), folder, compared, error)) << Utf8(error.message);
        EXPECT_EQ(compared.differences.size(), 0u)
            << Utf8(ComposeComparisonText({L"", L"", compared.differences}));
    }
}
