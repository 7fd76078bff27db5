// What the page of the paths shows when it opens.
#include "base/scope_exit.h"
#include "paths/path_node_rules.h"
#include "tests/paths/paths_page.h"
#include "tests/support/processor_time.h"

namespace {

class PathEntry : public PathsPage
{
protected:
    // The messages that the page's tree gets on a visit with so many support folders, from entry to the walk back.
    int TreeMessages(int entries)
    {
        CString list;
        for (int entry = 0; entry < entries; ++entry) {
            list += L"a;";
        }
        WithPath(PATH_SUPPORT, list);
        s_treeMessages = 0;
        const HHOOK hook = SetWindowsHookExW(WH_CALLWNDPROC, CountTreeMessage, nullptr, GetCurrentThreadId());
        const scope_exit unhook([hook] { UnhookWindowsHookEx(hook); });
        ShowAndGoBack();
        return s_treeMessages;
    }

private:
    static inline int s_treeMessages = 0; // a hook is a plain function

    static LRESULT CALLBACK CountTreeMessage(int code, WPARAM wParam, LPARAM lParam)
    {
        const auto& sent = *reinterpret_cast<const CWPSTRUCT*>(lParam);
        constexpr UINT afterTreeMessages = TV_FIRST + 0x100;
        if (code == HC_ACTION && sent.message >= TV_FIRST && sent.message < afterTreeMessages &&
            GetDlgCtrlID(sent.hwnd) == IDC_PATH_TREE) {
            ++s_treeMessages;
        }
        return CallNextHookEx(nullptr, code, wParam, lParam);
    }
};
INSTANTIATE_BOTH_SHAPES(PathEntry);

} // namespace

TEST_P(PathEntry, AllHeadingsStandInTheirOrderWithTheirPicturesAndDescriptions)
{
    Look([this] {
        HTREEITEM top = Relative(nullptr, TVGN_ROOT);
        int tops = 0;
        unsigned int parent = 0;
        const auto expect = [this](HTREEITEM node, const PathHeading& heading) {
            EXPECT_EQ(Tree().GetItemText(node), ResourceText(heading.label));
            EXPECT_EQ(Item(node).iImage, heading.image);
            EXPECT_EQ(Item(node).iSelectedImage, heading.image);
            SendMessageW(Tree().GetWindow(), TVM_SELECTITEM, TVGN_CARET, reinterpret_cast<LPARAM>(node));
            CString description = ResourceText(heading.text);
            description.Replace(L"[ProductName]", L"Zolt & Co");
            EXPECT_EQ(Text(IDC_PATH_DESCRIPTION), description);
        };
        for (const PathRow& row : PATH_TABLE) {
            if (!row.HasParent() || row.parent.label != parent) {
                expect(top, row.HasParent() ? row.parent : row.heading);
                top = Relative(top, TVGN_NEXT);
                ++tops;
            }
            parent = row.parent.label;
            expect(Heading(row.property), row.heading);
        }
        EXPECT_EQ(top, nullptr);
        EXPECT_EQ(tops, 19);
    });
    ShowAndGoBack();
}

TEST_P(PathEntry, EachPathWithoutAValueHasOneEmptyNode)
{
    Look([this] {
        for (const PathRow& row : PATH_TABLE) {
            EXPECT_EQ(Values(row.property), Texts{L""}) << row.property;
            EXPECT_EQ(Item(Value(row.property)).iImage, PATH_VALUE_IMAGE);
        }
        EXPECT_EQ(SendMessageW(Tree().GetWindow(), TVM_GETCOUNT, 0, 0), 26 + 26 + 4);
    });
    ShowAndGoBack();
}

TEST_P(PathEntry, ValuesOfEveryKindShowInDisplayForm)
{
    WithDirectory(L"KEY", L"<Fonts root>");
    WithPath(PATH_TEMP, L"[KEY]fonts");
    WithPath(PATH_SAVE_FILE, L"[KEY]");
    WithPath(PATH_LOG_FILE, L"[MISSING]sub");
    WithPath(PATH_PLOT_LOG, L"[null]");
    WithPath(PATH_SUPPORT, L"a;;b;");
    WithPath(PATH_TEXMAPS, L"C:\\x;D:\\y\\");
    WithPath(PATH_WEB_GRAB, CString(L'w', 1024));
    ExpectValues(PATH_TEMP, {L"<Fonts root>\\fonts"});
    ExpectValues(PATH_SAVE_FILE, {L"<Fonts root>"});
    ExpectValues(PATH_LOG_FILE, {L"sub"});
    ExpectValues(PATH_PLOT_LOG, {L""});
    ExpectValues(PATH_SUPPORT, {L"a", L"b"});
    ExpectValues(PATH_TEXMAPS, {L"C:\\x", L"D:\\y"});
    ExpectValues(PATH_WEB_GRAB, {CString(L'w', 1023)});
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_TEMP), CString(L"[KEY]fonts"));
    EXPECT_EQ(Stored(PATH_SAVE_FILE), CString(L"[KEY]"));
    EXPECT_EQ(Stored(PATH_PLOT_LOG), CString(L"[NULL]"));
    EXPECT_EQ(Marker(), CString(L"0"));
}

TEST_P(PathEntry, WithoutATableOfDirectoriesThePageOpensAndKeysAreDropped)
{
    WithPath(PATH_TEMP, L"[KEY]fonts");
    Run(L"DROP TABLE `TarnDirectoryMap`");
    ExpectValues(PATH_TEMP, {L"fonts"});
    Look([this] { EXPECT_EQ(SendMessageW(Tree().GetWindow(), TVM_GETCOUNT, 0, 0), 26 + 26 + 4); });
    ShowAndGoBack();
}

TEST_P(PathEntry, TheSupportFoldersAreSelectedAndTheButtonsSuitThem)
{
    ExpectButtons(L"EEDDD");
    Look([this] {
        EXPECT_EQ(Selected(), Heading(PATH_SUPPORT));
        CString description = ResourceText(IDS_SUPPORT_PATH_TEXT);
        description.Replace(L"[ProductName]", L"Zolt & Co");
        EXPECT_EQ(Text(IDC_PATH_DESCRIPTION), description);
        if (GetParam() == Shape::Wizard) {
            EXPECT_EQ(GetFocus(), Tree().GetWindow());
        }
    });
    ShowAndGoBack();
}

TEST_P(PathEntry, TheTreeIsWhiteAndItsPicturesAre20PixelsWide)
{
    Look([this] {
        const HWND tree = Tree().GetWindow();
        EXPECT_EQ(COLORREF(SendMessageW(tree, TVM_GETBKCOLOR, 0, 0)), RGB(255, 255, 255));
        const auto images =
            reinterpret_cast<HIMAGELIST>(SendMessageW(tree, TVM_GETIMAGELIST, TVSIL_NORMAL, 0));
        int width = 0;
        int height = 0;
        EXPECT_TRUE(ImageList_GetIconSize(images, &width, &height));
        EXPECT_EQ(width, 20);
        EXPECT_EQ(ImageList_GetImageCount(images), 31);
    });
    ShowAndGoBack();
}

TEST_P(PathEntry, ValuesShowTheDescriptionOfTheirHeading)
{
    SelectValue(PATH_PRINTER_DESC);
    Look([this] { EXPECT_HOLDS(Text(IDC_PATH_DESCRIPTION), CString(L"paper sizes")); });
    ShowAndGoBack();
}

TEST_P(PathEntry, ThePageIsThereWhenTheHooksBehindTheInitRun)
{
    static int runs; // a hook is a plain function
    runs = 0;
    context.postInitHooks = {[](PageContext* hook) {
        ++runs;
        EXPECT_GE(SendMessageW(GetDlgItem(hook->hParent, IDC_PATH_TREE), TVM_GETCOUNT, 0, 0), 56);
        EXPECT_TRUE(IsWindowEnabled(GetDlgItem(hook->hParent, IDC_PATH_ADD)));
        return 0;
    }};
    ShowAndGoBack();
    EXPECT_EQ(runs, 1);
}

// What the page reads of a value is bounded, so a list of any length opens as fast.
TEST_P(PathEntry, AListOfTenThousandEntriesOpensWithThoseThatCanBeRead)
{
    CString list;
    for (int entry = 0; entry < 10'000; ++entry) {
        list += L"C:\\" + NumberText(entry) + L";";
    }
    WithPath(PATH_SUPPORT, list);
    Look([this] {
        EXPECT_GT(Values(PATH_SUPPORT).size(), 100u);
        EXPECT_EQ(Values(PATH_SUPPORT)[99], CString(L"C:\\99"));
    });
    const double start = ProcessorSeconds();
    ShowAndGoBack();
    EXPECT_LT(ProcessorSeconds() - start, 5.0);
}

// Counted, so that a slow machine doesn't matter: each entry costs the same, however many there are.
TEST_P(PathEntry, AVisitGrowsInProportionToTheEntriesOfAList)
{
    const int few = TreeMessages(100);
    const int more = TreeMessages(200);
    const int most = TreeMessages(500); // the longest list that is read has 512
    EXPECT_GE(more - few, 3 * 100) << "each entry is made, read and passed";
    EXPECT_EQ(most - more, 3 * (more - few));
}

TEST_P(PathEntry, AMapOfFiveThousandDirectoriesIsRead)
{
    for (int row = 0; row < 5'000; ++row) {
        WithDirectory(L"KEY" + NumberText(row), L"<Root " + NumberText(row) + L">");
    }
    WithPath(PATH_TEMP, L"[KEY4999]x");
    ExpectValues(PATH_TEMP, {L"<Root 4999>\\x"});
    ShowAndGoBack();
    EXPECT_EQ(Stored(PATH_TEMP), CString(L"[KEY4999]x"));
}
