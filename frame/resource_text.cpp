#include "frame/resource_text.h"

#include "base/handle.h"
#include "window/module.h"

#include <vector>

CString LoadResourceString(unsigned int id)
{
    constexpr int STEP = 256;
    for (int capacity = STEP;; capacity += STEP) {
        CString text;
        const int length =
            ::LoadStringW(_Module.GetResourceInstance(), id, text.GetBuffer(capacity), capacity);
        text.ReleaseBuffer(length);
        // A text that fills the buffer to the last place may have been cut.
        if (length < capacity - 1) {
            return text;
        }
    }
}

CString FormatResourceMessage(unsigned int id, std::initializer_list<CString> texts)
{
    std::vector<DWORD_PTR> arguments;
    for (const CString& text : texts) {
        arguments.push_back(reinterpret_cast<DWORD_PTR>(text.GetString()));
    }
    wchar_t* text = nullptr;
    const DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_STRING | FORMAT_MESSAGE_ARGUMENT_ARRAY |
                                              FORMAT_MESSAGE_ALLOCATE_BUFFER,
                                          LoadResourceString(id), 0, 0, reinterpret_cast<wchar_t*>(&text), 0,
                                          reinterpret_cast<va_list*>(arguments.data()));
    const CLocalOwner owner(text);
    return CString(text, static_cast<int>(length));
}
