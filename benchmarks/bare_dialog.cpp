// What a program costs that does nothing but show the begin page's template: bare_dialog.exe PATH-OF-WIZTEXT
#include "include/resource_ids.h"

#include <windows.h>

namespace {

INT_PTR CALLBACK DialogProc(HWND dialog, UINT message, WPARAM wParam, LPARAM)
{
    if (message == WM_COMMAND && LOWORD(wParam) == IDCANCEL) {
        EndDialog(dialog, IDCANCEL);
        return TRUE;
    }
    return message == WM_INITDIALOG;
}

} // namespace

int WINAPI wWinMain(HINSTANCE, HINSTANCE, wchar_t* arguments, int)
{
    const HMODULE texts = LoadLibraryExW(arguments, nullptr, LOAD_LIBRARY_AS_DATAFILE);
    const INT_PTR result =
        DialogBoxParamW(texts, MAKEINTRESOURCEW(IDD_BEGIN_DEPLOYMENT), nullptr, DialogProc, 0);
    return result == IDCANCEL ? 0 : 1;
}
