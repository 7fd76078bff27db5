// Where the controls of a dialog template stand before a page moves any: the template's own dialog, made hidden.
#pragma once

#include "base/handle.h"
#include "tests/support/resource_strings.h"

#include <windows.h>

class CTemplateDialog
{
public:
    explicit CTemplateDialog(int dialogId)
        : m_library(
              LoadLibraryExW(BuiltLanguageFolder() + L"WizText.dll", nullptr, LOAD_LIBRARY_AS_DATAFILE)),
          m_dialog(CreateDialogParamW(m_library.get(), MAKEINTRESOURCEW(dialogId), nullptr, Answer, 0))
    {
    }
    ~CTemplateDialog() { DestroyWindow(m_dialog); }
    CTemplateDialog(const CTemplateDialog&) = delete;
    CTemplateDialog& operator=(const CTemplateDialog&) = delete;

    // In pixels of the dialog's client area.
    RECT Place(int id) const
    {
        RECT place = {};
        GetWindowRect(GetDlgItem(m_dialog, id), &place);
        MapWindowPoints(HWND_DESKTOP, m_dialog, reinterpret_cast<POINT*>(&place), 2);
        return place;
    }

private:
    static INT_PTR CALLBACK Answer(HWND, UINT, WPARAM, LPARAM) { return FALSE; }

    CModuleOwner m_library;
    HWND m_dialog;
};
