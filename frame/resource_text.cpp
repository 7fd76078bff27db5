#include "frame/resource_text.h"

#include "window/module.h"

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
