// The label edits of the paths' tree: how one begins, what is checked at its end.
#include "base/scope_exit.h"
#include "frame/resource_text.h"
#include "include/resource_ids.h"
#include "paths/path_editor.h"
#include "window/window.h"

#include <shlwapi.h>

#include <utility>

namespace {

class CPathProbe final : public IPathProbe
{
public:
    [[nodiscard]] bool IsDirectory(const CString& path) const override { return ::PathIsDirectoryW(path); }
    [[nodiscard]] bool Exists(const CString& path) const override { return ::PathFileExistsW(path); }
};

constexpr UINT ERROR_BOX = MB_OK | MB_ICONEXCLAMATION;
constexpr UINT WARNING_BOX = MB_YESNO | MB_ICONEXCLAMATION | MB_DEFBUTTON2;
static_assert(ERROR_BOX == 48 && WARNING_BOX == 308);

CString MessageOf(PathVerdict verdict, const CString& path)
{
    switch (verdict) {
    case PathVerdict::BadFolder:
        return FormatResource(IDS_PATH_FOLDER_INVALID, path);
    case PathVerdict::BadFile:
        return FormatResource(IDS_PATH_FILE_INVALID, path);
    case PathVerdict::Unc:
        return FormatResource(IDS_PATH_UNC, path);
    case PathVerdict::Missing:
        return FormatResource(IDS_PATH_MISSING, path);
    case PathVerdict::Good:
        break;
    }
    return CString();
}

void SelectWholeText(HWND edit)
{
    ::SendMessageW(edit, EM_SETSEL, 0, -1);
    ::SendMessageW(edit, EM_SCROLLCARET, 0, 0);
}

} // namespace

// ---- beginning

HWND CPathEditor::BeginEdit(HTREEITEM node)
{
    FocusTree();
    const HWND edit = Control().EditLabel(node);
    if (edit) {
        SelectWholeText(edit);
    }
    return edit;
}

void CPathEditor::BeginEditWith(const PendingEdit& pending)
{
    Select(pending.node);
    if (const HWND edit = BeginEdit(pending.node)) {
        ::SetWindowTextW(edit, pending.text);
        SelectWholeText(edit);
    }
}

bool CPathEditor::OnEditBegins(HTREEITEM node)
{
    if (m_isBrowsing || !MayEditPathLabel(m_tree.GetFlags(node))) {
        return false;
    }
    m_editedNode = node;
    m_pendingEdit.reset();
    m_browseArmed = false;
    m_removeArmed = false;
    m_moveUpWasEnabled = IsButtonEnabled(IDC_PATH_MOVE_UP);
    m_moveDownWasEnabled = IsButtonEnabled(IDC_PATH_MOVE_DOWN);
    EnableButton(IDC_PATH_MOVE_UP, false);
    EnableButton(IDC_PATH_MOVE_DOWN, false);
    PrepareEdit(node);
    return true;
}

// The tree's own limit of 259 characters would cut a longer path by merely opening and closing its edit.
void CPathEditor::PrepareEdit(HTREEITEM node)
{
    const HWND edit = Control().GetEditControl();
    ::SendMessageW(edit, EM_SETLIMITTEXT, 0, 0);
    ::SetWindowTextW(edit, m_tree.GetText(node));
}

// ---- ending

void CPathEditor::OnEditEnds(const TVITEMW& item)
{
    const HTREEITEM node = std::exchange(m_editedNode, nullptr);
    if (!node) {
        return; // a box, or the deletion of the node, ends an edit for the second time
    }
    EnableButton(IDC_PATH_MOVE_UP, m_moveUpWasEnabled);
    EnableButton(IDC_PATH_MOVE_DOWN, m_moveDownWasEnabled);
    if (!m_isSuspending) {
        EndEdit(node, item.pszText == nullptr);
    }
}

// Esc leaves the text as it was. An entry that is empty then goes, as one that was emptied.
void CPathEditor::EndEdit(HTREEITEM node, bool isCancelled)
{
    if (m_browseArmed || m_isBrowsing) {
        m_browseArmed = false;
        return;
    }
    if (std::exchange(m_removeArmed, false)) {
        m_tree.SetText(node, CString());
        return;
    }
    const std::uint32_t flags = m_tree.GetFlags(node);
    if (IsPathValue(flags) && !isCancelled) {
        AcceptEdit(node, EditText());
    }
    const bool isEntry = IsPathListEntry(flags) && (flags & PNF_FOLDER) != 0;
    if (isEntry && !m_pendingEdit && m_tree.GetText(node).IsEmpty()) {
        const Sibling selected = DeleteEntry(node);
        m_reAddBeforeNeighbor = selected == Sibling::Next;
        m_reAddPending = selected != Sibling::None;
    }
}

// A command acts on the node, so a text that is refused now doesn't come back.
void CPathEditor::EndEditForGood()
{
    FocusTree();
    m_pendingEdit.reset();
}

CString CPathEditor::EditText() const
{
    return CWindow(Control().GetEditControl()).GetText();
}

// The tree never has a refused text. The edit that begins anew does, for correcting it.
void CPathEditor::AcceptEdit(HTREEITEM node, const CString& text)
{
    m_editRejected = false;
    if (text.IsEmpty() || IsAccepted(node, text)) {
        m_tree.SetText(node, text);
        return;
    }
    m_editRejected = true;
    m_pendingEdit = PendingEdit{node, text};
    ::PostMessageW(m_page, PATH_MESSAGE_RESTART_EDIT, 0, 0);
}

// A page that is hidden or goes shows no box: nobody sees what it is about, so the text counts as refused.
int CPathEditor::ShowBox(const CString& text, UINT type)
{
    return ::IsWindowVisible(m_page) ? ::MessageBoxW(m_page, text, L"", type) : 0;
}

bool CPathEditor::IsAccepted(HTREEITEM node, const CString& text)
{
    bool isAccepted = true;
    bool goesOn = true;
    for (const CString& path : PathsToJudge(text, m_tree.IsSupportEntry(node))) {
        isAccepted = IsPathAccepted(node, path, goesOn) && isAccepted;
        if (!goesOn) {
            break;
        }
    }
    return isAccepted;
}

// An error doesn't stop the walk through several paths, the answer No does.
bool CPathEditor::IsPathAccepted(HTREEITEM node, const CString& path, bool& goesOn)
{
    const PathVerdict verdict =
        JudgePath(path, m_tree.GetFlags(node), m_tree.IsSupportEntry(node), m_resolver, CPathProbe());
    switch (verdict) {
    case PathVerdict::Good:
        return true;
    case PathVerdict::Missing:
        goesOn = ShowBox(MessageOf(verdict, path), WARNING_BOX) == IDYES;
        return goesOn;
    default:
        ShowBox(MessageOf(verdict, path), ERROR_BOX);
        return false;
    }
}

// ---- beginning anew

// It waits until the page is shown, and while a dialog is up that the refused press has opened.
void CPathEditor::RestartEdit()
{
    if (!m_pendingEdit || !::IsWindowVisible(m_page) || !::IsWindowEnabled(::GetAncestor(m_page, GA_ROOT))) {
        return;
    }
    const std::optional<PendingEdit> pending = std::exchange(m_pendingEdit, std::nullopt);
    BeginEditWith(*pending);
}

bool CPathEditor::FinishEdit()
{
    const HWND edit = Control().GetEditControl();
    if (edit && EditText() == m_tree.GetText(m_editedNode)) {
        ::SendMessageW(edit, WM_KEYDOWN, VK_ESCAPE, 0); // nothing was typed, so nothing is checked
    } else if (edit) {
        FocusTree();
    }
    OnShown(); // also for a page that was shown again unnoticed, with the window around it
    return !m_pendingEdit;
}

void CPathEditor::OnShown()
{
    if (m_pendingEdit) {
        ::PostMessageW(m_page, PATH_MESSAGE_RESTART_EDIT, 0, 0);
    }
}

void CPathEditor::SuspendEdit()
{
    const HWND edit = Control().GetEditControl();
    if (!edit || !m_editedNode) {
        return;
    }
    m_suspendedEdit = PendingEdit{m_editedNode, EditText()};
    m_isSuspending = true;
    const scope_exit suspended([this] { m_isSuspending = false; });
    ::SendMessageW(edit, WM_KEYDOWN, VK_ESCAPE, 0);
}

void CPathEditor::ResumeEdit()
{
    if (const std::optional<PendingEdit> edit = std::exchange(m_suspendedEdit, std::nullopt)) {
        BeginEditWith(*edit);
    }
    OnShown(); // for a text that was refused before the question
}
