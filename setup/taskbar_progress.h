// The share that a window shows on its button in the taskbar. Where the shell has no taskbar, nothing happens: the
// window itself shows the same.
#pragma once

#include "base/com_ptr.h"

#include <shobjidl.h>

class CTaskbarProgress
{
public:
    CTaskbarProgress() = default;
    ~CTaskbarProgress();
    CTaskbarProgress(const CTaskbarProgress&) = delete;
    CTaskbarProgress& operator=(const CTaskbarProgress&) = delete;

    // Needs COM on the thread.
    void Attach(HWND window);
    // Parts in a thousand.
    void Show(int thousandths);
    void ShowUnknown();

private:
    HWND m_hWindow = nullptr;
    ComPtr<ITaskbarList3> m_pTaskbar;
};
