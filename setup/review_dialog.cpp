#include "setup/review_dialog.h"

#include "base/handle.h"
#include "include/navigation.h"
#include "setup/program_icon.h"
#include "setup/texts.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

// The clipboard has the text when true comes back.
bool CopyToClipboard(HWND owner, const CString& text)
{
    const std::size_t bytes = (static_cast<std::size_t>(text.GetLength()) + 1) * sizeof(wchar_t);
    CGlobalOwner memory(::GlobalAlloc(GMEM_MOVEABLE, bytes));
    if (!memory || !::OpenClipboard(owner)) {
        return false;
    }
    std::memcpy(::GlobalLock(memory.get()), text.GetString(), bytes);
    ::GlobalUnlock(memory.get());
    ::EmptyClipboard();
    const bool isCopied = ::SetClipboardData(CF_UNICODETEXT, memory.get()) != nullptr;
    if (isCopied) {
        static_cast<void>(memory.release()); // the clipboard's
    }
    ::CloseClipboard();
    return isCopied;
}

constexpr int PRODUCT_DEPTH = 1; // of the lines that name a product or a database

bool StandsOutWithin(const ReviewNode& node)
{
    return std::any_of(node.children.begin(), node.children.end(), [](const ReviewNode& child) {
        return child.bChanged || child.bWarning || StandsOutWithin(child);
    });
}

bool IsVisited(const ReviewNode& node, const ReviewedPage& page)
{
    return !page.strPage.IsEmpty() && node.strPage == page.strPage &&
           node.strProductCode == page.strProductCode;
}

} // namespace

CReviewDialog::CReviewDialog(ReviewWindow window) : m_window(std::move(window))
{
}

int CReviewDialog::Run()
{
    const INT_PTR result = DoModal(nullptr);
    return result == -1 ? static_cast<int>(NAVIGATION_LOAD_FAILED) : static_cast<int>(result);
}

CString CReviewDialog::Title() const
{
    return SetupText(IDS_REVIEW_TITLE, {m_window.strName});
}

unsigned int CReviewDialog::HeadingText() const
{
    if (m_window.bRefused) {
        return IDS_REVIEW_REFUSED;
    }
    return m_window.bBuilds ? IDS_REVIEW_HEADING : IDS_REVIEW_CHECK_HEADING;
}

// ---- the window comes up

LRESULT CReviewDialog::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&)
{
    SetProgramIcon(*this);
    SetText(Title());
    SetDlgItemText(IDC_REVIEW_HEADING, SetupText(HeadingText()));
    const CWindow next(GetDlgItem(IDOK));
    next.SetText(SetupText(m_window.bBuilds ? IDS_REVIEW_BUILD : IDS_REVIEW_FINISH));
    next.EnableWindow(!m_window.bRefused || !m_window.bBuilds);
    if (!next.IsWindowEnabled()) { // Enter has to do something that can be done
        SendMessage(DM_SETDEFID, IDC_REVIEW_BACK);
    }
    NotePlaces();
    m_tree.Attach(GetDlgItem(IDC_REVIEW_TREE));
    Fill(m_window.review, TVI_ROOT, 0);
    SelectFirst();
    m_tree.SetFocus();
    return FALSE;
}

// What stands out is bold, for who can't see that marked as in the copied text too. Closed are the pages on which nothing does,
// and the lists of rows and files.
void CReviewDialog::Fill(const ReviewDocument& nodes, HTREEITEM parent, int depth)
{
    // To look for the last of many would cost more with each line.
    HTREEITEM previous = TVI_FIRST;
    for (const ReviewNode& node : nodes) {
        CString text = MarkOf(node);
        text.TrimRight();
        text += (text.IsEmpty() ? L"" : L" ") + node.strText;
        TVINSERTSTRUCTW line = {};
        line.hParent = parent;
        line.hInsertAfter = previous;
        line.item.mask = TVIF_TEXT | TVIF_STATE;
        line.item.pszText = text.GetBuffer(text.GetLength());
        line.item.stateMask = TVIS_BOLD;
        line.item.state = node.bChanged || node.bWarning ? TVIS_BOLD : 0;
        const HTREEITEM item = m_tree.InsertItem(line);
        previous = item;
        m_nodes[item] = &node;
        if (!m_hVisited && IsVisited(node, m_window.visited)) {
            m_hVisited = item;
        }
        Fill(node.children, item, depth + 1);
        const bool isPage = !node.strPage.IsEmpty();
        if (isPage ? StandsOutWithin(node) : depth <= PRODUCT_DEPTH) {
            m_tree.Expand(item);
        }
    }
}

// Whoever comes back from a page goes on from its line, and sees what stands there now. A refusal is to be read first.
void CReviewDialog::SelectFirst()
{
    const bool isBack = m_hVisited && !m_window.bRefused;
    if (isBack) {
        m_tree.Expand(m_hVisited);
    }
    m_tree.SelectItem(isBack ? m_hVisited : m_tree.GetRootItem());
}

void CReviewDialog::NotePlaces()
{
    const auto note = [this](int control, bool movesRight, bool movesDown, bool growsRight, bool growsDown) {
        const CWindow window(GetDlgItem(control));
        m_places.push_back({window, window.GetRectInParent(), movesRight, movesDown, growsRight, growsDown});
    };
    note(IDC_REVIEW_HEADING, false, false, true, false);
    note(IDC_REVIEW_TREE, false, false, true, true);
    for (const int control : {IDC_REVIEW_LINE_LABEL, IDC_REVIEW_LINE}) {
        note(control, false, true, true, false);
    }
    for (const int control : {IDC_REVIEW_PAGE, IDC_REVIEW_COPY}) {
        note(control, false, true, false, false);
    }
    for (const int control : {IDC_REVIEW_BACK, int{IDOK}, int{IDCANCEL}}) {
        note(control, true, true, false, false);
    }
    const RECT inside = GetClientRect();
    m_firstRoom = {inside.right, inside.bottom};
    const RECT window = GetWindowRect();
    m_leastSize = {window.right - window.left, window.bottom - window.top};
}

LRESULT CReviewDialog::OnSize(UINT, WPARAM, LPARAM, BOOL&)
{
    const RECT inside = GetClientRect();
    const int right = inside.right - m_firstRoom.cx;
    const int down = inside.bottom - m_firstRoom.cy;
    if (inside.right == 0) { // minimized
        return 0;
    }
    for (const Place& place : m_places) {
        ::SetWindowPos(place.hControl, nullptr, place.first.left + (place.bMovesRight ? right : 0),
                       place.first.top + (place.bMovesDown ? down : 0),
                       place.first.right - place.first.left + (place.bGrowsRight ? right : 0),
                       place.first.bottom - place.first.top + (place.bGrowsDown ? down : 0),
                       SWP_NOZORDER | SWP_NOACTIVATE);
    }
    // A control that is only moved counts as painted, and so does the old part of one that grows.
    RedrawWindow(RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
    return 0;
}

LRESULT CReviewDialog::OnSizeLimits(UINT, WPARAM, LPARAM limits, BOOL&)
{
    auto& sizes = *reinterpret_cast<MINMAXINFO*>(limits);
    sizes.ptMinTrackSize = {m_leastSize.cx, m_leastSize.cy};
    return 0;
}

// ---- lines

const ReviewNode* CReviewDialog::Selected() const
{
    const auto node = m_nodes.find(m_tree.GetSelectedItem());
    return node == m_nodes.end() ? nullptr : node->second;
}

// The page of the selected line, or of the nearest one above it that has one; null for none.
const ReviewNode* CReviewDialog::SelectedPage() const
{
    for (HTREEITEM item = m_tree.GetSelectedItem(); item; item = m_tree.GetParentItem(item)) {
        const auto node = m_nodes.find(item);
        if (node != m_nodes.end() && !node->second->strPage.IsEmpty()) {
            return node->second;
        }
    }
    return nullptr;
}

// A tree shows the first 260 characters of a line, and the window's width may be less.
LRESULT CReviewDialog::OnSelection(int, NMHDR*, BOOL&)
{
    const ReviewNode* const line = Selected();
    SetDlgItemText(IDC_REVIEW_LINE, line ? line->strText : CString());
    CWindow(GetDlgItem(IDC_REVIEW_PAGE)).EnableWindow(SelectedPage() != nullptr);
    return 0;
}

LRESULT CReviewDialog::OnTreeKey(int, NMHDR* header, BOOL& handled)
{
    if (reinterpret_cast<NMTVKEYDOWN*>(header)->wVKey == L'C' && ::GetKeyState(VK_CONTROL) < 0) {
        OnCopy(0, 0, nullptr, handled);
    }
    return 0;
}

// On a line with others below it, a double click opens and closes them.
LRESULT CReviewDialog::OnDoubleClick(int, NMHDR*, BOOL& handled)
{
    const ReviewNode* const line = Selected();
    if (line && line->children.empty()) {
        OnPage(0, 0, nullptr, handled);
    }
    return 0;
}

// ---- buttons

LRESULT CReviewDialog::OnPage(WORD, WORD, HWND, BOOL&)
{
    m_visited = SelectedPage();
    if (m_visited) {
        EndDialog(VISIT);
    }
    return 0;
}

LRESULT CReviewDialog::OnCopy(WORD, WORD, HWND, BOOL&)
{
    if (!CopyToClipboard(m_hWnd, ComposeReviewText(m_window.review))) {
        MessageBox(SetupText(IDS_REVIEW_NOT_COPIED), Title(), MB_OK | MB_ICONWARNING);
    }
    return 0;
}

LRESULT CReviewDialog::OnBack(WORD, WORD, HWND, BOOL&)
{
    EndDialog(NAVIGATION_BACK);
    return 0;
}

// By Enter in the tree too, when the button is disabled.
LRESULT CReviewDialog::OnNext(WORD, WORD, HWND, BOOL&)
{
    if (CWindow(GetDlgItem(IDOK)).IsWindowEnabled()) {
        EndDialog(NAVIGATION_NEXT);
    }
    return 0;
}

LRESULT CReviewDialog::OnCancel(WORD, WORD, HWND, BOOL&)
{
    if (MessageBox(SetupText(IDS_REVIEW_CANCEL_QUESTION), Title(),
                   MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2) == IDYES) {
        EndDialog(NAVIGATION_CANCEL);
    }
    return 0;
}
