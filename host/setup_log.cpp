#include "host/setup_log.h"

#include "base/handle.h"
#include "base/path_text.h"
#include "builder/shown_text.h"

#include <string>

void CSetupLog::Append(const CString& line) const
{
    const CFileOwner file(CreateFileW(FilePath(m_file), FILE_APPEND_DATA, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file) {
        return;
    }
    SYSTEMTIME now = {};
    GetLocalTime(&now);
    CString stamped;
    stamped.Format(L"%04u-%02u-%02u %02u:%02u:%02u  ", now.wYear, now.wMonth, now.wDay, now.wHour,
                   now.wMinute, now.wSecond);
    std::string bytes;
    AppendUtf8(bytes, stamped + ShownText(line) + L"\r\n");
    DWORD written = 0;
    WriteFile(file.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
}
