// The page of the additional files.
#pragma once

#include "files/files_editor.h"
#include "frame/tab_page.h"
#include "frame/wizard_page.h"

// Files, folders and drives that go along with the product, in one tree with the product's folders. Everything is
// written to the product's database at once; when the page is left, the host learns whether there is anything.
template <class T, template <class> class Impl>
class CAddAdditionalFilesPageBase : public Impl<T>
{
public:
    explicit CAddAdditionalFilesPageBase(const PageContext* context);

    BEGIN_MSG_MAP(CAddAdditionalFilesPageBase)
    MESSAGE_HANDLER(FILES_MESSAGE_RESTART_EDIT, OnRestartEdit)
    MESSAGE_HANDLER(FILES_MESSAGE_DROPPED, OnDropped)
    MESSAGE_HANDLER(WM_CONTEXTMENU, OnContextMenu)
    COMMAND_ID_HANDLER(IDC_FILES_ADD, OnAddFiles)
    COMMAND_ID_HANDLER(IDC_FILES_ADD_FOLDER, OnAddFolder)
    COMMAND_ID_HANDLER(ID_FILES_ADD_FOLDER, OnAddFolder)
    COMMAND_ID_HANDLER(IDC_FILES_ADD_DRIVE, OnAddDrive)
    COMMAND_ID_HANDLER(ID_FILES_ADD_DRIVE, OnAddDrive)
    COMMAND_ID_HANDLER(IDC_FILES_DELETE, OnDelete)
    COMMAND_ID_HANDLER(ID_FILES_DELETE, OnDelete)
    COMMAND_ID_HANDLER(ID_FILES_RENAME, OnRename)
    COMMAND_HANDLER(IDC_CANCEL, BN_CLICKED, OnCancel)
    NOTIFY_HANDLER(IDC_FILES_TREE, TVN_SELCHANGEDW, OnTreeSelectionChanged)
    NOTIFY_HANDLER(IDC_FILES_TREE, TVN_BEGINLABELEDITW, OnTreeEditBegins)
    NOTIFY_HANDLER(IDC_FILES_TREE, TVN_ENDLABELEDITW, OnTreeEditEnds)
    NOTIFY_HANDLER(IDC_FILES_TREE, NM_RCLICK, OnTreeRightClick)
    CHAIN_MSG_MAP(Impl<T>)
    END_MSG_MAP()

    LRESULT OnInitDialog() override;
    void LookupControls() override;
    BOOL PreTranslateMessage(MSG* message) override;
    int RunLeaveHooks() override;
    bool ValidateAndStore() override;
    bool StoreWithoutValidation() override;

private:
    void StoreModified();

    // ---- handlers ----
    LRESULT OnRestartEdit(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnDropped(UINT, WPARAM, LPARAM drop, BOOL&);
    LRESULT OnContextMenu(UINT, WPARAM window, LPARAM place, BOOL& handled);
    LRESULT OnAddFiles(WORD, WORD, HWND, BOOL&);
    LRESULT OnAddFolder(WORD, WORD, HWND, BOOL&);
    LRESULT OnAddDrive(WORD, WORD, HWND, BOOL&);
    LRESULT OnDelete(WORD, WORD, HWND, BOOL&);
    LRESULT OnRename(WORD, WORD, HWND, BOOL&);
    LRESULT OnCancel(WORD, WORD, HWND, BOOL& handled);
    LRESULT OnTreeSelectionChanged(int, NMHDR*, BOOL&);
    LRESULT OnTreeEditBegins(int, NMHDR*, BOOL&);
    LRESULT OnTreeEditEnds(int, NMHDR* header, BOOL&);
    LRESULT OnTreeRightClick(int, NMHDR*, BOOL&);

    CFilesEditor m_editor;
};

class CAddAdditionalFilesDialog
    : public CAddAdditionalFilesPageBase<CAddAdditionalFilesDialog, CWizardPageImpl>
{
public:
    enum
    {
        IDD = IDD_ADD_ADDITIONAL_FILES
    };
    using CAddAdditionalFilesPageBase::CAddAdditionalFilesPageBase;
};

class CAddAdditionalFilesPage : public CAddAdditionalFilesPageBase<CAddAdditionalFilesPage, CTabPageImpl>
{
public:
    enum
    {
        IDD = IDD_ADD_ADDITIONAL_FILES_TAB
    };
    using CAddAdditionalFilesPageBase::CAddAdditionalFilesPageBase;
};
