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
    return file.sections.at(0).answers.at(0).strValue;
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
    EXPECT_EQ(file.sections[0].answers[0].strValue, CString(L"Office"));
    EXPECT_EQ(file.sections[0].answers[1].nLine, 6);
    EXPECT_EQ(file.sections[1].strName, CString(L"contact"));
}

TEST(AnswersFileText, AByteOrderMarkAndWindowsLineEndsAreAllowed)
{
    const AnswersFile file = Parsed("\xEF\xBB\xBFrollout-answers 1\r\n[begin]\r\nname = x\r\n");
    EXPECT_EQ(file.sections.at(0).answers.at(0).strValue, CString(L"x"));
}

TEST(AnswersFileText, TheLastLineNeedsNoEnd)
{
    EXPECT_EQ(Parsed("rollout-answers 1\n[begin]\nname = x").sections.at(0).answers.at(0).strValue,
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

TEST(AnswersFileText, AKeyTwiceInASectionIsRefused)
{
    const AnswersError error = Refused("rollout-answers 1\n[begin]\nname = a\nname = b\n");
    EXPECT_EQ(error.nLine, 4);
    EXPECT_EQ(error.strKey, CString(L"begin.name"));
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
    EXPECT_NE(Refused(std::string(LONGEST_ANSWERS_FILE + 1, ' ')).strReason.Find(L"1 MB"), -1);
}

TEST(AnswersFileText, WhatIsWrittenReadsBackEqual)
{
    AnswersFile file;
    file.sections.push_back({L"begin", 0, {}});
    for (const wchar_t* value : {L"", L"plain", L" blanks ", L"\"quoted\"", L"in\"side", L"\t", L"#", L"[x]",
                                 L"\\\\server\\share\\", L"\x00E9\xD83D\xDE00", L"\""}) {
        file.sections[0].answers.push_back(
            {L"key_" + NumberText(static_cast<long long>(file.sections[0].answers.size())), value, 0});
    }
    std::string bytes;
    AppendUtf8(bytes, WriteAnswersFile(file));
    const AnswersFile again = Parsed(bytes);
    ASSERT_EQ(again.sections.size(), 1u);
    ASSERT_EQ(again.sections[0].answers.size(), file.sections[0].answers.size());
    for (std::size_t index = 0; index < file.sections[0].answers.size(); ++index) {
        EXPECT_EQ(again.sections[0].answers[index].strKey, file.sections[0].answers[index].strKey);
        EXPECT_EQ(again.sections[0].answers[index].strValue, file.sections[0].answers[index].strValue);
    }
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
