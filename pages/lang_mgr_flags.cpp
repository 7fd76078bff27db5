// The two operations of the language manager that the page library carries for the host's own windows.
#include "include/lang_mgr.h"

void CLangMgr::SetShowLanguages(bool show)
{
    m_bShowLanguages = show;
}

bool CLangMgr::ShowLanguages()
{
    return m_bShowLanguages;
}
