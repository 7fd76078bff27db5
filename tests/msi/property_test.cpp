// Properties and record texts on an open database.
#include "host/silent_installer.h"
#include "include/product.h"
#include "installer/handle.h"
#include "msi/msi_property.h"
#include "tests/host/package_maker.h"
#include "tests/installer/database_fixture.h"

#include <cwchar>
#include <memory>

namespace {

class PropertyTest : public DatabaseTest
{
protected:
    bool Write(const wchar_t* name, const CString& value) { return WriteProperty(Database(), name, value); }
    CString Read(const wchar_t* name) { return ReadProperty(Database(), name); }
    Rows RowsOf(const CString& name)
    {
        return Select(L"SELECT `Property`,`Value` FROM `Property` WHERE `Property`='" + name + L"'");
    }
};

} // namespace

// ---- writing -----------------------------------------------------------------------------------------------------

TEST_F(PropertyTest, WritingANewNameGivesTrueAndAddsTheRow)
{
    EXPECT_TRUE(Write(L"MC3_ENABLED", L"#1"));
    EXPECT_EQ(Select(L"SELECT * FROM `Property`"), (Rows{{L"MC3_ENABLED", L"#1"}}));
}

TEST_F(PropertyTest, WritingANameTwiceLeavesOneRowWithTheLastValue)
{
    EXPECT_TRUE(Write(L"MC3_ENABLED", L"#1"));
    EXPECT_TRUE(Write(L"MC3_ENABLED", L"#0"));
    EXPECT_EQ(RowsOf(L"MC3_ENABLED"), (Rows{{L"MC3_ENABLED", L"#0"}}));
}

TEST_F(PropertyTest, WritingLeavesOtherPropertiesAlone)
{
    ASSERT_TRUE(Write(L"A", L"1"));
    ASSERT_TRUE(Write(L"AB", L"2"));
    ASSERT_TRUE(Write(L"A", L"3"));
    EXPECT_EQ(Read(L"AB"), CString(L"2"));
}

TEST_F(PropertyTest, AValueMayHoldApostrophesBackquotesAndPlaceholders)
{
    const CString value = L"it's `%s` ? [A] \"\r\n";
    EXPECT_TRUE(Write(L"A", value));
    EXPECT_EQ(Read(L"A"), value);
}

TEST_F(PropertyTest, WhatIsWrittenIsSeenBeforeACommit)
{
    ASSERT_TRUE(Write(L"A", L"1"));
    EXPECT_EQ(RowsOf(L"A"), (Rows{{L"A", L"1"}}));
}

// ---- reading -----------------------------------------------------------------------------------------------------

TEST_F(PropertyTest, AnUnknownNameReadsAsTheEmptyText)
{
    EXPECT_EQ(Read(L"NO_SUCH_NAME"), CString());
}

TEST_F(PropertyTest, ABufferShorterThanTheValueGivesFalse)
{
    ASSERT_TRUE(Write(L"A", L"12345"));
    wchar_t buffer[6] = L"";
    EXPECT_FALSE(ReadTableValue(Database(), L"Property", L"A", buffer, 5));
    EXPECT_TRUE(ReadTableValue(Database(), L"Property", L"A", buffer, 6));
    EXPECT_EQ(CString(buffer), CString(L"12345"));
}

TEST_F(PropertyTest, AShortBufferHoldsTheBeginningAndNothingBehindItIsTouched)
{
    ASSERT_TRUE(Write(L"A", L"12345"));
    wchar_t buffer[] = L"??????????";
    EXPECT_FALSE(ReadTableValue(Database(), L"Property", L"A", buffer, 4));
    EXPECT_EQ(CString(buffer, 4), CString(L"123\0", 4));
    EXPECT_EQ(CString(buffer + 4), CString(L"??????"));
}

// The service of Wine doesn't end a text that it cuts, and the text that followed in memory came along.
TEST_F(PropertyTest, OfALongerValueThe1023CharactersAtItsBeginningAreRead)
{
    for (const int length : {1023, 1024, 1025, 70000}) {
        ASSERT_TRUE(Write(L"LONG", CString(L'v', length)));
        EXPECT_EQ(Read(L"LONG"), CString(L'v', 1023)) << length;
    }
}

TEST_F(PropertyTest, ABufferWithoutRoomGivesFalseAndStaysUntouched)
{
    ASSERT_TRUE(Write(L"A", L"12345"));
    wchar_t buffer[] = L"?";
    EXPECT_FALSE(ReadTableValue(Database(), L"Property", L"A", buffer, 0));
    EXPECT_EQ(CString(buffer), CString(L"?"));
}

TEST_F(PropertyTest, AMissingRowGivesFalse)
{
    wchar_t buffer[10] = L"";
    EXPECT_FALSE(ReadTableValue(Database(), L"Property", L"A", buffer, 10));
}

TEST_F(PropertyTest, AnotherTableOfTheSameShapeIsReadToo)
{
    Run(L"CREATE TABLE `MsiPatchMetadata` (`Company` CHAR(72), `Property` CHAR(72) NOT NULL, `Value` CHAR(0) "
        L"NOT NULL PRIMARY KEY `Company`, `Property`)");
    Run(L"INSERT INTO `MsiPatchMetadata` (`Property`,`Value`) VALUES ('DisplayName','Service Pack 1')");
    wchar_t buffer[30] = L"";
    EXPECT_TRUE(ReadTableValue(Database(), L"MsiPatchMetadata", L"DisplayName", buffer, 30));
    EXPECT_EQ(CString(buffer), CString(L"Service Pack 1"));
}

TEST_F(PropertyTest, NamesRegardCase)
{
    ASSERT_TRUE(Write(L"Name", L"1"));
    EXPECT_EQ(Read(L"NAME"), CString());
}

// The statement has room for 1,023 characters. 42 stand around table and name, so 973 are left beside "Property".
TEST_F(PropertyTest, ANameIsReadUpToTheRoomOfTheStatement)
{
    const CString longest(L'n', 973);
    ASSERT_TRUE(Write(longest, L"1"));
    EXPECT_EQ(Read(longest), CString(L"1"));
    const CString tooLong(L'n', 974);
    ASSERT_TRUE(Write(tooLong, L"1"));
    EXPECT_EQ(Read(tooLong), CString());
}

TEST_F(PropertyTest, ANameOf70000CharactersReadsAsTheEmptyText)
{
    EXPECT_EQ(Read(CString(L'n', 70000)), CString());
}

TEST_F(PropertyTest, ATableNameOf70000CharactersGivesFalse)
{
    wchar_t buffer[10] = L"";
    EXPECT_FALSE(ReadTableValue(Database(), CString(L't', 70000), L"A", buffer, 10));
}

// ---- record texts ------------------------------------------------------------------------------------------------

TEST_F(PropertyTest, ANullColumnGivesTrueAndKeepsTheTarget)
{
    const CInstallerHandle record(MsiCreateRecord(1));
    CString text = L"kept";
    EXPECT_TRUE(ReadRecordText(record.get(), 1, text));
    EXPECT_EQ(text, CString(L"kept"));
}

TEST_F(PropertyTest, AnEmptyColumnGivesTrueAndKeepsTheTarget)
{
    const CInstallerHandle record(MsiCreateRecord(1));
    ASSERT_EQ(MsiRecordSetStringW(record.get(), 1, L""), 0u);
    CString text = L"kept";
    EXPECT_TRUE(ReadRecordText(record.get(), 1, text));
    EXPECT_EQ(text, CString(L"kept"));
}

TEST_F(PropertyTest, AColumnThatTheRecordDoesNotHaveKeepsTheTarget)
{
    const CInstallerHandle record(MsiCreateRecord(1));
    CString text = L"kept";
    EXPECT_TRUE(ReadRecordText(record.get(), 7, text));
    EXPECT_EQ(text, CString(L"kept"));
}

TEST_F(PropertyTest, ANumberOfMoreThanFourDigitsIsReadWhole)
{
    const CInstallerHandle record(MsiCreateRecord(1));
    ASSERT_EQ(MsiRecordSetInteger(record.get(), 1, 123456), 0u);
    CString text;
    EXPECT_TRUE(ReadRecordText(record.get(), 1, text));
    EXPECT_EQ(text, CString(L"123456"));
}

TEST_F(PropertyTest, AShorterTextReplacesALongerOne)
{
    const CInstallerHandle record(MsiCreateRecord(1));
    ASSERT_EQ(MsiRecordSetStringW(record.get(), 1, L"short"), 0u);
    CString text = L"a longer text from before";
    EXPECT_TRUE(ReadRecordText(record.get(), 1, text));
    EXPECT_EQ(text, CString(L"short"));
    EXPECT_EQ(text.GetLength(), 5);
}

// ---- service calls that fill a buffer ----------------------------------------------------------------------------

namespace {

int g_calls = 0;

unsigned int __stdcall CountedProductProperty(InstallerHandle database, const wchar_t* name, wchar_t* buffer,
                                              unsigned long* size)
{
    ++g_calls;
    return WizGetPropertyW(database, name, buffer, size);
}

unsigned int __stdcall CountedSessionProperty(InstallerHandle session, const wchar_t* name, wchar_t* buffer,
                                              unsigned long* size)
{
    ++g_calls;
    return MsiGetPropertyW(session, name, buffer, size);
}

unsigned int __stdcall NeverEnough(InstallerHandle, const wchar_t*, wchar_t*, unsigned long* size)
{
    ++g_calls;
    *size += 10;
    return ERROR_MORE_DATA;
}

unsigned int __stdcall Refuses(InstallerHandle, const wchar_t*, wchar_t* buffer, unsigned long*)
{
    ++g_calls;
    std::wcscpy(buffer, L"rubbish");
    return ERROR_INVALID_HANDLE;
}

// The product of opened media, whose handle answers the service's calls in the host's shape.
class ProductTextTest : public testing::Test
{
protected:
    void SetUp() override
    {
        g_calls = 0;
        MakeMedia(media);
        host = OpenHost(media, work);
        ASSERT_TRUE(host);
        database = host->GetSetupManager().m_pProducts->at(0)->GetMsiHandle();
    }
    void TearDown() override
    {
        host.reset();
        EXPECT_EQ(MsiCloseAllHandles(), 0u) << "installer handles were left open";
    }

    ScratchFolder work{L"work"};
    ScratchFolder media{L"media"};
    HostOwner host;
    InstallerHandle database = 0;
    CString text = L"kept";
};

} // namespace

TEST_F(ProductTextTest, AValueOf1500CharactersTakesTwoCallsAndComesWhole)
{
    const CString value(L'v', 1500);
    ASSERT_TRUE(WriteProperty(database, L"LONG", value));
    EXPECT_TRUE(GetInstallerText(database, L"LONG", text, CountedProductProperty));
    EXPECT_EQ(g_calls, 2);
    EXPECT_EQ(text, value);
}

TEST_F(ProductTextTest, AValueOf1023CharactersTakesOneCall)
{
    const CString value(L'v', 1023);
    ASSERT_TRUE(WriteProperty(database, L"LONG", value));
    EXPECT_TRUE(GetInstallerText(database, L"LONG", text, CountedProductProperty));
    EXPECT_EQ(g_calls, 1);
    EXPECT_EQ(text, value);
}

TEST_F(ProductTextTest, AValueOf1024CharactersTakesTwoCalls)
{
    const CString value(L'v', 1024);
    ASSERT_TRUE(WriteProperty(database, L"LONG", value));
    EXPECT_TRUE(GetInstallerText(database, L"LONG", text, CountedProductProperty));
    EXPECT_EQ(g_calls, 2);
    EXPECT_EQ(text, value);
}

TEST_F(ProductTextTest, AValueOf70000CharactersComesWhole)
{
    const CString value(L'v', 70000);
    ASSERT_TRUE(WriteProperty(database, L"LONG", value));
    EXPECT_TRUE(GetInstallerText(database, L"LONG", text, CountedProductProperty));
    EXPECT_TRUE(text == value) << text.GetLength();
}

TEST_F(ProductTextTest, ATargetPathComesByTheSameShape)
{
    EXPECT_TRUE(GetInstallerText(database, L"INSTALLDIR", text, WizGetTargetPathW));
    EXPECT_EQ(text.Right(11), CString(L"\\Zolt Test\\"));
}

TEST_F(ProductTextTest, AnUnknownDirectoryKeepsTheTarget)
{
    EXPECT_FALSE(GetInstallerText(database, L"NO_SUCH_KEY", text, WizGetTargetPathW));
    EXPECT_EQ(text, CString(L"kept"));
}

TEST_F(ProductTextTest, ASessionOfTheServiceAnswersInTheSameShape)
{
    const CTestFolder folder;
    MakePackage(folder / L"Other.msi");
    const CString value(L's', 1500);
    {
        CInstallerHandle package;
        ASSERT_EQ(MsiOpenDatabaseW(folder / L"Other.msi", MSIDBOPEN_DIRECT, package.put()), 0u);
        ASSERT_TRUE(WriteProperty(package.get(), L"LONG", value));
        const CSilentInstaller silent;
        CInstallerHandle session;
        CString name;
        name.Format(L"#%lu", package.get());
        ASSERT_EQ(MsiOpenPackageExW(name, MSIOPENPACKAGEFLAGS_IGNOREMACHINESTATE, session.put()), 0u);
        EXPECT_TRUE(GetInstallerText(session.get(), L"LONG", text, CountedSessionProperty));
    }
    EXPECT_EQ(g_calls, 2);
    EXPECT_EQ(text, value);
}

TEST_F(ProductTextTest, ASecondAnswerOfMoreDataIsAFailure)
{
    EXPECT_FALSE(GetInstallerText(database, L"A", text, NeverEnough));
    EXPECT_EQ(g_calls, 2);
    EXPECT_EQ(text, CString(L"kept"));
}

TEST_F(ProductTextTest, ARefusalTakesOneCallAndKeepsTheTarget)
{
    EXPECT_FALSE(GetInstallerText(database, L"A", text, Refuses));
    EXPECT_EQ(g_calls, 1);
    EXPECT_EQ(text, CString(L"kept"));
}
