// Wide texts in tests: printed and compared as UTF-8, whatever the C library thinks of wide characters.
#pragma once

#include "base/string.h"

#include <ostream>
#include <string>

inline std::string Utf8(const CString& text)
{
    std::string bytes;
    AppendUtf8(bytes, text);
    return bytes;
}

inline void PrintTo(const CString& text, std::ostream* stream)
{
    *stream << '"' << Utf8(text) << '"';
}

// A text holds a part of it.
#define EXPECT_HOLDS(text, part)                                                                             \
    EXPECT_GE((text).Find(part), 0) << "\"" << Utf8(part) << "\" is missing in:\n" << Utf8(text)
