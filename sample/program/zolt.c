/* The main program of both of the sample's products: says who it is and what its installation passed to it. */
#include <windows.h>

#ifdef ZOLT_VIEWER
#define PRODUCT_NAME L"Zolt Viewer 2027"
#define PRODUCT_SHORT_NAME L"Zolt Viewer"
#else
#define PRODUCT_NAME L"Zolt 2027"
#define PRODUCT_SHORT_NAME L"Zolt"
#endif
#define PRODUCT_KEY L"Software\\Velkmora\\" PRODUCT_SHORT_NAME L"\\27.0"

static void ReadInstalledValue(const wchar_t* name, wchar_t* value, DWORD characters)
{
    DWORD bytes = (characters - 1) * sizeof(wchar_t);
    value[0] = 0;
    if (RegGetValueW(HKEY_LOCAL_MACHINE, PRODUCT_KEY, name, RRF_RT_REG_SZ, NULL, value, &bytes) !=
        ERROR_SUCCESS) {
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
    wsprintfW(text, PRODUCT_SHORT_NAME L" %s\n\nInstalled in %s", version, folder);
    MessageBoxW(NULL, text, PRODUCT_NAME, MB_ICONINFORMATION);
    return 0;
}
