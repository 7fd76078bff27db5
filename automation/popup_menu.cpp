#include "automation/popup_menu.h"

#include "automation/keyboard.h"
#include "automation/window_finder.h"

#include <algorithm>

namespace {

constexpr wchar_t MENU_CLASS[] = L"#32768";

// The way to an item: the position in the menu, then in the submenu there, and so on.
using Positions = std::vector<int>;

struct ShownMenu
{
    HWND window = nullptr;
    HMENU menu = nullptr;
};

// The open menus of this thread, each with its submenu behind it.
std::vector<ShownMenu> ShownMenus()
{
    std::vector<ShownMenu> menus;
    for (HWND window : TopLevelWindows()) {
        if (WindowClass(window) == CString(MENU_CLASS))
            menus.push_back({window, reinterpret_cast<HMENU>(SendMessageW(window, MN_GETHMENU, 0, 0))});
    }
    std::reverse(menus.begin(), menus.end()); // the windows come with the front one first
    return menus;
}

MENUITEMINFOW ReadInformation(HMENU menu, int position)
{
    MENUITEMINFOW information = {};
    information.cbSize = sizeof information;
    information.fMask = MIIM_STATE | MIIM_ID | MIIM_SUBMENU | MIIM_FTYPE;
    GetMenuItemInfoW(menu, static_cast<UINT>(position), TRUE, &information);
    return information;
}

CString ReadItemText(HMENU menu, int position)
{
    const int length = GetMenuStringW(menu, static_cast<UINT>(position), nullptr, 0, MF_BYPOSITION);
    CString text;
    wchar_t* buffer = text.GetBuffer(length + 1);
    buffer[0] = 0;
    GetMenuStringW(menu, static_cast<UINT>(position), buffer, length + 1, MF_BYPOSITION);
    text.ReleaseBuffer();
    return text;
}

std::vector<PopupMenuItem> ReadItems(HMENU menu)
{
    std::vector<PopupMenuItem> items;
    for (int position = 0; position < GetMenuItemCount(menu); ++position) {
        const MENUITEMINFOW information = ReadInformation(menu, position);
        PopupMenuItem item;
        item.isSeparator = (information.fType & MFT_SEPARATOR) != 0;
        item.isEnabled = (information.fState & MFS_DISABLED) == 0;
        item.isChecked = (information.fState & MFS_CHECKED) != 0;
        item.id = information.hSubMenu || item.isSeparator ? 0 : static_cast<int>(information.wID);
        item.text = ReadItemText(menu, position);
        if (information.hSubMenu)
            item.submenu = ReadItems(information.hSubMenu);
        items.push_back(std::move(item));
    }
    return items;
}

bool FindItem(const std::vector<PopupMenuItem>& items, int id, Positions& way)
{
    for (size_t position = 0; position < items.size(); ++position) {
        const PopupMenuItem& item = items[position];
        way.push_back(static_cast<int>(position));
        if ((item.id == id && id != 0) || FindItem(item.submenu, id, way))
            return true;
        way.pop_back();
    }
    return false;
}

CString DescribeItems(const std::vector<PopupMenuItem>& items)
{
    CString text;
    for (const PopupMenuItem& item : items) {
        if (item.isSeparator)
            continue;
        text += (text.IsEmpty() ? L"\"" : L", \"") + item.text + L"\"";
        if (!item.submenu.empty())
            text += L" [" + DescribeItems(item.submenu) + L"]";
    }
    return text;
}

StepOutcome NeedEnabled(const std::vector<PopupMenuItem>& items, const Positions& way)
{
    const std::vector<PopupMenuItem>* level = &items;
    for (const int position : way) {
        const PopupMenuItem& item = (*level)[static_cast<size_t>(position)];
        if (!item.isEnabled)
            return StepOutcome::Failed(L"the menu item \"" + item.text + L"\" is disabled");
        level = &item.submenu;
    }
    return StepOutcome::Done();
}

bool IsHighlighted(HMENU menu, int position)
{
    return (ReadInformation(menu, position).fState & MFS_HILITE) != 0;
}

// True when the open submenus are those on the way.
bool LeadsOn(const std::vector<ShownMenu>& shown, const Positions& way)
{
    if (shown.size() > way.size())
        return false;
    for (size_t level = 0; level + 1 < shown.size(); ++level) {
        if (ReadInformation(shown[level].menu, way[level]).hSubMenu != shown[level + 1].menu)
            return false;
    }
    return true;
}

// What a person presses next on the way to the item: Left closes a submenu, Down moves on, Right opens a submenu.
WORD NextKey(const std::vector<ShownMenu>& shown, const Positions& way)
{
    if (!LeadsOn(shown, way))
        return VK_LEFT;
    const size_t level = shown.size() - 1;
    if (!IsHighlighted(shown[level].menu, way[level]))
        return VK_DOWN;
    return level + 1 < way.size() ? VK_RIGHT : VK_RETURN;
}

StepOutcome NoMenu()
{
    return StepOutcome::NotYet(L"no menu is up");
}

} // namespace

std::optional<PopupMenuView> FindPopupMenu()
{
    const std::vector<ShownMenu> shown = ShownMenus();
    if (shown.empty())
        return std::nullopt;
    return PopupMenuView{shown.front().window, shown.front().menu, ReadItems(shown.front().menu)};
}

StepOutcome ChooseMenuItem(int id)
{
    const std::optional<PopupMenuView> view = FindPopupMenu();
    if (!view)
        return NoMenu();
    Positions way;
    if (!FindItem(view->items, id, way))
        return StepOutcome::Failed(L"the menu has no item " + NumberText(id) + L" among [" +
                                   DescribeItems(view->items) + L"]");
    const StepOutcome enabled = NeedEnabled(view->items, way);
    if (!enabled.IsDone())
        return enabled;
    const std::vector<ShownMenu> shown = ShownMenus();
    const WORD key = NextKey(shown, way);
    PressKeyIn(shown.front().window, key);
    return key == VK_RETURN ? StepOutcome::Done() : StepOutcome::NotYet(L"the menu item is not reached");
}

StepOutcome ClosePopupMenu()
{
    const std::vector<ShownMenu> shown = ShownMenus();
    if (shown.empty())
        return NoMenu();
    // All to the first: a submenu's window takes the keys that wait for it along when it closes.
    for (size_t level = 0; level < shown.size(); ++level)
        PressKeyIn(shown.front().window, VK_ESCAPE);
    return StepOutcome::Done();
}
