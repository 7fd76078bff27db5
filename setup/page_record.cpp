#include "setup/page_record.h"

#include "setup/control_snapshot.h"

void CPageRecord::NoteMade(HWND page)
{
    m_bMade = true;
    m_entered = ReadControls(page);
    NoteUnstored();
}

void CPageRecord::NoteMadeAnew(HWND page)
{
    NoteStored(page, IsAccepted(page));
}

void CPageRecord::NoteStored(HWND page, bool accepted)
{
    m_bStored = page != nullptr;
    m_bAccepted = m_bStored && accepted;
    m_stored = m_bStored ? ReadControls(page) : std::vector<CString>();
}

void CPageRecord::NoteGone(HWND page)
{
    if (!IsStored(page)) {
        NoteUnstored();
    }
}

void CPageRecord::NoteUnstored()
{
    m_bStored = m_bAccepted = false;
    m_stored.clear();
}

bool CPageRecord::IsChanged(HWND page) const
{
    return page && ReadControls(page) != m_entered;
}

bool CPageRecord::IsStored(HWND page) const
{
    return m_bStored && (!page || ReadControls(page) == m_stored);
}
