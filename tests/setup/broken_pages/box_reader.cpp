// box_reader.exe PROGRAM WORD ...: starts the program, waits for the first message box of it or of what it starts, writes the
// box's text to the output, presses OK, and ends with the program's code.
#include "base/handle.h"
#include "base/string.h"

#include <windows.h>

#include <string>
#include <vector>

namespace {

constexpr int BOX_TEXT_ID = 0xFFFF;
constexpr int LONGEST_TEXT = 4096;
constexpr ULONGLONG LONGEST_WAIT_MILLISECONDS = 40000;
constexpr UINT NO_PROGRAM = 97;
constexpr UINT NO_BOX = 98;

BOOL CALLBACK FindBox(HWND window, LPARAM found)
{
    wchar_t name[16] = {};
    GetClassNameW(window, name, ARRAYSIZE(name));
    if (CString(name) != L"#32770" || !IsWindowVisible(window) || !GetDlgItem(window, BOX_TEXT_ID)) {
        return TRUE;
    }
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

// GetWindowText doesn't reach into another process.
CString TextOf(HWND control)
{
    std::vector<wchar_t> text(LONGEST_TEXT);
    const LRESULT length =
        SendMessageW(control, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()));
    return CString(text.data(), static_cast<int>(length));
}

void Write(const CString& text)
{
    std::string bytes;
    AppendUtf8(bytes, text + L"\n");
    DWORD written = 0;
    WriteFile(GetStdHandle(STD_OUTPUT_HANDLE), bytes.data(), static_cast<DWORD>(bytes.size()), &written,
              nullptr);
}

} // namespace

int wmain(int count, wchar_t** words)
{
    CString line;
    for (int index = 1; index < count; ++index) {
        line += CString(L"\"") + words[index] + L"\" ";
    }
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION started = {};
    if (!CreateProcessW(nullptr, line.GetBuffer(line.GetLength()), nullptr, nullptr, FALSE, 0, nullptr,
                        nullptr, &startup, &started)) {
        return NO_PROGRAM;
    }
    const CKernelOwner thread(started.hThread);
    const CKernelOwner process(started.hProcess);
    const ULONGLONG deadline = GetTickCount64() + LONGEST_WAIT_MILLISECONDS;
    HWND box = nullptr;
    while (!box && WaitForSingleObject(process.get(), 50) == WAIT_TIMEOUT && GetTickCount64() < deadline) {
        EnumWindows(FindBox, reinterpret_cast<LPARAM>(&box));
    }
    if (!box) {
        TerminateProcess(process.get(), NO_BOX);
        return NO_BOX;
    }
    Write(TextOf(GetDlgItem(box, BOX_TEXT_ID)));
    PostMessageW(box, WM_COMMAND, IDOK, 0);
    WaitForSingleObject(process.get(), INFINITE);
    DWORD code = 0;
    GetExitCodeProcess(process.get(), &code);
    return static_cast<int>(code);
}
