/* The sample product's main program: says who it is and what its installation told it. */
#include <windows.h>

static void ReadInstalledValue(const wchar_t* name, wchar_t* value, DWORD characters)
{
    DWORD bytes = (characters - 1) * sizeof(wchar_t);
    value[0] = 0;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, L"Software\\Velkmora\\Zolt\\27.0", name, RRF_RT_REG_SZ, NULL, value,
                     &bytes) != ERROR_SUCCESS) {
        lstrcpynW(value, L"(not set)", (int)characters);
    }
}

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE previous, wchar_t* commandLine, int show)
{
    wchar_t folder[MAX_PATH];
    wchar_t version[64];
    wchar_t text[MAX_PATH + 256];
    (void)instance;
    (void)previous;
    (void)commandLine;
    (void)show;
    ReadInstalledValue(L"InstallFolder", folder, MAX_PATH);
    ReadInstalledValue(L"Version", version, 64);
    wsprintfW(text, L"Zolt %s\n\nInstalled in %s", version, folder);
    MessageBoxW(NULL, text, L"Zolt 2027", MB_ICONINFORMATION);
    return 0;
}
