#include "setup/window_place.h"

#include "base/handle.h"
#include "window/window.h"

std::optional<ScreenCorner> ReadWindowCorner(const CString& key, const wchar_t* window)
{
    wchar_t text[64] = L"";
    DWORD bytes = sizeof text;
    ScreenCorner corner;
    if (key.IsEmpty() ||
        RegGetValueW(HKEY_CURRENT_USER, key, window, RRF_RT_REG_SZ, nullptr, text, &bytes) != ERROR_SUCCESS ||
        !ReadCorner(text, corner)) {
        return std::nullopt;
    }
    return corner;
}

void WriteWindowCorner(const CString& key, const wchar_t* window, const ScreenCorner& corner) noexcept
try {
    CRegistryOwner opened;
    if (key.IsEmpty() || RegCreateKeyExW(HKEY_CURRENT_USER, key, 0, nullptr, 0, KEY_SET_VALUE, nullptr,
                                         opened.put(), nullptr) != ERROR_SUCCESS) {
        return;
    }
    const CString text = CornerText(corner);
    RegSetValueExW(opened.get(), window, 0, REG_SZ,
                   reinterpret_cast<const BYTE*>(static_cast<const wchar_t*>(text)),
                   static_cast<DWORD>((text.GetLength() + 1) * sizeof(wchar_t)));
} catch (...) { // no memory for the text
}

ScreenRectangle WorkAreaNear(const ScreenRectangle& rectangle) noexcept
{
    const RECT wanted = RectOf(rectangle);
    MONITORINFO monitor = {};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromRect(&wanted, MONITOR_DEFAULTTONEAREST), &monitor);
    return ScreenRectangleOf(monitor.rcWork);
}
