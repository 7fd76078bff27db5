// The summary information.
#include "installer/summary.h"

#include "tests/installer/database_fixture.h"

namespace {

constexpr unsigned int ABSENT = 14; // the service's version, which these databases lack

class SummaryTest : public DatabaseTest
{
protected:
    void Write(unsigned int property, const CString& text)
    {
        CSummary summary;
        ASSERT_EQ(summary.Open(Database(), 1), 0u);
        ASSERT_EQ(summary.WriteText(property, text), 0u);
        ASSERT_EQ(summary.Persist(), 0u);
    }
};

} // namespace

TEST_F(SummaryTest, ATextOfAnyLengthComesBack)
{
    for (const int length : {1, 38, 300}) {
        const CString text = CString(L'a', length - 1) + L"z";
        Write(SUMMARY_PACKAGE_CODE, text);
        EXPECT_EQ(SummaryText(Database(), SUMMARY_PACKAGE_CODE), text);
    }
}

TEST_F(SummaryTest, APropertyThatIsNotThereIsEmptyAndZeroWithoutAFailure)
{
    CSummary summary;
    ASSERT_EQ(summary.Open(Database()), 0u);
    CString text = L"before";
    int number = 1;
    EXPECT_EQ(summary.ReadText(ABSENT, text), 0u);
    EXPECT_EQ(text, CString());
    EXPECT_EQ(summary.ReadNumber(ABSENT, number), 0u);
    EXPECT_EQ(number, 0);
}

TEST_F(SummaryTest, ANumberComesBack)
{
    {
        CInstallerHandle summary;
        ASSERT_EQ(MsiGetSummaryInformationW(Database(), nullptr, 1, summary.put()), 0u);
        ASSERT_EQ(MsiSummaryInfoSetPropertyW(summary.get(), SUMMARY_WORD_COUNT, VT_I4, 6, nullptr, nullptr),
                  0u);
        ASSERT_EQ(MsiSummaryInfoPersist(summary.get()), 0u);
    }
    EXPECT_EQ(SummaryNumber(Database(), SUMMARY_WORD_COUNT), 6);
    EXPECT_EQ(SummaryText(Database(), SUMMARY_WORD_COUNT), CString());
}

TEST_F(SummaryTest, ATextIsNoNumber)
{
    Write(SUMMARY_TEMPLATE, L"64");
    EXPECT_EQ(SummaryNumber(Database(), SUMMARY_TEMPLATE), 0);
}

TEST_F(SummaryTest, WhatWasOpenedForReadingIsNotWritten)
{
    CSummary summary;
    ASSERT_EQ(summary.Open(Database()), 0u);
    EXPECT_NE(summary.WriteText(SUMMARY_TEMPLATE, L"x64;1033"), 0u);
}

TEST_F(SummaryTest, HandleZeroGivesTheCodeAndNothing)
{
    CSummary summary;
    EXPECT_NE(summary.Open(0), 0u);
    EXPECT_EQ(SummaryText(0, SUMMARY_TEMPLATE), CString());
    EXPECT_EQ(SummaryNumber(0, SUMMARY_WORD_COUNT), 0);
}

TEST_F(SummaryTest, TheTemplateNamesThePlatform)
{
    const struct
    {
        const wchar_t* text;
        bool isSixtyFourBit;
    } TEMPLATES[] = {
        {L"x64;1033", true},    {L"X64;1033,1031", true}, {L"Intel64;0", true}, {L"arm64;1033", true},
        {L"Intel;1033", false}, {L";1033", false},        {L"x64", false},      {L"x640;1033", false},
    };
    for (const auto& row : TEMPLATES) {
        Write(SUMMARY_TEMPLATE, row.text);
        EXPECT_EQ(IsSixtyFourBit(Database()), row.isSixtyFourBit) << Utf8(row.text);
    }
}
