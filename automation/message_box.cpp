#include "automation/message_box.h"

#include "automation/control.h"
#include "automation/window_finder.h"

#include <algorithm>
#include <iterator>

namespace {

// The text of a box is a static without an id on Windows; Wine gives it the id 100.
constexpr int WINDOWS_TEXT_ID = 0xFFFF;
constexpr int WINE_TEXT_ID = 100;

struct BoxParts
{
    HWND text = nullptr;
    HWND icon = nullptr;
    std::vector<int> buttons;
    int defaultButton = 0;
};

bool IsTextId(int id)
{
    return (id & 0xFFFF) == WINDOWS_TEXT_ID || id == WINE_TEXT_ID;
}

bool ReadButton(HWND button, BoxParts& parts)
{
    const int id = GetDlgCtrlID(button);
    // Wine's box holds every button and hides those that aren't asked for.
    if (!(GetWindowLongW(button, GWL_STYLE) & WS_VISIBLE))
        return true;
    if (id < IDOK || id > IDCONTINUE)
        return false;
    parts.buttons.push_back(id);
    if (CControl(button).IsDefaultButton())
        parts.defaultButton = id;
    return true;
}

bool ReadStatic(HWND control, BoxParts& parts)
{
    const LONG style = GetWindowLongW(control, GWL_STYLE);
    if ((style & SS_TYPEMASK) == SS_ICON) {
        if (style & WS_VISIBLE)
            parts.icon = control;
        return true;
    }
    if (!IsTextId(GetDlgCtrlID(control)) || parts.text)
        return false;
    parts.text = control;
    return true;
}

// A message box differs from another dialog by its make alone: an icon, one text, and buttons with standard ids.
std::optional<BoxParts> ReadParts(HWND window)
{
    if (WindowClass(window) != CString(L"#32770"))
        return std::nullopt;
    BoxParts parts;
    for (HWND child : ChildWindows(window)) {
        const CString name = WindowClass(child);
        const bool fits = name == CString(L"Button")   ? ReadButton(child, parts)
                          : name == CString(L"Static") ? ReadStatic(child, parts)
                                                       : false;
        if (!fits)
            return std::nullopt;
    }
    if (!parts.text || parts.buttons.empty())
        return std::nullopt;
    return parts;
}

struct ButtonSet
{
    UINT style;
    const wchar_t* name;
    std::vector<int> ids;
};

const std::vector<ButtonSet>& ButtonSets()
{
    static const std::vector<ButtonSet> sets = {
        {MB_OK, L"OK", {IDOK}},
        {MB_OKCANCEL, L"OKCANCEL", {IDOK, IDCANCEL}},
        {MB_ABORTRETRYIGNORE, L"ABORTRETRYIGNORE", {IDABORT, IDRETRY, IDIGNORE}},
        {MB_YESNOCANCEL, L"YESNOCANCEL", {IDCANCEL, IDYES, IDNO}},
        {MB_YESNO, L"YESNO", {IDYES, IDNO}},
        {MB_RETRYCANCEL, L"RETRYCANCEL", {IDCANCEL, IDRETRY}},
        {MB_CANCELTRYCONTINUE, L"CANCELTRYCONTINUE", {IDCANCEL, IDTRYAGAIN, IDCONTINUE}},
    };
    return sets;
}

UINT ButtonStyle(std::vector<int> ids)
{
    std::sort(ids.begin(), ids.end());
    // Windows gives the single button of an OK box the id of Cancel, so that Escape closes it.
    if (ids == std::vector<int>{IDCANCEL})
        return MB_OK;
    for (const ButtonSet& set : ButtonSets()) {
        if (set.ids == ids)
            return set.style;
    }
    return ~0u;
}

struct IconName
{
    UINT style;
    const wchar_t* resource;
    const wchar_t* name;
};

const IconName iconNames[] = {
    {MB_ICONERROR, IDI_ERROR, L"error icon"},
    {MB_ICONQUESTION, IDI_QUESTION, L"question icon"},
    {MB_ICONWARNING, IDI_WARNING, L"warning icon"},
    {MB_ICONINFORMATION, IDI_INFORMATION, L"information icon"},
};

UINT IconStyle(HWND control)
{
    HICON icon = reinterpret_cast<HICON>(SendMessageW(control, STM_GETICON, 0, 0));
    if (!icon)
        return 0;
    // The system's icons are shared: the same icon has the same handle.
    for (const IconName& row : iconNames) {
        if (LoadIconW(nullptr, row.resource) == icon)
            return row.style;
    }
    return 0;
}

} // namespace

CString MessageBoxView::Describe() const
{
    CString description = L"\"" + title + L"\": \"" + text + L"\" [";
    for (const ButtonSet& set : ButtonSets()) {
        if (set.style == buttons)
            description += set.name;
    }
    for (const IconName& row : iconNames) {
        if (row.style == icon)
            description += CString(L", ") + row.name;
    }
    return description + L"]";
}

std::optional<MessageBoxView> ReadMessageBox(HWND window)
{
    const std::optional<BoxParts> parts = ReadParts(window);
    if (!parts)
        return std::nullopt;
    MessageBoxView view;
    view.window = window;
    view.owner = GetWindow(window, GW_OWNER);
    view.title = WindowText(window);
    view.text = WindowText(parts->text);
    view.buttons = ButtonStyle(parts->buttons);
    view.icon = parts->icon ? IconStyle(parts->icon) : 0;
    view.defaultButton = parts->defaultButton;
    return view;
}

std::optional<MessageBoxView> FindMessageBox()
{
    for (HWND window : TopLevelWindows()) {
        if (std::optional<MessageBoxView> view = ReadMessageBox(window))
            return view;
    }
    return std::nullopt;
}

StepOutcome ExpectNoMessageBox()
{
    const std::optional<MessageBoxView> box = FindMessageBox();
    return box ? StepOutcome::Failed(L"an unexpected message box is up: " + box->Describe())
               : StepOutcome::Done();
}

StepOutcome AnswerMessageBox(const MessageBoxView& box, int button)
{
    CControl control(box.window, button);
    if (!control.Exists() && button == IDOK && box.buttons == MB_OK)
        control = CControl(box.window, IDCANCEL);
    if (!control.Exists() || !control.IsVisible())
        return StepOutcome::Failed(L"the message box " + box.Describe() + L" has no button " +
                                   NumberText(button));
    return control.Click();
}
