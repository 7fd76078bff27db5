#include "tests/resources/dialog_model.h"

#include "include/resource_ids.h"
#include "tests/support/text.h"
#include "window/drawing_handles.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cwctype>
#include <iterator>

namespace {

INT_PTR CALLBACK PlainDialog(HWND, UINT, WPARAM, LPARAM) noexcept
{
    return FALSE;
}

struct WindowCloser
{
    HWND window;
    ~WindowCloser() { DestroyWindow(window); }
};

CString WindowText(HWND window)
{
    CString text;
    const int length = GetWindowTextLengthW(window);
    GetWindowTextW(window, text.GetBuffer(length), length + 1);
    text.ReleaseBuffer();
    return text;
}

DialogControl ReadControl(HWND dialog, HWND window)
{
    DialogControl control;
    control.id = static_cast<short>(GetDlgCtrlID(window));
    wchar_t className[64] = {};
    GetClassNameW(window, className, static_cast<int>(std::size(className)));
    control.className = className;
    control.text = WindowText(window);
    control.style = static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
    control.bVisible = (control.style & WS_VISIBLE) != 0;
    GetWindowRect(window, &control.place);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&control.place), 2);
    return control;
}

} // namespace

bool DialogControl::IsStatic() const
{
    return className.CompareNoCase(L"Static") == 0;
}

bool DialogControl::IsButton() const
{
    return className.CompareNoCase(L"Button") == 0;
}

bool DialogControl::IsEdit() const
{
    return className.CompareNoCase(L"Edit") == 0;
}

bool DialogControl::IsRadio() const
{
    return IsButton() && (style & BS_TYPEMASK) == BS_AUTORADIOBUTTON;
}

bool DialogControl::HasMark() const
{
    return IsRadio() || (IsButton() && (style & BS_TYPEMASK) == BS_AUTOCHECKBOX);
}

bool DialogControl::IsDefaultButton() const
{
    return IsButton() && (style & BS_TYPEMASK) == BS_DEFPUSHBUTTON;
}

bool DialogControl::IsReached() const
{
    return (style & WS_TABSTOP) != 0 || IsRadio();
}

bool DialogControl::IsHtml() const
{
    static constexpr int labels[] = {IDC_BANNER, IDC_SIDE_PANE, IDC_STEP_LABEL, IDC_FOOTER, IDC_RESULT_LABEL};
    return std::find(std::begin(labels), std::end(labels), id) != std::end(labels);
}

wchar_t DialogControl::GetMnemonic() const
{
    const bool hasPrefix = IsButton() || (IsStatic() && (style & SS_NOPREFIX) == 0);
    for (int index = 0; hasPrefix && index + 1 < text.GetLength(); ++index) {
        if (text[index] != L'&') {
            continue;
        }
        if (text[++index] != L'&') {
            return static_cast<wchar_t>(std::towlower(text[index]));
        }
    }
    return 0;
}

std::string DialogControl::Describe() const
{
    return std::to_string(id) + " \"" + Utf8(text) + "\" (" + std::to_string(place.left) + "," +
           std::to_string(place.top) + ")-(" + std::to_string(place.right) + "," +
           std::to_string(place.bottom) + ")";
}

CDialogModel::CDialogModel(HMODULE library, int dialogId)
{
    // A tab page is a child and needs a parent.
    const HWND dialog =
        CreateDialogParamW(library, MAKEINTRESOURCEW(dialogId), GetDesktopWindow(), PlainDialog, 0);
    EXPECT_NE(dialog, nullptr) << "dialog " << dialogId << " can't be created, error " << GetLastError();
    const WindowCloser closer = {dialog};
    RECT place = {};
    GetClientRect(dialog, &place);
    client = {place.right, place.bottom};
    GetWindowRect(dialog, &place);
    window = {place.right - place.left, place.bottom - place.top};
    const auto font = reinterpret_cast<HFONT>(SendMessageW(dialog, WM_GETFONT, 0, 0));
    EXPECT_NE(GetObjectW(font, sizeof(m_font), &m_font), 0) << "dialog " << dialogId << " has no font";
    for (HWND child = GetWindow(dialog, GW_CHILD); child; child = GetWindow(child, GW_HWNDNEXT)) {
        controls.push_back(ReadControl(dialog, child));
    }
}

const DialogControl* CDialogModel::Find(int id) const
{
    const auto found = std::find_if(controls.begin(), controls.end(),
                                    [id](const DialogControl& control) { return control.id == id; });
    return found != controls.end() ? &*found : nullptr;
}

DialogControl& CDialogModel::Get(int id)
{
    static DialogControl none;
    const DialogControl* control = Find(id);
    EXPECT_NE(control, nullptr) << "control " << id << " is missing";
    return control ? *const_cast<DialogControl*>(control) : none;
}

SIZE CDialogModel::Measure(const CString& text, int width, bool breaksWords) const
{
    const CDcOwner dc(CreateCompatibleDC(nullptr));
    const CFontOwner font(CreateFontIndirectW(&m_font));
    const HGDIOBJ previous = SelectObject(dc.get(), font.get());
    RECT place = {0, 0, width, 0};
    const UINT wrapping = width > 0 ? DT_WORDBREAK | DT_EXPANDTABS : DT_SINGLELINE;
    DrawTextW(dc.get(), text, -1, &place, DT_CALCRECT | wrapping | (breaksWords ? DT_EDITCONTROL : 0));
    SelectObject(dc.get(), previous);
    return {place.right, place.bottom};
}
