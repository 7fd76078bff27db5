#include "setup/answers_file.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

AnswersFile Parsed(const std::string& bytes)
{
    AnswersFile file;
    AnswersError error;
    EXPECT_TRUE(ParseAnswersFile(bytes.data(), bytes.size(), file, error)) << Utf8(error.Text());
    return file;
}

AnswersError Refused(const std::string& bytes)
{
    AnswersFile file;
    AnswersError error;
    EXPECT_FALSE(ParseAnswersFile(bytes.data(), bytes.size(), file, error)) << bytes;
    EXPECT_FALSE(error.strReason.IsEmpty());
    return error;
}

CString OnlyValue(const std::string& value)
{
    const AnswersFile file = Parsed("rollout-answers 1\n[begin]\nname =" + value + "\n");
    return file.sections.at(0).answers.at(0).Value();
}

TEST(AnswersFileText, SectionsAndAnswersKeepTheirOrderAndLines)
{
    const AnswersFile file =
        Parsed("# by hand\nrollout-answers 1\n\n[begin]\nname = Office\nplatform=x64\n[contact]\n");
    ASSERT_EQ(file.sections.size(), 2u);
    EXPECT_EQ(file.sections[0].strName, CString(L"begin"));
    EXPECT_EQ(file.sections[0].nLine, 4);
    ASSERT_EQ(file.sections[0].answers.size(), 2u);
    EXPECT_EQ(file.sections[0].answers[0].strKey, CString(L"name"));
    EXPECT_EQ(file.sections[0].answers[0].Value(), CString(L"Office"));
    EXPECT_EQ(file.sections[0].answers[1].nLine, 6);
    EXPECT_EQ(file.sections[1].strName, CString(L"contact"));
}

TEST(AnswersFileText, AByteOrderMarkAndWindowsLineEndsAreAllowed)
{
    const AnswersFile file = Parsed("\xEF\xBB\xBFrollout-answers 1\r\n[begin]\r\nname = x\r\n");
    EXPECT_EQ(file.sections.at(0).answers.at(0).Value(), CString(L"x"));
}

TEST(AnswersFileText, TheLastLineNeedsNoEnd)
{
    EXPECT_EQ(Parsed("rollout-answers 1\n[begin]\nname = x").sections.at(0).answers.at(0).Value(),
              CString(L"x"));
}

TEST(AnswersFileText, BareValuesLoseTheBlanksAtTheirEndsAndKeepTheRest)
{
    EXPECT_EQ(OnlyValue(" \t a  b # c = \"d\" \t"), CString(L"a  b # c = \"d\""));
}

TEST(AnswersFileText, QuotedValuesKeepTheBlanksAtTheirEnds)
{
    EXPECT_EQ(OnlyValue(" \"  a \" "), CString(L"  a "));
}

TEST(AnswersFileText, TwoQuotesInAQuotedValueStandForOne)
{
    EXPECT_EQ(OnlyValue("\"a\"\"b\""), CString(L"a\"b"));
    EXPECT_EQ(OnlyValue("\"\"\"\""), CString(L"\""));
}

TEST(AnswersFileText, AValueMayBeEmpty)
{
    EXPECT_EQ(OnlyValue(""), CString());
    EXPECT_EQ(OnlyValue("\"\""), CString());
}

TEST(AnswersFileText, ForeignLettersComeThrough)
{
    EXPECT_EQ(OnlyValue("Caf\xC3\xA9 \xF0\x9F\x98\x80"), CString(L"Caf\x00E9 \xD83D\xDE00"));
}

TEST(AnswersFileText, BackslashesStandForThemselves)
{
    EXPECT_EQ(OnlyValue("\"\\\\server\\new\\\""), CString(L"\\\\server\\new\\"));
}

TEST(AnswersFileText, AMissingClosingQuoteIsRefusedWithLineAndKey)
{
    const AnswersError error = Refused("rollout-answers 1\n[begin]\nname = \"abc\n");
    EXPECT_EQ(error.nLine, 3);
    EXPECT_EQ(error.strKey, CString(L"begin.name"));
}

TEST(AnswersFileText, TextBehindTheClosingQuoteIsRefused)
{
    EXPECT_EQ(Refused("rollout-answers 1\n[begin]\nname = \"abc\" d\n").nLine, 3);
}

TEST(AnswersFileText, AFileWithoutHeaderIsRefused)
{
    EXPECT_NE(Refused("").strReason.Find(L"rollout-answers 1"), -1);
    EXPECT_NE(Refused("# only a comment\n").strReason.Find(L"rollout-answers 1"), -1);
    EXPECT_EQ(Refused("[begin]\nname = x\n").nLine, 1);
    EXPECT_EQ(Refused("rollout-answers1\n").nLine, 1);
}

TEST(AnswersFileText, AnotherVersionIsRefused)
{
    EXPECT_NE(Refused("rollout-answers 2\n").strReason.Find(L"version is \"2\""), -1);
    EXPECT_NE(Refused("rollout-answers\n").strReason.Find(L"version is \"\""), -1);
    EXPECT_NE(Refused("rollout-answers 1 1\n").strReason.Find(L"version is \"1 1\""), -1);
}

TEST(AnswersFileText, AnAnswerBeforeTheFirstSectionIsRefused)
{
    EXPECT_EQ(Refused("rollout-answers 1\nname = x\n").nLine, 2);
}

TEST(AnswersFileText, ASectionTwiceIsRefusedWithTheFirstOnesLine)
{
    const AnswersError error = Refused("rollout-answers 1\n[begin]\n[contact]\n[begin]\n");
    EXPECT_EQ(error.nLine, 4);
    EXPECT_NE(error.strReason.Find(L"line 2"), -1);
}

TEST(AnswersFileText, LinesThatAreNothingAreRefused)
{
    for (const char* line : {"name", "[begin", "[]", "[Begin]", "[a b]", "[be]gin", "= x", "Name = x",
                             "a..b = x", ".a = x", "a. = x", "1a = x", "a b = x", "; comment"}) {
        const AnswersError error = Refused(std::string("rollout-answers 1\n[first]\n") + line + "\n");
        EXPECT_EQ(error.nLine, 3) << line;
    }
}

TEST(AnswersFileText, BytesThatAreNoUtf8AreRefusedWithTheirLine)
{
    for (const char* bytes :
         {"\xFF", "\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE0\x80\x80", "\x80"}) {
        const AnswersError error = Refused(std::string("rollout-answers 1\n[begin]\nname = ") + bytes + "\n");
        EXPECT_EQ(error.nLine, 3) << testing::PrintToString(std::string(bytes));
        EXPECT_NE(error.strReason.Find(L"UTF-8"), -1);
    }
}

TEST(AnswersFileText, Utf16IsRefusedByItsMark)
{
    EXPECT_NE(Refused(std::string("\xFF\xFEr\0", 4)).strReason.Find(L"UTF-16"), -1);
}

TEST(AnswersFileText, ControlCharactersAreRefused)
{
    EXPECT_EQ(Refused(std::string("rollout-answers 1\n[begin]\nname = a") + '\0' + "b\n").nLine, 3);
    EXPECT_EQ(Refused("rollout-answers 1\n[begin]\nname = a\rb\n").nLine, 3);
}

TEST(AnswersFileText, AFileBeyondTheLimitIsRefused)
{
    EXPECT_NE(Refused(std::string(LONGEST_ANSWERS_FILE + 1, ' ')).strReason.Find(L"16 MB"), -1);
}

TEST(AnswersFileText, SeveralQuotedValuesAreFieldsInTheirOrder)
{
    const AnswersFile file =
        Parsed("rollout-answers 1\n[x]\nfile = \"<Root>\\Company\", \"D:\\a, \"\"b\"\".png\" ,\"\"\n");
    const std::vector<CString>& fields = file.sections.at(0).answers.at(0).fields;
    ASSERT_EQ(fields.size(), 3u);
    EXPECT_EQ(fields[0], CString(L"<Root>\\Company"));
    EXPECT_EQ(fields[1], CString(L"D:\\a, \"b\".png"));
    EXPECT_EQ(fields[2], CString());
}

TEST(AnswersFileText, ABareValueIsOneFieldWhateverItsCommas)
{
    EXPECT_EQ(OnlyValue("a, \"b\", c"), CString(L"a, \"b\", c"));
}

TEST(AnswersFileText, BrokenFieldsAreRefusedWithLineAndKey)
{
    for (const char* value :
         {"\"a\",", "\"a\" \"b\"", "\"a\", b", "\"a\",,\"b\"", "\"a\", \"b", "\"a\"\", \"b\""}) {
        const AnswersError error = Refused(std::string("rollout-answers 1\n[begin]\nname = ") + value + "\n");
        EXPECT_EQ(error.nLine, 3) << value;
        EXPECT_EQ(error.strKey, CString(L"begin.name")) << value;
    }
}

TEST(AnswersFileText, AKeyMayStandSeveralTimesForItsPageToJudge)
{
    const AnswersFile file = Parsed("rollout-answers 1\n[x]\nfile = a\nname = n\nfile = b\n");
    ASSERT_EQ(file.sections.at(0).answers.size(), 3u);
    EXPECT_EQ(file.sections[0].answers[2].Value(), CString(L"b"));
}

TEST(AnswersFileText, ASectionMayNameAProduct)
{
    const AnswersFile file = Parsed(
        "rollout-answers 1\n[notices]\n[notices \"Zolt \"\"Pro\"\" [2027]\"]\n[ notices\t\"x.y=z\" ]\n");
    ASSERT_EQ(file.sections.size(), 3u);
    EXPECT_EQ(file.sections[0].strProduct, CString());
    EXPECT_EQ(file.sections[1].strProduct, CString(L"Zolt \"Pro\" [2027]"));
    EXPECT_EQ(file.sections[2].strName, CString(L"notices"));
    EXPECT_EQ(file.sections[2].strProduct, CString(L"x.y=z"));
}

TEST(AnswersFileText, AProductTwiceOnAPageIsRefusedWhateverItsCase)
{
    const AnswersError error =
        Refused("rollout-answers 1\n[notices \"Zolt\"]\n[resources \"Zolt\"]\n[notices \"ZOLT\"]\n");
    EXPECT_EQ(error.nLine, 4);
    EXPECT_NE(error.strReason.Find(L"line 2"), -1);
}

TEST(AnswersFileText, ProductsThatAreNotQuotedAreRefused)
{
    for (const char* section : {"[notices Zolt]", "[notices \"Zolt]", "[notices \"\"]",
                                "[notices \"a\", \"b\"]", "[notices \"a\" b]", "[\"Zolt\"]"}) {
        EXPECT_EQ(Refused(std::string("rollout-answers 1\n") + section + "\n").nLine, 2) << section;
    }
}

std::string Written(const AnswersFile& file)
{
    CString text;
    AnswersError error;
    EXPECT_TRUE(WriteAnswersFile(file, text, error)) << Utf8(error.Text());
    std::string bytes;
    AppendUtf8(bytes, text);
    return bytes;
}

TEST(AnswersFileText, WhatIsWrittenReadsBackEqual)
{
    AnswersFile file;
    file.comments = {L"by a run", L""};
    for (const wchar_t* product : {L"", L"Zolt \"Pro\" #1]", L"\x4E2D\xD83D\xDE00", L"a, \"b\""}) {
        file.sections.push_back({L"begin", product, 0, {}, {L"A page", L"of two lines"}, {L"name = x"}});
    }
    for (const wchar_t* value : {L"", L"plain", L" blanks ", L"\"quoted\"", L"in\"side", L"\t", L"#", L"[x]",
                                 L"\\\\server\\share\\", L"\x00E9\xD83D\xDE00", L"\"", L"a, b",
                                 L"\"a\", \"b\"", L",", L"=", L"\xFEFF", L"\x2028", L"\x0085"}) {
        const CString key = L"key_" + NumberText(static_cast<long long>(file.sections[0].answers.size()));
        file.sections[0].answers.push_back({key, {value}, 0, {}});
        file.sections[0].answers.push_back({L"file", {value, L"x", value}, 0, {L"Chosen:"}});
    }
    const AnswersFile again = Parsed(Written(file));
    EXPECT_EQ(again.comments, file.comments);
    ASSERT_EQ(again.sections.size(), file.sections.size());
    for (std::size_t section = 0; section < file.sections.size(); ++section) {
        EXPECT_EQ(again.sections[section].strProduct, file.sections[section].strProduct);
        EXPECT_EQ(again.sections[section].comments, file.sections[section].comments);
        EXPECT_EQ(again.sections[section].closingComments, file.sections[section].closingComments);
    }
    ASSERT_EQ(again.sections[0].answers.size(), file.sections[0].answers.size());
    for (std::size_t index = 0; index < file.sections[0].answers.size(); ++index) {
        EXPECT_EQ(again.sections[0].answers[index].strKey, file.sections[0].answers[index].strKey);
        EXPECT_EQ(again.sections[0].answers[index].fields, file.sections[0].answers[index].fields);
        EXPECT_EQ(again.sections[0].answers[index].comments, file.sections[0].answers[index].comments);
    }
    EXPECT_EQ(Written(again), Written(file));
}

TEST(AnswersFileText, WhatAFileCannotHoldIsRefusedByTheWriterByName)
{
    for (const wchar_t* value : {L"a\nb", L"a\rb", L"\x0001", L"\x007F", L"\xD83D", L"\xDE00\xD83D"}) {
        AnswersFile file;
        file.sections.push_back({L"notices", L"", 0, {{L"site_name", {L"x", value}, 0, {}}}, {}, {}});
        CString text;
        AnswersError error;
        EXPECT_FALSE(WriteAnswersFile(file, text, error));
        EXPECT_EQ(error.strKey, CString(L"notices.site_name"));
        EXPECT_NE(error.strReason.Find(L"U+"), -1);
    }
    AnswersFile file;
    file.sections.push_back({L"notices", L"a\x001Fz", 0, {}, {}, {}});
    CString text;
    AnswersError error;
    EXPECT_FALSE(WriteAnswersFile(file, text, error));
    EXPECT_NE(error.strReason.Find(L"U+001F"), -1) << Utf8(error.strReason);
}

TEST(AnswersFileText, ACommentLosesWhatALineCannotHold)
{
    AnswersFile file;
    file.comments = {L" a\r\nb \xD83D"};
    EXPECT_EQ(Written(file), "rollout-answers 1\r\n# a  b\r\n");
}

TEST(AnswersFileText, CommentsBelongToWhatTheyStandAbove)
{
    const AnswersFile file =
        Parsed("# before\nrollout-answers 1\n#  file \n\n# page\n[begin]\n# key\nname = x\n# end\n"
               "\n# second\n[contact]\n#last");
    EXPECT_EQ(file.comments, (std::vector<CString>{L"before", L"file"}));
    EXPECT_EQ(file.sections.at(0).comments, std::vector<CString>{L"page"});
    EXPECT_EQ(file.sections[0].answers.at(0).comments, std::vector<CString>{L"key"});
    EXPECT_EQ(file.sections[0].closingComments, std::vector<CString>{L"end"});
    EXPECT_EQ(file.sections.at(1).comments, std::vector<CString>{L"second"});
    EXPECT_EQ(file.sections[1].closingComments, std::vector<CString>{L"last"});
}

TEST(AnswersFileText, AnErrorNamesFileLineKeyAndReason)
{
    EXPECT_EQ((AnswersError{L"C:\\a.txt", 12, L"begin.name", L"Why."}.Text()),
              CString(L"C:\\a.txt(12): begin.name: Why."));
    EXPECT_EQ((AnswersError{L"--set", 0, L"begin.name", L"Why."}.Text()),
              CString(L"--set: begin.name: Why."));
    EXPECT_EQ((AnswersError{L"", 0, L"", L"Why."}.Text()), CString(L"Why."));
}

} // namespace
