#include "setup/flow.h"

#include "include/navigation.h"
#include "include/page_table.h"

#include <utility>

namespace {

bool IsOutcomePage(const CString& page)
{
    const PageRow* row = FindWizardPage(page);
    return row && row->IsOutcome();
}

FlowMove FinishWith(unsigned int exitCode)
{
    return {FlowAct::Finish, -1, exitCode};
}

// What the program ends with for a build's code: the installer's own causes all count as "failed".
unsigned int ExitCodeOfBuild(unsigned int code)
{
    return code == SETUP_DONE || code == SETUP_CANCELLED ? code : static_cast<unsigned int>(SETUP_FAILED);
}

} // namespace

CWizardFlow::CWizardFlow(std::vector<FlowStep> pages, bool builds)
    : m_pages(std::move(pages)), m_bBuilds(builds)
{
    for (std::size_t index = 0; index < m_pages.size(); ++index) {
        if (!IsOutcomePage(m_pages[index].strPage)) {
            m_choosing.push_back(static_cast<int>(index));
        }
    }
}

FlowMove CWizardFlow::Show(std::size_t position)
{
    m_position = position;
    const bool together = m_bConfigure && IsTab(position);
    return {together ? FlowAct::Configure : FlowAct::ShowPage, m_choosing[position], 0};
}

bool CWizardFlow::IsTab(std::size_t position) const
{
    return m_pages[static_cast<std::size_t>(m_choosing[position])].bHasTab;
}

bool CWizardFlow::IsFirstTab(std::size_t position) const
{
    std::size_t first = 0;
    while (first < position && !IsTab(first)) {
        ++first;
    }
    return first == position;
}

bool CWizardFlow::IsPassedOver(std::size_t position) const
{
    return m_bConfigure && IsTab(position) && !IsFirstTab(position);
}

FlowMove CWizardFlow::Start()
{
    return HasChoosingPage() ? Show(0) : FinishWith(SETUP_FAILED);
}

FlowMove CWizardFlow::AfterPage(int result)
{
    if (m_bBuilt && result != NAVIGATION_RESET) {
        return FinishWith(m_exitCode); // whatever closed the outcome page, the deployment is what it is
    }
    switch (result) {
    case NAVIGATION_NEXT: {
        std::size_t next = m_position + 1;
        while (next < m_choosing.size() && IsPassedOver(next)) {
            ++next;
        }
        if (next < m_choosing.size()) {
            return Show(next);
        }
        return m_bBuilds ? FlowMove{FlowAct::Build, -1, 0} : FinishWith(SETUP_DONE);
    }
    case NAVIGATION_BACK: {
        std::size_t previous = m_position > 0 ? m_position - 1 : 0;
        while (IsPassedOver(previous)) { // ends: the first tab isn't passed over
            --previous;
        }
        return Show(previous);
    }
    case NAVIGATION_RESET: // after a failed build too: the user tries again with other choices
        m_bBuilt = false;
        return Show(0);
    case NAVIGATION_LOAD_FAILED:
        return FinishWith(SETUP_FAILED);
    default: // Cancel, or a page that something outside has closed
        return FinishWith(SETUP_CANCELLED);
    }
}

FlowMove CWizardFlow::StartAgain()
{
    m_bBuilt = false;
    return Start();
}

FlowMove CWizardFlow::AfterBuild(unsigned int exitCode)
{
    m_bBuilt = true;
    m_exitCode = ExitCodeOfBuild(exitCode);
    const CString outcome =
        WizardExport(PageOfRole(m_exitCode == SETUP_DONE ? PageRole::Complete : PageRole::Failed));
    for (std::size_t index = 0; index < m_pages.size(); ++index) {
        if (m_pages[index].strPage == outcome) {
            return {FlowAct::ShowPage, static_cast<int>(index), 0};
        }
    }
    return FinishWith(m_exitCode);
}
