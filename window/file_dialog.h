// CFileDialogImpl: the system's dialog for files, with a dialog of T's own inside it (a hook), which may be empty.
//
// T fills m_ofn before DoModal and reads it afterwards; T's message map answers for the inner dialog.
#pragma once

#include "window/dialog_impl.h"

#include <commdlg.h>

template <class T>
class CFileDialogImpl : public CDialogImplBase<CWindow>
{
public:
    enum : DWORD
    {
        DEFAULT_FLAGS =
            OFN_EXPLORER | OFN_ENABLESIZING | OFN_ENABLEHOOK | OFN_HIDEREADONLY | OFN_OVERWRITEPROMPT
    };
    static_assert(DEFAULT_FLAGS == 8912934);

    CFileDialogImpl()
    {
        m_ofn.lStructSize = sizeof m_ofn;
        m_ofn.Flags = DEFAULT_FLAGS;
    }

    // Opens files. 0 when nothing was chosen.
    INT_PTR DoModal(HWND owner = ::GetActiveWindow())
    {
        m_ofn.hwndOwner = owner;
        m_ofn.lpfnHook = reinterpret_cast<LPOFNHOOKPROC>(this->GetDialogProc());
        return this->RunWithBinding([this] { return INT_PTR{::GetOpenFileNameW(&m_ofn)}; });
    }

    OPENFILENAMEW m_ofn = {};
};
