// The answers that a deployment holds, and which of them a build that replaces it keeps.
#include "builder/content_hash.h"
#include "builder/deployment_place.h"
#include "builder/manifest_text.h"
#include "tests/host/folder_tree.h"
#include "tests/host/through_host.h"

#include <algorithm>

namespace {

constexpr const char* BYTE_ORDER_MARK = "\xEF\xBB\xBF";

class BuildAnswersTest : public ThroughHostTest
{
protected:
    void SetUp() override
    {
        MakeMedia(scratch + L"media\\");
        ThroughHostTest::SetUp();
    }

    void BuildNew(const CString& name, const CString& answers)
    {
        Begin(Open(scratch + L"media"), Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), name);
        host->SetAnswersText(answers);
        Build();
    }

    void BuildModified(const CString& name, const CString& answers)
    {
        Begin(Open(location + name), Setup::SETUPMODE_MODIFY_DEPLOYMENT, name, name);
        host->SetAnswersText(answers);
        Build();
    }

    std::string AnswersOf(const wchar_t* name) const { return ReadBytes(AnswersFile(name)); }
    CString AnswersFile(const wchar_t* name) const { return location + name + L"\\" + ANSWERS_FILE; }

    // The manifest's entry of the answers; without a path when there is none.
    ManifestEntry ListedAnswers(const wchar_t* name) const
    {
        const std::string bytes = ReadBytes(location + name + L"\\Manifest.txt");
        std::vector<ManifestEntry> entries;
        EXPECT_TRUE(ReadManifest(bytes.data(), bytes.size(), entries)) << bytes;
        const auto found = std::find_if(entries.begin(), entries.end(), [](const ManifestEntry& entry) {
            return entry.strPath == ANSWERS_FILE;
        });
        return found == entries.end() ? ManifestEntry() : *found;
    }

    // Of the files of the old deployment that a build kept, by the name of the deployment.
    std::string KeptAnswersOf(const wchar_t* name) const
    {
        std::string kept;
        VisitFolder(location.Left(location.GetLength() - 1), [&](const WIN32_FIND_DATAW& found) {
            if (CString(found.cFileName).Find(L"(kept files") >= 0) {
                kept = ReadBytes(location + found.cFileName + L"\\" + name + L"\\" + ANSWERS_FILE);
            }
        });
        return kept;
    }
};

} // namespace

TEST_F(BuildAnswersTest, TheAnswersStandInTheDeploymentsFolderAndInItsManifest)
{
    const CString answers = L"# Zolt\r\n[begin]\r\nname = \"B\u00FCro\"\r\n\r\n[notices]\r\n";
    BuildNew(L"North", answers);
    const std::string bytes = BYTE_ORDER_MARK + Utf8(answers);
    EXPECT_EQ(AnswersOf(L"North"), bytes);
    const ManifestEntry listed = ListedAnswers(L"North");
    EXPECT_EQ(listed.size, bytes.size());
    CContentHash hash;
    hash.Add(bytes.data(), bytes.size());
    EXPECT_EQ(listed.strSha256, hash.Finish());
    const CString notes = ReadText(location + L"North\\ReadMe.txt");
    EXPECT_HOLDS(notes, L"\r\n  Answers.txt                the answers this was built from: Setup.exe "
                        L"--answers builds it again\r\n");
}

TEST_F(BuildAnswersTest, WithoutAnswersThereIsNoFileOfThemNorAWordOfIt)
{
    BuildNew(L"North", CString());
    EXPECT_FALSE(IsFile(AnswersFile(L"North")));
    EXPECT_EQ(ListedAnswers(L"North").strPath, CString());
    EXPECT_LT(ReadText(location + L"North\\ReadMe.txt").Find(L"Answers.txt"), 0);
}

TEST_F(BuildAnswersTest, AModifiedDeploymentHasItsNewAnswersAndNothingIsKeptOfTheOldOnes)
{
    BuildNew(L"North", L"[begin]\r\nname = \"North\"\r\n");
    BuildModified(L"North", L"[begin]\r\nmode = modify\r\n");
    EXPECT_EQ(AnswersOf(L"North"), BYTE_ORDER_MARK + std::string("[begin]\r\nmode = modify\r\n"));
    EXPECT_EQ(KeptAnswersOf(L"North"), "");
    BuildModified(L"North", CString());
    EXPECT_FALSE(IsFile(AnswersFile(L"North"))) << "they are not those of this build";
    EXPECT_EQ(KeptAnswersOf(L"North"), "");
}

TEST_F(BuildAnswersTest, AnswersThatSomebodyEditedInTheDeploymentAreKeptBesideTheNewOne)
{
    BuildNew(L"North", L"[begin]\r\n");
    WriteFileBytes(AnswersFile(L"North"), "edited by hand");
    BuildModified(L"North", L"[complete]\r\n");
    EXPECT_EQ(AnswersOf(L"North"), BYTE_ORDER_MARK + std::string("[complete]\r\n"));
    EXPECT_EQ(KeptAnswersOf(L"North"), "edited by hand");
}

TEST_F(BuildAnswersTest, ADeploymentBuiltOnAnotherLeavesThatOnesAnswersAlone)
{
    BuildNew(L"North", L"[begin]\r\n");
    Begin(Open(location + L"North"), Setup::SETUPMODE_CREATE_FROM_DEPLOYMENT, L"North", L"South");
    host->SetAnswersText(L"[south]\r\n");
    Build();
    EXPECT_EQ(AnswersOf(L"North"), BYTE_ORDER_MARK + std::string("[begin]\r\n"));
    EXPECT_EQ(AnswersOf(L"South"), BYTE_ORDER_MARK + std::string("[south]\r\n"));
}

TEST_F(BuildAnswersTest, TextOfAnyScriptAndWithSignsOfCommandsIsWrittenAsItIsAndReachesNoOtherFile)
{
    const CString hostile =
        L"\"\" ' \x201C %COMSPEC% ^& | <x> \\ \u00E4\u03A9\u0416\u05D0\u0639\u0E01\u4E2D"
        L"\U0001F600 \u202E\u2028 pwned\rlone\nlines\x1A\x0C\x7F\tend without a line's end";
    BuildNew(L"North", CString());
    const Tree without = ReadTree(location + L"North");
    BuildModified(L"North", hostile);
    EXPECT_EQ(AnswersOf(L"North"), BYTE_ORDER_MARK + Utf8(hostile));
    for (const auto& [name, bytes] : ReadTree(location + L"North")) {
        if (!(name == ANSWERS_FILE)) {
            EXPECT_EQ(without.count(name), 1u) << Utf8(name);
            EXPECT_EQ(bytes.find("pwned"), std::string::npos) << Utf8(name) << "\n" << bytes;
        }
    }
    EXPECT_EQ(ReadBytes(location + L"North\\Install.cmd"), without.at(L"Install.cmd"));
    EXPECT_EQ(ListedAnswers(L"North").size, AnswersOf(L"North").size());
}

TEST_F(BuildAnswersTest, HalfACharacterBecomesAReplacementSignRatherThanBrokenUtf8)
{
    BuildNew(L"North", CString(L"a") + CString(wchar_t{0xD83D}) + L"b\r\n");
    EXPECT_EQ(AnswersOf(L"North"), BYTE_ORDER_MARK + std::string("a\xEF\xBF\xBD"
                                                                 "b\r\n"));
}

TEST_F(BuildAnswersTest, TheTextOutlivesABuildThatWasCancelled)
{
    Begin(Open(scratch + L"media"), Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), L"North");
    host->SetAnswersText(L"[begin]\r\n");
    CSilentProgress progress;
    progress.cancel = true;
    ASSERT_EQ(host->Build(progress).error.code, 1602u);
    EXPECT_FALSE(IsFile(AnswersFile(L"North")));
    Build();
    EXPECT_EQ(AnswersOf(L"North"), BYTE_ORDER_MARK + std::string("[begin]\r\n"));
}
