// What a person does with the tree of additional files: buttons, menu, keys, label edits, dropping. The same for both
// shapes of the page.
#pragma once

#include "files/add_files_tree.h"
#include "files/file_drop.h"

#include <windows.h>

#include <commctrl.h>

#include <functional>

class CFilesEditor
{
public:
    // What the page does for it.
    struct PageCalls
    {
        std::function<void()> runPostInitHooks;
        std::function<CString()> productName;
        std::function<void(const CString& paths)> noteNotAdded; // with "|" between them
    };

    CFilesEditor(CProduct* product, InstallerHandle database, PageCalls page);

    void Attach(HWND page);
    // Pictures and nodes.
    void Fill();
    bool HasUserItems() const { return m_tree.HasUserItems(); }

    // Sees each message before the tree does; true consumes it.
    bool FilterMessage(const MSG& message);

    // ---- commands
    void AddFiles();
    void AddFolder();
    void AddDrive();
    void Delete();
    void Rename();
    // Files dropped on the tree; frees `drop`.
    void Drop(HANDLE drop);

    // ---- notifications of the tree
    void OnSelectionChanged();
    void OnRightClick();
    // By the keyboard: beside the selected item.
    void ShowMenuAtSelection();
    bool OnEditBegins(); // false refuses
    void OnEditEnds(const TVITEMW& item);

    // ---- edits under way
    // An edit can't begin anew while the tree still ends one: the page calls this from a posted message.
    void RestartEdit();
    // Ends an edit before the page is left. False when its text is refused: the edit begins anew then.
    [[nodiscard]] bool FinishEdit();

private:
    bool FilterKey(WPARAM key);
    void EndEditByKey(WPARAM key);
    void ShowMenu(POINT place);
    void UpdateCommands();
    void EnableButton(int id, bool enabled);
    FileCommandStates CommandStates() const;
    void ReportNewName(NewNameResult result, bool wasNewFolder);
    bool AddPicked(const std::vector<CString>& paths);
    // Whether a command may run: not while an edit comes back, nor while another one shows a box or a progress window.
    bool IsIdle() const;
    FileTreeNode* DropTarget(POINT point);

    PageCalls m_calls;
    HWND m_page = nullptr;
    CAddFilesTreeCtrl m_tree;

    bool m_isAdding = false;
    bool m_labelEditing = false;
    CString m_editedKey;               // of the node whose label was edited last
    bool m_newFolderPending = false;   // the folder under edit goes if the edit is canceled
    bool m_labelEditCancelled = false; // by a key
    bool m_isEditRefused = false;      // and begins anew
};

// Posted to the page at the end of an edit that was refused.
constexpr UINT FILES_MESSAGE_RESTART_EDIT = WM_APP;
