// The page of the product's paths.
#pragma once

#include "frame/tab_page.h"
#include "frame/wizard_page.h"
#include "paths/path_editor.h"
#include "paths/path_properties.h"

// Where the product on the workstations finds its support files, one tree for all 26 paths: headings, and below them the
// values, edited in place. Each value is checked when its edit ends. Everything is stored when the page is left: read back
// from the tree, encoded, and handed to the host.
template <class T, template <class> class Impl>
class CPathCustomizationPageBase : public Impl<T>
{
public:
    explicit CPathCustomizationPageBase(const PageContext* context);

    BEGIN_MSG_MAP(CPathCustomizationPageBase)
    MESSAGE_HANDLER(PATH_MESSAGE_RESTART_EDIT, OnRestartEdit)
    MESSAGE_HANDLER(WM_SHOWWINDOW, OnShowWindow)
    COMMAND_ID_HANDLER(IDC_PATH_BROWSE, OnBrowse)
    COMMAND_ID_HANDLER(IDC_PATH_ADD, OnAdd)
    COMMAND_ID_HANDLER(IDC_PATH_REMOVE, OnRemove)
    COMMAND_ID_HANDLER(IDC_PATH_MOVE_UP, OnMoveUp)
    COMMAND_ID_HANDLER(IDC_PATH_MOVE_DOWN, OnMoveDown)
    COMMAND_HANDLER(IDC_CANCEL, BN_CLICKED, OnCancel)
    NOTIFY_HANDLER(IDC_PATH_TREE, NM_CLICK, OnTreeClick)
    NOTIFY_HANDLER(IDC_PATH_TREE, NM_RCLICK, OnTreeClick)
    NOTIFY_HANDLER(IDC_PATH_TREE, NM_DBLCLK, OnTreeDoubleClick)
    NOTIFY_HANDLER(IDC_PATH_TREE, NM_KILLFOCUS, OnTreeFocusLost)
    NOTIFY_HANDLER(IDC_PATH_TREE, TVN_SELCHANGEDW, OnTreeSelectionChanged)
    NOTIFY_HANDLER(IDC_PATH_TREE, TVN_BEGINLABELEDITW, OnTreeEditBegins)
    NOTIFY_HANDLER(IDC_PATH_TREE, TVN_ENDLABELEDITW, OnTreeEditEnds)
    NOTIFY_HANDLER(NO_CONTROL, TVN_ITEMEXPANDEDW, OnTreeExpanded)
    CHAIN_MSG_MAP(Impl<T>)
    END_MSG_MAP()

    LRESULT OnInitDialog() override;
    void LookupControls() override;
    BOOL PreTranslateMessage(MSG* message) override;
    bool ValidateAndStore() override;
    bool StoreWithoutValidation() override;

private:
    // No control has this id, so the entry never runs: Browse alone changes the picture of a heading, on purpose.
    static constexpr int NO_CONTROL = -412;

    // ---- handlers ----
    LRESULT OnRestartEdit(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnShowWindow(UINT, WPARAM isShown, LPARAM, BOOL& handled);
    LRESULT OnBrowse(WORD, WORD, HWND, BOOL&);
    LRESULT OnAdd(WORD, WORD, HWND, BOOL&);
    LRESULT OnRemove(WORD, WORD, HWND, BOOL&);
    LRESULT OnMoveUp(WORD, WORD, HWND, BOOL&);
    LRESULT OnMoveDown(WORD, WORD, HWND, BOOL&);
    LRESULT OnCancel(WORD code, WORD id, HWND control, BOOL& handled);
    LRESULT OnTreeClick(int, NMHDR*, BOOL&);
    LRESULT OnTreeDoubleClick(int, NMHDR*, BOOL&);
    LRESULT OnTreeFocusLost(int, NMHDR*, BOOL&);
    LRESULT OnTreeSelectionChanged(int, NMHDR* header, BOOL&);
    LRESULT OnTreeEditBegins(int, NMHDR* header, BOOL&);
    LRESULT OnTreeEditEnds(int, NMHDR* header, BOOL&);
    LRESULT OnTreeExpanded(int, NMHDR* header, BOOL&);

    // ---- leaving ----
    void ReadPathTree();
    void CheckRequiredPaths();
    void RefillPath(const RequiredPath& required);

    CPathProperties m_paths;
    CPathEditor m_editor;
};

class CPathCustomizationDialog : public CPathCustomizationPageBase<CPathCustomizationDialog, CWizardPageImpl>
{
public:
    enum
    {
        IDD = IDD_PATH_CUSTOMIZATION
    };
    using CPathCustomizationPageBase::CPathCustomizationPageBase;
};

class CPathCustomizationPage : public CPathCustomizationPageBase<CPathCustomizationPage, CTabPageImpl>
{
public:
    enum
    {
        IDD = IDD_PATH_CUSTOMIZATION_TAB
    };
    using CPathCustomizationPageBase::CPathCustomizationPageBase;
};
