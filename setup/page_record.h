// What the configure dialog knows of a page by looking at its controls: whether something was entered, and whether it is
// stored.
#pragma once

#include "base/string.h"

#include <windows.h>

#include <vector>

class CPageRecord
{
public:
    // The page has come up for the first time.
    void NoteMade(HWND page);
    // It has stored what its controls hold now; `accepted`: after its checks. Or it shows what the one before it has stored.
    void NoteStored(HWND page, bool accepted);
    // It may hold what no control shows, or was refused.
    void NoteUnstored();

    // Its page was there once.
    [[nodiscard]] bool WasMade() const { return m_bMade; }
    [[nodiscard]] bool IsChanged(HWND page) const;
    // False once something was entered since.
    [[nodiscard]] bool IsStored(HWND page) const;
    [[nodiscard]] bool IsAccepted(HWND page) const { return m_bAccepted && IsStored(page); }

private:
    bool m_bMade = false;
    bool m_bStored = false;
    bool m_bAccepted = false;
    std::vector<CString> m_entered; // what the controls held when the page first came up
    std::vector<CString> m_stored;  // what they held when it stored last
};
