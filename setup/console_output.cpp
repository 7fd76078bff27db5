#include "setup/console_output.h"

#include <string>

CConsoleOutput::CConsoleOutput(bool wanted)
{
    if (!wanted) {
        return;
    }
    m_hOutput = GetStdHandle(STD_OUTPUT_HANDLE);
    if ((!m_hOutput || m_hOutput == INVALID_HANDLE_VALUE) && AttachConsole(ATTACH_PARENT_PROCESS)) {
        *m_console.put() =
            CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                        OPEN_EXISTING, 0, nullptr);
        m_hOutput = m_console.get();
    }
    DWORD mode = 0;
    m_bIsConsole = m_hOutput && GetConsoleMode(m_hOutput, &mode);
}

void CConsoleOutput::WriteLine(const CString& text)
{
    if (!IsOpen()) {
        return;
    }
    // Nobody is left to be warned when the output itself fails.
    DWORD written = 0;
    if (m_bIsConsole) {
        const CString line = text + L"\r\n";
        WriteConsoleW(m_hOutput, line, static_cast<DWORD>(line.GetLength()), &written, nullptr);
        return;
    }
    std::string bytes;
    AppendUtf8(bytes, text + L"\n"); // the scripts of either world read this line end
    WriteFile(m_hOutput, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}
