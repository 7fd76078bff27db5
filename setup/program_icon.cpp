#include "setup/program_icon.h"

#include "setup/resource.h"
#include "window/module.h"

void SetProgramIcon(const CWindow& window)
{
    const auto icon = [](int width) {
        return static_cast<HICON>(LoadImageW(_Module.GetModuleInstance(), MAKEINTRESOURCEW(IDI_PROGRAM),
                                             IMAGE_ICON, width, width, LR_SHARED));
    };
    window.SetIcon(icon(GetSystemMetrics(SM_CXICON)));
    window.SetIcon(icon(GetSystemMetrics(SM_CXSMICON)), FALSE);
}
