#include "paths/path_editor.h"

#include "base/scope_exit.h"
#include "include/resource_ids.h"
#include "paths/path_browser.h"
#include "window/window.h"

#include <windowsx.h>

// ---- opening

void CPathEditor::Attach(HWND page)
{
    m_page = page;
    m_tree.Attach(::GetDlgItem(page, IDC_PATH_TREE));
}

void CPathEditor::Fill(const CPathProperties& properties, const CString& productName)
{
    m_tree.Fill(properties, productName);
    Select(m_tree.GetSupportHeading());
}

// ---- selection

void CPathEditor::Select(HTREEITEM node)
{
    Control().SelectItem(node);
    // The tree reports no change where it has selected the node by itself, or while it was deleting a neighbor.
    m_selectedNode = node;
    UpdateButtons();
    ShowDescription();
}

void CPathEditor::OnSelectionChanged(HTREEITEM selected)
{
    if (selected) {
        m_selectedNode = selected;
    }
    UpdateButtons();
    ShowDescription();
}

void CPathEditor::UpdateButtons()
{
    const PathButtonStates states =
        PathButtonsFor(m_tree.GetFlags(m_selectedNode), m_tree.GetPrevious(m_selectedNode) != nullptr,
                       m_tree.GetNext(m_selectedNode) != nullptr);
    EnableButton(IDC_PATH_BROWSE, states.bBrowse);
    EnableButton(IDC_PATH_ADD, states.bAdd);
    EnableButton(IDC_PATH_REMOVE, states.bRemove);
    EnableButton(IDC_PATH_MOVE_UP, states.bMoveUp);
    EnableButton(IDC_PATH_MOVE_DOWN, states.bMoveDown);
}

void CPathEditor::ShowDescription()
{
    if (m_selectedNode) {
        ::SetDlgItemTextW(m_page, IDC_PATH_DESCRIPTION, m_tree.GetDescription(m_selectedNode));
    }
}

HTREEITEM CPathEditor::NodeAtCursor() const
{
    POINT cursor = {};
    ::GetCursorPos(&cursor);
    Control().ScreenToClient(&cursor);
    return Control().HitTest(cursor);
}

void CPathEditor::SelectAtCursor()
{
    m_reAddPending = false;
    Select(NodeAtCursor());
}

void CPathEditor::OnClick()
{
    SelectAtCursor();
}

bool CPathEditor::OnDoubleClick()
{
    SelectAtCursor();
    const bool isValue = IsPathValue(m_tree.GetFlags(m_selectedNode));
    if (isValue) {
        BrowseNode(m_selectedNode);
    }
    if (m_selectedNode) {
        Select(m_selectedNode);
    }
    FocusTree();
    return isValue;
}

void CPathEditor::OnExpanded(HTREEITEM node, bool isExpanded)
{
    m_tree.SetImage(node, PathImageAfterExpansion(m_tree.GetImage(node), isExpanded));
}

// The picker of Browse takes the focus too, and has to know the entry still.
void CPathEditor::OnFocusLost()
{
    if (!m_isBrowsing) {
        m_reAddPending = false;
    }
}

// ---- keys and buttons, before the tree sees them

bool CPathEditor::FilterMessage(const MSG& message)
{
    RestartEdit(); // a dialog that it waited for is gone, as its messages don't come here
    if (message.message == WM_LBUTTONDOWN) {
        NoteArmedButton(message);
        return false;
    }
    if (message.message != WM_KEYDOWN || !::IsChild(m_page, message.hwnd)) {
        return false;
    }
    if (const HWND edit = Control().GetEditControl()) {
        return FilterEditKey(message, edit);
    }
    const bool isEnter = message.wParam == VK_RETURN;
    if (message.hwnd != Control() || (!isEnter && message.wParam != VK_F2) ||
        !IsPathValue(m_tree.GetFlags(m_selectedNode))) {
        return false;
    }
    BeginEdit(m_selectedNode);
    return !isEnter; // Enter goes on to the frame, which leaves the page
}

// What the edit uses itself reaches neither the dialog nor a tab page's host.
bool CPathEditor::FilterEditKey(const MSG& message, HWND edit)
{
    const bool isEnter = message.wParam == VK_RETURN;
    if (isEnter || (message.hwnd == edit && message.wParam == VK_ESCAPE)) {
        MSG forwarded = message;
        forwarded.hwnd = edit;
        ::TranslateMessage(&forwarded);
        ::DispatchMessageW(&forwarded);
        m_reAddPending = m_reAddPending && !isEnter;
        return true;
    }
    return message.hwnd == edit && message.wParam == VK_F2;
}

void CPathEditor::NoteArmedButton(const MSG& message)
{
    if (IsOverEnabledButton(message, IDC_PATH_BROWSE)) {
        m_browseArmed = true;
    } else if (IsOverEnabledButton(message, IDC_PATH_REMOVE)) {
        m_removeArmed = true;
    }
}

bool CPathEditor::IsOverEnabledButton(const MSG& message, int id) const
{
    POINT point = {GET_X_LPARAM(message.lParam), GET_Y_LPARAM(message.lParam)};
    ::ClientToScreen(message.hwnd, &point);
    const CWindow button(::GetDlgItem(m_page, id));
    const RECT place = button.GetWindowRect();
    return IsButtonEnabled(id) && ::PtInRect(&place, point);
}

// ---- Browse

void CPathEditor::Browse()
{
    m_isBrowsing = true;
    const scope_exit browsed([this] { m_isBrowsing = false; });
    EndEditForGood(); // without checks: its text is replaced
    BrowseNode(m_selectedNode);
    FocusTree(); // a tab page doesn't get it back from a picker
    if (!m_selectedNode) {
        return;
    }
    Select(m_selectedNode);
    const bool hasSibling = m_tree.GetNext(m_selectedNode) || m_tree.GetPrevious(m_selectedNode);
    if (IsPathListEntry(m_tree.GetFlags(m_selectedNode)) && hasSibling &&
        m_tree.GetText(m_selectedNode).IsEmpty()) {
        ::SendMessageW(m_page, WM_COMMAND, MAKEWPARAM(IDC_PATH_REMOVE, BN_CLICKED),
                       reinterpret_cast<LPARAM>(::GetDlgItem(m_page, IDC_PATH_REMOVE)));
    }
}

void CPathEditor::BrowseNode(HTREEITEM node)
{
    const std::uint32_t flags = m_tree.GetFlags(node);
    if ((flags & PNF_GROUP) != 0) {
        BrowseHeading(node);
    } else if ((flags & PNF_FOLDER) != 0) {
        BrowseFolder(node);
    } else if ((flags & PNF_FILE) != 0) {
        BrowseFile(node);
    }
}

void CPathEditor::BrowseHeading(HTREEITEM heading)
{
    const HTREEITEM child = m_tree.GetChild(heading);
    m_tree.OpenHeading(heading);
    m_selectedNode = child;
    UpdateButtons();
}

void CPathEditor::BrowseFolder(HTREEITEM node)
{
    CString folder = m_tree.GetText(node);
    if (!PickPathFolder(m_page, folder)) {
        return;
    }
    CString text = PickedFolderText(folder);
    const std::uint32_t flags = m_tree.GetFlags(node);
    const bool isEntry = IsPathListEntry(flags);
    if (m_reAddPending && isEntry) {
        node = ReAddEntry(node);
        m_selectedNode = node;
    }
    if ((flags & PNF_URL) != 0) {
        text = FileAddress(text);
    }
    m_tree.SetText(node, text);
    if (isEntry && text.IsEmpty()) {
        DeleteEntry(node);
    }
    UpdateButtons();
}

// The picked file stands there in small letters, unlike a folder, on purpose.
void CPathEditor::BrowseFile(HTREEITEM node)
{
    CString file;
    if (PickPathFile(m_page, file)) {
        m_tree.SetText(node, file.MakeLower());
        UpdateButtons();
    }
}

// ---- Add and Remove

void CPathEditor::Add()
{
    m_editRejected = false;
    FocusTree();
    if (m_editRejected || m_pendingEdit) {
        return; // the refused text is to be corrected first
    }
    if ((m_tree.GetFlags(m_selectedNode) & PNF_GROUP) != 0) {
        m_selectedNode = m_tree.GetChild(m_selectedNode);
    }
    if (!IsPathListEntry(m_tree.GetFlags(m_selectedNode))) {
        return;
    }
    if (!m_tree.GetText(m_selectedNode).IsEmpty()) {
        m_selectedNode =
            m_tree.InsertEntry(Control().GetParentItem(m_selectedNode), TVI_LAST, PATH_FLAGS_LIST_ENTRY);
    }
    const HTREEITEM entry = m_selectedNode;
    Select(entry);
    FocusTree();
    BeginEdit(entry);
}

HTREEITEM CPathEditor::ReAddEntry(HTREEITEM neighbor)
{
    m_reAddPending = false;
    const HTREEITEM previous = m_tree.GetPrevious(neighbor);
    const HTREEITEM after = !m_reAddBeforeNeighbor ? neighbor : previous ? previous : TVI_FIRST;
    return m_tree.InsertEntry(Control().GetParentItem(neighbor), after,
                              ReAddedEntryFlags(m_tree.GetFlags(neighbor)));
}

void CPathEditor::Remove()
{
    EndEditForGood();
    const HTREEITEM node = m_selectedNode;
    const std::uint32_t flags = m_tree.GetFlags(node);
    if (!IsPathValue(flags) || (IsPathListEntry(flags) && DeleteEntry(node) != Sibling::None)) {
        return;
    }
    m_tree.SetText(node, CString());
    BeginEdit(node);
}

// Goes on to the next sibling, else to the previous one. The only entry stays.
CPathEditor::Sibling CPathEditor::DeleteEntry(HTREEITEM node)
{
    const HTREEITEM next = m_tree.GetNext(node);
    const HTREEITEM sibling = next ? next : m_tree.GetPrevious(node);
    if (!sibling) {
        return Sibling::None;
    }
    if (m_pendingEdit && m_pendingEdit->node == node) {
        m_pendingEdit.reset();
    }
    m_tree.Delete(node);
    Select(sibling);
    return next ? Sibling::Next : Sibling::Previous;
}

// ---- Move Up and Move Down

void CPathEditor::MoveUp()
{
    EndEditForGood(); // may delete the node or a neighbor
    const HTREEITEM previous = m_tree.GetPrevious(m_selectedNode);
    const HTREEITEM after = m_tree.GetPrevious(previous);
    Move(previous, after ? after : TVI_FIRST);
}

void CPathEditor::MoveDown()
{
    EndEditForGood();
    const HTREEITEM next = m_tree.GetNext(m_selectedNode);
    Move(next, next);
}

// Past a neighbor, which puts the node behind `after`. At the list's end the node stays.
void CPathEditor::Move(HTREEITEM neighbor, HTREEITEM after)
{
    const bool isMovable = (m_tree.GetFlags(m_selectedNode) & PNF_MOVABLE) != 0;
    Select(neighbor && isMovable ? m_tree.Move(m_selectedNode, after) : m_selectedNode);
}
