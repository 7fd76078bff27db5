// Adding files, folders and drives by the buttons: where they go, what is asked, which rows are written.
#include "tests/files/files_page.h"
#include "tests/rules/user_key.h"

namespace {

int g_hookRuns = 0;

class FilesAdd : public FilesPage
{
protected:
    // Presses a button that may be off, as a key of a hook or another program would.
    void Command(int id)
    {
        Look([this, id] {
            PostMessageW(Page(), WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                         reinterpret_cast<LPARAM>(GetDlgItem(Page(), id)));
        });
    }
    void AddTo(const CString& path, const Lines& sources)
    {
        SelectNode(path);
        AddFiles(sources);
    }
    void DropTable(const wchar_t* table)
    {
        Look([this, table] { Run(CString(L"DROP TABLE `") + table + L"`"); });
    }
    static CString Numbered(int number)
    {
        CString name;
        name.Format(ResourceText(IDS_NEW_FOLDER_NUMBERED), number);
        return name;
    }
    static const CString NEW_FOLDER;
};
const CString FilesAdd::NEW_FOLDER = L"New folder";
INSTANTIATE_BOTH_SHAPES(FilesAdd);

// The machine's drives: a disc, fixed ones of which one stands for a folder, one of a network.
DWORD WINAPI DrivesOfTest(DWORD capacity, wchar_t* buffer)
{
    static constexpr wchar_t DRIVES[] = L"A:\\\0D:\\\0E:\\\0f:\\\0G:\\\0H:\\\0";
    EXPECT_EQ(capacity, 105u);
    std::copy_n(DRIVES, std::size(DRIVES), buffer);
    return static_cast<DWORD>(std::size(DRIVES)) - 1;
}

UINT WINAPI KindOfTest(const wchar_t* root)
{
    switch (root[0]) {
    case L'A':
        return DRIVE_REMOVABLE;
    case L'D':
        return DRIVE_CDROM;
    case L'H':
        return DRIVE_REMOTE;
    default:
        return DRIVE_FIXED;
    }
}

DWORD WINAPI DeviceOfTest(const wchar_t* drive, wchar_t* target, DWORD)
{
    const CString text = drive[0] == L'E' ? CString(L"\\??\\C:\\folder") : CString(L"\\Device\\Volume3");
    std::copy_n(text.GetString(), text.GetLength() + 1, target);
    return static_cast<DWORD>(text.GetLength()) + 1;
}

class CTestDrives
{
public:
    CTestDrives() { EXPECT_TRUE(m_drives.IsInPlace() && m_kind.IsInPlace() && m_device.IsInPlace()); }

private:
    CImportRedirect m_drives{L"RolloutUi.dll", "GetLogicalDriveStringsW",
                             reinterpret_cast<void*>(DrivesOfTest)};
    CImportRedirect m_kind{L"RolloutUi.dll", "GetDriveTypeW", reinterpret_cast<void*>(KindOfTest)};
    CImportRedirect m_device{L"RolloutUi.dll", "QueryDosDeviceW", reinterpret_cast<void*>(DeviceOfTest)};
};

} // namespace

// ---- where files go

TEST_P(FilesAdd, AFileGoesIntoTheSelectedFolderAndIsWritten)
{
    const CString source = Source(L"plan.txt", "1234567");
    AddTo(L"~\\Fonts", {source});
    ExpectTree({L"<Zolt>", L"  Fonts", L"    plan.txt*", L"  Samples", L"    Deep"});
    Look([this, source] {
        const FileTreeNode* const file = Data(L"~\\Fonts\\plan.txt");
        ASSERT_NE(file, nullptr);
        EXPECT_TRUE(file->IsUserItem);
        EXPECT_EQ(file->SourcePath, source);
        EXPECT_EQ(file->Key.GetLength(), 41);
        EXPECT_TRUE(Tree().IsExpanded(Node(L"~\\Fonts")));
        EXPECT_EQ(Select(L"SELECT `Component_`,`SourceFileName`,`Flags` FROM `TarnCustomFile`"),
                  (Rows{{file->Key, source, L"0"}}));
        EXPECT_EQ(Select(L"SELECT `File`,`FileSize` FROM `File`"), (Rows{{file->Key, L"7"}}));
        EXPECT_EQ(Select(L"SELECT `Directory_`,`Component_` FROM `CreateFolder`"),
                  (Rows{{L"FONTS", file->Key}}));
    });
    ShowAndGoBack();
}

TEST_P(FilesAdd, WithNothingSelectedFilesGoIntoTheLowestDisplayPathWhichIsSelected)
{
    WithDrive(UserKey(1), L"E:");
    SelectNothing();
    AddFiles({Source(L"a.txt")});
    ExpectTree({L"<Zolt>", L"  a.txt*", L"  Fonts", L"  Samples", L"    Deep", L"E:*"});
    ExpectSelected(L"~");
    ShowAndGoBack();
}

TEST_P(FilesAdd, WithNothingSelectedAFolderGoesBelowTheLowestDisplayPath)
{
    SelectNothing();
    ExpectButtons(L"DD");
    Command(IDC_FILES_ADD_FOLDER);
    AwaitEdit();
    Key(VK_RETURN);
    AwaitNoEdit();
    ExpectTree({L"<Zolt>", L"  Fonts", L"  Samples", L"    Deep",
                L"  New folder*"}); // adding a folder sorts nothing
    ExpectSelected(L"~\\New folder");
    ShowAndGoBack();
}

TEST_P(FilesAdd, WithAFileSelectedFilesAndFoldersGoIntoItsFolder)
{
    WithFile(UserKey(1), L"FONTS", Source(L"old.txt"));
    AddTo(L"~\\Fonts\\old.txt", {Source(L"new.txt")});
    ExpectTree({L"<Zolt>", L"  Fonts", L"    new.txt*", L"    old.txt*", L"  Samples", L"    Deep"});
    AddFolder(L"~\\Fonts\\old.txt", L"inner");
    AwaitNoEdit();
    ExpectTree(
        {L"<Zolt>", L"  Fonts", L"    new.txt*", L"    old.txt*", L"    inner*", L"  Samples", L"    Deep"});
    ShowAndGoBack();
}

TEST_P(FilesAdd, WithAFileOfTheRootLevelSelectedNothingIsAdded)
{
    servicePaths[L"SYSTEM"] = L"C:\\windows\\";
    WithFile(UserKey(1), L"SYSTEM", Source(L"old.txt"));
    AddTo(L"old.txt", {Source(L"new.txt")});
    Command(IDC_FILES_ADD_FOLDER);
    ExpectTree({L"<Zolt>", L"  Fonts", L"  Samples", L"    Deep", L"old.txt*"});
    ShowAndGoBack();
}

TEST_P(FilesAdd, InAnEmptyTreeNothingIsAdded)
{
    WithFreshDatabase(L"bare.msi");
    AddFiles({Source(L"new.txt")});
    Command(IDC_FILES_ADD_FOLDER);
    ExpectTree({});
    ShowAndGoBack();
    ExpectNoAdditions();
}

TEST_P(FilesAdd, ManyFilesAreAddedInOneGoAndSorted)
{
    AddTo(L"~\\Fonts", {Source(L"c.txt"), Source(L"a.txt"), Source(L"B.txt")});
    ExpectTree(
        {L"<Zolt>", L"  Fonts", L"    a.txt*", L"    B.txt*", L"    c.txt*", L"  Samples", L"    Deep"});
    Look([this] { EXPECT_EQ(Count(L"TarnCustomFile"), 3); });
    ShowAndGoBack();
}

TEST_P(FilesAdd, ACanceledPickerAddsNothingAndRunsNoHooks)
{
    g_hookRuns = 0;
    context.postInitHooks = {[](PageContext*) { return ++g_hookRuns; }};
    AddTo(L"~\\Fonts", {});
    Look([] { EXPECT_EQ(g_hookRuns, 1) << "of the page's own start"; });
    AddFiles({Source(L"a.txt")});
    Look([] { EXPECT_EQ(g_hookRuns, 2); });
    ShowAndGoBack();
}

// ---- messages

TEST_P(FilesAdd, AFileThatIsNotThereIsReportedAndTheOthersAreAdded)
{
    const CString missing = folder.GetPath() + L"sources\\gone & 100%s.txt";
    AddTo(L"~\\Fonts", {Source(L"a.txt"), missing, Source(L"z.txt")});
    Answer(MissingBox(missing), IDOK);
    ExpectTree({L"<Zolt>", L"  Fonts", L"    a.txt*", L"    z.txt*", L"  Samples", L"    Deep"});
    ShowAndGoBack();
}

TEST_P(FilesAdd, TheSameSourceTwiceIsSilentAndAddsOneItem)
{
    const CString source = Source(L"plan.txt");
    AddTo(L"~\\Fonts", {source});
    AddTo(L"~\\Fonts", {CString(source).MakeUpper()});
    AddTo(L"~\\Fonts", {source});
    ExpectTree({L"<Zolt>", L"  Fonts", L"    plan.txt*", L"  Samples", L"    Deep"});
    Look([this] { EXPECT_EQ(Count(L"File"), 1); });
    ShowAndGoBack();
}

TEST_P(FilesAdd, AFileOfTheSameNameAsksAndNoLeavesTheTreeAsItWas)
{
    const CString first = Source(L"one\\plan.txt");
    const CString second = Source(L"two\\PLAN.txt");
    AddTo(L"~\\Fonts", {first});
    AddTo(L"~\\Fonts", {second});
    Answer(ReplaceBox(L"PLAN.txt", first, second), IDNO);
    ExpectTree({L"<Zolt>", L"  Fonts", L"    plan.txt*", L"  Samples", L"    Deep"});
    Look([this, first] {
        EXPECT_EQ(Data(L"~\\Fonts\\plan.txt")->SourcePath, first);
        EXPECT_EQ(Select(L"SELECT `SourceFileName` FROM `TarnCustomFile`"), (Rows{{first}}));
    });
    ShowAndGoBack();
}

TEST_P(FilesAdd, AFileOfTheSameNameAsksAndYesReplacesTheItem)
{
    const CString first = Source(L"one\\plan.txt");
    const CString second = Source(L"two\\PLAN.txt");
    AddTo(L"~\\Fonts", {first});
    AddTo(L"~\\Fonts", {second});
    Answer(ReplaceBox(L"PLAN.txt", first, second), IDYES);
    ExpectTree({L"<Zolt>", L"  Fonts", L"    PLAN.txt*", L"  Samples", L"    Deep"});
    Look([this, second] {
        EXPECT_EQ(Data(L"~\\Fonts\\PLAN.txt")->SourcePath, second);
        EXPECT_EQ(Select(L"SELECT `SourceFileName` FROM `TarnCustomFile`"), (Rows{{second}}));
        for (const wchar_t* table : {L"File", L"CreateFolder", L"FeatureComponents"}) {
            EXPECT_EQ(Count(table), 1) << Utf8(table);
        }
    });
    ShowAndGoBack();
}

TEST_P(FilesAdd, TheSameNameInAnotherFolderIsAnotherItem)
{
    AddTo(L"~\\Fonts", {Source(L"one\\plan.txt")});
    AddTo(L"~\\Samples", {Source(L"two\\plan.txt")});
    ExpectTree({L"<Zolt>", L"  Fonts", L"    plan.txt*", L"  Samples", L"    Deep", L"    plan.txt*"});
    ShowAndGoBack();
}

// ---- names and paths

TEST_P(FilesAdd, NamesOfAllScriptsAreAddedAndFoundAgain)
{
    const CString names[] = {L"it's.txt",         L"a b  c.txt",       L"100%s %1.txt",
                             L"\x00E4\x00DF.txt", L"\x4E2D\x6587.txt", L"\x05E9\x05DC.txt",
                             L"\xD83D\xDE00.txt", L"no extension",     L".dot",
                             L"a&b.txt"};
    Lines sources;
    for (const CString& name : names) {
        sources.push_back(Source(name));
    }
    AddTo(L"~\\Fonts", sources);
    for (int round = 0; round < 2; ++round) {
        Look([this, names] {
            for (const CString& name : names) {
                EXPECT_NE(Node(L"~\\Fonts\\" + name), nullptr) << Utf8(name);
            }
        });
        ShowAndGoBack();
    }
    EXPECT_EQ(Count(L"TarnCustomFile"), static_cast<int>(std::size(names)));
}

// With the root's label, a folder of 200 characters and two backslashes, 52 characters make 260.
TEST_P(FilesAdd, ATargetPathOf259CharactersIsAddedAndOneOf260FailsBeforeAnythingIsWritten)
{
    const CString longFolder(L'l', 200);
    WithFolder(UserKey(1), L"INSTALLDIR", longFolder);
    const CString fits(L'f', 51);
    const CString tooLong(L't', 52);
    ASSERT_EQ(Expanded(L"~\\" + longFolder + L"\\" + fits).GetLength(), 259);
    AddTo(L"~\\" + longFolder, {Source(tooLong), Source(fits)});
    ExpectTree(
        {L"<Zolt>", L"  Fonts", L"  " + longFolder + L"*", L"    " + fits + L"*", L"  Samples", L"    Deep"});
    Look([this] { EXPECT_EQ(Count(L"File"), 1); });
    ShowAndGoBack();
}

TEST_P(FilesAdd, ASourcePathOf259CharactersIsAdded)
{
    const CString start = folder.GetPath() + L"sources\\";
    const CString source = start + CString(L'd', 100) + L"\\" + CString(L'f', 259 - start.GetLength() - 101);
    ASSERT_EQ(source.GetLength(), 259);
    Source(source.Mid(start.GetLength()));
    AddTo(L"~\\Fonts", {source});
    Look([this, source] {
        EXPECT_EQ(Select(L"SELECT `SourceFileName` FROM `TarnCustomFile`"), (Rows{{source}}));
    });
    ShowAndGoBack();
}

// ---- rows that fail

TEST_P(FilesAdd, AFileWhoseRowsFailAtAnyTableIsNotShownAndNothingIsReported)
{
    const CString source = Source(L"plan.txt");
    const wchar_t* const tables[] = {L"File", L"Component", L"FeatureComponents", L"CreateFolder",
                                     L"TarnCustomFile"};
    for (int failing = 0; failing < static_cast<int>(std::size(tables)); ++failing) {
        WithFreshDatabase((L"failing" + NumberText(failing) + L".msi").GetString());
        WithUsedDirectory(L"INSTALLDIR", L"TARGETDIR", L"Zolt", L"C:\\Zolt\\", L"D:\\media\\Zolt\\");
        SelectNothing();
        DropTable(tables[failing]);
        AddFiles({source});
        ExpectTree({L"<Installation Directory>"});
        ShowAndGoBack();
        EXPECT_EQ(Modified(), CString(L"0")) << Utf8(tables[failing]);
        // What was written before stays; TarnCustomFile, by which a load finds it, comes last.
        for (int before = 0; before < failing; ++before) {
            EXPECT_GE(Count(tables[before]), 1)
                << Utf8(tables[before]) << " before " << Utf8(tables[failing]);
        }
        for (int behind = failing + 1; behind < static_cast<int>(std::size(tables)); ++behind) {
            const int own = behind == 1 ? 1 : 0;
            EXPECT_EQ(Count(tables[behind]), own)
                << Utf8(tables[behind]) << " behind " << Utf8(tables[failing]);
        }
    }
}

TEST_P(FilesAdd, AFolderWhoseRowsFailAtAnyTableIsNotShownAndNothingIsReported)
{
    for (const wchar_t* table : {L"Component", L"FeatureComponents", L"CreateFolder", L"TarnCustomFile"}) {
        WithFreshDatabase((CString(table) + L".msi").GetString());
        WithUsedDirectory(L"INSTALLDIR", L"TARGETDIR", L"Zolt", L"C:\\Zolt\\", L"D:\\media\\Zolt\\");
        SelectNode(L"<Installation Directory>");
        DropTable(table);
        Press(IDC_FILES_ADD_FOLDER);
        ExpectTree({L"<Installation Directory>"});
        Look([this] { EXPECT_EQ(EditBox(), nullptr); });
        ShowAndGoBack();
    }
}

TEST_P(FilesAdd, ADriveWhoseRowsFailAtAnyTableIsNotShownAndNothingIsReported)
{
    const CTestDrives drives;
    for (const wchar_t* table : {L"CustomAction", L"InstallExecuteSequence"}) {
        WithFreshDatabase((CString(table) + L".msi").GetString());
        DropTable(table);
        Press(IDC_FILES_ADD_DRIVE);
        ExpectTree({});
        ShowAndGoBack();
    }
}

// ---- new folders

TEST_P(FilesAdd, ANewFolderIsWrittenSelectedAndItsLabelIsBeingEdited)
{
    ASSERT_EQ(ResourceText(IDS_NEW_FOLDER), NEW_FOLDER);
    SelectNode(L"~\\Fonts");
    Press(IDC_FILES_ADD_FOLDER);
    AwaitEdit();
    ExpectSelected(L"~\\Fonts\\New folder");
    Look([this] {
        EXPECT_EQ(CControl(EditBox()).GetText(), NEW_FOLDER);
        const CString key = KeyOf(L"~\\Fonts\\New folder");
        EXPECT_EQ(Select(L"SELECT `Component_`,`SourceFileName`,`Flags` FROM `TarnCustomFile`"),
                  (Rows{{key, NEW_FOLDER, L"2"}}));
        EXPECT_EQ(Select(L"SELECT * FROM `Directory` WHERE `Directory`='" + key + L"'"),
                  (Rows{{key, L"FONTS", NEW_FOLDER}}));
        EXPECT_EQ(Select(L"SELECT * FROM `CreateFolder`"), (Rows{{key, key}}));
    });
    Key(VK_RETURN);
    AwaitNoEdit();
    ShowAndGoBack();
}

TEST_P(FilesAdd, ASecondNewFolderGetsTheNumberTwo)
{
    for (int number = 0; number < 3; ++number) {
        SelectNode(L"~\\Fonts");
        Press(IDC_FILES_ADD_FOLDER);
        AwaitEdit();
        Key(VK_RETURN);
        AwaitNoEdit();
    }
    ExpectTree({L"<Zolt>", L"  Fonts", L"    New folder*", L"    " + Numbered(2) + L"*",
                L"    " + Numbered(3) + L"*", L"  Samples", L"    Deep"});
    ShowAndGoBack();
}

// ---- new drives

TEST_P(FilesAdd, ANewDriveIsTheFirstFixedOneThatStandsForNoFolderInUpperCase)
{
    const CTestDrives drives;
    Press(IDC_FILES_ADD_DRIVE);
    AwaitEdit();
    ExpectSelected(L"F:");
    Key(VK_RETURN);
    AwaitNoEdit();
    Look([this] {
        const CString key = KeyOf(L"F:");
        EXPECT_EQ(Select(L"SELECT * FROM `Directory` WHERE `Directory`='" + key + L"'"),
                  (Rows{{key, L"TARGETDIR", L"DRIVE_F"}}));
        EXPECT_EQ(Select(L"SELECT `Action`,`Type`,`Source`,`Target` FROM `CustomAction`"),
                  (Rows{{key, L"51", key, L"F:"}}));
        EXPECT_EQ(product.msiProperties[key + L"_SUBST"], CString(L"F:"));
    });
    ShowAndGoBack();
}

// The disk's letter is in lower case and so isn't found among the labels of the tree: the same drive comes twice.
TEST_P(FilesAdd, WithAllFixedDrivesInTheTreeAddDriveDoesNothing)
{
    const CTestDrives drives;
    WithDrive(UserKey(1), L"f:");
    WithDrive(UserKey(2), L"G:");
    SelectNode(L"~\\Fonts");
    Press(IDC_FILES_ADD_DRIVE);
    ExpectTree({L"<Zolt>", L"  Fonts", L"  Samples", L"    Deep", L"f:*", L"G:*"});
    Look([this] {
        EXPECT_EQ(Selected(), nullptr) << "the command clears the selection first";
        EXPECT_EQ(Count(L"CustomAction"), 2);
    });
    ShowAndGoBack();
}

TEST_P(FilesAdd, FilesAndFoldersGoOntoANewDriveAndAreFoundAgain)
{
    const CTestDrives drives;
    Press(IDC_FILES_ADD_DRIVE);
    AwaitEdit();
    Key(VK_RETURN);
    AwaitNoEdit();
    AddFolder(L"F:", L"plans");
    AwaitNoEdit();
    AddTo(L"F:\\plans", {Source(L"a.txt")});
    for (int round = 0; round < 2; ++round) {
        ExpectTree({L"<Zolt>", L"  Fonts", L"  Samples", L"    Deep", L"F:*", L"  plans*", L"    a.txt*"});
        ShowAndGoBack();
    }
}
