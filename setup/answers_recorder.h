// Learns what the pages of a run hold when they are left, and how their questions were answered, by a person or without one:
// it hooks itself into the pages, reads their controls, and watches the boxes of the thread. The pages don't know of it.
#pragma once

#include "include/page_context.h"
#include "setup/answers_record.h"
#include "setup/box_watch.h"
#include "setup/page_contents.h"
#include "setup/page_lists.h"

#include <windows.h>

#include <functional>
#include <utility>
#include <vector>

class CConfigureDialog;

class CAnswersRecorder
{
public:
    // One object at a time, as a hook has no argument of its own.
    explicit CAnswersRecorder(AnswerTables tables = PageAnswerTables(),
                              PageListsTable lists = AllPageLists());
    ~CAnswersRecorder();
    CAnswersRecorder(const CAnswersRecorder&) = delete;
    CAnswersRecorder& operator=(const CAnswersRecorder&) = delete;

    // Before the wizard page with that export is shown with the context. `product`: whose page it is.
    void WatchPage(PageContext& context, const CString& page, const CProduct* product);

    // For the context of a tab, before the dialog has it.
    void AddTabHooks(PageContext& context);
    // Around a run of the dialog: a box is about the page of which the dialog says so, and a tab that was never gone to is
    // recorded as such.
    void BeginTabs(const CConfigureDialog& dialog);
    void EndTabs();
    // The dialog has just made the page of that export.
    void WatchTab(HWND window, const CString& page, const CProduct* product);

    // A box counts as answered unless `isDismissed` says that the program only closes what is open, as behind a failure.
    void UseDismissal(std::function<bool()> isDismissed) { m_isDismissed = std::move(isDismissed); }
    // The answer to the program's own question, which belongs to the page of the section.
    void NoteQuestion(const CString& section, const wchar_t* role, bool yes);
    // The first page has been left with its choice. `opening`: of the products (CSetupHost::CountProductOpenings);
    // `baseFolder`: of the deployment that is modified or built upon, empty for a new one. What was recorded of products that
    // were opened anew since then, or of settings that come from another base, is gone.
    void NoteTarget(int opening, const CString& baseFolder);
    // The wizard starts over.
    void Forget();

    // In the order in which they were shown first.
    [[nodiscard]] const std::vector<RecordedPage>& GetPages() const { return m_pages; }

private:
    // Which page of which product.
    struct Subject
    {
        const PageAnswerTable* pTable = nullptr; // null for a page without answers
        AnswerProduct product;                   // empty for a page that belongs to none

        [[nodiscard]] bool Is(const PageAnswerTable* table, const AnswerProduct& other) const;
    };
    struct WatchedWindow
    {
        HWND hWindow = nullptr;
        Subject subject;
    };
    // What a page held when it first came up.
    struct Proposal
    {
        Subject subject;
        PageContents contents;
    };

    static int OnPageUp(PageContext* context);
    static int OnLeaving(PageContext* context);
    static LRESULT CALLBACK PageProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR id, DWORD_PTR data);

    [[nodiscard]] Subject SubjectOf(const CString& page, const CProduct* product) const;
    [[nodiscard]] Subject SubjectOfBox() const;
    [[nodiscard]] const WatchedWindow* FindWatched(HWND window) const;
    [[nodiscard]] const Proposal* FindProposal(const Subject& subject) const;
    RecordedPage* FindRecorded(const Subject& subject);
    RecordedPage& UseRecorded(const Subject& subject);

    void Watch(HWND window, const Subject& subject) noexcept;
    [[nodiscard]] PageContents ReadContents(HWND window, const Subject& subject) const;
    void Record(const Subject& subject, const PageContents& held);
    void OnWindowGone(HWND window) noexcept;
    void ForgetQuestions(const Subject& subject);
    void OnBoxAnswered(const MessageBoxView& box, int button);
    void NoteQuestion(const Subject& subject, const AnswerBox& question, bool yes);
    template <class IsGone>
    void ForgetPages(IsGone isGone);

    static CAnswersRecorder* s_current;

    AnswerTables m_tables;
    PageListsTable m_lists;
    CBoxWatch m_boxes;
    std::function<bool()> m_isDismissed;
    const CConfigureDialog* m_pDialog = nullptr; // that is up
    Subject m_current;                           // the wizard page that is up, or comes up next
    std::vector<WatchedWindow> m_windows;        // that are up
    std::vector<Proposal> m_proposals;
    std::vector<RecordedPage> m_pages;
    int m_nOpening = 0; // of the products, as the first page was left last
    CString m_strBaseFolder;
};
