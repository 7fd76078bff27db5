// A self-extracting patch as the service may offer one: `PROGRAM /e TARGET`. What it does is said by the environment, since the tests
// download the program itself.
//   ROLLOUT_TEST_EXTRACTOR_LOG      file that gets the command line as it came, in UTF-16
//   ROLLOUT_TEST_EXTRACTOR_EVENT    name of an event that is waited for first
//   ROLLOUT_TEST_EXTRACTOR_PAYLOAD  file that is copied to the target; without it nothing is written
#include <windows.h>

#include <cwchar>

namespace {

bool Read(const wchar_t* name, wchar_t (&value)[1024])
{
    return GetEnvironmentVariableW(name, value, ARRAYSIZE(value)) != 0;
}

void WriteLog(const wchar_t* path, const wchar_t* text)
{
    const HANDLE file = CreateFileW(path, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, text, static_cast<DWORD>(wcslen(text) * sizeof(wchar_t)), &written, nullptr);
    CloseHandle(file);
}

} // namespace

int main()
{
    wchar_t value[1024] = L"";
    if (Read(L"ROLLOUT_TEST_EXTRACTOR_LOG", value)) {
        WriteLog(value, GetCommandLineW());
    }
    if (Read(L"ROLLOUT_TEST_EXTRACTOR_EVENT", value)) {
        const HANDLE event = OpenEventW(SYNCHRONIZE, FALSE, value);
        WaitForSingleObject(event, 60000);
        CloseHandle(event);
    }
    const wchar_t* target = wcsstr(GetCommandLineW(), L" /e ");
    if (target && Read(L"ROLLOUT_TEST_EXTRACTOR_PAYLOAD", value)) {
        wchar_t path[1024] = L"";
        lstrcpynW(path, target + 4 + (target[4] == L'"'), ARRAYSIZE(path));
        if (wchar_t* end = wcschr(path, L'"')) {
            *end = 0;
        }
        CopyFileW(value, path, FALSE);
    }
    return 7; // the exit code is nobody's business
}
