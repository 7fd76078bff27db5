// The tree of the page of additional files as a person sees it: items by the labels on the way to them. Looking neither
// expands nor selects anything.
#pragma once

#include "automation/step_outcome.h"
#include "base/string.h"
#include "window/controls.h"

#include <vector>

class CFilesTree
{
public:
    explicit CFilesTree(HWND page);

    [[nodiscard]] HWND Page() const { return m_page; }
    // Neither a box nor what a box leaves behind is in the way.
    [[nodiscard]] StepOutcome NeedUsable() const;

    // ---- looking
    // Null when a label isn't there. A path begins with the label of a root, or with FILES_ROOT_MARK; case doesn't count.
    [[nodiscard]] HTREEITEM Find(const CString& path) const;
    [[nodiscard]] HTREEITEM FindChild(HTREEITEM parent, const CString& label) const;
    // Of the roots for null.
    [[nodiscard]] std::vector<HTREEITEM> Children(HTREEITEM parent) const;
    [[nodiscard]] CString LabelOf(HTREEITEM item) const { return m_tree.GetItemText(item); }
    // As the page shows it, by bold letters: false for what came with the product.
    [[nodiscard]] bool IsAdded(HTREEITEM item) const;
    // Empty for folders and drives.
    [[nodiscard]] CString SourceOf(HTREEITEM item) const;
    // The only root that came with the product; null for none or several.
    [[nodiscard]] HTREEITEM ProductRoot() const;
    // What Find finds it by.
    [[nodiscard]] CString PathOf(HTREEITEM item) const;

    // ---- acting
    void Select(HTREEITEM item) const;
    [[nodiscard]] StepOutcome Press(int button) const;
    [[nodiscard]] HWND GetEdit() const { return m_tree.GetEditControl(); }
    [[nodiscard]] HWND OpenEdit(HTREEITEM item) const;
    // Into the label's edit, with Enter. Sent, not posted: the page's boxes come up in here, and the run answers them.
    [[nodiscard]] StepOutcome Type(const CString& label) const;
    // Drops a file or folder of the disk on the selected folder. Comes back when the page has added everything.
    void Drop(const CString& source) const;
    // True while that is under way.
    static bool IsDropping();

private:
    HWND m_page;
    CTreeViewCtrl m_tree;
};
