#include "automation/keyboard.h"

#include <initializer_list>

namespace {

WORD ModifierKey(KeyModifier modifier)
{
    switch (modifier) {
    case KeyModifier::Shift:
        return VK_SHIFT;
    case KeyModifier::Control:
        return VK_CONTROL;
    case KeyModifier::Alt:
        return VK_MENU;
    case KeyModifier::None:
        break;
    }
    return 0;
}

constexpr UINT WM_RELEASE_MODIFIERS = WM_APP;

void SetKeyDown(WORD virtualKey, bool down)
{
    BYTE state[256] = {};
    if (virtualKey == 0 || !GetKeyboardState(state))
        return;
    state[virtualKey] = down ? 0x80 : 0;
    SetKeyboardState(state);
}

LRESULT CALLBACK ReleaseProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message != WM_RELEASE_MODIFIERS)
        return DefWindowProcW(window, message, wParam, lParam);
    for (const int key : {VK_SHIFT, VK_CONTROL, VK_MENU})
        SetKeyDown(static_cast<WORD>(key), false);
    DestroyWindow(window);
    return 0;
}

// A posted key leaves the thread's key state alone, but Shift+Tab is decided by that state when the message is handled.
// So the state is set before, and taken back by a message that is posted behind the key's own.
HWND CreateReleaseWindow()
{
    HWND window = CreateWindowW(L"Static", nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
    SetWindowLongPtrW(window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ReleaseProcedure));
    return window;
}

LPARAM KeyParameter(WORD virtualKey, bool down, bool withAlt)
{
    const LPARAM scanCode = static_cast<LPARAM>(MapVirtualKeyW(virtualKey, MAPVK_VK_TO_VSC));
    LPARAM parameter = 1 | (scanCode << 16);
    if (withAlt)
        parameter |= LPARAM(1) << 29;
    if (!down)
        parameter |= LPARAM(3) << 30;
    return parameter;
}

} // namespace

StepOutcome PressKey(WORD virtualKey, KeyModifier modifier)
{
    HWND focus = GetFocus();
    if (!focus)
        return StepOutcome::NotYet(L"no window of this thread has the focus");
    const bool withAlt = modifier == KeyModifier::Alt;
    if (modifier != KeyModifier::None)
        SetKeyDown(ModifierKey(modifier), true);
    PostMessageW(focus, withAlt ? WM_SYSKEYDOWN : WM_KEYDOWN, virtualKey,
                 KeyParameter(virtualKey, true, withAlt));
    PostMessageW(focus, withAlt ? WM_SYSKEYUP : WM_KEYUP, virtualKey,
                 KeyParameter(virtualKey, false, withAlt));
    if (modifier != KeyModifier::None)
        PostMessageW(CreateReleaseWindow(), WM_RELEASE_MODIFIERS, 0, 0);
    return StepOutcome::Done();
}

void PressKeyIn(HWND window, WORD virtualKey)
{
    PostMessageW(window, WM_KEYDOWN, virtualKey, KeyParameter(virtualKey, true, false));
    PostMessageW(window, WM_KEYUP, virtualKey, KeyParameter(virtualKey, false, false));
}

StepOutcome TypeCharacters(const wchar_t* text)
{
    HWND focus = GetFocus();
    if (!focus)
        return StepOutcome::NotYet(L"no window of this thread has the focus");
    for (; *text; ++text)
        PostMessageW(focus, WM_CHAR, *text, 1);
    return StepOutcome::Done();
}
