#include "setup/run_log.h"

#include "base/handle.h"
#include "base/system_text.h"
#include "host/setup_host.h"
#include "setup/run_record.h"
#include "setup/text_forms.h"
#include "setup/texts.h"

#include <string>

namespace {

CFileOwner OpenToAppend(const CString& path)
{
    return CFileOwner(CreateFileW(path, FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                  OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
}

} // namespace

CString CRunLog::TryFile() const
{
    return m_strFile.IsEmpty() || OpenToAppend(m_strFile) ? CString() : SystemErrorText(GetLastError());
}

void CRunLog::Line(const CString& text)
{
    NoteRunStep(text);
    Write(text);
}

void CRunLog::Text(const CString& lines)
{
    for (int start = 0; start < lines.GetLength();) {
        const int end = lines.Find(L"\r\n", start);
        const int length = (end < 0 ? lines.GetLength() : end) - start;
        Write(lines.Mid(start, length));
        start += length + 2;
    }
}

void CRunLog::Write(const CString& text)
{
    m_console.WriteLine(text);
    if (m_pHost) {
        m_pHost->AppendLog(text);
    } else {
        m_waiting.push_back(text);
    }
}

void CRunLog::Finish(const RunOutcome& outcome)
{
    if (m_bFinished) {
        return;
    }
    m_bFinished = true;
    const CString cause = OneLine(outcome.strCause); // for scripts that read the last one
    const CString text = L"Exit code " + NumberText(outcome.exitCode);
    Write(cause.IsEmpty() ? text : text + L": " + cause);
    for (const CString& line : m_waiting) {
        AppendToFile(line);
    }
    m_waiting.clear();
    NoteRunEnd(outcome.exitCode);
}

void CRunLog::UseHost(CSetupHost* host)
{
    m_pHost = host;
    if (!host) {
        return;
    }
    for (const CString& line : m_waiting) {
        host->AppendLog(line);
    }
    m_waiting.clear();
}

void CRunLog::AppendToFile(const CString& text) const
{
    if (m_strFile.IsEmpty()) {
        return;
    }
    const CFileOwner file = OpenToAppend(m_strFile);
    std::string bytes;
    AppendUtf8(bytes, text + L"\r\n");
    DWORD written = 0;
    if (file) { // a log that can't be written doesn't change the verdict, which the caller reports in other ways too
        WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
    }
}
