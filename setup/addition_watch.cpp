#include "setup/addition_watch.h"

#include "include/additional_files.h"
#include "include/navigation.h"
#include "include/page_table.h"
#include "include/product.h"
#include "setup/addition_texts.h"
#include "setup/resource.h"
#include "setup/texts.h"

#include <commctrl.h>

#include <algorithm>
#include <utility>

namespace {

constexpr int GO_ON = 1; // no veto
constexpr UINT SOON_MILLISECONDS = 10;

// Of the timer, which no page has.
UINT_PTR TimerId()
{
    static const char place = 0;
    return reinterpret_cast<UINT_PTR>(&place);
}

std::vector<AdditionFinding> OnlyBlocking(std::vector<AdditionFinding> findings)
{
    std::erase_if(findings, [](const AdditionFinding& finding) { return !finding.Blocks(); });
    return findings;
}

CString ReadOwnProperty(CProduct& product, const wchar_t* name)
{
    CString value;
    int length = 0;
    static_cast<void>(product.GetProperty(name, nullptr, &length)); // asks for the length alone
    int size = length + 1;
    const bool isRead = length > 0 && product.GetProperty(name, value.GetBuffer(length), &size);
    value.ReleaseBuffer(isRead ? length : 0);
    return value;
}

// Once: the property is empty afterwards.
std::vector<AdditionFinding> ReadNotAdded(CProduct& product)
{
    std::vector<AdditionFinding> findings;
    const CString paths = ReadOwnProperty(product, ADDITIONAL_FILES_NOT_ADDED);
    for (int begin = 0; begin < paths.GetLength();) {
        const int bar = paths.Find(L'|', begin);
        const int end = bar < 0 ? paths.GetLength() : bar;
        AdditionFinding finding;
        finding.strTarget = paths.Mid(begin, end - begin);
        finding.strReason = SetupText(IDS_ADDITION_NOT_STORED);
        findings.push_back(finding);
        begin = end + 1;
    }
    if (!findings.empty()) {
        product.SetProperty(ADDITIONAL_FILES_NOT_ADDED, L"");
    }
    return findings;
}

} // namespace

CAdditionWatch* CAdditionWatch::s_current = nullptr;

CAdditionWatch::CAdditionWatch(Check check, CRunLog& log, bool isUnattended)
    : m_check(std::move(check)), m_log(log), m_bUnattended(isUnattended)
{
    s_current = this;
}

CAdditionWatch::~CAdditionWatch()
{
    for (const Visit& visit : m_visits) {
        KillTimer(visit.hPage, TimerId());
        RemoveWindowSubclass(visit.hPage, PageProcedure, 0);
    }
    s_current = nullptr;
}

void CAdditionWatch::Watch(PageContext& context, const CString& page)
{
    const PageRow* const row = FindPage(page);
    if (!row || CString(row->stem) != L"AddAdditionalFiles") {
        return;
    }
    m_pWizardProduct = context.pProduct;
    context.postInitHooks.push_back(OnPageUp);
    context.leaveHooks.push_back(OnLeaving);
}

CAdditionWatch::Visit* CAdditionWatch::FindVisit(HWND page)
{
    const auto found = std::find_if(m_visits.begin(), m_visits.end(),
                                    [page](const Visit& visit) { return visit.hPage == page; });
    return found == m_visits.end() ? nullptr : &*found;
}

// ---- hooks

// The page runs it when it has come up, and again when it has added something. What can't be judged for want of memory is
// judged by the build.
int CAdditionWatch::OnPageUp(PageContext* context) noexcept
try {
    if (s_current && context->hParent) {
        if (Visit* const visit = s_current->FindVisit(context->hParent)) {
            s_current->JudgeAdded(*visit);
        } else {
            s_current->Begin(context->hParent,
                             context->pProduct ? context->pProduct : s_current->m_pWizardProduct);
        }
    }
    return GO_ON;
} catch (...) {
    return GO_ON;
}

// In the wizard the context names no page: it is the only one that is up.
int CAdditionWatch::OnLeaving(PageContext* context) noexcept
try {
    if (!s_current || s_current->m_visits.empty()) {
        return GO_ON;
    }
    Visit* const visit =
        context->hParent ? s_current->FindVisit(context->hParent) : &s_current->m_visits.back();
    return !visit || s_current->MayBeLeft(*visit) ? GO_ON : HOOK_VETO;
} catch (...) {
    return GO_ON;
}

LRESULT CALLBACK CAdditionWatch::PageProcedure(HWND page, UINT message, WPARAM wParam, LPARAM lParam,
                                               UINT_PTR id, DWORD_PTR)
{
    if (message == WM_TIMER && wParam == TimerId()) {
        if (s_current && IsWindowVisible(page)) {
            KillTimer(page, TimerId());
            s_current->ShowOld(page);
        }
        return 0;
    }
    if (message == WM_DESTROY) {
        KillTimer(page, TimerId());
        RemoveWindowSubclass(page, PageProcedure, id);
        if (s_current) {
            std::erase_if(s_current->m_visits, [page](const Visit& visit) { return visit.hPage == page; });
        }
    }
    return DefSubclassProc(page, message, wParam, lParam);
}

// ---- what is judged when

void CAdditionWatch::Begin(HWND page, CProduct* product)
{
    if (!product) {
        return;
    }
    m_visits.push_back({page, product, {}, {}});
    SetWindowSubclass(page, PageProcedure, 0, 0);
    std::vector<AdditionFinding> fresh;
    Visit& visit = m_visits.back();
    visit.blocking = OnlyBlocking(Judge(visit, SourceLook::All, fresh));
    if (!visit.blocking.empty() && !m_bUnattended) {
        SetTimer(page, TimerId(), SOON_MILLISECONDS, nullptr); // a box needs a page that is seen
    }
}

void CAdditionWatch::ShowOld(HWND page)
{
    if (const Visit* const visit = FindVisit(page)) {
        Show(page, std::vector<AdditionFinding>(visit->blocking)); // the visit may go while the box is up
    }
}

void CAdditionWatch::JudgeAdded(Visit& visit)
{
    const HWND page = visit.hPage; // the visit may go while a box is up
    std::vector<AdditionFinding> fresh = ReadNotAdded(*visit.pProduct);
    for (const AdditionFinding& finding : fresh) {
        m_log.Line(L"  Additional file: " + DescribeFinding(finding));
    }
    static_cast<void>(Judge(visit, SourceLook::New, fresh));
    Show(page, m_bUnattended ? OnlyBlocking(fresh) : fresh);
}

bool CAdditionWatch::MayBeLeft(Visit& visit)
{
    const HWND page = visit.hPage;
    std::vector<AdditionFinding> fresh;
    std::vector<AdditionFinding> shown = OnlyBlocking(Judge(visit, SourceLook::All, fresh));
    const bool mayBeLeft = shown.empty();
    if (!m_bUnattended) {
        std::copy_if(fresh.begin(), fresh.end(), std::back_inserter(shown),
                     [](const AdditionFinding& finding) { return !finding.Blocks(); });
    }
    Show(page, shown);
    return mayBeLeft;
}

std::vector<AdditionFinding> CAdditionWatch::Judge(Visit& visit, SourceLook look,
                                                   std::vector<AdditionFinding>& fresh)
{
    std::vector<AdditionFinding> found = m_check(*visit.pProduct, look);
    std::set<CString> now;
    for (const AdditionFinding& finding : found) {
        const CString line = DescribeFinding(finding);
        if (now.insert(line).second && visit.known.count(line) == 0) {
            fresh.push_back(finding);
            m_log.Line(L"  Additional file: " + line);
        }
    }
    visit.known = std::move(now); // one that comes back is new again
    return found;
}

void CAdditionWatch::Show(HWND page, const std::vector<AdditionFinding>& findings) const
{
    if (findings.empty()) {
        return;
    }
    MessageBoxW(GetAncestor(page, GA_ROOT), ComposeFindings(findings), SetupText(IDS_PROGRAM_TITLE),
                MB_OK | MB_ICONWARNING | MB_SETFOREGROUND);
}
