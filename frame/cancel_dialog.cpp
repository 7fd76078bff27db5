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
    const CString format = LoadResourceString(IDS_CANCEL_TEMPLATE);
    const auto argument = reinterpret_cast<DWORD_PTR>(question.GetString());
    DWORD_PTR arguments[] = {argument, argument, argument};
    wchar_t* text = nullptr;
    const DWORD length = ::FormatMessageW(
        FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY | FORMAT_MESSAGE_ALLOCATE_BUFFER, format,
        0, 0, reinterpret_cast<wchar_t*>(&text), 0, reinterpret_cast<va_list*>(arguments));
    const CLocalOwner owner(text);
    return CString(text, static_cast<int>(length));
}
