// Which files and folders of a listing are links to others.
#pragma once

#include <windows.h>

// Other programs mark files in the same way that hold their own content: a disk that stores equal files once, a cloud's
// store. Wine marks links without a tag.
inline bool IsLinkMark(DWORD attributes, DWORD tag)
{
    return (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0 && (tag == 0 || IsReparseTagNameSurrogate(tag));
}
