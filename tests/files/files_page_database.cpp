// The database of the page's tests: the product's own rows, and rows as the page writes them.
#include "installer/missing_tables.h"
#include "tests/files/files_page.h"

#include <shlobj.h>

void FilesPage::MakeDatabase(const wchar_t* file)
{
    m_database.reset();
    EXPECT_EQ(MsiOpenDatabaseW(folder / file, MSIDBOPEN_CREATE, m_database.put()), 0u);
    CString failed;
    EXPECT_EQ(AddMissingTables(m_database.get(), failed), 0u) << Utf8(failed);
    context.hDatabase = m_database.get();
}

void FilesPage::FillDatabase()
{
    WithMapRow(L"INSTALLDIR", Expanded(L"~"), 0);
    WithDirectory(L"TARGETDIR", L"", L"SourceDir", L"C:\\", L"D:\\media\\");
    WithDirectory(L"INSTALLDIR", L"TARGETDIR", L"Zolt", L"C:\\Zolt\\", L"D:\\media\\Zolt\\");
    WithUsedDirectory(L"FONTS", L"INSTALLDIR", L"Fonts", L"C:\\Zolt\\Fonts\\", L"D:\\media\\Zolt\\Fonts\\");
    WithDirectory(L"SAMPLES", L"INSTALLDIR", L"Samples", L"C:\\Zolt\\Samples\\",
                  L"D:\\media\\Zolt\\Samples\\");
    WithUsedDirectory(L"DEEP", L"SAMPLES", L"Deep", L"C:\\Zolt\\Samples\\Deep\\",
                      L"D:\\media\\Zolt\\Samples\\Deep\\");
}

bool FilesPage::TryRun(const CString& statement)
{
    CInstallerHandle view;
    return MsiDatabaseOpenViewW(m_database.get(), statement, view.put()) == 0 &&
           MsiViewExecute(view.get(), 0) == 0;
}

void FilesPage::Run(const CString& statement)
{
    EXPECT_TRUE(TryRun(statement)) << Utf8(statement);
}

void FilesPage::WithDirectory(const CString& key, const CString& parent, const CString& name,
                              const CString& target, const CString& source)
{
    DirectoryData row;
    row.Directory = key;
    row.Directory_Parent = parent;
    row.DefaultDir = name;
    EXPECT_TRUE(row.Execute(m_database.get())) << Utf8(key);
    directories.Set(key, parent, name, target, source);
}

void FilesPage::WithComponent(const CString& key, const CString& directory)
{
    ComponentData row;
    row.Component = key;
    row.Directory_ = directory;
    EXPECT_TRUE(row.Execute(m_database.get())) << Utf8(key);
}

void FilesPage::WithUsedDirectory(const CString& key, const CString& parent, const CString& name,
                                  const CString& target, const CString& source)
{
    WithDirectory(key, parent, name, target, source);
    WithComponent(L"of" + key.Left(60), key);
}

void FilesPage::WithMapRow(const CString& key, const CString& text, int flags)
{
    Run(L"INSERT INTO `TarnDirectoryMap` (`Directory_`,`LocalString`,`Flags`) VALUES ('" + key + L"','" +
        text + L"'," + NumberText(flags) + L")");
}

void FilesPage::WithFile(const CString& key, const CString& directory, const CString& source)
{
    FileData file;
    file.File = key;
    file.Component_ = key;
    file.FileName = source.Mid(source.ReverseFind(L'\\') + 1);
    EXPECT_TRUE(file.Execute(m_database.get()));
    WithComponent(key, directory);
    Run(L"INSERT INTO `FeatureComponents` (`Feature_`,`Component_`) VALUES ('_UserDeploymentFile','" + key +
        L"')");
    Run(L"INSERT INTO `CreateFolder` (`Directory_`,`Component_`) VALUES ('" + directory + L"','" + key +
        L"')");
    CustomFileData added;
    added.Component_ = key;
    added.SourceFileName = source;
    EXPECT_TRUE(added.Execute(m_database.get()));
}

void FilesPage::WithFolder(const CString& key, const CString& parent, const CString& name)
{
    DirectoryData row;
    row.Directory = key;
    row.Directory_Parent = parent;
    row.DefaultDir = name;
    EXPECT_TRUE(row.Execute(m_database.get()));
    WithComponent(key, key);
    Run(L"INSERT INTO `FeatureComponents` (`Feature_`,`Component_`) VALUES ('_UserDeploymentFile','" + key +
        L"')");
    Run(L"INSERT INTO `CreateFolder` (`Directory_`,`Component_`) VALUES ('" + key + L"','" + key + L"')");
    CustomFileData added;
    added.Component_ = key;
    added.SourceFileName = name;
    added.Flags = 2;
    EXPECT_TRUE(added.Execute(m_database.get()));
}

void FilesPage::WithDrive(const CString& key, const CString& drive)
{
    Run(L"INSERT INTO `Directory` (`Directory`,`Directory_Parent`,`DefaultDir`) VALUES ('" + key +
        L"','TARGETDIR','DRIVE_" + drive.Left(1) + L"')");
    Run(L"INSERT INTO `CustomAction` (`Action`,`Type`,`Source`,`Target`) VALUES ('" + key + L"',51,'" + key +
        L"','" + drive + L"')");
    Run(L"INSERT INTO `InstallExecuteSequence` (`Action`,`Sequence`) VALUES ('" + key + L"',1)");
    product.msiProperties[key + L"_SUBST"] = drive;
}

void FilesPage::WithFreshDatabase(const wchar_t* file)
{
    MakeDatabase(file);
    directories.Clear();
}

void FilesPage::RemoveRowsOf(const CString& key)
{
    Run(L"DELETE FROM `File` WHERE `File`='" + key + L"'");
    Run(L"DELETE FROM `Component` WHERE `Component`='" + key + L"'");
    for (const wchar_t* table : {L"FeatureComponents", L"CreateFolder", L"TarnCustomFile"}) {
        Run(CString(L"DELETE FROM `") + table + L"` WHERE `Component_`='" + key + L"'");
    }
}

CString FilesPage::Source(const CString& name, const char* bytes)
{
    const CString path = folder.GetPath() + L"sources\\" + name;
    SHCreateDirectoryExW(nullptr, path.Left(path.ReverseFind(L'\\')), nullptr);
    WriteFileBytes(path, bytes);
    return path;
}

void FilesPage::ExpectNoAdditions()
{
    for (const wchar_t* table : {L"TarnCustomFile", L"CreateFolder", L"FeatureComponents", L"File",
                                 L"CustomAction", L"InstallExecuteSequence"}) {
        EXPECT_EQ(Count(table), 0) << Utf8(table);
    }
    for (const wchar_t* table : {L"Directory", L"Component"}) {
        for (const Row& row : Select(CString(L"SELECT * FROM `") + table + L"`")) {
            EXPECT_NE(row[0].Left(5), CString(L"TARN_")) << Utf8(table);
        }
    }
}
