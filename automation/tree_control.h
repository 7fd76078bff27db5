// Tree views: items named by the texts on the way to them from a root.
#pragma once

#include "automation/control.h"

#include <commctrl.h>

#include <vector>

class CTreeControl : public CControl
{
public:
    using Path = std::vector<CString>;
    using CControl::CControl;

    // The item at the end of the way, whose parents are expanded as by a person; null when a text isn't there.
    HTREEITEM Find(const Path& path) const { return FindBelow(nullptr, path); }
    // The same, with the way beginning below an item.
    HTREEITEM FindBelow(HTREEITEM item, const Path& path) const;
    CString GetItemText(HTREEITEM item) const;
    // Texts of the children, expanding the item first; of the roots for an empty path.
    std::vector<CString> GetChildren(const Path& path) const;
    HTREEITEM GetSelection() const;
    bool IsExpanded(HTREEITEM item) const;

    StepOutcome Select(const Path& path) const;
    // Opens the item, so that its children are there; an item without children stays as it is.
    StepOutcome Expand(const Path& path) const;
    // Opens the item's label, types the text and presses Enter. Fails when the label then stays as it was. "Not yet", with
    // the edit's text, while a label is being edited: so too where the page has opened a refused one again.
    StepOutcome EditLabel(const Path& path, const CString& text) const;
    // Selects the item and posts what Shift+F10 asks for, WM_CONTEXTMENU without a place.
    StepOutcome OpenContextMenu(const Path& path) const;

private:
    HTREEITEM GetNext(HTREEITEM item, UINT relation) const;
    HTREEITEM FirstChild(HTREEITEM item) const;
    CString DescribePath(const Path& path) const;
};
