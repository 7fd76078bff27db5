#include "base/string.h"

#include <windows.h>

#include <cstdarg>
#include <cwchar>

namespace {

CString FormatText(const wchar_t* format, va_list arguments)
{
    va_list measured;
    va_copy(measured, arguments);
    const int length = _vscwprintf(format, measured);
    va_end(measured);
    CString text;
    if (length > 0) {
        wchar_t* buffer = text.GetBuffer(length);
        _vsnwprintf(buffer, static_cast<size_t>(length) + 1, format, arguments);
        text.ReleaseBuffer(length);
    }
    return text;
}

} // namespace

void CString::Format(const wchar_t* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    *this = FormatText(format, arguments);
    va_end(arguments);
}

void CString::AppendFormat(const wchar_t* format, ...)
{
    va_list arguments;
    va_start(arguments, format);
    *this += FormatText(format, arguments);
    va_end(arguments);
}
