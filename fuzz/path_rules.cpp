#include "frame/path_rules.h"
#include "base/guid_text.h"
#include "base/path_text.h"
#include "fuzz/wide_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const CString text = WideInput(data, size);
    if (IsValidPath(text) && text.FindOneOf(L"*?<>|\"") >= 0) {
        __builtin_trap();
    }
    if (IsValidUncPath(text) && !IsUncForm(text)) {
        __builtin_trap();
    }
    if (IsValidFileName(text) && text.Find(L'\\') >= 0) {
        __builtin_trap();
    }
    const CString rebuilt = RebuildPath(text);
    if (RebuildPath(rebuilt) != rebuilt) {
        __builtin_trap(); // a rebuilt path stays as it is
    }
    CString folder(text);
    while (!folder.IsEmpty()) {
        const CString parent = ParentFolder(folder);
        if (parent.GetLength() >= folder.GetLength()) {
            __builtin_trap(); // the walk to the top must end
        }
        folder = parent;
    }
    CString guid;
    static_cast<void>(StripGuidBraces(text));
    static_cast<void>(GetTarnKeyGuid(text, guid));
    static_cast<void>(IsSubstitutedTarget(text));
    return 0;
}
