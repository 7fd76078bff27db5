#include "paths/path_customization_page.h"

#include "frame/page_entry.h"
#include "frame/resource_text.h"
#include "include/product.h"
#include "include/rollout_ui.h"

#include <algorithm>

namespace {

// The label of a path's heading.
CString LabelOf(PathProperty property)
{
    const auto row = std::find_if(PATH_TABLE.begin(), PATH_TABLE.end(),
                                  [property](const PathRow& path) { return path.property == property; });
    return LoadResourceString(row->heading.label);
}

CString RequiredPathMessage(const RequiredPath& required)
{
    return required.message == IDS_ACTION_PATH_EMPTY
               ? FormatResource(IDS_ACTION_PATH_EMPTY, LabelOf(required.property))
               : LoadResourceString(required.message);
}

} // namespace

template <class T, template <class> class Impl>
CPathCustomizationPageBase<T, Impl>::CPathCustomizationPageBase(const PageContext* context)
    : Impl<T>(context), m_paths(*context->pProduct, context->hDatabase), m_editor(m_paths.GetResolver())
{
}

// ---- init ----

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnInitDialog()
{
    this->InitFrame();
    m_paths.LoadDirectoryMap();
    m_paths.ReadAllPathProperties();
    m_editor.Fill(m_paths, CString(this->m_pProduct->m_strName));
    this->FocusAtStart(IDC_PATH_TREE);
    this->RunHooks(this->m_postInitHooks);
    return FALSE;
}

template <class T, template <class> class Impl>
void CPathCustomizationPageBase<T, Impl>::LookupControls()
{
    Impl<T>::LookupControls();
    m_editor.Attach(this->m_hWnd);
}

template <class T, template <class> class Impl>
BOOL CPathCustomizationPageBase<T, Impl>::PreTranslateMessage(MSG* message)
{
    return m_editor.FilterMessage(*message) || Impl<T>::PreTranslateMessage(message);
}

// ---- leaving ----

// Refuses only for an edit under way whose text is refused: what was typed isn't lost by leaving.
template <class T, template <class> class Impl>
bool CPathCustomizationPageBase<T, Impl>::ValidateAndStore()
{
    if (!m_editor.FinishEdit()) {
        return false;
    }
    CheckRequiredPaths();
    m_paths.SaveAllPathProperties();
    return true;
}

template <class T, template <class> class Impl>
bool CPathCustomizationPageBase<T, Impl>::StoreWithoutValidation()
{
    static_cast<void>(m_editor.FinishEdit()); // the way back is open whatever stands there
    ReadPathTree();
    m_paths.SaveAllPathProperties();
    return true;
}

template <class T, template <class> class Impl>
void CPathCustomizationPageBase<T, Impl>::ReadPathTree()
{
    ReadPathNodes(m_editor.Tree(),
                  [this](PathProperty property, const CString& value) { m_paths[property] = value; });
}

// A path that must not be empty gets its default back. The tree stays as it is, and so does nobody on the page.
template <class T, template <class> class Impl>
void CPathCustomizationPageBase<T, Impl>::CheckRequiredPaths()
{
    ReadPathTree();
    for (const RequiredPath& required : REQUIRED_PATHS) {
        if (m_paths[required.property].IsEmpty()) {
            RefillPath(required);
        }
    }
}

template <class T, template <class> class Impl>
void CPathCustomizationPageBase<T, Impl>::RefillPath(const RequiredPath& required)
{
    CString& value = m_paths[required.property];
    m_paths.ReadPathProperty(PathPropertyName(required.property), value, required.preferHostValue);
    if (!value.IsEmpty()) {
        this->MessageBox(RequiredPathMessage(required), L"", MB_OK | MB_ICONEXCLAMATION);
    }
}

// ---- handlers ----

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnRestartEdit(UINT, WPARAM, LPARAM, BOOL&)
{
    m_editor.RestartEdit();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnShowWindow(UINT, WPARAM isShown, LPARAM, BOOL& handled)
{
    if (isShown) {
        m_editor.OnShown();
    }
    handled = FALSE; // the frame's and the dialog's too
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnBrowse(WORD, WORD, HWND, BOOL&)
{
    m_editor.Browse();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnAdd(WORD, WORD, HWND, BOOL&)
{
    m_editor.Add();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnRemove(WORD, WORD, HWND, BOOL&)
{
    m_editor.Remove();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnMoveUp(WORD, WORD, HWND, BOOL&)
{
    m_editor.MoveUp();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnMoveDown(WORD, WORD, HWND, BOOL&)
{
    m_editor.MoveDown();
    return 0;
}

// The question takes the focus, which would end an edit with a box under it. So the edit waits for the answer.
template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnCancel(WORD code, WORD id, HWND control, BOOL& handled)
{
    m_editor.SuspendEdit();
    LRESULT result = 0;
    handled = Impl<T>::ProcessWindowMessage(this->m_hWnd, WM_COMMAND, MAKEWPARAM(id, code),
                                            reinterpret_cast<LPARAM>(control), result);
    if (this->m_hWnd) {
        m_editor.ResumeEdit();
    }
    return result;
}

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnTreeClick(int, NMHDR*, BOOL&)
{
    m_editor.OnClick();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnTreeDoubleClick(int, NMHDR*, BOOL&)
{
    return m_editor.OnDoubleClick();
}

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnTreeFocusLost(int, NMHDR*, BOOL&)
{
    m_editor.OnFocusLost();
    return 0;
}

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnTreeSelectionChanged(int, NMHDR* header, BOOL&)
{
    m_editor.OnSelectionChanged(reinterpret_cast<const NMTREEVIEWW*>(header)->itemNew.hItem);
    return 0;
}

// Nonzero refuses the edit.
template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnTreeEditBegins(int, NMHDR* header, BOOL&)
{
    return !m_editor.OnEditBegins(reinterpret_cast<const NMTVDISPINFOW*>(header)->item.hItem);
}

// The editor has set the text; the tree takes none by itself.
template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnTreeEditEnds(int, NMHDR* header, BOOL&)
{
    m_editor.OnEditEnds(reinterpret_cast<const NMTVDISPINFOW*>(header)->item);
    return FALSE;
}

template <class T, template <class> class Impl>
LRESULT CPathCustomizationPageBase<T, Impl>::OnTreeExpanded(int, NMHDR* header, BOOL&)
{
    const auto* notification = reinterpret_cast<const NMTREEVIEWW*>(header);
    m_editor.OnExpanded(notification->itemNew.hItem, notification->action == TVE_EXPAND);
    return 0;
}

int PathCustomizationDialog(PageContext* context)
{
    return ShowWizardPage<CPathCustomizationDialog>(context);
}

CTabPage PathCustomizationPage(PageContext* context)
{
    return CreateTabPage<CPathCustomizationPage>(context);
}
