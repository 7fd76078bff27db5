// A fresh database with all tables that the pages need, made and read back with the service's own calls.
#pragma once

#include "installer/handle.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>
#include <msi.h>
#include <msiquery.h>

#include <vector>

using Row = std::vector<CString>; // a text a column; NULL_VALUE for null
using Rows = std::vector<Row>;

inline const CString NULL_VALUE = L"(null)";

// What a query gives, in the service's order. A query that fails fails the test.
Rows Select(MSIHANDLE database, const CString& query);
// The codes of opening the statement, and of running it.
unsigned int OpenResult(MSIHANDLE database, const CString& statement);

void PrintTo(const Rows& rows, std::ostream* stream);

// After each test nothing but the test's own database may be open.
class DatabaseTest : public testing::Test
{
protected:
    void SetUp() override;
    void TearDown() override;

    MSIHANDLE Database() const { return m_database.get(); }
    void Run(const CString& statement);
    Rows Select(const CString& query) { return ::Select(Database(), query); }
    // Commits, and opens the file again for reading alone.
    void ReopenReadOnly();
    // Opens the file again without a commit: what isn't in it is gone.
    void ReopenFile();

private:
    CTestFolder m_folder;
    CInstallerHandle m_database;
};
