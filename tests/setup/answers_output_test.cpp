// What becomes of answers that no file can hold.
#include "base/files.h"
#include "setup/answers_output.h"
#include "setup/texts.h"
#include "tests/setup/stub_host.h"
#include "tests/support/test_folder.h"
#include "tests/support/test_product.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

constexpr wchar_t UNWRITABLE[] = L"Zolt\x01 2027";

class AnswersOutput : public testing::Test
{
protected:
    AnswersOutput()
    {
        first.m_strName = UNWRITABLE;
        first.m_strProductCode = L"{1}";
        second.m_strName = L"Volt";
        second.m_strProductCode = L"{2}";
        host.products = {&first, &second};
        page.pTable = FindAnswerTable(PageAnswerTables(), L"notices");
        page.product = {UNWRITABLE, L"{1}"};
        page.values = {{L"feeds", {L"yes"}}};
        line.strRecord = folder.GetPath() + L"\\record.txt";
        line.strLog = folder.GetPath() + L"\\setup.log";
    }

    CTestFolder folder;
    CallLog calls;
    TestProduct first{calls}, second{calls};
    StubHost host;
    RecordedPage page;
    CommandLine line;
    CRunLog log{false, CString()};
};

TEST_F(AnswersOutput, AProductThatNoFileCanNameFailsTheRecordInsteadOfAnEmptyOne)
{
    const CString failure = CAnswersOutput(line, &host, log).WriteRecord({page}, {});
    EXPECT_GE(failure.Find(L"U+0001"), 0) << Utf8(failure);
    EXPECT_GE(failure.Find(line.strRecord), 0) << Utf8(failure);
    EXPECT_FALSE(IsFile(line.strRecord));
}

TEST_F(AnswersOutput, NothingIsKeptBesideTheLogWhereNoFileCanHoldIt)
{
    EXPECT_EQ(CAnswersOutput(line, &host, log).KeepBesideLog({page}, L"full"), CString());
    EXPECT_FALSE(IsFile(folder.GetPath() + L"\\setup.answers.txt"));
}

TEST_F(AnswersOutput, WhatIsKeptBesideTheLogTakesAFreeName)
{
    page.product = {L"Volt", L"{2}"};
    CAnswersOutput output(line, &host, log);
    EXPECT_EQ(output.KeepBesideLog({page}, L"full"), folder.GetPath() + L"\\setup.answers.txt");
    EXPECT_EQ(output.KeepBesideLog({page}, L"full"), folder.GetPath() + L"\\setup.answers (2).txt");
    EXPECT_EQ(output.KeepBesideLog({page}, L"full"), folder.GetPath() + L"\\setup.answers (3).txt");
}

} // namespace
