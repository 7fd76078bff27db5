// CWinDataExchange<T>: moves values between the controls of T's window and T's members, by a map in T:
//
//   BEGIN_DDX_MAP(CMyDialog)
//       DDX_TEXT(IDC_NAME, m_strName)            CString
//       DDX_TEXT_LEN(IDC_NAME, m_strName, 64)    the same, at most so many characters
//       DDX_INT(IDC_COUNT, m_nCount)             int
//       DDX_UINT(IDC_SIZE, m_nSize)              unsigned
//       DDX_CHECK(IDC_ON, m_bOn)                 bool, BOOL or a BST_ value
//       DDX_RADIO(IDC_FIRST, m_nChoice)          index in the group that starts at the id; -1 for none
//   END_DDX_MAP()
//
// The map is T's DoDataExchange(save, id): DDX_LOAD fills the controls, DDX_SAVE the members; an id limits it to one
// control. On a text that is no number, or too long, it puts the focus there, calls T's OnDataExchangeError (the default
// beeps) and returns FALSE; the member keeps its value.
#pragma once

#include "base/string.h"
#include "window/window.h"

#include <windows.h>

#define DDX_LOAD FALSE
#define DDX_SAVE TRUE

// A control's text as a number; false for another text.
[[nodiscard]] bool ReadControlNumber(HWND control, bool isSigned, int& number) noexcept;
// The checked button's index in the group that starts at `id`, or -1.
int ReadRadioGroup(HWND dialog, int id) noexcept;
void WriteRadioGroup(HWND dialog, int id, int checked) noexcept;

template <class T>
class CWinDataExchange
{
public:
    void OnDataExchangeError(int id, BOOL save)
    {
        (void)id, (void)save;
        ::MessageBeep(MB_ICONWARNING);
    }

protected:
    ~CWinDataExchange() = default;

    bool DdxText(int id, CString& text, BOOL save, int maximumLength = 0)
    {
        const CWindow control(Control(id));
        if (!save) {
            control.SetText(text);
            return true;
        }
        const CString read = control.GetText();
        if (maximumLength > 0 && read.GetLength() > maximumLength) {
            return Refuse(id);
        }
        text = read;
        return true;
    }

    template <class Number>
    bool DdxNumber(int id, Number& number, BOOL save, bool isSigned)
    {
        if (!save) {
            CWindow(Control(id)).SetText(NumberText(number));
            return true;
        }
        int read = 0;
        if (!ReadControlNumber(Control(id), isSigned, read)) {
            return Refuse(id);
        }
        number = static_cast<Number>(read);
        return true;
    }

    template <class Check>
    bool DdxCheck(int id, Check& checked, BOOL save)
    {
        if (save) {
            checked = static_cast<Check>(::SendMessageW(Control(id), BM_GETCHECK, 0, 0));
        } else {
            ::SendMessageW(Control(id), BM_SETCHECK, static_cast<WPARAM>(checked), 0);
        }
        return true;
    }

    bool DdxRadio(int id, int& choice, BOOL save)
    {
        const HWND dialog = static_cast<T*>(this)->m_hWnd;
        if (save) {
            choice = ReadRadioGroup(dialog, id);
        } else {
            WriteRadioGroup(dialog, id, choice);
        }
        return true;
    }

private:
    HWND Control(int id) { return ::GetDlgItem(static_cast<T*>(this)->m_hWnd, id); }

    bool Refuse(int id)
    {
        auto* self = static_cast<T*>(this);
        CWindow(self->m_hWnd).GotoDlgCtrl(Control(id));
        self->OnDataExchangeError(id, DDX_SAVE);
        return false;
    }
};

#define BEGIN_DDX_MAP(theClass)                                                                              \
    BOOL DoDataExchange(BOOL bSaveAndValidate = DDX_LOAD, int nCtlID = -1)                                   \
    {
#define DDX_MAP_ENTRY(id, call)                                                                              \
    if ((nCtlID == -1 || nCtlID == (id)) && !this->call) {                                                   \
        return FALSE;                                                                                        \
    }
#define DDX_TEXT(id, var) DDX_MAP_ENTRY(id, DdxText(id, var, bSaveAndValidate))
#define DDX_TEXT_LEN(id, var, length) DDX_MAP_ENTRY(id, DdxText(id, var, bSaveAndValidate, length))
#define DDX_INT(id, var) DDX_MAP_ENTRY(id, DdxNumber(id, var, bSaveAndValidate, true))
#define DDX_UINT(id, var) DDX_MAP_ENTRY(id, DdxNumber(id, var, bSaveAndValidate, false))
#define DDX_CHECK(id, var) DDX_MAP_ENTRY(id, DdxCheck(id, var, bSaveAndValidate))
#define DDX_RADIO(id, var) DDX_MAP_ENTRY(id, DdxRadio(id, var, bSaveAndValidate))
#define END_DDX_MAP()                                                                                        \
    return TRUE;                                                                                             \
    }
