#include "patches/patch_extraction.h"

#include "base/handle.h"
#include "frame/file_path.h"
#include "window/message_wait.h"

#include <windows.h>

#include <shlwapi.h>

namespace {

constexpr const wchar_t* PATCH_ENDING = L".msp";
constexpr const wchar_t* PROGRAM_ENDING = L".exe";
constexpr const wchar_t* EXTRACT_SWITCH = L" /e ";

bool HasEnding(const CString& path, const wchar_t* ending)
{
    return CString(::PathFindExtensionW(path)).CompareNoCase(ending) == 0;
}

// With quotes around a path that has blanks.
CString QuotedPath(const CString& path)
{
    CString quoted(path);
    ::PathQuoteSpacesW(quoted.GetBuffer(path.GetLength() + MAX_PATH));
    quoted.ReleaseBuffer();
    return quoted;
}

CString NameWithoutEnding(const CString& path)
{
    wchar_t name[MAX_PATH] = {};
    ::lstrcpynW(name, ::PathFindFileNameW(path), MAX_PATH);
    ::PathRemoveExtensionW(name);
    return name;
}

} // namespace

bool IsSelfExtracting(const CString& downloaded)
{
    return HasEnding(downloaded, PROGRAM_ENDING);
}

CString PatchFileOf(const CString& downloaded, const CString& folder)
{
    if (HasEnding(downloaded, PATCH_ENDING)) {
        return downloaded;
    }
    return IsSelfExtracting(downloaded) ? JoinPath(folder, NameWithoutEnding(downloaded) + PATCH_ENDING)
                                        : CString();
}

void ExtractPatch(const CString& program, const CString& patch)
{
    CString command = QuotedPath(program) + EXTRACT_SWITCH + QuotedPath(patch);
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION created = {};
    const BOOL isStarted =
        ::CreateProcessW(nullptr, command.GetBuffer(command.GetLength()), nullptr, nullptr, FALSE,
                         CREATE_DEFAULT_ERROR_MODE, nullptr, nullptr, &start, &created);
    command.ReleaseBuffer();
    if (!isStarted) {
        return;
    }
    const CKernelOwner thread(created.hThread);
    const CKernelOwner process(created.hProcess);
    static_cast<void>(WaitWithMessages(process.get()));
}
