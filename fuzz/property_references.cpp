// First line: the text. The others: "name=value". Whatever the values hold, the expansion ends.
#include "msi/property_references.h"
#include "fuzz/wide_input.h"

#include <map>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CString rest;
    const CString text = FirstLine(WideInput(data, size), rest);
    std::map<CString, CString> properties;
    while (!rest.IsEmpty()) {
        const CString line = FirstLine(CString(rest), rest);
        const int equals = line.Find(L'=');
        if (equals >= 0) {
            properties[line.Left(equals)] = line.Mid(equals + 1);
        }
    }
    const CString expanded = ExpandPropertyReferences(text, [&](const CString& name) {
        if (name.Find(L']') >= 0) {
            __builtin_trap(); // the first closing bracket ends a name
        }
        const auto found = properties.find(name);
        return found == properties.end() ? CString() : found->second;
    });
    if (text.Find(L'[') < 0 && expanded != text) {
        __builtin_trap();
    }
    if (expanded.GetLength() > text.GetLength() + EXPANSION_GROWTH_LIMIT) {
        __builtin_trap();
    }
    return 0;
}
