// A dialog template as the dialog manager builds it, without the page's code: controls in tab order with their places.
#pragma once

#include "base/string.h"

#include <windows.h>

#include <string>
#include <vector>

struct DialogControl
{
    int id = 0;
    CString className;
    CString text;
    DWORD style = 0;
    bool bVisible = false;
    RECT place = {}; // pixels of the client area

    bool IsStatic() const;
    bool IsButton() const;
    bool IsEdit() const;
    bool IsRadio() const;
    bool HasMark() const; // a radio button or a check box
    bool IsDefaultButton() const;
    // Can take the focus: a tab stop, or a radio button, which the arrow keys reach.
    bool IsReached() const;
    // Its text is HTML, which a label shows.
    bool IsHtml() const;
    // The letter behind a single "&" in lower case; 0 for none.
    wchar_t GetMnemonic() const;
    // `1147 "..." (12,13)-(100,120)`
    std::string Describe() const;
};

class CDialogModel
{
public:
    // Fails the test when the dialog can't be created.
    CDialogModel(HMODULE library, int dialogId);

    std::vector<DialogControl> controls;
    SIZE client = {};
    SIZE window = {};

    const DialogControl* Find(int id) const;
    // The control must exist.
    DialogControl& Get(int id);
    void Show(int id, bool visible) { Get(id).bVisible = visible; }
    // Gives the control the place of a hidden anchor.
    void MoveTo(int id, int anchorId) { Get(id).place = Get(anchorId).place; }

    // Pixels that the text needs in the dialog's font, wrapped at the width; a width of 0 doesn't wrap.
    SIZE Measure(const CString& text, int width, bool breaksWords = false) const;

private:
    LOGFONTW m_font = {};
};
