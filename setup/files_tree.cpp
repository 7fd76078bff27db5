#include "setup/files_tree.h"

#include "automation/control.h"
#include "base/scope_exit.h"
#include "include/files_tree_messages.h"
#include "include/resource_ids.h"
#include "setup/files_words.h"

#include <shlobj.h>

#include <algorithm>
#include <utility>

namespace {

bool g_isDropping = false; // on the thread of the pages, in whose loop the run goes on

// As a file manager makes it. The receiver frees it.
HGLOBAL MakeDrop(const CString& source)
{
    const std::size_t characters = static_cast<std::size_t>(source.GetLength()) + 2; // two zeros end the list
    const HGLOBAL memory =
        GlobalAlloc(GMEM_MOVEABLE | GMEM_ZEROINIT, sizeof(DROPFILES) + characters * sizeof(wchar_t));
    if (auto* const drop = static_cast<DROPFILES*>(memory ? GlobalLock(memory) : nullptr)) {
        drop->pFiles = sizeof(DROPFILES);
        drop->fWide = TRUE;
        drop->pt = {-1, -1}; // on no item: the selected folder counts
        std::copy_n(source.GetString(), source.GetLength(), reinterpret_cast<wchar_t*>(drop + 1));
        GlobalUnlock(memory);
    }
    return memory;
}

} // namespace

CFilesTree::CFilesTree(HWND page) : m_page(page), m_tree(::GetDlgItem(page, IDC_FILES_TREE))
{
}

StepOutcome CFilesTree::NeedUsable() const
{
    return CControl(m_tree).NeedUsable();
}

// ---- looking

HTREEITEM CFilesTree::Find(const CString& path) const
{
    const CString bare = CString(path).TrimRight(L"\\");
    HTREEITEM item = nullptr;
    for (int start = 0; start >= 0 && !bare.IsEmpty();) {
        const int end = bare.Find(L'\\', start);
        const CString label = end < 0 ? bare.Mid(start) : bare.Mid(start, end - start);
        const bool isMark = start == 0 && label.CompareNoCase(FILES_ROOT_MARK) == 0;
        item = isMark ? ProductRoot() : FindChild(item, label);
        if (!item) {
            return nullptr;
        }
        start = end < 0 ? -1 : end + 1;
    }
    return item;
}

HTREEITEM CFilesTree::FindChild(HTREEITEM parent, const CString& label) const
{
    const std::vector<HTREEITEM> children = Children(parent);
    const auto found = std::find_if(children.begin(), children.end(), [this, &label](HTREEITEM child) {
        return label.CompareNoCase(LabelOf(child)) == 0;
    });
    return found == children.end() ? nullptr : *found;
}

std::vector<HTREEITEM> CFilesTree::Children(HTREEITEM parent) const
{
    std::vector<HTREEITEM> children;
    for (HTREEITEM item = parent ? m_tree.GetChildItem(parent) : m_tree.GetRootItem(); item;
         item = m_tree.GetNextSiblingItem(item)) {
        children.push_back(item);
    }
    return children;
}

bool CFilesTree::IsAdded(HTREEITEM item) const
{
    return (m_tree.GetItemState(item, TVIS_BOLD) & TVIS_BOLD) != 0;
}

CString CFilesTree::SourceOf(HTREEITEM item) const
{
    static std::vector<wchar_t> buffer(FILES_SOURCE_CAPACITY); // trees have thousands of items
    buffer.front() = 0;
    m_tree.SendMessage(FILES_MESSAGE_GET_SOURCE, reinterpret_cast<WPARAM>(item),
                       reinterpret_cast<LPARAM>(buffer.data()));
    return CString(buffer.data());
}

HTREEITEM CFilesTree::ProductRoot() const
{
    HTREEITEM found = nullptr;
    for (const HTREEITEM root : Children(nullptr)) {
        if (!IsAdded(root) && std::exchange(found, root)) {
            return nullptr;
        }
    }
    return found;
}

CString CFilesTree::PathOf(HTREEITEM item) const
{
    const HTREEITEM parent = m_tree.GetParentItem(item);
    if (parent) {
        return PathOf(parent) + L"\\" + LabelOf(item);
    }
    return item == ProductRoot() ? CString(FILES_ROOT_MARK) : LabelOf(item);
}

// ---- acting

void CFilesTree::Select(HTREEITEM item) const
{
    ::SetFocus(m_tree);
    m_tree.SelectItem(item);
}

StepOutcome CFilesTree::Press(int button) const
{
    return CControl(m_page, button).Click();
}

HWND CFilesTree::OpenEdit(HTREEITEM item) const
{
    Select(item);
    return m_tree.EditLabel(item);
}

StepOutcome CFilesTree::Type(const CString& label) const
{
    const HWND edit = GetEdit();
    const StepOutcome typed = CControl(edit).SetText(label);
    if (typed.IsDone()) {
        SendMessageW(edit, WM_KEYDOWN, VK_RETURN, 1);
    }
    return typed;
}

void CFilesTree::Drop(const CString& source) const
{
    g_isDropping = true;
    const scope_exit dropped([] { g_isDropping = false; });
    if (const HGLOBAL drop = MakeDrop(source)) {
        SendMessageW(m_page, FILES_MESSAGE_DROPPED, 0, reinterpret_cast<LPARAM>(drop));
    }
}

bool CFilesTree::IsDropping()
{
    return g_isDropping;
}
