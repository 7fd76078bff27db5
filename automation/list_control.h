// List boxes, combo boxes and list views: their lines, and the choice of one with the notification that a person's
// click gives.
#pragma once

#include "automation/control.h"

#include <vector>

class CListControl : public CControl
{
public:
    using CControl::CControl;

    // Of a list view: the first column.
    std::vector<CString> GetLines() const;
    // Index of the selected line; -1 for none.
    int GetSelection() const;
    // Empty for no selection.
    CString GetSelectedLine() const;
    StepOutcome Select(int index) const;
    // The first line with exactly this text.
    StepOutcome Select(const CString& line) const;

private:
    enum class Kind
    {
        ListBox,
        ComboBox,
        ListView
    };
    Kind GetKind() const;
    int GetCount() const;
    CString GetLine(int index) const;
    CString GetListViewLine(int index) const;
    void Choose(int index) const;
    void Notify(int code) const;
};
