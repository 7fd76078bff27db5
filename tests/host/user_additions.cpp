#include "tests/host/user_additions.h"

#include "msi/msi_property.h"
#include "tests/support/empty_product.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <msi.h>
#include <msiquery.h>

namespace {

// A product with nothing but an open database.
class BareProduct final : public EmptyProduct
{
public:
    BareProduct(InstallerHandle database, int lastSequence) : m_database(database)
    {
        m_fileSequence = lastSequence;
        m_x64Marker = 1;
    }
    InstallerHandle GetMsiHandle() override { return m_database; }
    bool SetMsiProperty(const wchar_t* name, const wchar_t* value, bool) override
    {
        return WriteProperty(m_database, name, value);
    }

private:
    InstallerHandle m_database;
};

unsigned int Run(MSIHANDLE database, const wchar_t* statement)
{
    MSIHANDLE view = 0;
    unsigned int code = MsiDatabaseOpenViewW(database, statement, &view);
    if (code == ERROR_SUCCESS) {
        code = MsiViewExecute(view, 0);
        MsiCloseHandle(view);
    }
    return code;
}

} // namespace

void MakeAdditionTables(const CString& path)
{
    MSIHANDLE database = 0;
    ASSERT_EQ(MsiOpenDatabaseW(path, MSIDBOPEN_TRANSACT, &database), 0u);
    for (const wchar_t* statement : {L"CREATE TABLE `CreateFolder` (`Directory_` CHAR(72) NOT NULL, "
                                     L"`Component_` CHAR(72) NOT NULL PRIMARY "
                                     L"KEY `Directory_`, `Component_`)",
                                     L"CREATE TABLE `CustomAction` (`Action` CHAR(72) NOT NULL, `Type` SHORT "
                                     L"NOT NULL, `Source` CHAR(72), "
                                     L"`Target` CHAR(255) PRIMARY KEY `Action`)",
                                     L"CREATE TABLE `TarnCustomFile` (`Component_` CHAR(72) NOT NULL, "
                                     L"`SourceFileName` LONGCHAR, `Flags` "
                                     L"LONG PRIMARY KEY `Component_`)"}) {
        EXPECT_EQ(Run(database, statement), 0u) << Utf8(statement);
    }
    EXPECT_EQ(MsiDatabaseCommit(database), 0u);
    MsiCloseHandle(database);
}

AddedRows::AddedRows(InstallerHandle database, int lastSequence)
    : m_product(std::make_unique<BareProduct>(database, lastSequence)), m_writer(m_product.get(), database)
{
    g_bUserFeatureExists = false; // as at the start of a program
}

AddedRows::AddedRows(CProduct& product) : m_writer(&product, product.GetMsiHandle())
{
}

AddedRows::~AddedRows() = default;

CString AddedRows::AddFile(const CString& source, const CString& parent)
{
    CString key;
    EXPECT_TRUE(m_writer.AddUserFile(source, parent, key)) << Utf8(source);
    return key;
}

CString AddedRows::AddFolder(const CString& name, const CString& parent)
{
    CString key;
    EXPECT_TRUE(m_writer.AddUserFolder(name, parent, key)) << Utf8(name);
    return key;
}

CString AddedRows::AddDrive(const CString& drive)
{
    CString key;
    EXPECT_TRUE(m_writer.AddUserDrive(drive, key)) << Utf8(drive);
    return key;
}

void AddedRows::RemoveFile(const CString& parent, const CString& key)
{
    EXPECT_TRUE(m_writer.RemoveUserFile(parent, key)) << Utf8(key);
}

void AddedRows::RemoveFolder(const CString& key)
{
    EXPECT_TRUE(m_writer.RemoveUserFolder(key)) << Utf8(key);
}

void AddedRows::RenameFolder(const CString& parent, const CString& key, const CString& name)
{
    EXPECT_TRUE(m_writer.UpdateUserItem(parent, key, name, false)) << Utf8(name);
}
