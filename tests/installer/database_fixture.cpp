#include "tests/installer/database_fixture.h"

#include "installer/missing_tables.h"
#include "installer/query.h"
#include "installer/record.h"

#include <ostream>

namespace {

CString ColumnText(MSIHANDLE record, unsigned int column)
{
    return MsiRecordIsNull(record, column) ? NULL_VALUE : RecordText(record, column);
}

} // namespace

Rows Select(MSIHANDLE database, const CString& query)
{
    Rows rows;
    const unsigned int result = ForEachRow(database, query, {}, [&](MSIHANDLE record) {
        Row row;
        for (unsigned int column = 1; column <= MsiRecordGetFieldCount(record); ++column) {
            row.push_back(ColumnText(record, column));
        }
        rows.push_back(row);
        return true;
    });
    EXPECT_EQ(result, 0u) << Utf8(query);
    return rows;
}

unsigned int OpenResult(MSIHANDLE database, const CString& statement)
{
    CInstallerHandle view;
    return MsiDatabaseOpenViewW(database, statement, view.put());
}

void PrintTo(const Rows& rows, std::ostream* stream)
{
    for (const Row& row : rows) {
        *stream << "\n   ";
        for (const CString& column : row) {
            *stream << " | " << Utf8(column.Left(200));
        }
    }
}

void DatabaseTest::SetUp()
{
    ASSERT_EQ(MsiOpenDatabaseW(m_folder / L"Zolt.msi", MSIDBOPEN_CREATE, m_database.put()), 0u);
    CString failed;
    ASSERT_EQ(AddMissingTables(m_database.get(), failed), 0u) << Utf8(failed);
}

void DatabaseTest::TearDown()
{
    m_database.reset();
    EXPECT_EQ(MsiCloseAllHandles(), 0u) << "installer handles were left open";
}

void DatabaseTest::Run(const CString& statement)
{
    ASSERT_EQ(RunStatement(Database(), statement), 0u) << Utf8(statement);
}

void DatabaseTest::ReopenReadOnly()
{
    ASSERT_EQ(MsiDatabaseCommit(Database()), 0u);
    ReopenFile();
}

void DatabaseTest::ReopenFile()
{
    m_database.reset();
    ASSERT_EQ(MsiOpenDatabaseW(m_folder / L"Zolt.msi", MSIDBOPEN_READONLY, m_database.put()), 0u);
}
