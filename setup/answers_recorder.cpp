#include "setup/answers_recorder.h"

#include "setup/box_rules.h"
#include "setup/configure_dialog.h"
#include "setup/product_names.h"
#include "setup/texts.h"

#include <commctrl.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace {

constexpr int GO_ON = 1; // no veto

} // namespace

CAnswersRecorder* CAnswersRecorder::s_current = nullptr;

CAnswersRecorder::CAnswersRecorder(AnswerTables tables, PageListsTable lists)
    : m_tables(tables), m_lists(lists),
      m_boxes([this](const MessageBoxView& box, int button) { OnBoxAnswered(box, button); })
{
    s_current = this;
}

CAnswersRecorder::~CAnswersRecorder()
{
    for (const WatchedWindow& watched : m_windows) {
        RemoveWindowSubclass(watched.hWindow, PageProcedure, 0);
    }
    s_current = nullptr;
}

// ---- pages

// Of the host's hooks, those that see the page come first and may still change what it proposes. On the way out this one
// comes first: the last one's answer counts for a tab, and behind a veto the others aren't asked.
void CAnswersRecorder::WatchPage(PageContext& context, const CString& page, const CProduct* product)
{
    m_current = SubjectOf(page, product);
    context.postInitHooks.push_back(OnPageUp);
    context.leaveHooks.insert(context.leaveHooks.begin(), OnLeaving);
}

void CAnswersRecorder::AddTabHooks(PageContext& context)
{
    context.leaveHooks.insert(context.leaveHooks.begin(), OnLeaving);
}

void CAnswersRecorder::BeginTabs(const CConfigureDialog& dialog)
{
    m_current = Subject();
    m_pDialog = &dialog;
}

void CAnswersRecorder::EndTabs()
{
    for (int tab = 0; tab < m_pDialog->GetTabCount(); ++tab) {
        const ConfigureTab& described = m_pDialog->GetTab(tab);
        const Subject subject = SubjectOf(described.strPage, described.context.pProduct);
        if (subject.pTable && !FindRecorded(subject)) {
            UseRecorded(subject).bShown = false;
        }
    }
    m_pDialog = nullptr;
}

void CAnswersRecorder::WatchTab(HWND window, const CString& page, const CProduct* product)
{
    Watch(window, SubjectOf(page, product));
}

int CAnswersRecorder::OnPageUp(PageContext* context)
{
    if (s_current) {
        s_current->Watch(context->hParent, s_current->m_current);
    }
    return GO_ON;
}

// In the wizard the context names no page: it is the one that is up.
int CAnswersRecorder::OnLeaving(PageContext* context)
{
    if (s_current && context->hParent) {
        if (const WatchedWindow* watched = s_current->FindWatched(context->hParent)) {
            s_current->ForgetQuestions(watched->subject);
        }
    } else if (s_current) {
        s_current->ForgetQuestions(s_current->m_current);
    }
    return GO_ON;
}

LRESULT CAnswersRecorder::PageProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                                        DWORD_PTR)
{
    if (message == WM_DESTROY) { // the controls are still there
        if (s_current) {
            s_current->OnWindowGone(window);
        }
        RemoveWindowSubclass(window, PageProcedure, id);
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

// A page runs its hooks again when it has changed itself; what it proposed is known by then. Without memory the page isn't
// recorded.
void CAnswersRecorder::Watch(HWND window, const Subject& subject) noexcept
try {
    if (!subject.pTable || FindWatched(window)) {
        return;
    }
    const PageContents held = ReadContents(window, subject);
    if (!FindProposal(subject)) {
        m_proposals.push_back({subject, held});
    }
    Record(subject, held);
    m_windows.push_back({window, subject});
    SetWindowSubclass(window, PageProcedure, 0, 0);
} catch (...) {
}

PageContents CAnswersRecorder::ReadContents(HWND window, const Subject& subject) const
{
    return ReadPageContents(window, *subject.pTable, FindPageLists(m_lists, subject.pTable));
}

void CAnswersRecorder::Record(const Subject& subject, const PageContents& held)
{
    const Proposal* const proposal = FindProposal(subject);
    std::vector<RecordedValue> values = RecordContents(
        *subject.pTable, proposal ? proposal->contents : PageContents(), held, !m_strBaseFolder.IsEmpty());
    RecordedPage& page = UseRecorded(subject);
    page.values = std::move(values);
    page.bShown = true;
}

void CAnswersRecorder::OnWindowGone(HWND window) noexcept
try {
    const auto found =
        std::find_if(m_windows.begin(), m_windows.end(),
                     [window](const WatchedWindow& watched) { return watched.hWindow == window; });
    if (found == m_windows.end()) {
        return;
    }
    const WatchedWindow gone = std::move(*found);
    m_windows.erase(found); // the next page may get the same handle
    m_current = Subject();
    Record(gone.subject, ReadContents(window, gone.subject));
} catch (...) {
}

// ---- questions

CAnswersRecorder::Subject CAnswersRecorder::SubjectOfBox() const
{
    if (!m_pDialog) {
        return m_current;
    }
    const int tab = m_pDialog->GetBoxTab();
    if (tab < 0 || m_pDialog->GetBoxSubject() == CConfigureDialog::BoxSubject::Dialog) {
        return Subject();
    }
    const ConfigureTab& described = m_pDialog->GetTab(tab);
    return SubjectOf(described.strPage, described.context.pProduct);
}

void CAnswersRecorder::OnBoxAnswered(const MessageBoxView& box, int button)
{
    if (m_isDismissed && m_isDismissed()) {
        return;
    }
    const bool asks = box.buttons != MB_OK;
    const Subject subject = SubjectOfBox();
    const AnswerBox* const row = JudgeBox(subject.pTable, nullptr, box.text, asks, PageText).pBox;
    if (asks && row) {
        NoteQuestion(subject, *row, button == IDYES);
    }
}

void CAnswersRecorder::NoteQuestion(const CString& section, const wchar_t* role, bool yes)
{
    const PageAnswerTable* const table = FindAnswerTable(m_tables, section);
    if (const AnswerBox* question = table ? FindQuestion(*table, role) : nullptr) {
        NoteQuestion(Subject{table, {}}, *question, yes);
    }
}

// A role may stand for several boxes; the answer that was given last counts for it, but for Yes to what entering asks.
void CAnswersRecorder::NoteQuestion(const Subject& subject, const AnswerBox& question, bool yes)
{
    std::vector<RecordedQuestion>& questions = UseRecorded(subject).questions;
    bool isYes = yes;
    std::erase_if(questions, [&](const RecordedQuestion& noted) {
        const bool isSame = CString(noted.pBox->role) == question.role;
        isYes = isYes || (isSame && question.bWhileEntering && noted.bYes);
        return isSame;
    });
    questions.push_back({&question, isYes});
}

// Of what leaving asks, only what was asked while the page let itself be left counts.
void CAnswersRecorder::ForgetQuestions(const Subject& subject)
{
    if (RecordedPage* page = FindRecorded(subject)) {
        std::erase_if(page->questions,
                      [](const RecordedQuestion& question) { return !question.pBox->bWhileEntering; });
    }
}

// ---- what was recorded

void CAnswersRecorder::NoteTarget(int opening, const CString& baseFolder)
{
    const bool otherProducts = opening != m_nOpening;
    const bool otherBase = baseFolder != m_strBaseFolder;
    ForgetPages([&](const PageRow& page) {
        return page.role != PageRole::Target && (page.bOfProduct ? otherProducts : otherBase);
    });
    m_nOpening = opening;
    m_strBaseFolder = baseFolder;
}

void CAnswersRecorder::Forget()
{
    ForgetPages([](const PageRow&) { return true; });
    m_nOpening = 0;
    m_strBaseFolder.Empty();
}

template <class IsGone>
void CAnswersRecorder::ForgetPages(IsGone isGone)
{
    std::erase_if(m_pages, [&](const RecordedPage& page) { return isGone(*page.pTable->page); });
    std::erase_if(m_proposals,
                  [&](const Proposal& proposal) { return isGone(*proposal.subject.pTable->page); });
}

CAnswersRecorder::Subject CAnswersRecorder::SubjectOf(const CString& page, const CProduct* product) const
{
    Subject subject;
    subject.pTable = FindAnswerTableOfExport(m_tables, page);
    if (subject.pTable && subject.pTable->page->bOfProduct) {
        subject.product = NamesOf(product);
    }
    return subject;
}

bool CAnswersRecorder::Subject::Is(const PageAnswerTable* table, const AnswerProduct& other) const
{
    return pTable == table && product == other;
}

const CAnswersRecorder::WatchedWindow* CAnswersRecorder::FindWatched(HWND window) const
{
    for (const WatchedWindow& watched : m_windows) {
        if (watched.hWindow == window) {
            return &watched;
        }
    }
    return nullptr;
}

// Null for a page that hasn't come up yet.
const CAnswersRecorder::Proposal* CAnswersRecorder::FindProposal(const Subject& subject) const
{
    for (const Proposal& proposal : m_proposals) {
        if (proposal.subject.Is(subject.pTable, subject.product)) {
            return &proposal;
        }
    }
    return nullptr;
}

// Null for a page that isn't recorded.
RecordedPage* CAnswersRecorder::FindRecorded(const Subject& subject)
{
    const auto found = std::find_if(m_pages.begin(), m_pages.end(), [&](const RecordedPage& page) {
        return subject.Is(page.pTable, page.product);
    });
    return found == m_pages.end() ? nullptr : &*found;
}

RecordedPage& CAnswersRecorder::UseRecorded(const Subject& subject)
{
    if (RecordedPage* page = FindRecorded(subject)) {
        return *page;
    }
    RecordedPage page;
    page.pTable = subject.pTable;
    page.product = subject.product;
    page.strTitle = PageTitle(*subject.pTable->page);
    m_pages.push_back(std::move(page));
    return m_pages.back();
}
