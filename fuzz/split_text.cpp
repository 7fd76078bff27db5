// First line the separator, the rest the text.
#include "frame/text_rules.h"
#include "fuzz/wide_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CString text;
    const CString line = FirstLine(WideInput(data, size), text);
    const CString separator(line.GetString()); // a separator ends at its first zero
    std::vector<CString> pieces;
    SplitText(text, separator, pieces, 0, false);
    CString joined;
    for (std::size_t index = 0; index < pieces.size(); ++index) {
        if (index > 0) {
            joined += separator;
        }
        joined += pieces[index];
    }
    // Only a separator at the very end is lost.
    if (joined != text && joined + separator != text) {
        __builtin_trap();
    }
    SplitText(text, separator, pieces, 0, true);
    for (const CString& piece : pieces) {
        if (piece.IsEmpty()) {
            __builtin_trap();
        }
    }
    CString replaced(text);
    ReplaceAll(replaced, separator, L"&");
    static_cast<void>(DoubleAmpersands(replaced));
    return 0;
}
