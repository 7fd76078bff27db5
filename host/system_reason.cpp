#include "host/system_reason.h"

#include "base/path_text.h"
#include "base/system_text.h"
#include "host/host_messages.h"

#include <windows.h>

CString SystemReason(unsigned int code)
{
    const CString text = FindSystemSentence(code).TrimRight(L".");
    return text.IsEmpty() ? L"code " + NumberText(code) : text + L", code " + NumberText(code);
}

CString ReasonOfCopy(unsigned int code, const CString& file, const CString& folder)
{
    constexpr unsigned long long MEGABYTE = 1u << 20;
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    ULARGE_INTEGER free = {};
    if ((code != ERROR_DISK_FULL && code != ERROR_HANDLE_DISK_FULL) ||
        !GetFileAttributesExW(FilePath(file), GetFileExInfoStandard, &data) ||
        !GetDiskFreeSpaceExW(FilePath(folder), &free, nullptr, nullptr)) {
        return SystemReason(code);
    }
    const unsigned long long needed =
        (static_cast<unsigned long long>(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    return HostSentence(HostText::ReasonWithRoom,
                        {SystemReason(code),
                         NumberText(static_cast<long long>((needed + MEGABYTE - 1) / MEGABYTE)),
                         NumberText(static_cast<long long>(free.QuadPart / MEGABYTE)), folder});
}
