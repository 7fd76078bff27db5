// What a person does with the paths' tree: label edits with their checks, Browse, Add, Remove, Move Up and Move Down.
// The same for both shapes of the page; needs nothing of the frame.
#pragma once

#include "paths/path_check_rules.h"
#include "paths/path_tree.h"

#include <windows.h>

#include <commctrl.h>

#include <optional>

class CPathProperties;

// Posted to the page at the end of an edit that was refused: an edit can't begin anew while the tree still ends one.
constexpr UINT PATH_MESSAGE_RESTART_EDIT = WM_APP;

class CPathEditor
{
public:
    explicit CPathEditor(const CPathResolver& resolver) : m_resolver(resolver) {}

    void Attach(HWND page);
    void Fill(const CPathProperties& properties, const CString& productName);
    const CPathTree& Tree() const { return m_tree; }

    // Sees each message before the tree does; true consumes it.
    bool FilterMessage(const MSG& message);

    // ---- commands
    void Browse();
    void Add();
    void Remove();
    void MoveUp();
    void MoveDown();

    // ---- notifications of the tree
    void OnClick();
    bool OnDoubleClick(); // true when it was a value's
    void OnSelectionChanged(HTREEITEM selected);
    bool OnEditBegins(HTREEITEM node); // false refuses
    void OnEditEnds(const TVITEMW& item);
    void OnExpanded(HTREEITEM node, bool isExpanded);
    void OnFocusLost();

    // ---- edits under way
    void RestartEdit();
    void OnShown();
    // Ends an edit before the tree is read. False when its text is refused: the edit begins anew then.
    // Also for a text that was refused while the page was hidden.
    [[nodiscard]] bool FinishEdit();
    // Puts an edit aside, its text unchecked, for a question that may end the page; and takes it up again.
    void SuspendEdit();
    void ResumeEdit();

private:
    enum class Sibling
    {
        None,
        Previous,
        Next
    };
    struct PendingEdit
    {
        HTREEITEM node;
        CString text;
    };

    const CTreeViewCtrl& Control() const { return m_tree.Control(); }
    void Select(HTREEITEM node);
    void SelectAtCursor();
    HTREEITEM NodeAtCursor() const;
    void UpdateButtons();
    void ShowDescription();
    void EnableButton(int id, bool enabled) { ::EnableWindow(::GetDlgItem(m_page, id), enabled); }
    bool IsButtonEnabled(int id) const { return ::IsWindowEnabled(::GetDlgItem(m_page, id)) != FALSE; }
    void FocusTree() { Control().SetFocus(); }

    bool FilterEditKey(const MSG& message, HWND edit);
    void NoteArmedButton(const MSG& message);
    bool IsOverEnabledButton(const MSG& message, int id) const;

    HWND BeginEdit(HTREEITEM node);
    void BeginEditWith(const PendingEdit& edit);
    void PrepareEdit(HTREEITEM node);
    CString EditText() const;
    void EndEdit(HTREEITEM node, bool isCancelled);
    void EndEditForGood();
    void AcceptEdit(HTREEITEM node, const CString& text);
    bool IsAccepted(HTREEITEM node, const CString& text);
    bool IsPathAccepted(HTREEITEM node, const CString& path, bool& goesOn);
    int ShowBox(const CString& text, UINT type);

    void BrowseNode(HTREEITEM node);
    void BrowseHeading(HTREEITEM heading);
    void BrowseFolder(HTREEITEM node);
    void BrowseFile(HTREEITEM node);
    HTREEITEM ReAddEntry(HTREEITEM neighbor);
    Sibling DeleteEntry(HTREEITEM node);
    void Move(HTREEITEM neighbor, HTREEITEM after);

    const CPathResolver& m_resolver;
    HWND m_page = nullptr;
    CPathTree m_tree;
    HTREEITEM m_selectedNode = nullptr; // the buttons act on it; null after a click that hit nothing

    HTREEITEM m_editedNode = nullptr; // while an edit is under way
    bool m_isSuspending = false;
    bool m_editRejected = false;                // the last edit failed its checks
    std::optional<PendingEdit> m_pendingEdit;   // refused, and to begin anew
    std::optional<PendingEdit> m_suspendedEdit; // put aside
    bool m_moveUpWasEnabled = false;            // at the start of an edit
    bool m_moveDownWasEnabled = false;

    // They order two events: a button's press, and the end of the edit which the press causes.
    bool m_browseArmed = false;
    bool m_removeArmed = false;
    bool m_isBrowsing = false;

    // An emptied entry was deleted at the end of an edit, so Browse puts one back, before or behind the neighbor.
    bool m_reAddPending = false;
    bool m_reAddBeforeNeighbor = false;
};
