#include "controls/grid_edit.h"

#include "controls/grid_rules.h"

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
