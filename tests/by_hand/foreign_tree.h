// A tree view of another process: whatever its messages point to has to lie in that process.
#pragma once

#include "base/handle.h"
#include "base/string.h"

#include <windows.h>

#include <commctrl.h>

class CForeignTree
{
public:
    explicit CForeignTree(HWND tree);
    ~CForeignTree();
    CForeignTree(const CForeignTree&) = delete;
    CForeignTree& operator=(const CForeignTree&) = delete;

    // Null for none.
    [[nodiscard]] HTREEITEM GetSelection() const { return TreeView_GetSelection(m_tree); }
    [[nodiscard]] HTREEITEM GetRoot() const { return TreeView_GetRoot(m_tree); }
    [[nodiscard]] bool HasOpenSelection() const;
    // Empty without a selection.
    [[nodiscard]] CString GetSelectedText() const;

private:
    struct Request
    {
        TVITEMW item;
        wchar_t text[MAX_PATH];
    };

    HWND m_tree;
    CKernelOwner m_process;
    Request* m_remote = nullptr; // in that process
};
