// Packages of other makers, whose files lie where their word count and their rows say: opened, built, installed and
// added to, each as the only package at its media's root and in a folder of media with a description.
#include "include/directory_manager.h"
#include "installer/database.h"
#include "installer/query.h"
#include "installer/record.h"
#include "tests/host/folder_tree.h"
#include "tests/host/source_packages.h"
#include "tests/host/through_host.h"
#include "tests/host/user_additions.h"

#include <msiquery.h>

#include <tuple>

namespace {

enum class Shape
{
    Lone,   // the package alone, among files of others
    Folder, // media with a description
};

class PackageSourcesTest : public ThroughHostTest
{
protected:
    // The installer here takes cabinets from paths of the computer's own code page alone.
    PackageSourcesTest()
    {
        location = plain + L"shared deployments\\";
        RemoveFolder(Programs()); // what a test left that was ended
    }
    ~PackageSourcesTest() override
    {
        if (MsiQueryProductStateW(SOURCE_PRODUCT_CODE) == INSTALLSTATE_DEFAULT) {
            RunAndWait(CString(L"msiexec /x ") + SOURCE_PRODUCT_CODE + L" /qn /norestart");
        }
    }

    void Make(const SourcePackage& form, Shape shape)
    {
        if (shape == Shape::Lone) {
            m_media = plain + L"downloads\\Maker.msi";
            laid = MakeSourcePackage(m_media, form);
            WriteText(plain + L"downloads\\holiday.txt", L"somebody else's");
        } else {
            m_media = plain + L"media\\";
            laid = MakeSourceMedia(m_media, form);
        }
        packageFolder = shape == Shape::Lone ? CString() : CString(L"x64\\Maker\\");
        sourceFolder = (shape == Shape::Lone ? plain + L"downloads\\" : m_media) + packageFolder;
    }

    // The product, led to a new deployment; null when the media weren't opened.
    CProduct* BeginNew(const wchar_t* name)
    {
        return BeginOn(m_media, Setup::SETUPMODE_CREATE_DEPLOYMENT, CString(), name);
    }
    CProduct* BeginToModify(const wchar_t* name)
    {
        return BeginOn(location + name, Setup::SETUPMODE_MODIFY_DEPLOYMENT, name, name);
    }

    OperationError Refusal() const
    {
        OperationError error;
        const HostOwner opened(OpenSetupHost(OptionsFor(m_media, work), error));
        EXPECT_FALSE(opened) << "the media were opened";
        return error;
    }

    CString Source(const CString& name, const std::string& bytes)
    {
        const CString path = scratch + L"sources\\" + name;
        WriteFileBytes(path, bytes);
        return path;
    }

    CString Image(const wchar_t* name) const { return location + name + L"\\Image\\" + packageFolder; }

    static CString Programs()
    {
        wchar_t programs[MAX_PATH] = L"";
        GetEnvironmentVariableW(L"ProgramW6432", programs, MAX_PATH);
        return CString(programs) + L"\\" + SOURCE_FOLDER;
    }

    // What the package brings, however its files lie.
    static Tree Product()
    {
        Tree tree;
        tree[L"plain file.txt"] = "the plain one";
        tree[L"Support Files\\"] = "";
        tree[L"Support Files\\loose file.txt"] = "the loose one, longer";
        tree[L"Support Files\\packed file.txt"] = "the packed one, the longest";
        return tree;
    }

    Tree InstalledByTheMaker()
    {
        EXPECT_EQ(RunAndWait(L"msiexec /i \"" + sourceFolder + L"Maker.msi\" /qn /norestart"), 0u);
        Tree tree = ReadTree(Programs());
        EXPECT_EQ(RunAndWait(CString(L"msiexec /x ") + SOURCE_PRODUCT_CODE + L" /qn /norestart"), 0u);
        return tree;
    }

    void ExpectInstalls(const wchar_t* name, const Tree& expected)
    {
        EXPECT_EQ(RunAndWait(L"cmd.exe /d /c \"\"" + location + name + L"\\Install.cmd\"\""), 0u);
        const Tree found = ReadTree(Programs());
        EXPECT_EQ(NamesOf(found), NamesOf(expected));
        EXPECT_TRUE(found == expected) << "a file has other bytes";
        EXPECT_EQ(RunAndWait(L"cmd.exe /d /c \"\"" + location + name + L"\\Uninstall.cmd\"\""), 0u);
        EXPECT_EQ(NamesOf(ReadTree(Programs())), "");
    }

    ScratchFolder plain{L"sources"};
    CString packageFolder; // relative to the media's root
    CString sourceFolder;  // of the package
    std::vector<CString> laid;

private:
    CProduct* BeginOn(const CString& media, Setup::tagSETUPMODE mode, const CString& base,
                      const CString& name)
    {
        host.reset();
        host = OpenHost(media, work);
        if (!host) {
            return nullptr; // and a failure of the test
        }
        CSetupManager& manager = host->GetSetupManager();
        Begin(manager, mode, base, name);
        return manager.m_pProducts->at(0);
    }

    CString m_media;
};

using SourceCase = std::tuple<int, RowMarks, Shape>;

std::string NameOf(const SourceCase& value)
{
    const auto& [words, marks, shape] = value;
    return "Words" + std::to_string(words) + (marks == RowMarks::Mixed ? "Mixed" : "Plain") +
           (shape == Shape::Lone ? "Lone" : "Folder");
}

class EachPackage : public PackageSourcesTest, public testing::WithParamInterface<SourceCase>
{
protected:
    EachPackage()
    {
        SourcePackage form{std::get<0>(GetParam()), std::get<1>(GetParam()), Layout::Documented};
        // Windows describes no such images; here the installer takes all of their files from cabinets.
        if (form.wordCount >= 6) {
            form.layout = Layout::Packed;
        }
        Make(form, std::get<2>(GetParam()));
    }
};

INSTANTIATE_TEST_SUITE_P(Packages, EachPackage,
                         testing::Combine(testing::Range(0, 8),
                                          testing::Values(RowMarks::None, RowMarks::Mixed),
                                          testing::Values(Shape::Lone, Shape::Folder)),
                         [](const auto& value) { return NameOf(value.param); });

// Images whose files lie in folders, under long and under short names.
class EachImage : public PackageSourcesTest, public testing::WithParamInterface<std::tuple<int, Shape>>
{
protected:
    EachImage()
    {
        Make({std::get<0>(GetParam()), RowMarks::Mixed, Layout::Folders}, std::get<1>(GetParam()));
    }

    static bool HasShortNames() { return std::get<0>(GetParam()) & 1; }
};

INSTANTIATE_TEST_SUITE_P(Images, EachImage,
                         testing::Combine(testing::Values(4, 5), testing::Values(Shape::Lone, Shape::Folder)),
                         [](const auto& value) {
                             return "Words" + std::to_string(std::get<0>(value.param)) +
                                    (std::get<1>(value.param) == Shape::Lone ? "Lone" : "Folder");
                         });

// Images that also say compressed, with their files lying loose all the same.
class UnclearImage : public PackageSourcesTest,
                     public testing::WithParamInterface<std::tuple<int, Layout, Shape>>
{
protected:
    UnclearImage()
    {
        Make({std::get<0>(GetParam()), RowMarks::Mixed, std::get<1>(GetParam())}, std::get<2>(GetParam()));
    }
};

std::string NameOfUnclear(const std::tuple<int, Layout, Shape>& value)
{
    const auto& [words, layout, shape] = value;
    return "Words" + std::to_string(words) + (layout == Layout::Folders ? "Folders" : "Beside") +
           (shape == Shape::Lone ? "Lone" : "Folder");
}

INSTANTIATE_TEST_SUITE_P(Images, UnclearImage,
                         testing::Combine(testing::Values(6, 7),
                                          testing::Values(Layout::Folders, Layout::Beside),
                                          testing::Values(Shape::Lone, Shape::Folder)),
                         [](const auto& value) { return NameOfUnclear(value.param); });

} // namespace

TEST_P(EachPackage, InstallsFromItsDeploymentAsFromItsMedia)
{
    const Tree product = InstalledByTheMaker();
    ASSERT_TRUE(product == Product()) << NamesOf(product);
    ASSERT_TRUE(BeginNew(L"Plain"));
    Build();
    host.reset();
    ExpectInstalls(L"Plain", product);
}

TEST_P(EachPackage, TakesAdditionsThatInstallAndGo)
{
    Tree expected = Product();
    {
        CProduct* product = BeginNew(L"Added");
        ASSERT_TRUE(product);
        AddedRows rows(*product);
        rows.AddFile(Source(L"1\\added to the product.txt", "first"), L"INSTALLDIR");
        rows.AddFile(Source(L"2\\added to support.txt", std::string(70000, '2')), L"SUPPORTDIR");
        const CString outer = rows.AddFolder(L"Company files", L"INSTALLDIR");
        rows.AddFile(Source(L"3\\inside.txt", std::string("\0\1\2\xFF", 4)),
                     rows.AddFolder(L"It's in", outer));
    }
    Build();
    host.reset();
    expected[L"added to the product.txt"] = "first";
    expected[L"Support Files\\added to support.txt"] = std::string(70000, '2');
    expected[L"Company files\\"] = "";
    expected[L"Company files\\It's in\\"] = "";
    expected[L"Company files\\It's in\\inside.txt"] = std::string("\0\1\2\xFF", 4);
    ExpectInstalls(L"Added", expected);
}

TEST_P(EachPackage, ShowsPagesTheFolderWhereTheInstallerLooks)
{
    CProduct* product = BeginNew(L"Plain");
    ASSERT_TRUE(product);
    wchar_t path[MAX_PATH] = L"";
    unsigned int size = MAX_PATH;
    ASSERT_TRUE(product->m_pDirectoryManager->GetSourcePath(L"SUPPORTDIR", path, &size));
    const int words = std::get<0>(GetParam());
    const CString inFolders = words & 1 ? L"SRC\\SUPPOR~1\\" : L"Source Files\\Support Files\\";
    EXPECT_EQ(CString(path), sourceFolder + (words & 2 ? CString() : inFolders));
}

TEST_P(EachPackage, GoesIntoTheImageWithAllItsFilesAndNoOthers)
{
    ASSERT_TRUE(BeginNew(L"Plain"));
    Build();
    for (const CString& file : laid) {
        EXPECT_TRUE(IsFile(Image(L"Plain") + file)) << Utf8(file);
    }
    EXPECT_FALSE(IsFile(Image(L"Plain") + L"holiday.txt"));
}

TEST_P(EachPackage, IsRefusedByNameWithoutOneOfItsFiles)
{
    for (const CString& file : laid) {
        const CString path = sourceFolder + file;
        ASSERT_TRUE(MoveFileW(path, path + L".away"));
        const OperationError error = Refusal();
        EXPECT_GE(error.message.Find(path), 0) << Utf8(error.message);
        ASSERT_TRUE(MoveFileW(path + L".away", path));
    }
}

TEST_P(EachImage, LosesNoAdditionsWhenItsDeploymentIsModifiedWithoutTheirSources)
{
    Tree expected = Product();
    CString removedFile;
    CString removedFolder;
    {
        CProduct* product = BeginNew(L"Added");
        ASSERT_TRUE(product);
        AddedRows rows(*product);
        rows.AddFile(Source(L"kept.txt", "kept"), L"SUPPORTDIR");
        removedFolder = rows.AddFolder(L"Company files", L"INSTALLDIR");
        removedFile = rows.AddFile(Source(L"removed.txt", "removed"), removedFolder);
    }
    Build();
    RemoveFolder(scratch + L"sources\\");
    {
        CProduct* product = BeginToModify(L"Added");
        ASSERT_TRUE(product);
        AddedRows rows(*product);
        rows.RemoveFile(removedFolder, removedFile);
        rows.AddFile(Source(L"new.txt", "new"), L"INSTALLDIR");
    }
    Build();
    host.reset();
    const CString folder = Image(L"Added") + (HasShortNames() ? L"SRC\\" : L"Source Files\\");
    EXPECT_TRUE(IsFile(folder + L"new.txt"));
    EXPECT_FALSE(IsFolder(folder + L"Company files"));
    expected[L"Support Files\\kept.txt"] = "kept";
    expected[L"Company files\\"] = "";
    expected[L"new.txt"] = "new";
    ExpectInstalls(L"Added", expected);
}

TEST_P(EachImage, TakesAdditionsOnADrive)
{
    const CString workstation = plain + L"drive of the workstation";
    ASSERT_EQ(MakeFolders(workstation), 0u);
    const LinkedDrive letter(L"X:", workstation + L"\\");
    if (!letter.IsThere()) {
        GTEST_SKIP() << "drives are made by a link of the prefix, which this system doesn't have";
    }
    CProduct* product = BeginNew(L"Added");
    ASSERT_TRUE(product);
    {
        AddedRows rows(*product);
        const CString drive = rows.AddDrive(L"x:");
        rows.AddFile(Source(L"on drive.txt", "on the drive"), drive);
        rows.AddFile(Source(L"in folder.txt", "in the folder"), rows.AddFolder(L"Shared", drive));
    }
    Build();
    host.reset();
    EXPECT_EQ(RunAndWait(L"cmd.exe /d /c \"\"" + location + L"Added\\Install.cmd\"\""), 0u);
    Tree expected;
    expected[L"on drive.txt"] = "on the drive";
    expected[L"Shared\\"] = "";
    expected[L"Shared\\in folder.txt"] = "in the folder";
    const Tree found = ReadTree(workstation);
    EXPECT_TRUE(found == expected) << NamesOf(found);
    EXPECT_EQ(RunAndWait(L"cmd.exe /d /c \"\"" + location + L"Added\\Uninstall.cmd\"\""), 0u);
    EXPECT_EQ(NamesOf(ReadTree(workstation)), "");
}

TEST_P(EachImage, StaysWholeWhenItsLastAdditionGoes)
{
    CProduct* opened = BeginNew(L"Added");
    ASSERT_TRUE(opened);
    const CString key = AddedRows(*opened).AddFile(Source(L"kept.txt", "kept"), L"SUPPORTDIR");
    Build();
    const Tree with = ReadTree(location + L"Added\\Image");
    opened = BeginToModify(L"Added");
    ASSERT_TRUE(opened);
    AddedRows(*opened).RemoveFile(L"SUPPORTDIR", key);
    Build();
    host.reset();
    EXPECT_EQ(ReadTree(location + L"Added\\Image").size() + 1, with.size()) << NamesOf(with);
    ExpectInstalls(L"Added", Product());
}

// The source of the addition would take the place of the product's own, and that one would be lost.
TEST_P(EachImage, RefusesAnAdditionOfTheNameOfItsOwnFile)
{
    CProduct* product = BeginNew(L"Added");
    ASSERT_TRUE(product);
    const CString source = Source(HasShortNames() ? L"PLAINF~1.TXT" : L"plain file.txt", "another");
    AddedRows(*product).AddFile(source, L"INSTALLDIR");
    CSilentProgress progress;
    const BuildResult result = host->Build(progress);
    EXPECT_NE(result.error.code, 0u);
    EXPECT_GE(result.error.message.Find(source), 0) << Utf8(result.error.message);
    EXPECT_FALSE(IsFolder(location + L"Added"));
}

TEST_P(EachImage, NamesAnAdditionThatIsNowhereAnyMore)
{
    CProduct* product = BeginNew(L"Added");
    ASSERT_TRUE(product);
    const CString source = Source(L"gone.txt", "gone");
    AddedRows(*product).AddFile(source, L"INSTALLDIR");
    ASSERT_TRUE(DeleteFileW(source));
    CSilentProgress progress;
    const BuildResult result = host->Build(progress);
    EXPECT_EQ(result.error.code, 2u);
    EXPECT_GE(result.error.message.Find(source + L"\", which was added"), 0) << Utf8(result.error.message);
}

TEST_P(EachImage, HasTheSizeAndTheAttributeOfALooseAdditionInItsRow)
{
    CProduct* product = BeginNew(L"Added");
    ASSERT_TRUE(product);
    const CString source = Source(L"grows.txt", "1234");
    const CString key = AddedRows(*product).AddFile(source, L"INSTALLDIR");
    WriteFileBytes(source, "now longer");
    Build();
    host.reset();
    CInstallerHandle database;
    ASSERT_EQ(OpenDatabase(Image(L"Added") + L"Maker.msi", MSIDBOPEN_READONLY, database), 0u);
    CString values;
    EXPECT_EQ(ForEachRow(database.get(),
                         L"SELECT `FileSize`,`Attributes`,`Sequence` FROM `File` WHERE `File`=?", {key},
                         [&](MSIHANDLE record) {
                             values = RecordText(record, 1) + L" " + RecordText(record, 2) + L" " +
                                      RecordText(record, 3);
                             return true;
                         }),
              0u);
    EXPECT_EQ(values, CString(L"10 8192 3"));
    EXPECT_FALSE(IsFile(Image(L"Added") + L"TARN0001.cab"));
}

TEST_P(UnclearImage, GoesAlongAsItsFilesLie)
{
    ASSERT_TRUE(BeginNew(L"Plain"));
    Build();
    for (const CString& file : laid) {
        EXPECT_TRUE(IsFile(Image(L"Plain") + file)) << Utf8(file);
    }
}

TEST_P(UnclearImage, GetsAdditionsIntoFoldersOnlyWhereItsOwnFilesLieInTheirs)
{
    CProduct* product = BeginNew(L"Added");
    ASSERT_TRUE(product);
    AddedRows(*product).AddFile(Source(L"added.txt", "added"), L"SUPPORTDIR");
    Build();
    const bool shortNames = std::get<0>(GetParam()) & 1;
    const bool inFolders = std::get<1>(GetParam()) == Layout::Folders;
    const CString folder = shortNames ? L"SRC\\SUPPOR~1\\" : L"Source Files\\Support Files\\";
    EXPECT_EQ(IsFile(Image(L"Added") + folder + L"added.txt"), inFolders);
    EXPECT_EQ(IsFile(Image(L"Added") + L"TARN0001.cab"), !inFolders);
}

// A file that lies nowhere would have to be in the cabinet.
TEST_P(UnclearImage, IsRefusedWithTheCabinetsNameWithoutOneOfItsFiles)
{
    for (const CString& file : laid) {
        ASSERT_TRUE(MoveFileW(sourceFolder + file, sourceFolder + file + L".away"));
        const OperationError error = Refusal();
        EXPECT_GE(error.message.Find(sourceFolder + SOURCE_CABINET), 0) << Utf8(error.message);
        ASSERT_TRUE(MoveFileW(sourceFolder + file + L".away", sourceFolder + file));
    }
}

// A medium may name a cabinet from which nothing is installed.
TEST_F(PackageSourcesTest, ACabinetThatNothingComesFromIsNotMissed)
{
    Make({0, RowMarks::Mixed, Layout::Folders}, Shape::Lone);
    {
        CInstallerHandle database;
        ASSERT_EQ(OpenDatabase(sourceFolder + L"Maker.msi", MSIDBOPEN_TRANSACT, database), 0u);
        ASSERT_EQ(RunSql(database.get(), L"UPDATE `File` SET `Attributes`=8192"), 0u);
        ASSERT_EQ(MsiDatabaseCommit(database.get()), 0u);
    }
    EXPECT_TRUE(BeginNew(L"Plain"));
}

// Of two cabinets the one is asked for that the file's number leads to.
TEST_F(PackageSourcesTest, TheCabinetOfAFilesOwnMediumIsAskedFor)
{
    Make({2, RowMarks::None, Layout::Packed}, Shape::Lone);
    {
        CInstallerHandle database;
        ASSERT_EQ(OpenDatabase(sourceFolder + L"Maker.msi", MSIDBOPEN_TRANSACT, database), 0u);
        ASSERT_EQ(RunSql(database.get(), L"UPDATE `Media` SET `LastSequence`=2"), 0u);
        ASSERT_EQ(RunSql(database.get(), L"INSERT INTO `Media` (`DiskId`,`LastSequence`,`Cabinet`) VALUES "
                                         L"(2,3,'second.cab')"),
                  0u);
        ASSERT_EQ(MsiDatabaseCommit(database.get()), 0u);
    }
    EXPECT_GE(Refusal().message.Find(L"second.cab"), 0);
}

// The media's folder is copied as it is found: the build said that all was well, and no workstation could install.
TEST_F(PackageSourcesTest, ACabinetThatIsGoneSinceTheFirstPageStopsTheBuild)
{
    for (const Shape shape : {Shape::Folder, Shape::Lone}) {
        Make({2, RowMarks::None, Layout::Packed}, shape);
        ASSERT_TRUE(BeginNew(L"Gone"));
        ASSERT_TRUE(DeleteFileW(sourceFolder + SOURCE_CABINET));
        CSilentProgress progress;
        const BuildResult result = host->Build(progress);
        EXPECT_EQ(result.error.code, unsigned{ERROR_FILE_NOT_FOUND});
        EXPECT_GE(result.error.message.Find(sourceFolder + SOURCE_CABINET), 0) << Utf8(result.error.message);
        EXPECT_FALSE(IsFolder(location + L"Gone"));
    }
}
