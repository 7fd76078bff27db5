#include "setup/change_watch.h"

#include "include/setup_manager.h"
#include "setup/control_snapshot.h"

namespace {

constexpr int GO_ON = 1; // no veto

} // namespace

CChangeWatch* CChangeWatch::s_current = nullptr;

CChangeWatch::CChangeWatch()
{
    s_current = this;
}

CChangeWatch::~CChangeWatch()
{
    s_current = nullptr;
}

void CChangeWatch::Watch(PageContext& context)
{
    m_entered.clear();
    context.postInitHooks.push_back(OnPageUp);
    context.leaveHooks.push_back(OnPageLeft);
}

int CChangeWatch::OnPageUp(PageContext* context)
{
    if (s_current) {
        s_current->m_entered = ReadControls(context->hParent);
    }
    return GO_ON;
}

int CChangeWatch::OnPageLeft(PageContext* context)
{
    if (s_current) { // a leave hook isn't given the page's window
        s_current->Note(ReadControls(context->pSetupManager->m_hCurrentPage) != s_current->m_entered);
    }
    return GO_ON;
}
