// The pictures of the tree: which node has which, how often the shell is asked, and what a failing image list leaves.
#include "tests/files/files_page.h"
#include "tests/rules/user_key.h"

#include <commctrl.h>
#include <shellapi.h>

namespace {

std::vector<CString> g_asked; // of the shell, with the flags
bool g_shellFails = false;
bool g_listFails = false;

DWORD_PTR WINAPI NoteShell(const wchar_t* path, DWORD attributes, SHFILEINFOW* info, UINT size, UINT flags)
{
    g_asked.push_back(CString(path) + L" " + NumberText(static_cast<int>(flags)));
    return g_shellFails ? 0 : SHGetFileInfoW(path, attributes, info, size, flags);
}

std::vector<int> g_list;

HIMAGELIST WINAPI NoteList(int width, int height, UINT flags, int initial, int growth)
{
    g_list = {width, height, static_cast<int>(flags), initial, growth};
    return g_listFails ? nullptr : ImageList_Create(width, height, flags, initial, growth);
}

class FilesIcons : public FilesPage
{
protected:
    FilesIcons()
    {
        EXPECT_TRUE(m_shell.IsInPlace() && m_create.IsInPlace());
        g_asked.clear();
        g_shellFails = false;
        g_listFails = false;
    }
    // The shell fetches icons whenever it gets to them, and keeps them.
    void TearDown() override
    {
        CountFromHere();
        FilesPage::TearDown();
    }
    int Image(const CString& path) const
    {
        const TVITEMW item = Item(Node(path));
        EXPECT_EQ(item.iImage, item.iSelectedImage) << Utf8(path);
        return item.iImage;
    }
    static CString TemporaryFolder()
    {
        wchar_t path[MAX_PATH] = L"";
        GetTempPathW(MAX_PATH, path);
        return path;
    }
    static int AskedAbout(const CString& part)
    {
        int count = 0;
        for (const CString& asked : g_asked) {
            count += asked.Find(part) >= 0 ? 1 : 0;
        }
        return count;
    }
    // The five icons in the order of their making.
    enum FixedIcon
    {
        ICON_FILE,
        ICON_MISSING,
        ICON_FOLDER,
        ICON_FOLDER_OPEN,
        ICON_DRIVE,
    };

private:
    CImportRedirect m_shell{L"RolloutUi.dll", "SHGetFileInfoW", reinterpret_cast<void*>(NoteShell)};
    CImportRedirect m_create{L"RolloutUi.dll", "ImageList_Create", reinterpret_cast<void*>(NoteList)};
};
INSTANTIATE_BOTH_SHAPES(FilesIcons);

} // namespace

TEST_P(FilesIcons, TheListAndTheFixedIconsAreMadeOnceAPage)
{
    Look([this] {
        EXPECT_EQ(g_list, (std::vector<int>{16, 16, 33, 8, 4}));
        const CString temporary = TemporaryFolder();
        EXPECT_EQ(g_asked, (std::vector<CString>{temporary + L" 261", temporary + L" 263",
                                                 temporary.Left(3) + L" 261"}));
        const auto list =
            reinterpret_cast<HIMAGELIST>(SendMessageW(Tree().GetWindow(), TVM_GETIMAGELIST, TVSIL_NORMAL, 0));
        EXPECT_EQ(ImageList_GetImageCount(list), 5);
        EXPECT_EQ(SendMessageW(Tree().GetWindow(), TVM_GETBKCOLOR, 0, 0), 0xffffff);
    });
    ShowAndGoBack();
}

TEST_P(FilesIcons, TwoFilesWithTheirExtensionsInDifferentCaseGetTheSameImageFromOneQuestion)
{
    WithFile(UserKey(1), L"FONTS", Source(L"a.txt"));
    WithFile(UserKey(2), L"FONTS", Source(L"b.TXT"));
    WithFile(UserKey(3), L"FONTS", Source(L"c.ini"));
    WithFile(UserKey(4), L"FONTS", Source(L"none"));
    WithFile(UserKey(5), L"FONTS", Source(L"none too"));
    Look([this] {
        EXPECT_EQ(Image(L"~\\Fonts\\a.txt"), Image(L"~\\Fonts\\b.TXT"));
        EXPECT_NE(Image(L"~\\Fonts\\a.txt"), Image(L"~\\Fonts\\c.ini"));
        EXPECT_EQ(Image(L"~\\Fonts\\none"), Image(L"~\\Fonts\\none too"));
        EXPECT_EQ(AskedAbout(L"sources\\"), 3);
    });
    SelectNode(L"~");
    AddFiles({Source(L"d.Txt"), Source(L"e.txt")});
    Look([this] {
        EXPECT_EQ(Image(L"~\\d.Txt"), Image(L"~\\Fonts\\a.txt"));
        EXPECT_EQ(AskedAbout(L"sources\\"), 3);
    });
    ShowAndGoBack();
}

TEST_P(FilesIcons, AFileWhoseSourceHasGoneShowsTheWarningSignAndAFolderNeverDoes)
{
    WithFile(UserKey(1), L"FONTS", folder / L"gone.txt");
    WithFile(UserKey(2), L"FONTS", Source(L"there.txt"));
    WithFolder(UserKey(3), L"FONTS", L"mine");
    Look([this] {
        EXPECT_EQ(Image(L"~\\Fonts\\gone.txt"), ICON_MISSING);
        EXPECT_GT(Image(L"~\\Fonts\\there.txt"), ICON_DRIVE);
        EXPECT_EQ(Image(L"~\\Fonts\\mine"), ICON_FOLDER);
        EXPECT_EQ(AskedAbout(L"gone.txt"), 0);
    });
    ShowAndGoBack();
}

TEST_P(FilesIcons, CollapsingShowsTheClosedFolderAndExpandingTheOpenOne)
{
    WithFolder(UserKey(1), L"FONTS", L"mine");
    WithFile(UserKey(2), UserKey(1), Source(L"a.txt"));
    WithDrive(UserKey(3), L"E:");
    WithFolder(UserKey(4), UserKey(3), L"on it");
    Look([this] { EXPECT_EQ(Image(L"~"), ICON_FOLDER_OPEN) << "the root is expanded at the start"; });
    for (const WORD key : {WORD{VK_RIGHT}, WORD{VK_LEFT}, WORD{VK_RIGHT}}) {
        for (const wchar_t* path : {L"~\\Fonts", L"~\\Fonts\\mine", L"E:"}) {
            SelectNode(path);
            Key(key);
            Look([this, path, key] {
                EXPECT_EQ(Tree().IsExpanded(Node(path)), key == VK_RIGHT) << Utf8(path);
                const int folderIcon = key == VK_RIGHT ? ICON_FOLDER_OPEN : ICON_FOLDER;
                EXPECT_EQ(Image(path), CString(path) == L"E:" ? ICON_DRIVE : folderIcon) << Utf8(path);
                EXPECT_GT(Image(L"~\\Fonts\\mine\\a.txt"), ICON_DRIVE);
            });
        }
    }
    ShowAndGoBack();
}

// The view reports only the first of the expansions that it is asked for.
TEST_P(FilesIcons, AFolderThatAnAdditionOpensAgainShowsTheOpenFolder)
{
    WithFile(UserKey(1), L"FONTS", Source(L"a.txt"));
    SelectNode(L"~\\Fonts");
    Key(VK_RIGHT);
    SelectNode(L"~\\Fonts");
    Key(VK_LEFT);
    Look([this] { EXPECT_EQ(Image(L"~\\Fonts"), ICON_FOLDER); });
    AddFiles({Source(L"b.txt")});
    Look([this] {
        EXPECT_TRUE(Tree().IsExpanded(Node(L"~\\Fonts")));
        EXPECT_EQ(Image(L"~\\Fonts"), ICON_FOLDER_OPEN);
    });
    SelectNode(L"~\\Fonts");
    Key(VK_LEFT);
    AddFolder(L"~\\Fonts", L"mine");
    AwaitNoEdit();
    Look([this] { EXPECT_EQ(Image(L"~\\Fonts"), ICON_FOLDER_OPEN); });
    ShowAndGoBack();
}

TEST_P(FilesIcons, FortyKindsOfFilesAreAskedAboutOnceEach)
{
    for (int number = 0; number < 400; ++number) {
        const CString kind = L"k" + NumberText(number % 40);
        WithFile(UserKey(number), L"FONTS", Source(NumberText(number) + L"." + kind));
    }
    Look([this] { EXPECT_LE(AskedAbout(L"sources\\"), 40); });
    ShowAndGoBack();
}

TEST_P(FilesIcons, AFileWhoseIconTheShellDoesNotHaveGetsTheFixedOne)
{
    WithFile(UserKey(1), L"FONTS", Source(L"a.txt"));
    WithFile(UserKey(2), L"FONTS", Source(L"b.txt"));
    g_shellFails = true;
    Look([this] {
        EXPECT_EQ(Image(L"~\\Fonts\\a.txt"), ICON_FILE);
        EXPECT_EQ(AskedAbout(L"sources\\"), 2) << "what couldn't be added isn't remembered";
    });
    ShowAndGoBack();
}

TEST_P(FilesIcons, AFailingImageListLeavesThePageWithoutTreeContent)
{
    WithFile(UserKey(1), L"FONTS", Source(L"a.txt"));
    g_listFails = true;
    ExpectTree({});
    ExpectButtons(L"DD");
    Look([] { EXPECT_TRUE(g_asked.empty()); });
    SelectNothing();
    AddFiles({Source(L"b.txt")});
    RightClick(L"");
    ExpectMenu(L"EDDD");
    ShowAndGoBack();
    EXPECT_EQ(Count(L"TarnCustomFile"), 1);
}
