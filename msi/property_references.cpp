#include "msi/property_references.h"

namespace {

int CountOf(const CString& text, const CString& part)
{
    int count = 0;
    for (int found = text.Find(part); found >= 0; found = text.Find(part, found + part.GetLength())) {
        ++count;
    }
    return count;
}

} // namespace

CString ExpandPropertyReferences(CString text, const PropertyLookup& lookup)
{
    const int longest = text.GetLength() + EXPANSION_GROWTH_LIMIT;
    int stepsLeft = CountOf(text, L"[") + NESTED_REFERENCE_LIMIT;
    for (int position = 0; position < text.GetLength() && stepsLeft > 0; --stepsLeft) {
        const int opening = text.Find(L'[', position);
        const int closing = opening < 0 ? -1 : text.Find(L']', opening);
        if (closing < 0) {
            break;
        }
        const CString reference = text.Mid(opening, closing + 1 - opening);
        const CString value = lookup(text.Mid(opening + 1, closing - opening - 1));
        const long long growth =
            static_cast<long long>(CountOf(text, reference)) * (value.GetLength() - reference.GetLength());
        if (text.GetLength() + growth > longest) {
            break;
        }
        text.Replace(reference, value);
        // The one character more is on purpose: of two references that touch, the second stays as it is.
        position = opening + value.GetLength() + 1;
    }
    return text;
}
