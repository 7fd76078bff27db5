#include "msi/property_references.h"

CString ExpandPropertyReferences(CString text, const PropertyLookup& lookup)
{
    const int longest = text.GetLength() + EXPANSION_LIMIT;
    int position = 0;
    while (position < text.GetLength() && text.GetLength() <= longest) {
        const int opening = text.Find(L'[', position);
        const int closing = opening < 0 ? -1 : text.Find(L']', opening);
        if (closing < 0) {
            break;
        }
        const CString reference = text.Mid(opening, closing + 1 - opening);
        const CString value = lookup(text.Mid(opening + 1, closing - opening - 1));
        text.Replace(reference, value);
        // The one character more is on purpose: of two references that touch, the second stays as it is.
        position = opening + value.GetLength() + 1;
    }
    return text;
}
