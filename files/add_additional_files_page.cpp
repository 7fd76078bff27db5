#include "files/add_additional_files_page.h"

#include "frame/page_entry.h"
#include "include/additional_files.h"
#include "include/product.h"
#include "include/rollout_ui.h"

template <class T, template <class> class Impl>
CAddAdditionalFilesPageBase<T, Impl>::CAddAdditionalFilesPageBase(const PageContext* context)
    : Impl<T>(context),
      m_editor(context->pProduct, context->hDatabase,
               {[this] { this->RunHooks(this->m_postInitHooks); }, [this] { return this->ProductName(); },
                [this](const CString& paths) {
                    this->m_pProduct->SetProperty(ADDITIONAL_FILES_NOT_ADDED, paths);
                }})
{
}

// ---- init ----

template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnInitDialog()
{
    this->InitFrame();
    m_editor.Fill();
    this->FocusAtStart(IDC_FILES_TREE);
    this->RunHooks(this->m_postInitHooks);
    return FALSE;
}

template <class T, template <class> class Impl>
void CAddAdditionalFilesPageBase<T, Impl>::LookupControls()
{
    Impl<T>::LookupControls();
    m_editor.Attach(this->m_hWnd);
}

template <class T, template <class> class Impl>
BOOL CAddAdditionalFilesPageBase<T, Impl>::PreTranslateMessage(MSG* message)
{
    return m_editor.FilterMessage(*message) || Impl<T>::PreTranslateMessage(message);
}

// ---- leaving ----

// An edit under way ends before the hooks judge what was added. Its text, when it is refused, isn't lost by leaving.
template <class T, template <class> class Impl>
int CAddAdditionalFilesPageBase<T, Impl>::RunLeaveHooks()
{
    return m_editor.FinishEdit() ? Impl<T>::RunLeaveHooks() : HOOK_VETO;
}

template <class T, template <class> class Impl>
bool CAddAdditionalFilesPageBase<T, Impl>::ValidateAndStore()
{
    StoreModified();
    return true;
}

template <class T, template <class> class Impl>
bool CAddAdditionalFilesPageBase<T, Impl>::StoreWithoutValidation()
{
    static_cast<void>(m_editor.FinishEdit()); // the way back is open whatever stands there
    StoreModified();
    return true;
}

template <class T, template <class> class Impl>
void CAddAdditionalFilesPageBase<T, Impl>::StoreModified()
{
    this->m_pProduct->SetProperty(ADDITIONAL_FILES_MODIFIED, m_editor.HasUserItems() ? L"1" : L"0");
}

// ---- handlers ----

template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnRestartEdit(UINT, WPARAM, LPARAM, BOOL&)
{
    m_editor.RestartEdit();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnDropped(UINT, WPARAM, LPARAM drop, BOOL&)
{
    m_editor.Drop(reinterpret_cast<HANDLE>(drop));
    return 0;
}

// From the keyboard alone: a right click reports itself otherwise.
template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnContextMenu(UINT, WPARAM window, LPARAM place, BOOL& handled)
{
    handled = reinterpret_cast<HWND>(window) == this->GetDlgItem(IDC_FILES_TREE) && place == -1;
    if (handled) {
        m_editor.ShowMenuAtSelection();
    }
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnAddFiles(WORD, WORD, HWND, BOOL&)
{
    m_editor.AddFiles();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnAddFolder(WORD, WORD, HWND, BOOL&)
{
    m_editor.AddFolder();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnAddDrive(WORD, WORD, HWND, BOOL&)
{
    m_editor.AddDrive();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnDelete(WORD, WORD, HWND, BOOL&)
{
    m_editor.Delete();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnRename(WORD, WORD, HWND, BOOL&)
{
    m_editor.Rename();
    return 0;
}

// The question takes the focus, which would end an edit with a box under it.
template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnCancel(WORD, WORD, HWND, BOOL& handled)
{
    handled = !m_editor.FinishEdit();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnTreeSelectionChanged(int, NMHDR*, BOOL&)
{
    m_editor.OnSelectionChanged();
    return 0;
}

// Nonzero refuses the edit.
template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnTreeEditBegins(int, NMHDR*, BOOL&)
{
    return !m_editor.OnEditBegins();
}

// The editor has set the label; the tree takes none by itself.
template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnTreeEditEnds(int, NMHDR* header, BOOL&)
{
    m_editor.OnEditEnds(reinterpret_cast<const NMTVDISPINFOW*>(header)->item);
    return FALSE;
}

template <class T, template <class> class Impl>
LRESULT CAddAdditionalFilesPageBase<T, Impl>::OnTreeRightClick(int, NMHDR*, BOOL&)
{
    m_editor.OnRightClick();
    return 0;
}

int AddAdditionalFilesDialog(PageContext* context)
{
    return ShowWizardPage<CAddAdditionalFilesDialog>(context);
}

CTabPage AddAdditionalFilesPage(PageContext* context)
{
    return CreateTabPage<CAddAdditionalFilesPage>(context);
}
