#include "builder/system_text.h"

#include <windows.h>

CString SystemText(unsigned long code)
{
    wchar_t text[512];
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS |
                                            FORMAT_MESSAGE_MAX_WIDTH_MASK,
                                        nullptr, code, 0, text, ARRAYSIZE(text), nullptr);
    CString message(text, static_cast<int>(length));
    message.Trim();
    return message;
}
