/* Stands in for a package's program that never ends. */
#include <windows.h>

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE previous, wchar_t* commandLine, int show)
{
    (void)instance;
    (void)previous;
    (void)commandLine;
    (void)show;
    Sleep(INFINITE);
    return 0;
}
