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
    // It was made anew, and shows what the database holds now: maybe not what it was accepted with.
    void NoteMadeAnew(HWND page);
    // It has stored what its controls hold now; `accepted`: after its checks.
    void NoteStored(HWND page, bool accepted);
    // Its window is going; what it has stored is known as long as it isn't made anew.
    void NoteGone(HWND page);
    // It may hold what no control shows, or was refused.
    void NoteUnstored();

    // Its page was there once.
    [[nodiscard]] bool WasMade() const { return m_bMade; }
    [[nodiscard]] bool IsChanged(HWND page) const;
    // False once something was entered since. Null: of one that has gone, when it went.
    [[nodiscard]] bool IsStored(HWND page) const;
    [[nodiscard]] bool IsAccepted(HWND page) const { return m_bAccepted && IsStored(page); }

private:
    bool m_bMade = false;
    bool m_bStored = false;
    bool m_bAccepted = false;
    std::vector<CString> m_entered; // what the controls held when the page first came up
    std::vector<CString> m_stored;  // what they held when it stored last
};
