#include "setup/flow.h"

#include "include/navigation.h"
#include "include/page_table.h"

#include <algorithm>
#include <utility>

namespace {

bool IsOutcomePage(const CString& page)
{
    const PageRow* row = FindWizardPage(page);
    return row && row->IsOutcome();
}

FlowMove FinishWith(unsigned int exitCode)
{
    return {.act = FlowAct::Finish, .exitCode = exitCode};
}

// What the program ends with for a build's code: the installer's own causes all count as "failed".
unsigned int ExitCodeOfBuild(unsigned int code)
{
    return code == SETUP_DONE || code == SETUP_CANCELLED ? code : static_cast<unsigned int>(SETUP_FAILED);
}

} // namespace

CWizardFlow::CWizardFlow(std::vector<FlowStep> pages, bool builds)
    : m_pages(std::move(pages)), m_walk(MakeWalk(1)), m_bBuilds(builds)
{
}

std::vector<CWizardFlow::Stop> CWizardFlow::MakeWalk(int products) const
{
    std::vector<Stop> walk;
    std::vector<int> together; // pages of a product that stand side by side
    const auto addTogether = [&] {
        for (int product = 0; product < products; ++product) {
            for (const int page : together) {
                walk.push_back({page, product});
            }
        }
        together.clear();
    };
    for (std::size_t index = 0; index < m_pages.size(); ++index) {
        const int page = static_cast<int>(index);
        if (IsOutcomePage(m_pages[index].strPage)) {
            continue;
        }
        if (m_pages[index].bOfProduct) {
            together.push_back(page);
            continue;
        }
        addTogether();
        walk.push_back({page, -1});
    }
    addTogether();
    return walk;
}

void CWizardFlow::UseProducts(int count)
{
    std::vector<Stop> walk = MakeWalk(count);
    if (walk == m_walk) {
        return;
    }
    // The page that is shown stays where it was, or the walk begins anew.
    const auto shown =
        m_position < m_walk.size() ? std::find(walk.begin(), walk.end(), m_walk[m_position]) : walk.end();
    m_bBeginsAnew = m_bBeginsAnew || shown == walk.end();
    m_bVisit = m_bVisit && !m_bBeginsAnew;
    m_position = m_bBeginsAnew ? 0 : static_cast<std::size_t>(shown - walk.begin());
    m_walk = std::move(walk);
}

FlowMove CWizardFlow::Show(std::size_t position)
{
    m_position = position;
    m_bBeginsAnew = false;
    const bool together = m_bConfigure && IsTab(position);
    return {.act = together ? FlowAct::Configure : FlowAct::ShowPage,
            .nPage = m_walk[position].page,
            .nProduct = together && !m_bVisit ? -1 : m_walk[position].product};
}

bool CWizardFlow::IsTab(std::size_t position) const
{
    return m_pages[static_cast<std::size_t>(m_walk[position].page)].bHasTab;
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
    const bool isVisit = std::exchange(m_bVisit, false);
    if (isVisit && result == NAVIGATION_NEXT) {
        const Stop visited = m_walk[m_position];
        FlowMove move = ShowReview();
        move.nPage = visited.page;
        move.nProduct = visited.product;
        return move;
    }
    switch (result) {
    case NAVIGATION_NEXT: {
        std::size_t next = m_bBeginsAnew ? 0 : m_position + 1;
        while (next < m_walk.size() && IsPassedOver(next)) {
            ++next;
        }
        if (next < m_walk.size()) {
            return Show(next);
        }
        return EndOfWalk();
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

FlowMove CWizardFlow::EndOfWalk()
{
    return m_bReview ? ShowReview() : EndOfChoosing();
}

FlowMove CWizardFlow::EndOfChoosing() const
{
    return m_bBuilds ? FlowMove{.act = FlowAct::Build} : FinishWith(SETUP_DONE);
}

FlowMove CWizardFlow::ShowReview()
{
    m_bVisit = false;
    m_position = m_walk.size(); // behind the last page, so that there is a way back
    return {.act = FlowAct::Review};
}

FlowMove CWizardFlow::AfterReview(int result)
{
    return result == NAVIGATION_NEXT ? EndOfChoosing() : AfterPage(result);
}

FlowMove CWizardFlow::VisitPage(const CString& page, int product)
{
    for (std::size_t position = 0; position < m_walk.size(); ++position) {
        const Stop& stop = m_walk[position];
        if (m_pages[static_cast<std::size_t>(stop.page)].strPage == page && stop.product == product) {
            m_bVisit = true;
            return Show(position);
        }
    }
    return ShowReview();
}

FlowMove CWizardFlow::StartAgain()
{
    m_bVisit = false;
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
            return {.act = FlowAct::ShowPage, .nPage = static_cast<int>(index)};
        }
    }
    return FinishWith(m_exitCode);
}
