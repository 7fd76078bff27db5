#include "automation/control.h"

#include "automation/window_finder.h"

bool CControl::IsUsable() const
{
    if (!Exists() || !IsWindowVisible(m_window))
        return false;
    for (HWND window = m_window; window; window = GetAncestor(window, GA_PARENT)) {
        if (!IsWindowEnabled(window))
            return false;
        if (!(GetWindowLongW(window, GWL_STYLE) & WS_CHILD))
            break;
    }
    return true;
}

CString CControl::GetText() const
{
    return Exists() ? WindowText(m_window) : CString();
}

RECT CControl::GetRectangle() const
{
    RECT rectangle = {};
    GetWindowRect(m_window, &rectangle);
    MapWindowPoints(HWND_DESKTOP, GetAncestor(m_window, GA_PARENT), reinterpret_cast<POINT*>(&rectangle), 2);
    return rectangle;
}

CString CControl::Describe() const
{
    if (Exists())
        return DescribeWindow(m_window);
    if (m_dialog)
        return L"control " + NumberText(m_id) + L" of " + DescribeWindow(m_dialog);
    return L"no window";
}

StepOutcome CControl::NeedUsable() const
{
    if (!Exists())
        return StepOutcome::NotYet(Describe() + L" isn't there");
    if (!IsVisible())
        return StepOutcome::NotYet(Describe() + L" isn't visible");
    if (!IsUsable())
        return StepOutcome::NotYet(Describe() +
                                   (IsEnabled() ? L" is on a disabled window" : L" is disabled"));
    return StepOutcome::Done();
}

bool CControl::IsChecked() const
{
    return SendMessageW(m_window, BM_GETCHECK, 0, 0) == BST_CHECKED;
}

bool CControl::IsDefaultButton() const
{
    return (SendMessageW(m_window, WM_GETDLGCODE, 0, 0) & DLGC_DEFPUSHBUTTON) != 0;
}

StepOutcome CControl::Click() const
{
    const StepOutcome usable = NeedUsable();
    if (!usable.IsDone())
        return usable;
    // A button of a window that isn't active may ignore the click.
    SetActiveWindow(GetAncestor(m_window, GA_ROOT));
    if (!PostMessageW(m_window, BM_CLICK, 0, 0))
        return StepOutcome::Failed(L"the click on " + Describe() + L" was refused, error " +
                                   NumberText(GetLastError()));
    return StepOutcome::Done();
}

StepOutcome CControl::SetChecked(bool checked) const
{
    if (Exists() && IsChecked() == checked)
        return StepOutcome::Done();
    return Click();
}

StepOutcome CControl::SetText(const CString& text) const
{
    const StepOutcome usable = NeedUsable();
    if (!usable.IsDone())
        return usable;
    if (GetWindowLongW(m_window, GWL_STYLE) & ES_READONLY)
        return StepOutcome::NotYet(Describe() + L" can only be read");
    SetFocus(m_window);
    SendMessageW(m_window, EM_SETSEL, 0, -1);
    SendMessageW(m_window, EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(text.GetString()));
    if (!IsWindow(m_window) || GetText() == text)
        return StepOutcome::Done();
    return StepOutcome::Failed(Describe() + L" did not take \"" + text + L"\"");
}

CString CControl::GetSelectedText() const
{
    DWORD first = 0;
    DWORD behind = 0;
    SendMessageW(m_window, EM_GETSEL, reinterpret_cast<WPARAM>(&first), reinterpret_cast<LPARAM>(&behind));
    return GetText().Mid(static_cast<int>(first), static_cast<int>(behind - first));
}

StepOutcome CControl::Focus() const
{
    const StepOutcome usable = NeedUsable();
    if (!usable.IsDone())
        return usable;
    SetActiveWindow(GetAncestor(m_window, GA_ROOT));
    // As a click of the mouse would; the dialog manager keeps the default button right.
    SendMessageW(GetAncestor(m_window, GA_ROOT), WM_NEXTDLGCTL, reinterpret_cast<WPARAM>(m_window), TRUE);
    return HasFocus() ? StepOutcome::Done() : StepOutcome::NotYet(Describe() + L" did not take the focus");
}
