// Shows on the page for a failed build what failed and what to do. The page itself knows the code alone, and its words for
// that, such as "disk full", name no thing.
#pragma once

#include "base/string.h"
#include "include/page_context.h"

// Puts the words into the side pane of the page that is shown with the context. One object at a time, as a hook has no
// argument of its own; it outlives the page's call.
class CFailurePane
{
public:
    // `cause`: what failed, with which thing, and what to do. `log`, `answers`: full paths, the second one of the file that
    // keeps what was entered; empty without one.
    CFailurePane(const CString& cause, const CString& log, const CString& answers, PageContext& context);
    ~CFailurePane();
    CFailurePane(const CFailurePane&) = delete;
    CFailurePane& operator=(const CFailurePane&) = delete;

private:
    static int OnPageUp(PageContext* context);

    static const CFailurePane* s_current;

    CString m_strHtml;
};
