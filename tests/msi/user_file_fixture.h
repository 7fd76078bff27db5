// A product of opened media, and the writer that adds to it. After each test no installer handle may be open.
#pragma once

#include "include/product.h"
#include "installer/database.h"
#include "msi/msi_property.h"
#include "msi/user_file_writer.h"
#include "tests/host/package_maker.h"
#include "tests/installer/database_fixture.h"

#include <algorithm>

class UserFileTest : public testing::Test
{
protected:
    void SetUp() override
    {
        g_bUserFeatureExists = false; // as in a module that was just loaded
        MakeMedia(media);
        host = OpenHost(media, work);
        ASSERT_TRUE(host);
        product = host->GetSetupManager().m_pProducts->at(0);
        writer = CUserFileWriter(product, product->GetMsiHandle());
        Run(L"DELETE FROM `File` WHERE `File`='a'"); // the package's own
        Run(L"DELETE FROM `File` WHERE `File`='b'");
    }
    void TearDown() override
    {
        host.reset();
        EXPECT_EQ(MsiCloseAllHandles(), 0u) << "installer handles were left open";
    }

    MSIHANDLE Database() const { return writer.Database; }
    Rows Select(const CString& query) { return ::Select(Database(), query); }
    void Run(const CString& statement) { ASSERT_EQ(RunSql(Database(), statement), 0u) << Utf8(statement); }
    void Drop(const wchar_t* table) { Run(CString(L"DROP TABLE `") + table + L"`"); }

    CString Source(const wchar_t* name, const std::string& bytes = "12345")
    {
        const CString path = static_cast<const CString&>(sources) + name;
        WriteFileBytes(path, bytes);
        return path;
    }
    CString AddFile(const wchar_t* name)
    {
        CString key;
        EXPECT_TRUE(writer.AddUserFile(Source(name), L"INSTALLDIR", key));
        return key;
    }
    CString AddFolder(const wchar_t* name, const wchar_t* parent = L"INSTALLDIR")
    {
        CString key;
        EXPECT_TRUE(writer.AddUserFolder(name, parent, key));
        return key;
    }
    CString AddDrive(const wchar_t* drive)
    {
        CString key;
        EXPECT_TRUE(writer.AddUserDrive(drive, key));
        return key;
    }
    // The tables of the user's rows that hold something, in the order of writing.
    CString FilledTables()
    {
        CString names;
        for (const wchar_t* table : {L"File", L"Component", L"FeatureComponents", L"CreateFolder",
                                     L"CustomAction", L"InstallExecuteSequence", L"TarnCustomFile"}) {
            if (HasTable(Database(), table) && !Select(CString(L"SELECT * FROM `") + table + L"`").empty()) {
                names += CString(table) + L" ";
            }
        }
        return (HasUserDirectory() ? L"Directory " : L"") + names;
    }
    // The package has directories of its own.
    bool HasUserDirectory()
    {
        const Rows folders =
            HasTable(Database(), L"Directory") ? Select(L"SELECT `Directory` FROM `Directory`") : Rows();
        return std::any_of(folders.begin(), folders.end(),
                           [](const Row& row) { return row[0].Left(5) == L"TARN_"; });
    }
    CString DefaultDirOf(const CString& key)
    {
        const Rows rows = Select(L"SELECT `DefaultDir` FROM `Directory` WHERE `Directory`='" + key + L"'");
        return rows.size() == 1 ? rows[0][0] : CString(L"(none)");
    }
    CString SequenceOf(const CString& key)
    {
        const Rows rows = Select(L"SELECT `Sequence` FROM `File` WHERE `File`='" + key + L"'");
        return rows.size() == 1 ? rows[0][0] : CString(L"(none)");
    }

    ScratchFolder work{L"work"};
    ScratchFolder media{L"media"};
    ScratchFolder sources{L"sources"};
    HostOwner host;
    CProduct* product = nullptr;
    CUserFileWriter writer;
};
