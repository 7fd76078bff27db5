// Fuzzer bytes as wide text: two bytes a unit, the low one first; a single last byte is dropped.
#pragma once

#include "base/string.h"

#include <cstddef>
#include <cstdint>

inline CString WideInput(const std::uint8_t* data, std::size_t size)
{
    CString text;
    for (std::size_t index = 0; index + 1 < size; index += 2) {
        text += static_cast<wchar_t>(data[index] | data[index + 1] << 8);
    }
    return text;
}

// The text before the first line feed; `rest` takes what follows it.
inline CString FirstLine(const CString& text, CString& rest)
{
    const int lineEnd = text.Find(L'\n');
    rest = lineEnd < 0 ? CString() : text.Mid(lineEnd + 1);
    return lineEnd < 0 ? text : text.Left(lineEnd);
}
