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
    int GetColumnCount() const; // 1 for other lists, and for a list view without columns
    // Empty for a row or a column that isn't there.
    CString GetCell(int row, int column) const;
    // Index of the selected line; -1 for none.
    int GetSelection() const;
    // Empty for no selection.
    CString GetSelectedLine() const;
    StepOutcome Select(int index) const;
    // The first line with exactly this text.
    StepOutcome Select(const CString& line) const;

    // List views: edits the label of the line's first column, with the outcomes of CTreeControl::EditLabel.
    StepOutcome EditLabel(int index, const CString& text) const;
    // List views with check boxes (LVS_EX_CHECKBOXES).
    bool IsLineChecked(int index) const;
    StepOutcome SetLineChecked(int index, bool checked) const;

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
    CString GetListViewCell(int row, int column) const;
    void Choose(int index) const;
    void Notify(int code) const;
};
