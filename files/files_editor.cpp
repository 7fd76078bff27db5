#include "files/files_editor.h"

#include "base/path_text.h"
#include "base/scope_exit.h"
#include "files/file_status.h"
#include "files/select_file_dialog.h"
#include "frame/resource_text.h"
#include "frame/wait_cursor.h"
#include "include/resource_ids.h"
#include "window/module.h"

#include <shellapi.h>

#include <cstring>
#include <optional>
#include <utility>

namespace {

constexpr UINT ERROR_BOX = MB_OK | MB_ICONEXCLAMATION;
static_assert(ERROR_BOX == 48);
constexpr UINT COPY_GLOBAL_DATA = 0x49; // by which the system hands over the names of dropped files
constexpr std::size_t FEW_FILES = 50;   // of the picker, which need no progress window

unsigned int MessageOf(NewNameResult result)
{
    switch (result) {
    case NewNameResult::Invalid:
        return IDS_FILES_NAME_INVALID;
    case NewNameResult::Taken:
        return IDS_FILES_SIBLING_HAS_NAME;
    case NewNameResult::InvalidDrive:
        return IDS_FILES_DRIVE_INVALID;
    default:
        return 0;
    }
}

} // namespace

CFilesEditor::CFilesEditor(CProduct* product, InstallerHandle database, PageCalls page)
    : m_calls(std::move(page)), m_tree(product, database)
{
}

// ---- opening

void CFilesEditor::Attach(HWND page)
{
    m_page = page;
    m_tree.SubclassWindow(::GetDlgItem(page, IDC_FILES_TREE));
}

void CFilesEditor::Fill()
{
    m_tree.InitImageList();
    m_tree.SetBkColor(RGB(255, 255, 255));
    UpdateCommands();
    ::DragAcceptFiles(m_tree, TRUE);
    // For a program with more rights than the file manager, from which the system keeps messages otherwise.
    for (const UINT message : {UINT{WM_DROPFILES}, UINT{WM_COPYDATA}, COPY_GLOBAL_DATA}) {
        ::ChangeWindowMessageFilterEx(m_tree, message, MSGFLT_ALLOW, nullptr);
    }
}

// ---- what the selection allows

FileCommandStates CFilesEditor::CommandStates() const
{
    const FileTreeNode* const node = m_tree.SelectedNode();
    if (!node) {
        return FileCommandsFor(nullptr);
    }
    const FileNodeKind kind = m_tree.KindOf(*node);
    return FileCommandsFor(&kind);
}

void CFilesEditor::UpdateCommands()
{
    const FileCommandStates states = CommandStates();
    EnableButton(IDC_FILES_ADD_FOLDER, states.bAddFolder);
    EnableButton(IDC_FILES_DELETE, states.bDelete);
    const CWindow status(::GetDlgItem(m_page, IDC_FILES_STATUS));
    status.SetText(FileStatusText(m_tree, m_tree.SelectedNode()));
    ::NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, status, OBJID_CLIENT, CHILDID_SELF); // for screen readers
}

// A button that goes off would keep the focus, and the page had no keys.
void CFilesEditor::EnableButton(int id, bool enabled)
{
    const HWND button = ::GetDlgItem(m_page, id);
    if (!enabled && button == ::GetFocus()) {
        m_tree.SetFocus();
    }
    ::EnableWindow(button, enabled);
}

void CFilesEditor::OnSelectionChanged()
{
    UpdateCommands();
}

// ---- commands

// A box disables the page's window, but messages that were posted come through.
bool CFilesEditor::IsIdle() const
{
    return !m_isEditRefused && !m_isAdding && ::IsWindowEnabled(::GetAncestor(m_page, GA_ROOT));
}

void CFilesEditor::AddFiles()
{
    if (!IsIdle() || !m_tree.PrepareTarget()) {
        return;
    }
    CMSelectFileDialog picker;
    if (picker.PickFiles() && AddPicked(picker.GetPaths())) {
        m_calls.runPostInitHooks();
        if (m_tree.IsWindow()) {
            m_tree.SortTarget();
        }
    }
}

// False when the page has gone under a box. A file that can't be added keeps none of the others out.
bool CFilesEditor::AddPicked(const std::vector<CString>& paths)
{
    m_isAdding = true;
    const scope_exit added([this] { m_isAdding = false; });
    const CPersistentWaitCursor waitCursor;
    std::optional<CFileProgress> progress;
    if (paths.size() > FEW_FILES) {
        progress.emplace(m_page);
    }
    const CAddFilesTreeCtrl::CPause pause(m_tree);
    CString notAdded;
    int count = 0;
    for (const CString& path : paths) {
        if (progress && !progress->Continue(count++, FolderOfFile(path))) {
            break;
        }
        if (m_tree.AddFile(path) == AddFileResult::Failed) {
            notAdded += (notAdded.IsEmpty() ? L"" : L"|") + path;
        }
        if (!m_tree.IsWindow()) {
            return false;
        }
    }
    if (!notAdded.IsEmpty()) {
        m_calls.noteNotAdded(notAdded);
    }
    return m_tree.IsWindow();
}

// Nothing is pending for a folder that was there before, nor without an edit that could be canceled.
void CFilesEditor::AddFolder()
{
    if (IsIdle() && m_tree.PrepareTarget() && m_tree.AddItem(false)) {
        m_newFolderPending = m_labelEditing;
    }
}

// The drive stays even if the edit of its label is canceled: m_newFolderPending is clear.
void CFilesEditor::AddDrive()
{
    if (IsIdle()) {
        m_tree.SelectItem(nullptr);
        static_cast<void>(m_tree.AddItem(true)); // nothing is said when no drive is left
    }
}

void CFilesEditor::Delete()
{
    if (!IsIdle()) {
        return;
    }
    const CPersistentWaitCursor waitCursor;
    static_cast<void>(
        m_tree.DeleteItem(m_tree.SelectedNode())); // a folder of the product stays without a word
    UpdateCommands();
}

void CFilesEditor::Rename()
{
    m_tree.SetFocus();
    m_tree.EditLabel(m_tree.GetSelectedItem());
}

// ---- dropping

FileTreeNode* CFilesEditor::DropTarget(POINT point)
{
    if (const HTREEITEM item = m_tree.HitTest(point)) {
        m_tree.SelectItem(item);
    }
    if (!m_tree.PrepareTarget()) {
        return nullptr;
    }
    return m_tree.FindNode(m_tree.DisplayPathOf(m_tree.GetTarget()));
}

void CFilesEditor::Drop(HANDLE drop)
{
    POINT point = {};
    const std::vector<CString> paths = ReadDrop(drop, point);
    if (!IsIdle() || !FinishEdit()) {
        return;
    }
    m_isAdding = true;
    const scope_exit added([this] { m_isAdding = false; });
    FileTreeNode* const folder = DropTarget(point);
    if (!folder) {
        return;
    }
    const CString key = folder->Key;
    std::vector<NotAddedItem> notAdded;
    {
        CFileProgress progress(m_page);
        CFileDrop work(m_tree, progress);
        if (!work.AddTo(*folder, paths)) {
            return;
        }
        notAdded = work.GetNotAdded();
    }
    if (FileTreeNode* const changed = m_tree.FindNode(m_tree.DisplayPathOf(key))) {
        m_tree.SetTarget(*changed);
    }
    if (!notAdded.empty()) {
        ::MessageBoxW(m_page, NotAddedText(notAdded), m_calls.productName(), ERROR_BOX);
    }
    if (m_tree.IsWindow()) { // a box may have been its last
        m_calls.runPostInitHooks();
    }
    if (m_tree.IsWindow()) {
        m_tree.SortTarget();
        UpdateCommands();
    }
}

// ---- menu

void CFilesEditor::OnRightClick()
{
    POINT cursor = {};
    ::GetCursorPos(&cursor);
    POINT place = cursor;
    m_tree.ScreenToClient(&place);
    m_tree.SelectItem(m_tree.HitTest(place));
    ShowMenu(cursor);
}

void CFilesEditor::ShowMenuAtSelection()
{
    const HTREEITEM item = m_tree.GetSelectedItem();
    RECT place = {};
    std::memcpy(&place, &item, sizeof item); // how the message names its item
    if (!item || !m_tree.SendMessage(TVM_GETITEMRECT, TRUE, reinterpret_cast<LPARAM>(&place))) {
        place = {};
    }
    POINT corner = {place.left, place.bottom};
    m_tree.ClientToScreen(&corner);
    ShowMenu(corner);
}

void CFilesEditor::ShowMenu(POINT place)
{
    const CMenuOwner menu(::LoadMenuW(_Module.GetResourceInstance(), MAKEINTRESOURCEW(IDR_FILES_MENU)));
    const HMENU popup = ::GetSubMenu(menu.get(), 0);
    if (!popup) {
        return;
    }
    const FileCommandStates states = CommandStates();
    const auto enable = [popup](UINT id, bool enabled) {
        ::EnableMenuItem(popup, id, MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_DISABLED | MF_GRAYED));
    };
    enable(ID_FILES_ADD_FOLDER, states.bAddFolder);
    enable(ID_FILES_DELETE, states.bDelete);
    enable(ID_FILES_RENAME, states.bRename);
    ::TrackPopupMenu(popup, TPM_RIGHTBUTTON, place.x, place.y, 0, m_page, nullptr);
}

// ---- keys

bool CFilesEditor::FilterMessage(const MSG& message)
{
    const bool isMine = message.hwnd == m_page || ::IsChild(m_page, message.hwnd);
    return message.message == WM_KEYDOWN && isMine && FilterKey(message.wParam);
}

bool CFilesEditor::FilterKey(WPARAM key)
{
    switch (key) {
    case VK_CANCEL:
    case VK_ESCAPE:
    case VK_RETURN:
        if (m_labelEditing) {
            EndEditByKey(key);
            return true;
        }
        if (key == VK_RETURN) {
            static_cast<void>(m_tree.PrepareTarget()); // and on to the frame, which leaves the page
        }
        return false;
    case VK_DELETE:
        if (::GetFocus() == m_tree.m_hWnd) { // not in the edit of a label
            Delete();
        }
        return false;
    default:
        return false;
    }
}

// By a key of the edit's own: the tree's message for it reports the end twice, and the second time a cancel saves.
void CFilesEditor::EndEditByKey(WPARAM key)
{
    m_labelEditCancelled = key != VK_RETURN;
    if (const HWND edit = m_tree.GetEditControl()) {
        ::SendMessageW(edit, WM_KEYDOWN, m_labelEditCancelled ? VK_ESCAPE : VK_RETURN, 0);
    }
}

// ---- label edits

bool CFilesEditor::OnEditBegins()
{
    const FileTreeNode* const node = m_tree.SelectedNode();
    if (!node || !node->IsUserItem || node->IsFile()) {
        return false;
    }
    if (node->Key != m_editedKey) {
        m_newFolderPending = false;
        m_isEditRefused = false;
    }
    m_editedKey = node->Key;
    m_labelEditing = true;
    m_labelEditCancelled = false;
    return true;
}

void CFilesEditor::OnEditEnds(const TVITEMW& item)
{
    if (!std::exchange(m_labelEditing, false)) {
        return; // a box takes the focus, which ends the edit for the second time
    }
    const bool wasNewFolder = std::exchange(m_newFolderPending, false);
    const bool wasCancelled = std::exchange(m_labelEditCancelled, false);
    FileTreeNode* const node = m_tree.SelectedNode();
    if (!node || node->IsFile() || !node->IsUserItem || node->Key != m_editedKey) {
        return;
    }
    if (wasCancelled) {
        if (wasNewFolder) {
            static_cast<void>(m_tree.DeleteItem(node));
        }
        return;
    }
    CString text = CString(item.pszText).Trim();
    if (text.IsEmpty()) {
        text = m_tree.LabelOf(*node);
    }
    ReportNewName(m_tree.ApplyNewName(node, text), wasNewFolder);
}

void CFilesEditor::ReportNewName(NewNameResult result, bool wasNewFolder)
{
    if (result == NewNameResult::Accepted) {
        UpdateCommands();
    }
    const unsigned int message = MessageOf(result);
    if (message == 0) {
        return;
    }
    ::MessageBoxW(m_page, LoadResourceString(message), m_calls.productName(), ERROR_BOX);
    m_newFolderPending = wasNewFolder;
    m_isEditRefused = true;
    ::PostMessageW(m_page, FILES_MESSAGE_RESTART_EDIT, 0, 0);
}

void CFilesEditor::RestartEdit()
{
    if (!m_isEditRefused) {
        return;
    }
    const bool wasNewFolder = m_newFolderPending;
    const FileTreeNode* const node = m_tree.FindNode(m_tree.DisplayPathOf(m_editedKey));
    m_isEditRefused = false;
    m_newFolderPending = false;
    if (node) { // whatever a click has selected meanwhile
        m_tree.SelectItem(node->Item);
        Rename();
        m_newFolderPending = wasNewFolder && m_labelEditing;
    }
}

bool CFilesEditor::FinishEdit()
{
    if (m_labelEditing) {
        EndEditByKey(VK_RETURN);
    }
    return !m_isEditRefused;
}
