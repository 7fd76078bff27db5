// The file dialog of the notice and feed page.
#pragma once

#include "base/string.h"

#include <windows.h>

// What can be browsed for: its filter in the dialog, and what is said of a file of another kind.
struct LocationKind
{
    unsigned int filterText;
    unsigned int filterPattern;
    bool (*isOfKind)(const CString& path);
    unsigned int wrongKindText;
};
extern const LocationKind LIST_LOCATION_KIND;
extern const LocationKind FEED_LOCATION_KIND;

// True when a file of the kind was picked. Warns the user of a file of another kind.
[[nodiscard]] bool BrowseForLocation(HWND owner, const LocationKind& kind, const CString& productName,
                                     CString& path);
