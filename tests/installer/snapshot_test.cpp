// All that a database holds, as values.
#include "installer/snapshot.h"

#include "installer/query.h"
#include "tests/installer/database_fixture.h"
#include "tests/installer/refusal.h"

#include <string>

namespace {

// The bytes themselves stand for a stream.
CString Bytes(const StreamReader& read)
{
    char bytes[3];
    CString text;
    while (const std::size_t count = read(bytes, sizeof(bytes))) {
        for (std::size_t index = 0; index < count; ++index) {
            text += static_cast<wchar_t>(bytes[index]);
        }
    }
    return text;
}

class SnapshotTest : public DatabaseTest
{
protected:
    void SetUp() override
    {
        DatabaseTest::SetUp();
        Run(L"INSERT INTO `FeatureComponents` (`Feature_`,`Component_`) VALUES ('feat','comp')");
        Run(L"INSERT INTO `Media` (`DiskId`,`LastSequence`) VALUES (1,20000)");
    }
    // A row of `Binary` with the stream, or without one for a null text.
    void AddBinary(const wchar_t* name, const char* bytes)
    {
        if (!HasBinary) {
            Run(L"CREATE TABLE `Binary` (`Name` CHAR(72) NOT NULL, `Data` OBJECT PRIMARY KEY `Name`)");
            HasBinary = true;
        }
        Insert(CString(L"INSERT INTO `Binary` (`Data`,`Name`) VALUES (?,'") + name + L"')", bytes);
    }
    void Insert(const CString& statement, const char* bytes)
    {
        const CInstallerHandle record(MsiCreateRecord(1));
        if (bytes) {
            ASSERT_EQ(MsiRecordSetStreamW(record.get(), 1, m_sources.AddFile(L"stream", bytes)), 0u);
        }
        CQuery insert;
        ASSERT_EQ(insert.Open(Database(), statement), 0u);
        ASSERT_EQ(insert.Execute(record.get()), 0u) << Utf8(statement);
    }
    DatabaseSnapshot Read() { return ReadDatabaseSnapshot(Database(), calls); }

    SnapshotCalls calls = {Bytes, [] {}};
    bool HasBinary = false;

private:
    CTestFolder m_sources;
};

std::string FailureOf(MSIHANDLE database, const SnapshotCalls& calls)
{
    try {
        static_cast<void>(ReadDatabaseSnapshot(database, calls));
    } catch (const SnapshotFailure& failure) {
        return std::to_string(failure.code) + " " + Utf8(failure.strPart);
    }
    return "none";
}

} // namespace

TEST_F(SnapshotTest, ATableHasItsColumnsItsKeyAndItsRows)
{
    const TableSnapshot media = Read().at(L"Media");
    EXPECT_EQ(media.columns.at(1), CString(L"LastSequence"));
    EXPECT_EQ(media.columnTypes.at(0), CString(L"i2"));
    EXPECT_EQ(media.keyColumns, 1);
    ASSERT_EQ(media.rows.size(), 1u);
    EXPECT_EQ(media.rows.begin()->first, Row{L"1"});
    EXPECT_EQ(media.rows.begin()->second, (Row{L"1", L"20000", L"", L"", L"", L""}));
}

TEST_F(SnapshotTest, AKeyOfTwoColumnsIsReadWhole)
{
    const TableSnapshot assignments = Read().at(L"FeatureComponents");
    EXPECT_EQ(assignments.keyColumns, 2);
    EXPECT_EQ(assignments.rows.count({L"feat", L"comp"}), 1u);
}

TEST_F(SnapshotTest, AStreamStandsAsItIsDescribedAndANullOneIsEmpty)
{
    AddBinary(L"Icon", "1234567");
    AddBinary(L"None", nullptr);
    const TableSnapshot binary = Read().at(L"Binary");
    EXPECT_EQ(binary.rows.at({L"Icon"}).at(1), CString(L"1234567"));
    EXPECT_EQ(binary.rows.at({L"None"}).at(1), CString());
}

TEST_F(SnapshotTest, AStreamOfNoRowStandsAmongTheStreamsAndOneOfARowDoesNot)
{
    AddBinary(L"Icon", "1");
    Insert(L"INSERT INTO `_Streams` (`Data`,`Name`) VALUES (?,'product.cab')", "cabinet");
    const TableSnapshot streams = Read().at(L"_Streams");
    ASSERT_EQ(streams.rows.size(), 1u);
    EXPECT_EQ(streams.rows.begin()->second, (Row{L"product.cab", L"cabinet"}));
}

TEST_F(SnapshotTest, TablesThatAreNotThereAreLeftOut)
{
    const DatabaseSnapshot some = ReadTableSnapshots(Database(), {L"Media", L"NoSuch"}, calls);
    ASSERT_EQ(some.size(), 1u);
    EXPECT_EQ(some.begin()->first, CString(L"Media"));
    EXPECT_EQ(some.begin()->second.rows.size(), 1u);
}

TEST_F(SnapshotTest, AFailureNamesWhatWasRead)
{
    EXPECT_EQ(FailureOf(0, calls), "6 the list of tables");
    {
        const Refusal refusal("MsiViewFetch", RefuseToFetch);
        EXPECT_EQ(FailureOf(Database(), calls), "1627 the list of tables");
    }
    const Refusal refusal("MsiRecordGetStringW", RefuseToRead);
    EXPECT_EQ(FailureOf(Database(), calls), "1627 a value");
}

TEST_F(SnapshotTest, PollingIsAskedForEachTableAndEndsTheReadingByAnException)
{
    int polls = 0;
    calls.poll = [&] { ++polls; };
    const std::size_t tables = Read().size();
    EXPECT_EQ(polls, static_cast<int>(tables));
    calls.poll = [] { throw 1; };
    EXPECT_THROW(Read(), int);
}
