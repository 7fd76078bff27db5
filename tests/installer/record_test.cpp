// Texts into and out of records.
#include "installer/record.h"
#include "tests/installer/database_fixture.h"
#include "tests/installer/refusal.h"

namespace {

class RecordTextTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(MakeTextRecord({L"first", L"second"}, record), 0u); }
    void TearDown() override
    {
        record.reset();
        EXPECT_EQ(MsiCloseAllHandles(), 0u) << "installer handles were left open";
    }

    CInstallerHandle record;
    CString text = L"kept";
};

UINT WINAPI NeverEnough(MSIHANDLE, UINT, LPWSTR, LPDWORD length)
{
    *length += 10;
    return ERROR_MORE_DATA;
}

} // namespace

TEST_F(RecordTextTest, ATextOfAnyLengthIsReadWhole)
{
    for (const int length : {1, 254, 255, 256, 257, 70000}) {
        const CString whole = CString(L'a', length - 1) + L"z";
        ASSERT_EQ(MsiRecordSetStringW(record.get(), 1, whole), 0u);
        EXPECT_EQ(CopyRecordText(record.get(), 1, text), 0u) << length;
        EXPECT_EQ(text, whole) << length;
    }
}

TEST_F(RecordTextTest, ANumberComesInDigits)
{
    ASSERT_EQ(MsiRecordSetInteger(record.get(), 1, -1234567), 0u);
    EXPECT_EQ(RecordText(record.get(), 1), CString(L"-1234567"));
}

TEST_F(RecordTextTest, ANullColumnIsTheEmptyText)
{
    const CInstallerHandle empty(MsiCreateRecord(1));
    EXPECT_EQ(CopyRecordText(empty.get(), 1, text), 0u);
    EXPECT_EQ(text, CString());
}

TEST_F(RecordTextTest, AColumnThatCanNotBeReadGivesTheCodeAndKeepsTheTarget)
{
    const Refusal refusal("MsiRecordGetStringW", RefuseToRead);
    EXPECT_EQ(CopyRecordText(record.get(), 1, text), UINT{ERROR_FUNCTION_FAILED});
    EXPECT_EQ(text, CString(L"kept"));
    EXPECT_EQ(RecordText(record.get(), 1), CString());
}

TEST_F(RecordTextTest, ATextThatGrowsBetweenTheCallsGivesTheCodeAndKeepsTheTarget)
{
    const Refusal growing("MsiRecordGetStringW", NeverEnough);
    EXPECT_EQ(CopyRecordText(record.get(), 1, text), UINT{ERROR_MORE_DATA});
    EXPECT_EQ(text, CString(L"kept"));
}

TEST_F(RecordTextTest, ARecordHoldsItsTextsInOrder)
{
    EXPECT_EQ(MsiRecordGetFieldCount(record.get()), 2u);
    EXPECT_EQ(RecordText(record.get(), 1), CString(L"first"));
    EXPECT_EQ(RecordText(record.get(), 2), CString(L"second"));
}

TEST_F(RecordTextTest, ARecordThatIsNotMadeGivesACode)
{
    const Refusal refusal("MsiCreateRecord", NoRecord);
    CInstallerHandle made;
    EXPECT_NE(MakeTextRecord({L"a"}, made), 0u);
    EXPECT_FALSE(made);
}

TEST_F(RecordTextTest, ARecordThatTakesNoTextGivesTheCodeAndIsClosed)
{
    const Refusal refusal("MsiRecordSetStringW", RefuseText);
    CInstallerHandle made;
    EXPECT_EQ(MakeTextRecord({L"a"}, made), UINT{ERROR_FUNCTION_FAILED});
    EXPECT_FALSE(made);
}
