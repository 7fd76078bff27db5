#include "tests/by_hand/hand.h"

#include <vector>

namespace {

INPUT KeyInput(WORD key, DWORD flags)
{
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags;
    return input;
}

INPUT LetterInput(wchar_t letter, DWORD flags)
{
    INPUT input = {};
    input.type = INPUT_KEYBOARD;
    input.ki.wScan = letter;
    input.ki.dwFlags = KEYEVENTF_UNICODE | flags;
    return input;
}

void Send(std::vector<INPUT> inputs)
{
    SendInput(static_cast<UINT>(inputs.size()), inputs.data(), sizeof(INPUT));
}

// SendInput counts the screen from 0 to 65535.
LONG ShareOfScreen(LONG pixel, int metric)
{
    return MulDiv(pixel, 65536, GetSystemMetrics(metric)) + 65536 / GetSystemMetrics(metric) / 2;
}

// A person needs longer between two clicks. Two that follow as fast as here count as a double click only on one spot, so
// each goes a little beside the last.
LONG BesideLastClick()
{
    static bool right = false;
    right = !right;
    return right ? GetSystemMetrics(SM_CXDOUBLECLK) : 0;
}

} // namespace

void StrikeKey(WORD key, std::initializer_list<WORD> modifiers)
{
    std::vector<INPUT> inputs;
    for (const WORD modifier : modifiers) {
        inputs.push_back(KeyInput(modifier, 0));
    }
    inputs.push_back(KeyInput(key, 0));
    inputs.push_back(KeyInput(key, KEYEVENTF_KEYUP));
    for (const WORD modifier : modifiers) {
        inputs.push_back(KeyInput(modifier, KEYEVENTF_KEYUP));
    }
    Send(std::move(inputs));
}

void TypeText(const CString& text)
{
    std::vector<INPUT> inputs;
    for (int index = 0; index < text.GetLength(); ++index) {
        inputs.push_back(LetterInput(text[index], 0));
        inputs.push_back(LetterInput(text[index], KEYEVENTF_KEYUP));
    }
    Send(std::move(inputs));
}

// Down and up each have their place with them: a window that has just come up under the pointer reports the pointer's old
// place, which may come in between.
void ClickAt(POINT point)
{
    std::vector<INPUT> inputs;
    for (const DWORD deed : {0, MOUSEEVENTF_LEFTDOWN, MOUSEEVENTF_LEFTUP}) {
        INPUT input = {};
        input.type = INPUT_MOUSE;
        input.mi.dx = ShareOfScreen(point.x, SM_CXSCREEN);
        input.mi.dy = ShareOfScreen(point.y, SM_CYSCREEN);
        input.mi.dwFlags = MOUSEEVENTF_MOVE | MOUSEEVENTF_ABSOLUTE | deed;
        inputs.push_back(input);
    }
    Send(std::move(inputs));
}

void ClickOn(HWND control)
{
    RECT rectangle = {};
    GetWindowRect(control, &rectangle);
    ClickAt(
        {(rectangle.left + rectangle.right) / 2 + BesideLastClick(), (rectangle.top + rectangle.bottom) / 2});
}

bool ClickCloseBox(HWND window)
{
    RECT rectangle = {};
    GetWindowRect(window, &rectangle);
    const LONG y = rectangle.top + GetSystemMetrics(SM_CYFIXEDFRAME) + GetSystemMetrics(SM_CYCAPTION) / 2;
    for (LONG x = rectangle.right - 1; x > rectangle.left; --x) {
        if (SendMessageW(window, WM_NCHITTEST, 0, MAKELPARAM(x, y)) == HTCLOSE) {
            ClickAt({x - GetSystemMetrics(SM_CXDOUBLECLK) - 2 + BesideLastClick(), y}); // not its very edge
            return true;
        }
    }
    return false;
}
