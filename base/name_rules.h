// Which names of files and folders Windows has on every file system. No window header.
#pragma once

#include "base/string.h"

constexpr wchar_t RESERVED_CHARACTERS[] = L"<>:\"/\\|?*";
// One of those, or a control character.
bool IsReservedCharacter(wchar_t character);
// Windows drops what stands there. False for the empty text.
bool EndsInDotOrBlank(const CString& name);

// True for the name of a device: CON, NUL, COM1, ... Such a name counts with any extension and with the superscript digits
// that Windows takes for 1 to 3.
bool IsDeviceName(const CString& name);

// True for a path below a folder that leads nowhere else: `Image\x64\Zolt.msi`. False for the empty text, a drive,
// a leading or closing backslash, "." and "..", reserved characters and device names, closing dots and blanks.
bool IsPlainRelativePath(const CString& path);

// A plain relative path, or one name of it, that is short enough to be copied anywhere: names of at most 255 characters,
// paths of at most 240. Nor may a name start with a blank, which no list shows.
[[nodiscard]] bool IsSafeRelativePath(const CString& path);
[[nodiscard]] bool IsSafeFileName(const CString& name);

// A text made fit for a part of a file name: reserved and control characters become "_".
CString FileNamePart(const CString& text);
