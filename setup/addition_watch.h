// Says on the page of additional files what can't go along: at once when something was added, and again when the page is
// to be left, which it isn't while a build would be refused. The page doesn't know of it.
#pragma once

#include "builder/addition_finding.h"
#include "include/page_context.h"
#include "setup/run_log.h"

#include <windows.h>

#include <functional>
#include <set>
#include <vector>

class CAdditionWatch
{
public:
    using Check = std::function<std::vector<AdditionFinding>(CProduct& product, SourceLook look)>;

    // One object at a time, as a hook has no argument of its own. Borrows the log. Without a person only what a build would
    // refuse is shown, and nothing of what the page was opened with: the answers may be about to remove it.
    CAdditionWatch(Check check, CRunLog& log, bool isUnattended);
    ~CAdditionWatch();
    CAdditionWatch(const CAdditionWatch&) = delete;
    CAdditionWatch& operator=(const CAdditionWatch&) = delete;

    // Before the page with that export, wizard page or tab, gets the context. Adds nothing for any other page. Behind all
    // others' hooks for leaving, as the last one's answer counts for a tab.
    void Watch(PageContext& context, const CString& page);

private:
    // A page that is up.
    struct Visit
    {
        HWND hPage = nullptr;
        CProduct* pProduct = nullptr;
        std::set<CString> known;               // findings that were there when they were looked for last
        std::vector<AdditionFinding> blocking; // that it came up with
    };

    static int OnPageUp(PageContext* context) noexcept;
    static int OnLeaving(PageContext* context) noexcept;
    static LRESULT CALLBACK PageProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                          DWORD_PTR data);

    [[nodiscard]] Visit* FindVisit(HWND page);
    void Begin(HWND page, CProduct* product);
    void ShowOld(HWND page);
    void JudgeAdded(Visit& visit);
    [[nodiscard]] bool MayBeLeft(Visit& visit);
    // The findings of now; those that weren't known come into `fresh` and the log.
    [[nodiscard]] std::vector<AdditionFinding> Judge(Visit& visit, SourceLook look,
                                                     std::vector<AdditionFinding>& fresh);
    void Show(HWND page, const std::vector<AdditionFinding>& findings) const;

    static CAdditionWatch* s_current;

    Check m_check;
    CRunLog& m_log;
    const bool m_bUnattended;
    CProduct* m_pWizardProduct = nullptr; // the hooks of a wizard page don't name it
    std::vector<Visit> m_visits;
};
