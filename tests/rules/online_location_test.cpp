#include "include/resource_ids.h"
#include "online/location_rules.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

// A computer of the test's making, which notes what it was asked.
class Probe final : public ILocationProbe
{
public:
    [[nodiscard]] bool FileExists(const CString& path) const override
    {
        asked.push_back(L"file " + path);
        return exists;
    }
    [[nodiscard]] bool IsHostKnown(const CString& host) const override
    {
        asked.push_back(L"host " + host);
        return known;
    }

    bool exists = false;
    bool known = false;
    mutable std::vector<CString> asked;
};

const Probe nothing;

Probe WithFile()
{
    Probe probe;
    probe.exists = true;
    return probe;
}

Probe WithHost()
{
    Probe probe;
    probe.known = true;
    return probe;
}

} // namespace

// ---- parts of a location

TEST(LocationPartsTest, TheExtensionBeginsAtTheLastDot)
{
    EXPECT_EQ(TextFromLastDot(L"C:\\a.b\\c.tar.npl"), CString(L".npl"));
    EXPECT_EQ(TextFromLastDot(L"C:\\a.b\\c"), CString(L".b\\c"));
    EXPECT_EQ(TextFromLastDot(L"npl"), CString(L"npl"));
    EXPECT_EQ(TextFromLastDot(L""), CString());
    EXPECT_EQ(TextFromLastDot(L"."), CString(L"."));
}

TEST(LocationPartsTest, KindsFollowTheExtensionWhateverItsCase)
{
    EXPECT_TRUE(IsListFile(L"a.NpL"));
    EXPECT_FALSE(IsListFile(L"npl"));
    EXPECT_FALSE(IsListFile(L"a.npl "));
    EXPECT_TRUE(IsFeedFile(L"a.XML"));
    EXPECT_TRUE(IsFeedFile(L"a.Rdf"));
    EXPECT_FALSE(IsFeedFile(L"a.npl"));
}

TEST(LocationPartsTest, TheHostEndsAtTheNextBackslash)
{
    EXPECT_EQ(HostOfUncPath(L"\\\\server\\share\\a"), CString(L"server"));
    EXPECT_EQ(HostOfUncPath(L"\\\\server"), CString(L"server"));
    EXPECT_EQ(HostOfUncPath(L"\\\\\\\\server\\"), CString(L"server"));
    EXPECT_EQ(HostOfUncPath(L"\\\\"), CString());
}

// ---- the list

TEST(ListLocationTest, AnotherExtensionIsTheWrongKindAndNothingElseIsAsked)
{
    Probe probe = WithFile();
    for (const wchar_t* path : {L"C:\\a.txt", L"npl", L"", L"C:\\a.npl\\b", L"\\\\server\\a.nplx"}) {
        EXPECT_EQ(CheckListLocation(path, probe), LOCATION_LIST_WRONG_KIND) << Utf8(path);
    }
    EXPECT_TRUE(probe.asked.empty());
}

TEST(ListLocationTest, AFileThatExistsIsUsableWhateverItsPath)
{
    EXPECT_EQ(CheckListLocation(L"C:\\a|b.npl", WithFile()), LOCATION_USABLE);
    EXPECT_EQ(CheckListLocation(L"A.NPL", WithFile()), LOCATION_USABLE);
}

TEST(ListLocationTest, AMissingFileThatIsNotOnAServerIsMissing)
{
    for (const wchar_t* path : {L"C:\\a.npl", L"a.npl", L"\\a.npl", L"C:\\a:b.npl", L"\\\\a|b\\c.npl"}) {
        EXPECT_EQ(CheckListLocation(path, WithHost()), LOCATION_LIST_MISSING) << Utf8(path);
    }
}

TEST(ListLocationTest, AServerOfSixteenCharactersIsNotAskedFor)
{
    Probe probe;
    EXPECT_EQ(CheckListLocation(L"\\\\sixteencharacter\\a.npl", probe), LOCATION_HOST_NAME_TOO_LONG);
    EXPECT_EQ(probe.asked, std::vector<CString>{L"file \\\\sixteencharacter\\a.npl"});
}

TEST(ListLocationTest, AServerOfFifteenCharactersIsAskedFor)
{
    Probe probe;
    EXPECT_EQ(CheckListLocation(L"\\\\fifteencharacte\\a.npl", probe), LOCATION_HOST_UNKNOWN);
    EXPECT_EQ(probe.asked.back(), CString(L"host fifteencharacte"));
    EXPECT_EQ(CheckListLocation(L"\\\\fifteencharacte\\a.npl", WithHost()), LOCATION_USABLE);
}

// ---- the feed

TEST(FeedLocationTest, AFileThatExistsIsUsableOrOfTheWrongKind)
{
    EXPECT_EQ(CheckFeedLocation(L"C:\\a.xml", WithFile()), LOCATION_USABLE);
    EXPECT_EQ(CheckFeedLocation(L"C:\\a.rdf", WithFile()), LOCATION_USABLE);
    EXPECT_EQ(CheckFeedLocation(L"C:\\a.txt", WithFile()), LOCATION_FEED_WRONG_KIND);
    EXPECT_EQ(CheckFeedLocation(L"C:\\a|.xml", WithFile()), LOCATION_USABLE) << "what exists is a path";
}

TEST(FeedLocationTest, ASingleBackslashIsInvalidEvenWhenItExists)
{
    EXPECT_EQ(CheckFeedLocation(L"\\", WithFile()), LOCATION_FEED_INVALID);
}

TEST(FeedLocationTest, WhatFailsTheSyntaxIsInvalid)
{
    for (const wchar_t* path : {L"C:\\a:b.xml", L"\\\\", L"a\\\\b.xml", L"a*.xml"}) {
        EXPECT_EQ(CheckFeedLocation(path, nothing), LOCATION_FEED_INVALID) << Utf8(path);
    }
}

TEST(FeedLocationTest, WhatIsNotOnAServerWasNotFoundWhateverItsKind)
{
    for (const wchar_t* path : {L"", L"C:\\a.xml", L"C:\\a.txt", L"a"}) {
        EXPECT_EQ(CheckFeedLocation(path, nothing), LOCATION_NOT_FOUND) << Utf8(path);
    }
}

TEST(FeedLocationTest, AServersFeedIsJudgedByItsNameAndItsKindAndTheServerIsNeverAskedFor)
{
    Probe probe = WithHost();
    EXPECT_EQ(CheckFeedLocation(L"\\\\sixteencharacter\\a.xml", probe), LOCATION_HOST_NAME_TOO_LONG);
    EXPECT_EQ(CheckFeedLocation(L"\\\\fifteencharacte\\a.xml", probe), LOCATION_NOT_FOUND);
    EXPECT_EQ(CheckFeedLocation(L"\\\\server\\a.txt", probe), LOCATION_FEED_WRONG_KIND);
    for (const CString& question : probe.asked) {
        EXPECT_EQ(question.Find(L"host"), -1) << Utf8(question);
    }
}

// ---- what the page says

TEST(LocationVerdictTest, EachResultOfTheListHasItsBox)
{
    struct Row
    {
        LocationCheckResult result;
        LocationReaction reaction;
        unsigned int text;
    };
    const Row rows[] = {{LOCATION_USABLE, LocationReaction::Accept, 0},
                        {LOCATION_LIST_WRONG_KIND, LocationReaction::Refuse, 613},
                        {LOCATION_HOST_UNKNOWN, LocationReaction::Ask, 615},
                        {LOCATION_HOST_NAME_TOO_LONG, LocationReaction::Accept, 0},
                        {LOCATION_LIST_MISSING, LocationReaction::Refuse, 618},
                        {LOCATION_LIST_EMPTY, LocationReaction::Ask, 15}};
    for (const Row& row : rows) {
        EXPECT_TRUE(JudgeList(row.result).reaction == row.reaction) << row.result;
        EXPECT_EQ(JudgeList(row.result).text, row.text) << row.result;
    }
}

TEST(LocationVerdictTest, EachResultOfTheFeedHasItsBox)
{
    struct Row
    {
        LocationCheckResult result;
        LocationReaction reaction;
        unsigned int text;
    };
    const Row rows[] = {{LOCATION_USABLE, LocationReaction::Accept, 0},
                        {LOCATION_FEED_WRONG_KIND, LocationReaction::Ask, 614},
                        {LOCATION_NOT_FOUND, LocationReaction::Ask, 616},
                        {LOCATION_HOST_NAME_TOO_LONG, LocationReaction::Refuse, 7},
                        {LOCATION_FEED_INVALID, LocationReaction::Refuse, 617}};
    for (const Row& row : rows) {
        EXPECT_TRUE(JudgeFeed(row.result).reaction == row.reaction) << row.result;
        EXPECT_EQ(JudgeFeed(row.result).text, row.text) << row.result;
    }
}
