#include "setup/failure_pane.h"

#include "base/html_text.h"
#include "include/navigation.h"
#include "setup/resource.h"
#include "setup/texts.h"

#include <windows.h>

namespace {

constexpr int GO_ON = 1; // no veto

} // namespace

const CFailurePane* CFailurePane::s_current = nullptr;

CFailurePane::CFailurePane(const CString& cause, const CString& log, const CString& answers,
                           PageContext& context)
    : m_strHtml(
          SetupText(IDS_FAILURE_PANE,
                    {HtmlText(cause), HtmlText(log),
                     answers.IsEmpty() ? CString() : SetupText(IDS_FAILURE_ANSWERS, {HtmlText(answers)})}))
{
    s_current = this;
    context.postInitHooks.push_back(OnPageUp);
}

CFailurePane::~CFailurePane()
{
    s_current = nullptr;
}

int CFailurePane::OnPageUp(PageContext* context)
{
    if (s_current) {
        SendMessageW(context->hParent, PAGE_MESSAGE_SIDE_PANE, 0,
                     reinterpret_cast<LPARAM>(s_current->m_strHtml.GetString()));
    }
    return GO_ON;
}
