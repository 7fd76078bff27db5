/* A library that somebody planted: whoever loads it makes the file that the environment names. */
#include <windows.h>

BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, void* reserved)
{
    wchar_t mark[MAX_PATH] = {0};
    (void)instance;
    (void)reserved;
    if (reason == DLL_PROCESS_ATTACH &&
        GetEnvironmentVariableW(L"ROLLOUT_PLANTED_MARK", mark, MAX_PATH) != 0) {
        CloseHandle(CreateFileW(mark, GENERIC_WRITE, 0, NULL, CREATE_ALWAYS, 0, NULL));
    }
    return TRUE;
}
