// The question whether to leave the setup.
#pragma once

#include "frame/resource_library.h"
#include "include/resource_ids.h"
#include "include/setup_enums.h"
#include "window/dialog_impl.h"

// Modal; the result is the pressed button's id, IDYES to leave.
class CCancelDialog : public CDialogImpl<CCancelDialog>
{
public:
    enum
    {
        IDD = IDD_CANCEL
    };

    // `libraryFound`: whether the resource library could be loaded for the question. Where it could not, that was
    // reported, and the texts come from the module in use.
    CCancelDialog(Setup::tagSETUPMODE setupMode, bool libraryFound)
        : m_setupMode(setupMode), m_bLibraryFound(libraryFound)
    {
    }

    BEGIN_MSG_MAP(CCancelDialog)
    MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
    COMMAND_CODE_HANDLER(BN_CLICKED, OnButton)
    END_MSG_MAP()

private:
    LRESULT OnInitDialog(UINT message, WPARAM wParam, LPARAM lParam, BOOL& handled);
    LRESULT OnButton(WORD code, WORD id, HWND control, BOOL& handled);

    CString QuestionText() const;

    Setup::tagSETUPMODE m_setupMode;
    bool m_bLibraryFound;
    CResourceLibrary m_resource;
};
