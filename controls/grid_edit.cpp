#include "controls/grid_edit.h"

#include "controls/grid_accessible.h"
#include "controls/grid_rules.h"

CGridEdit::~CGridEdit()
{
    Disconnect();
}

bool CGridEdit::HandleKey(WPARAM key)
{
    ReadText();
    const EditorKeyAnswer answer = AnswerEditorKey(static_cast<unsigned int>(key));
    if (!answer.isHandled) {
        return false;
    }
    EndEdit(answer.storesText);
    if (answer.gridKey != 0) {
        const CWindow grid(GetParent());
        grid.SendMessage(WM_KEYDOWN, answer.gridKey);
        grid.SendMessage(WM_KEYDOWN, VK_RETURN);
    }
    return true;
}

void CGridEdit::StoreText()
{
    ReadText();
    EndEdit(true);
}

LRESULT CGridEdit::OnKeyDown(UINT, WPARAM key, LPARAM, BOOL& handled)
{
    handled = HandleKey(key);
    return 0;
}

LRESULT CGridEdit::OnGetObject(UINT, WPARAM flags, LPARAM object, BOOL& handled)
{
    if (static_cast<LONG>(object) != OBJID_CLIENT || !m_pGrid) {
        handled = FALSE;
        return 0;
    }
    if (!m_accessible) {
        m_accessible.Attach(new CGridEditAccessible(m_hWnd, *m_pGrid));
    }
    return m_accessible->Offer(flags);
}

LRESULT CGridEdit::OnDestroy(UINT, WPARAM, LPARAM, BOOL& handled)
{
    Disconnect();
    handled = FALSE;
    return 0;
}

// Who holds the object still gets an answer from it, which says that the window is gone.
void CGridEdit::Disconnect()
{
    if (m_accessible) {
        m_accessible->Disconnect();
        m_accessible.Reset();
    }
}

void CGridEdit::ReadText()
{
    ::GetWindowTextW(m_hWnd, m_text, TEXT_CAPACITY);
}

void CGridEdit::EndEdit(bool storesText)
{
    NMLVDISPINFOW end = {};
    end.hdr.hwndFrom = m_hWnd;
    end.hdr.code = LVN_ENDLABELEDITW;
    end.item.mask = LVIF_TEXT;
    end.item.iItem = storesText ? 0 : -1; // the grid knows the cell: 0 says no more than that there is a text
    end.item.pszText = storesText ? m_text : nullptr;
    end.item.cchTextMax = storesText ? TEXT_CAPACITY : 0;
    CWindow(GetParent()).SendMessage(WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&end));
}
