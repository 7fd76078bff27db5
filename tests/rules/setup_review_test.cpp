// The review as a tree of lines, as a text and as JSON: what stands in it, in which order, and what stands out.
#include "setup/review_compose.h"

#include "base/number_text.h"
#include "builder/shown_text.h"
#include "setup/review_lines.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>

namespace {

const AnswerProduct ZOLT = {L"Zolt 2027", L"{11111111-0000-0000-0000-000000000000}"};
const AnswerProduct VIEWER = {L"Zolt Viewer", L"{22222222-0000-0000-0000-00000000000A}"};

RecordedPage Page(const wchar_t* section, const AnswerProduct& product, std::vector<RecordedValue> values)
{
    RecordedPage page;
    page.pTable = FindAnswerTable(PageAnswerTables(), section);
    page.product = product;
    page.strTitle = CString(L"Page ") + section;
    page.values = std::move(values);
    return page;
}

// A build of one product that changes, adds and patches something.
BuildReview SomeBuild()
{
    DatabaseReview database;
    database.strTarget = L"Image\\x64\\Zolt\\Zolt.msi";
    database.strProductName = ZOLT.strName;
    database.strProductCode = ZOLT.strCode;
    database.strPackageCode = L"{AAAA}";
    database.bWritten = true;
    database.bSignatureLost = true;
    database.tables = {{L"File", 2, 0, 0}, {L"Property", 1, 3, 4}};
    database.appended = {{L"Service Pack 1", L"Image\\x64\\Zolt\\ServicePacks\\sp1.msp"}};
    database.merged = {{L"hotfix.msp", CString()}};
    database.addedFiles = {{L"C:\\Program Files\\Zolt\\a.txt", 5}, {L"C:\\Program Files\\Zolt\\b.txt", 7}};
    database.addedBytes = 12;
    database.cabinets = 1;
    database.addedFolders = {L"C:\\Program Files\\Zolt\\More"};
    database.addedDrives = {L"X:"};
    DatabaseReview untouched;
    untouched.strTarget = L"Image\\x64\\Viewer\\Viewer.msi";
    untouched.strProductName = VIEWER.strName;
    BuildReview build;
    build.strTarget = L"\\\\server\\share\\Office";
    build.filesCopied = 312;
    build.bytesCopied = (45u << 20) - 1;
    build.filesInAll = 325;
    build.bytesNeeded = 60u << 20;
    build.bytesFree = 1000u << 20;
    build.databases = {database, untouched};
    return build;
}

std::string TextOf(const ReviewDocument& review)
{
    CString text = ComposeReviewText(review);
    text.Replace(L"\r\n", L"\n");
    return Utf8(text);
}

// Reads the text back, as its grammar says; only text and marks.
class CTextReader
{
public:
    explicit CTextReader(const CString& text) : m_text(text) {}

    ReviewDocument Read()
    {
        ReviewDocument top;
        std::vector<ReviewDocument*> open = {&top};
        for (int start = 0; start < m_text.GetLength();) {
            const int end = m_text.Find(L"\r\n", start);
            if (end < 0) {
                throw std::runtime_error("the last line has no end");
            }
            const CString line = m_text.Mid(start, end - start);
            start = end + 2;
            ReviewNode node;
            node.bWarning = line.Left(2) == L"! ";
            node.bChanged = line.Left(2) == L"* ";
            std::size_t depth = 0;
            while (line.Mid(2 + 2 * static_cast<int>(depth), 2) == L"  ") {
                ++depth;
            }
            node.strText = line.Mid(2 + 2 * static_cast<int>(depth));
            if (depth >= open.size()) {
                throw std::runtime_error("a line stands below none");
            }
            open.resize(depth + 1);
            open[depth]->push_back(node);
            open.push_back(&open[depth]->back().children);
        }
        return top;
    }

private:
    CString m_text;
};

// Reads the JSON back; throws for anything but the form that the header of the review tells.
class CJsonReader
{
public:
    explicit CJsonReader(const CString& text) : m_text(text) {}

    ReviewDocument Read()
    {
        Expect(L"{");
        Expect(L"\"version\"");
        Expect(L":");
        Expect(L"1");
        Expect(L",");
        Expect(L"\"review\"");
        Expect(L":");
        ReviewDocument review = Lines();
        Expect(L"}");
        SkipBlanks();
        if (m_index != m_text.GetLength()) {
            throw std::runtime_error("something stands behind the end");
        }
        return review;
    }

private:
    void SkipBlanks()
    {
        while (m_index < m_text.GetLength() && CString(L" \r\n").Find(m_text[m_index]) >= 0) {
            ++m_index;
        }
    }

    bool Accept(const wchar_t* token)
    {
        SkipBlanks();
        const CString wanted = token;
        const bool isThere = m_text.Mid(m_index, wanted.GetLength()) == wanted;
        m_index += isThere ? wanted.GetLength() : 0;
        return isThere;
    }

    void Expect(const wchar_t* token)
    {
        if (!Accept(token)) {
            throw std::runtime_error("no " + Utf8(token) + " at " + Utf8(m_text.Mid(m_index, 40)));
        }
    }

    CString Text()
    {
        Expect(L"\"");
        CString text;
        for (; m_text[m_index] != L'"'; ++m_index) {
            wchar_t character = m_text[m_index];
            if (character < 32) {
                throw std::runtime_error("a control character in a text");
            }
            if (character == L'\\' && m_text[++m_index] == L'u') {
                character = static_cast<wchar_t>(ReadHexDigits(m_text, m_index + 1, 4).value());
                m_index += 4;
            } else if (character == L'\\') {
                character = m_text[m_index];
            }
            text += character;
        }
        ++m_index;
        return text;
    }

    ReviewDocument Lines()
    {
        ReviewDocument lines;
        Expect(L"[");
        if (Accept(L"]")) {
            return lines;
        }
        do {
            lines.push_back(Line());
        } while (Accept(L","));
        Expect(L"]");
        return lines;
    }

    ReviewNode Line()
    {
        ReviewNode line;
        Expect(L"{");
        do {
            const CString name = Text();
            Expect(L":");
            if (name == L"text") {
                line.strText = Text();
            } else if (name == L"changed" || name == L"warning") {
                Expect(L"true");
                (name == L"changed" ? line.bChanged : line.bWarning) = true;
            } else if (name == L"page") {
                line.strPage = Text();
            } else if (name == L"product") {
                line.strProductCode = Text();
            } else if (name == L"lines") {
                line.children = Lines();
            } else {
                throw std::runtime_error("unknown: " + Utf8(name));
            }
        } while (Accept(L","));
        Expect(L"}");
        return line;
    }

    CString m_text;
    int m_index = 0;
};

void ExpectSame(const ReviewDocument& left, const ReviewDocument& right, bool withLinks)
{
    ASSERT_EQ(left.size(), right.size());
    for (std::size_t index = 0; index < left.size(); ++index) {
        const ReviewNode& first = left[index];
        const ReviewNode& second = right[index];
        EXPECT_EQ(Utf8(first.strText), Utf8(second.strText));
        EXPECT_EQ(first.bWarning, second.bWarning) << Utf8(first.strText);
        if (withLinks || !first.bWarning) { // of both, the text marks the warning
            EXPECT_EQ(first.bChanged, second.bChanged) << Utf8(first.strText);
        }
        if (withLinks) {
            EXPECT_EQ(first.strPage, second.strPage) << Utf8(first.strText);
            EXPECT_EQ(first.strProductCode, second.strProductCode) << Utf8(first.strText);
        }
        ExpectSame(first.children, second.children, withLinks);
    }
}

void ExpectReadsBack(const ReviewDocument& review)
{
    ExpectSame(review, CTextReader(ComposeReviewText(review)).Read(), false);
    ExpectSame(review, CJsonReader(ComposeReviewJson(review)).Read(), true);
}

std::size_t CountLines(const ReviewDocument& review)
{
    std::size_t count = review.size();
    for (const ReviewNode& node : review) {
        count += CountLines(node.children);
    }
    return count;
}

// ---- the whole

TEST(SetupReview, ItSaysWhatIsChosenChangedAddedPatchedAndCopiedInThisOrder)
{
    const std::vector<RecordedPage> pages = {
        Page(L"begin", {}, {{L"mode", {L"create"}, false, true}, {L"name", {L"Office"}}}),
        Page(L"notices", ZOLT, {{L"feeds", {L"no"}}, {L"site_feed", {L""}, true, true}}),
    };
    BuildReview build = SomeBuild();
    build.warnings = {L"A path is long."};
    EXPECT_EQ(
        TextOf(ComposeReview(pages, build, {})),
        "  This can be built. Nothing has been built yet.\n"
        "  What was chosen\n"
        "    Page begin\n"
        "      Mode: create\n"
        "*     Name: \"Office\"\n"
        "    Zolt 2027\n"
        "      Page notices\n"
        "*       Feeds: no\n"
        "        Site feed: nothing (kept, but not in effect)\n"
        "  What is changed in the databases\n"
        "    Image\\x64\\Zolt\\Zolt.msi (Zolt 2027)\n"
        "*     Rows: 3 added, 3 changed, 4 removed\n"
        "*       File: 2 added\n"
        "*       Property: 1 added, 3 changed, 4 removed\n"
        "*     A new package code in place of {AAAA}\n"
        "*     The maker's digital signature is removed.\n"
        "    Image\\x64\\Viewer\\Viewer.msi (Zolt Viewer)\n"
        "      Not changed: the file is copied byte for byte.\n"
        "  What is added\n"
        "    Image\\x64\\Zolt\\Zolt.msi (Zolt 2027)\n"
        "*     2 files, 12 bytes, packed into 1 cabinet\n"
        "        C:\\Program Files\\Zolt\\a.txt, 5 bytes\n"
        "        C:\\Program Files\\Zolt\\b.txt, 7 bytes\n"
        "*     1 folder\n"
        "        C:\\Program Files\\Zolt\\More\n"
        "*     1 drive\n"
        "        X:\n"
        "  What is patched\n"
        "    Image\\x64\\Zolt\\Zolt.msi (Zolt 2027)\n"
        "*     Service Pack 1 (Image\\x64\\Zolt\\ServicePacks\\sp1.msp): installed along with the product\n"
        "*     hotfix.msp: merged into the package and its files\n"
        "  What is copied, and where to\n"
        "    The deployment: \"\\\\server\\share\\Office\"\n"
        "    Copied as they are: 312 files, 45 MB (47185919 bytes)\n"
        "    In all, with databases, cabinets, commands and notes: 325 files\n"
        "    Space needed: 60 MB; free: 1000 MB\n"
        "    Estimated time: less than a minute; a slow disk or share needs more\n"
        "! Warnings: 1\n"
        "!   A path is long.\n");
}

TEST(SetupReview, WhatCannotBeBuiltSaysWhyFirstAndNothingOfABuild)
{
    BuildReview build;
    build.warnings = {L"A path is long."};
    const ReviewDocument review = ComposeReview({}, build, {183, L"There is a folder already."});
    EXPECT_EQ(TextOf(review), "! This can't be built (code 183): There is a folder already.\n"
                              "  What was chosen\n"
                              "! Warnings: 1\n"
                              "!   A path is long.\n");
}

TEST(SetupReview, AReplacedDeploymentStandsOut)
{
    BuildReview build = SomeBuild();
    build.bReplaces = true;
    EXPECT_NE(
        TextOf(ComposeReview({}, build, {}))
            .find("!   It replaces the deployment that stands there. Files that were added to that one"),
        std::string::npos);
}

TEST(SetupReview, ADatabaseThatIsOnlyMadeAnewHasItsRowsAsTheyAre)
{
    BuildReview build = SomeBuild();
    build.databases[0].tables.clear();
    EXPECT_NE(TextOf(ComposeReview({}, build, {})).find("*     Rows: as they are\n"), std::string::npos);
}

TEST(SetupReview, WithoutAdditionsPatchesAndWarningsItSaysSo)
{
    const std::string text = TextOf(ComposeReview({}, {}, {}));
    for (const char* part :
         {"  What is changed in the databases\n    There are none.\n", "  What is added\n    Nothing.\n",
          "  What is patched\n    Nothing.\n", "\n  Warnings: none\n"}) {
        EXPECT_NE(text.find(part), std::string::npos) << part << "is missing in\n" << text;
    }
}

// ---- answers

TEST(SetupReview, EachLineOfAPageLeadsBackToIt)
{
    const ReviewDocument review = ComposeReview(
        {Page(L"begin", {}, {{L"name", {L"Office"}}}), Page(L"notices", ZOLT, {{L"feeds", {L"no"}}})}, {},
        {});
    const ReviewDocument& chosen = review[1].children;
    ASSERT_EQ(chosen.size(), 2u);
    EXPECT_EQ(chosen[0].strPage, L"BeginDeploymentDialog");
    EXPECT_EQ(chosen[0].strProductCode, CString());
    EXPECT_EQ(chosen[0].children[0].strPage, L"BeginDeploymentDialog");
    EXPECT_EQ(chosen[1].strPage, CString());
    const ReviewNode& notices = chosen[1].children[0];
    EXPECT_EQ(notices.strPage, L"NoticeDeskFeedBoardDialog");
    EXPECT_EQ(notices.strProductCode, ZOLT.strCode);
    EXPECT_EQ(notices.children[0].strProductCode, ZOLT.strCode);
}

TEST(SetupReview, ProductsOfOneNameAreToldApartByTheirCodes)
{
    AnswerProduct twin = VIEWER;
    twin.strName = ZOLT.strName;
    const std::string text =
        TextOf(ComposeReview({Page(L"notices", ZOLT, {}), Page(L"notices", twin, {})}, {}, {}));
    EXPECT_NE(text.find("    Zolt 2027 {11111111-0000-0000-0000-000000000000}\n      Page notices\n"
                        "        Nothing is entered here.\n"
                        "    Zolt 2027 {22222222-0000-0000-0000-00000000000A}\n"),
              std::string::npos)
        << text;
}

TEST(SetupReview, APageThatNobodyWentToAndAQuestionAreSaid)
{
    RecordedPage begin = Page(L"begin", {}, {});
    begin.questions = {{FindQuestion(*begin.pTable, L"replace_unlisted"), true}};
    RecordedPage notices = Page(L"notices", ZOLT, {});
    notices.bShown = false;
    const std::string text = TextOf(ComposeReview({begin, notices}, {}, {}));
    EXPECT_NE(text.find("      Answer to the question \"Replace unlisted\": yes\n"), std::string::npos)
        << text;
    EXPECT_NE(text.find("        Nobody went to this page: all stays as it was.\n"), std::string::npos)
        << text;
}

TEST(SetupReview, ALongListOfAnswersShowsWhatWasChangedAndHowManyThereAreBesides)
{
    RecordedPage page = Page(L"files", ZOLT, {});
    for (int number = 0; number < 100; ++number) {
        page.values.push_back({L"file", {L"C:\\f" + NumberText(number)}, false, number < 95});
    }
    const std::string text = TextOf(ComposeReview({page}, {}, {}));
    EXPECT_NE(text.find("        File: \"C:\\f14\"\n"
                        "*       File: \"C:\\f95\"\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("*       File: \"C:\\f99\"\n"
                        "        File: and 80 more\n"),
              std::string::npos)
        << text;
}

TEST(SetupReview, ALongListOfChangedAnswersEndsWithHowManyDifferBesides)
{
    RecordedPage page = Page(L"files", ZOLT, {});
    for (int number = 0; number < 25; ++number) {
        page.values.push_back({L"file", {L"C:\\f" + NumberText(number)}, false, number == 24});
        page.values.push_back({L"folder", {L"C:\\d" + NumberText(number)}, false, true});
    }
    const std::string text = TextOf(ComposeReview({page}, {}, {}));
    EXPECT_NE(text.find("*       File: \"C:\\f19\"\n"
                        "        Folder: \"C:\\d19\"\n"
                        "*       File: and 5 more, of which 4 differ from what the page proposed\n"
                        "        Folder: and 5 more\n"),
              std::string::npos)
        << text;
}

// ---- its forms

TEST(SetupReview, TextAndJsonHoldTheSameLines)
{
    const std::vector<RecordedPage> pages = {
        Page(L"begin", {}, {{L"mode", {L"create"}, false, true}, {L"name", {L"Office"}}}),
        Page(L"notices", ZOLT, {{L"feeds", {L"no"}}})};
    BuildReview build = SomeBuild();
    build.warnings = {L"one", L"two"};
    ExpectReadsBack(ComposeReview(pages, build, {}));
    ExpectReadsBack(ComposeReview(pages, {}, {1603, L"No."}));
}

// What packages, disks and answers call themselves can't add a line, hide one or end a text.
TEST(SetupReview, HostileTextsStayTexts)
{
    for (const wchar_t* hostile :
         {L"a\r\n! Warnings: 9", L"\"}], \"review\": [{\"text\": \"x\"}]", L"back\\slash\\",
          L"\x202E"
          L"gpj.exe",
          L"\xD800", L"\t\x1B[2J\x07", L"%s%n", L"    indented", L"* changed", L"<script>", L"\xFEFF"}) {
        SCOPED_TRACE(Utf8(hostile));
        AnswerProduct product = {hostile, hostile};
        RecordedPage page = Page(L"files", product, {{L"file", {hostile, hostile}}, {hostile, {hostile}}});
        page.strTitle = hostile;
        BuildReview build = SomeBuild();
        DatabaseReview& database = build.databases[0];
        database.strTarget = database.strProductName = database.strProductCode = database.strPackageCode =
            hostile;
        database.tables = {{hostile, 1, 1, 1}};
        database.appended = database.merged = database.mergedBefore = {{hostile, hostile}};
        database.addedFiles = {{hostile, 1}};
        database.addedFolders = database.addedDrives = {hostile};
        build.strTarget = hostile;
        build.warnings = {hostile};
        const ReviewDocument review = ComposeReview({page}, build, {});
        const ReviewDocument plain = ComposeReview({page}, SomeBuild(), {});
        EXPECT_EQ(review.size(), plain.size());
        ExpectReadsBack(review);
        const CString text = ComposeReviewText(review);
        std::size_t lines = 0;
        for (int at = text.Find(L"\r\n"); at >= 0; at = text.Find(L"\r\n", at + 2)) {
            ++lines;
        }
        EXPECT_EQ(lines, CountLines(review));
        for (int index = 0; index < text.GetLength(); ++index) {
            const bool isEnd = text[index] == L'\r' || text[index] == L'\n';
            EXPECT_TRUE(isEnd || !IsHiddenUnit(text, index)) << index << " in\n" << Utf8(text);
        }
        ExpectReadsBack(ComposeReview({page}, build, {5, hostile}));
    }
}

// ---- its size

TEST(SetupReview, TenThousandAdditionsAndRowsMakeNoMoreLinesThanAFew)
{
    const auto review = [](std::size_t files, std::size_t rows) {
        BuildReview build = SomeBuild();
        DatabaseReview& database = build.databases[0];
        database.addedFiles.clear();
        database.addedFolders.clear();
        RecordedPage page = Page(L"files", ZOLT, {});
        for (std::size_t number = 0; number < files; ++number) {
            const CString name = L"C:\\Zolt\\" + NumberText(static_cast<long long>(number));
            database.addedFiles.push_back({name, 1});
            database.addedFolders.push_back(name);
            page.values.push_back({L"file", {name, L"[INSTALLDIR]"}});
        }
        std::vector<RowDifference> differences(rows);
        for (RowDifference& row : differences) {
            row.strTable = L"Registry";
        }
        database.tables = CountByTable(differences);
        return ComposeReview({page}, build, {});
    };
    const ReviewDocument few = review(MOST_REVIEW_LINES + 1, 1);
    const ReviewDocument many = review(10000, 50000);
    EXPECT_EQ(CountLines(many), CountLines(few));
    const std::string text = TextOf(many);
    EXPECT_NE(text.find("*     Rows: 50000 changed\n*       Registry: 50000 changed\n"), std::string::npos)
        << text;
    EXPECT_NE(text.find("        and 9980 more\n"), std::string::npos) << text;
    EXPECT_NE(text.find("File: and 9980 more, of which 9980 differ from what the page proposed\n"),
              std::string::npos)
        << text;
}

} // namespace
