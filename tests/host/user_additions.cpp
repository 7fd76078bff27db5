#include "tests/host/user_additions.h"

#include "msi/msi_property.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <msi.h>
#include <msiquery.h>

namespace {

// A product with nothing but an open database.
class BareProduct final : public CProduct
{
public:
    BareProduct(InstallerHandle database, int lastSequence) : m_database(database)
    {
        m_fileSequence = lastSequence;
        m_x64Marker = 1;
    }
    InstallerHandle GetMsiHandle() override { return m_database; }
    bool GetMsiProperty(const wchar_t*, wchar_t*, int*) override { return false; }
    bool SetMsiProperty(const wchar_t* name, const wchar_t* value, bool) override
    {
        return WriteProperty(m_database, name, value);
    }
    bool GetProperty(const wchar_t*, wchar_t*, int*) override { return false; }
    void SetProperty(const wchar_t*, const wchar_t*) override {}
    Setup::tagPATCHSTATE GetMsiPatchState() override { return Setup::PATCHSTATE_0; }
    Setup::tagPATCHSTATE GetPatchState() override { return Setup::PATCHSTATE_0; }
    void SetPatchState(Setup::tagPATCHSTATE) override {}
    bool IsPatchMerged(const CString&) override { return false; }
    void SetDownloadedMSPPath(const CString&) override {}
    void SetDownloadedPatchName(const CString&) override {}
    void SetDownloadedPatchReadmeURL(const CString&) override {}
    void SetDownloadedPatchSize(const CString&) override {}
    CString GetDownloadedMSPPath() override { return {}; }
    CString GetDownloadedPatchName() override { return {}; }
    CString GetDownloadedPatchReadmeURL() override { return {}; }
    CString GetDownloadedPatchSize() override { return {}; }
    void SetIncludeSP(int) override {}
    std::vector<CProduct*>& GetLPChildren() override { return m_packs; }
    bool GetCustomShortcuts(std::vector<ShortcutStrings>&) override { return false; }

private:
    InstallerHandle m_database;
    std::vector<CProduct*> m_packs;
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
