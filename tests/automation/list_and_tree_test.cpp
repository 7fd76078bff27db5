// What a walk through a list view or a tree needs: cells, long texts, check boxes, edits of labels, the context menu.
#include "automation/list_control.h"
#include "automation/tree_control.h"
#include "automation/window_finder.h"
#include "tests/automation/dialog_fixture.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

const CTreeControl::Path ROOT_PATH = {L"root"};

class Tree : public CDialogFixture
{
protected:
    Tree() : tree(dialog, ID_TREE)
    {
        root = Add(nullptr, L"root");
        Add(root, L"leaf");
        onNotify = [this](NMHDR& header) -> LRESULT {
            if (header.code != TVN_ENDLABELEDITW || !reinterpret_cast<NMTVDISPINFOW&>(header).item.pszText)
                return 0;
            answers.push_back(reinterpret_cast<NMTVDISPINFOW&>(header).item.pszText);
            if (reopens)
                PostMessageW(tree.GetWindow(), TVM_EDITLABELW, 0, reinterpret_cast<LPARAM>(root));
            return accepts;
        };
    }

    HTREEITEM Add(HTREEITEM parent, const CString& text)
    {
        TVINSERTSTRUCTW insert = {};
        insert.hParent = parent;
        insert.hInsertAfter = TVI_LAST;
        insert.item.mask = TVIF_TEXT;
        insert.item.pszText = const_cast<wchar_t*>(text.GetString());
        return reinterpret_cast<HTREEITEM>(
            SendMessageW(tree.GetWindow(), TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
    }

    CTreeControl tree;
    HTREEITEM root = nullptr;
    bool accepts = true;
    bool reopens = false;
    std::vector<CString> answers;
};

TEST_F(Tree, ReadsALongTextWhole)
{
    const CString text = CString(L'x', 511) + CString(L'y', 3000);
    EXPECT_EQ(tree.GetItemText(Add(nullptr, text)), text);
}

TEST_F(Tree, ExpandsAnItem)
{
    EXPECT_FALSE(tree.IsExpanded(root));
    EXPECT_TRUE(tree.Expand(ROOT_PATH).IsDone());
    EXPECT_TRUE(tree.IsExpanded(root));
    EXPECT_TRUE(tree.Expand({L"other"}).IsNotYet());
}

TEST_F(Tree, AsksForTheContextMenuOfAnItemWithoutAPlace)
{
    script.Add(L"open", [this] { return tree.OpenContextMenu({L"root", L"leaf"}); });
    script.Add(L"see it", [this] { return Until(contextMenuPlace.has_value(), L"nothing came"); });
    Play();
    EXPECT_EQ(script.GetFailure(), CString());
    EXPECT_EQ(contextMenuPlace, MAKELPARAM(-1, -1));
    EXPECT_EQ(tree.GetItemText(tree.GetSelection()), CString(L"leaf"));
}

TEST_F(Tree, ChangesALabelWithOneNotification)
{
    EXPECT_TRUE(tree.EditLabel(ROOT_PATH, L"trunk").IsDone());
    EXPECT_EQ(tree.GetItemText(root), CString(L"trunk"));
    EXPECT_EQ(answers, (std::vector<CString>{L"trunk"}));
}

TEST_F(Tree, ReportsALabelThatThePageKeeps)
{
    accepts = false;
    const StepOutcome outcome = tree.EditLabel(ROOT_PATH, L"trunk");
    EXPECT_TRUE(outcome.IsFailed());
    EXPECT_EQ(outcome.GetReason(), CString(L"the label \"root\" did not become \"trunk\""));
}

TEST_F(Tree, IsNotEditedFurtherWhileThePageHasOpenedTheRefusedLabelAgain)
{
    accepts = false;
    reopens = true;
    script.Add(L"edit", [this] {
        EXPECT_TRUE(tree.EditLabel(ROOT_PATH, L"trunk").IsFailed());
        return StepOutcome::Done();
    });
    script.Add(L"see the edit open again", [this] {
        return Until(SendMessageW(tree.GetWindow(), TVM_GETEDITCONTROL, 0, 0) != 0, L"no edit is open");
    });
    script.Add(L"edit again", [this] {
        const StepOutcome outcome = tree.EditLabel(ROOT_PATH, L"stem");
        EXPECT_TRUE(outcome.IsNotYet());
        EXPECT_HOLDS(outcome.GetReason(), L"is being edited: \"root\"");
        return StepOutcome::Done();
    });
    Play();
    EXPECT_EQ(script.GetFailure(), CString());
    EXPECT_EQ(answers, (std::vector<CString>{L"trunk"}));
}

class ListView : public CDialogFixture
{
protected:
    ListView()
        : list(CreateWindowW(WC_LISTVIEWW, nullptr, WS_CHILD | WS_VISIBLE | LVS_REPORT | LVS_EDITLABELS, 0, 0,
                             150, 100, dialog, reinterpret_cast<HMENU>(200), nullptr, nullptr))
    {
        for (int column = 0; column < 2; ++column) {
            LVCOLUMNW description = {};
            description.mask = LVCF_WIDTH;
            description.cx = 60;
            ListView_InsertColumn(list.GetWindow(), column, &description);
        }
        LVITEMW item = {};
        item.mask = LVIF_TEXT;
        item.pszText = const_cast<wchar_t*>(L"first");
        ListView_InsertItem(list.GetWindow(), &item);
        ListView_SetItemText(list.GetWindow(), 0, 1, const_cast<wchar_t*>(L"second"));
        onNotify = [this](NMHDR& header) -> LRESULT { return header.code == LVN_ENDLABELEDITW && accepts; };
    }

    CListControl list;
    bool accepts = true;
};

TEST_F(ListView, GivesTheCellsOfEachColumn)
{
    EXPECT_EQ(list.GetColumnCount(), 2);
    EXPECT_EQ(list.GetCell(0, 0), CString(L"first"));
    EXPECT_EQ(list.GetCell(0, 1), CString(L"second"));
    EXPECT_EQ(list.GetCell(0, 2), CString());
    EXPECT_EQ(list.GetCell(1, 1), CString());
}

TEST_F(ListView, ReadsALongCellWhole)
{
    CString text = CString(L'x', 511) + CString(L'y', 3000);
    ListView_SetItemText(list.GetWindow(), 0, 1, text.GetBuffer(text.GetLength()));
    EXPECT_EQ(list.GetCell(0, 1), text);
}

TEST_F(ListView, ChangesALabel)
{
    EXPECT_TRUE(list.EditLabel(0, L"changed").IsDone());
    EXPECT_EQ(list.GetCell(0, 0), CString(L"changed"));
}

TEST_F(ListView, ReportsALabelThatThePageKeeps)
{
    accepts = false;
    EXPECT_EQ(list.EditLabel(0, L"changed").GetReason(),
              CString(L"the label \"first\" did not become \"changed\""));
}

TEST_F(ListView, ChecksALineThatHasACheckBox)
{
    EXPECT_TRUE(list.SetLineChecked(0, true).IsFailed());
    ListView_SetExtendedListViewStyle(list.GetWindow(), LVS_EX_CHECKBOXES);
    EXPECT_TRUE(list.SetLineChecked(0, true).IsDone());
    EXPECT_TRUE(list.IsLineChecked(0));
    EXPECT_TRUE(list.SetLineChecked(0, false).IsDone());
    EXPECT_FALSE(list.IsLineChecked(0));
}

} // namespace
