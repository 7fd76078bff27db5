// What a label reads from files: the text of a page, the kind and size of an image, the place of an image.
#pragma once

#include "slimhtml/html_layout.h"

#include <cstddef>

// The text of a file: UTF-16 by its byte order mark, anything else is UTF-8 with or without one. A declaration of
// another character set is not looked at.
[[nodiscard]] CString TextFromFileBytes(const unsigned char* bytes, std::size_t length);

// Width and height that a PNG or GIF file declares; false for any other file. Asked before anything is decoded, so
// that a small file which claims to be huge costs nothing.
[[nodiscard]] bool ReadImageHeader(const unsigned char* bytes, std::size_t length, HtmlSize& size) noexcept;

// True when an image of that size may be decoded.
[[nodiscard]] bool IsReasonableImage(const HtmlSize& size) noexcept;

// The path of an image of a file's page: the page's folder (with its backslash) and the source, its "/" turned and "%20"
// resolved. Empty for an absolute source, one with a scheme, or one that leads up: a foreign page reads nothing from elsewhere.
// A text without a folder is the program's own. Its source is a full path ("C:\a.png", "\\server\share\a.png"), letter for
// letter but for "/"; empty for any other, also for the system's own forms ("\\?\", "\\.\").
[[nodiscard]] CString ImagePath(const CString& folder, const CString& source);

// The size on the device. A missing width or height follows from the other one.
[[nodiscard]] HtmlSize DisplaySize(const HtmlImage& image, const HtmlSize& own, int dpi) noexcept;
