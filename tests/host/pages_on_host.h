// The real pages on the real host: the pages' library and the host's as Setup.exe has them, on media of the test's.
//
//     Press(IDC_NEXT);
//     AnswerQuestion(IDYES);
//     EXPECT_EQ(Show(BeginDeploymentDialog), NAVIGATION_NEXT);
//
// Steps are noted first and played while the page is up. A box that no step answers, and a page that stays, fail the test.
#pragma once

#include "automation/script.h"
#include "include/resource_ids.h"
#include "include/rollout_ui.h"
#include "include/ui_manager.h"
#include "tests/host/through_host.h"

#include <functional>

class PagesOnHost : public ThroughHostTest
{
protected:
    using PageFunction = int (*)(PageContext*);

    PagesOnHost() { Renew(); }

    // With the texts of the pages, which the program brings along.
    CSetupManager& OpenWithTexts(const CString& path);

    // ---- steps
    void Press(int control);
    void Type(int edit, const CString& text);
    void SelectLine(int list, const CString& line);
    void SelectEntry(int list, int index);
    void SetChecked(int box, bool checked);
    void Look(std::function<void()> look);
    void AnswerQuestion(int button);
    void AnswerCancelQuestion(int button, std::function<void()> look);

    // Plays the steps against the page of the host's first product.
    int Show(PageFunction page, bool canGoBack = false);

    HWND Page() const { return m_page; }

private:
    void Add(const CString& name, CScript::Step step);
    void Renew();

    std::unique_ptr<CScript> m_script;
    HWND m_page = nullptr;
};
