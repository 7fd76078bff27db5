#include "frame/cancel_dialog.h"

#include "frame/page_rules.h"
#include "frame/resource_text.h"

LRESULT CCancelDialog::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&)
{
    if (m_bLibraryFound) { // a second box would report the same
        m_resource.Load(GetResourceLibraryPath());
    }
    SetDlgItemText(IDC_CANCEL_QUESTION, QuestionText());
    CenterWindow();
    GotoDlgCtrl(
        GetDlgItem(LOWORD(SendMessage(DM_GETDEFID)))); // Enter answers what the template makes the default
    return FALSE;
}

LRESULT CCancelDialog::OnButton(WORD, WORD id, HWND, BOOL&)
{
    EndDialog(id);
    return 0;
}

CString CCancelDialog::QuestionText() const
{
    const CString question = LoadResourceString(CancelQuestionId(m_setupMode));
    return FormatResourceMessage(IDS_CANCEL_TEMPLATE, {question, question, question});
}
