#include "tests/host/user_additions.h"

#include "host/build/build_names.h"

#include <windows.h>

#include <msi.h>
#include <msiquery.h>
#include <objbase.h>

namespace {

CString NewKey()
{
    GUID guid = {};
    wchar_t text[40] = L"";
    EXPECT_EQ(CoCreateGuid(&guid), S_OK);
    StringFromGUID2(guid, text, ARRAYSIZE(text));
    CString key = L"TARN_" + CString(text + 1, 36).MakeUpper();
    key.Replace(L"-", L"_");
    return key;
}

CString GuidOf(const CString& key)
{
    CString guid = key.Mid(5);
    guid.Replace(L"_", L"-");
    return L"{" + guid + L"}";
}

CString Quoted(const CString& text)
{
    return L"'" + text + L"'";
}

long long SizeOf(const CString& path)
{
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    GetFileAttributesExW(UnlimitedPath(path), GetFileExInfoStandard, &data);
    return data.nFileSizeLow;
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
        EXPECT_EQ(RunSql(database, statement), 0u) << Utf8(statement);
    }
    EXPECT_EQ(MsiDatabaseCommit(database), 0u);
    MsiCloseHandle(database);
}

void UserAdditionRows::Run(const CString& statement, const CString* bound)
{
    MSIHANDLE view = 0;
    const MSIHANDLE record = bound ? MsiCreateRecord(1) : 0;
    if (bound) {
        MsiRecordSetStringW(record, 1, *bound);
    }
    EXPECT_EQ(MsiDatabaseOpenViewW(m_database, statement, &view), 0u) << Utf8(statement);
    EXPECT_EQ(MsiViewExecute(view, record), 0u) << Utf8(statement);
    MsiCloseHandle(view);
    MsiCloseHandle(record);
}

void UserAdditionRows::EnsureFeature()
{
    if (!m_featureWritten) {
        m_featureWritten = true;
        Run(L"INSERT INTO `Feature` (`Feature`, `Feature_Parent`,`Title`,`Description`,`Display`,`Level`,"
            L"`Directory_`,`Attributes`) VALUES( '_UserDeploymentFile', '', 'User Deployment Files', 'User "
            L"deployment files.', '0', '1', 'INSTALLDIR', '16') ");
    }
}

void UserAdditionRows::AddComponent(const CString& key, const CString& directory)
{
    Run(L"INSERT INTO `Component` "
        L"(`Component`,`ComponentId`,`Directory_`,`Attributes`,`Condition`,`KeyPath`) "
        L"VALUES (" +
        Quoted(key) + L"," + Quoted(GuidOf(key)) + L"," + Quoted(directory) + L",'256','','')");
    Run(L"INSERT INTO `FeatureComponents` (`Feature_`,`Component_`) VALUES ('_UserDeploymentFile'," +
        Quoted(key) + L")");
    Run(L"INSERT INTO `CreateFolder` (`Directory_`,`Component_`) VALUES (" + Quoted(directory) + L"," +
        Quoted(key) + L")");
}

CString UserAdditionRows::AddFile(const CString& source, const CString& parent)
{
    EnsureFeature();
    const CString key = NewKey();
    const CString name = LastName(source) + L"|" + LastName(source);
    Run(L"INSERT INTO `File` (`FileName`,`File`,`Component_`,`FileSize`,`Version`,`Language`,`Attributes`,"
        L"`Sequence`) VALUES (?, " +
            Quoted(key) + L"," + Quoted(key) + L",'" + NumberText(SizeOf(source)) + L"','','','0','" +
            NumberText(++m_sequence) + L"')",
        &name);
    AddComponent(key, parent);
    Run(L"INSERT INTO `TarnCustomFile` (`SourceFileName`,`Component_`,`Flags`) VALUES (?," + Quoted(key) +
            L",'0')",
        &source);
    return key;
}

CString UserAdditionRows::AddFolder(const CString& name, const CString& parent)
{
    EnsureFeature();
    const CString key = NewKey();
    Run(L"INSERT INTO `Directory` (`DefaultDir`,`Directory`,`Directory_Parent`) VALUES (?," + Quoted(key) +
            L"," + Quoted(parent) + L")",
        &name);
    AddComponent(key, key);
    Run(L"INSERT INTO `TarnCustomFile` (`SourceFileName`,`Component_`,`Flags`) VALUES (?," + Quoted(key) +
            L",'2')",
        &name);
    return key;
}

CString UserAdditionRows::AddDrive(const CString& drive)
{
    const CString key = NewKey();
    const CString name = L"DRIVE_" + drive.Left(1);
    Run(L"INSERT INTO `Directory` (`DefaultDir`,`Directory`,`Directory_Parent`) VALUES (?," + Quoted(key) +
            L",'TARGETDIR')",
        &name);
    Run(L"INSERT INTO `CustomAction` (`Action`,`Type`,`Source`,`Target`) VALUES (" + Quoted(key) + L",'51'," +
        Quoted(key) + L"," + Quoted(drive) + L")");
    Run(L"INSERT INTO `InstallExecuteSequence` (`Action`,`Condition`,`Sequence`) VALUES (" + Quoted(key) +
        L",'','1')");
    Run(L"INSERT INTO `Property` (`Property`,`Value`) VALUES ('" + key + L"_SUBST'," + Quoted(drive) + L")");
    return key;
}

void UserAdditionRows::RemoveFile(const CString& parent, const CString& key)
{
    --m_sequence;
    Run(L"DELETE FROM `File` WHERE `File`=" + Quoted(key));
    Run(L"DELETE FROM `Component` WHERE `Component`=" + Quoted(key));
    Run(L"DELETE FROM `FeatureComponents` WHERE `Feature_`='_UserDeploymentFile' AND `Component_`=" +
        Quoted(key));
    Run(L"DELETE FROM `CreateFolder` WHERE `Directory_`=" + Quoted(parent) + L" AND `Component_`=" +
        Quoted(key));
    Run(L"DELETE FROM `TarnCustomFile` WHERE `Component_`=" + Quoted(key));
}
