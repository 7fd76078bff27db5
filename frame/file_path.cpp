#include "frame/file_path.h"

#include <windows.h>

#include <shlwapi.h>

CString UnquotePath(const CString& path)
{
    CString unquoted(path);
    ::PathUnquoteSpacesW(unquoted.GetBuffer(unquoted.GetLength()));
    unquoted.ReleaseBuffer();
    return unquoted;
}

CString JoinPath(const CString& folder, const CString& file)
{
    CString path = UnquotePath(folder);
    // PathAppendW writes up to MAX_PATH characters and reads no more of a longer folder.
    if (path.GetLength() >= MAX_PATH) {
        return CString();
    }
    const BOOL joined = ::PathAppendW(path.GetBuffer(MAX_PATH), file);
    path.ReleaseBuffer();
    return joined ? path : CString();
}
