// The window behind the last choosing page: what has been chosen, what it will do, and what to know before it is done. Nothing
// is built yet; each page can be gone back to from here.
//
// Keys: the lines have the focus, and are walked by the arrow keys; the one that is chosen stands in full below them. Enter
// builds, Ctrl+C copies all lines, Esc is Cancel, which asks.
#pragma once

#include "setup/resource.h"
#include "setup/review_document.h"
#include "window/controls.h"
#include "window/dialog_impl.h"
#include "window/message_map.h"

#include <map>
#include <vector>

// A page by its export, and the code of its product; an empty code for a page that belongs to none.
struct ReviewedPage
{
    CString strPage;
    CString strProductCode;
};

// What a window of a review says and offers.
struct ReviewWindow
{
    CString strName; // the deployment's
    ReviewDocument review;
    ReviewedPage visited;  // that a person comes back from; empty the first time
    bool bRefused = false; // it can't be built
    bool bBuilds = true;   // false: the run ends behind the window, which then isn't kept open by a refusal
};

class CReviewDialog : public CDialogImpl<CReviewDialog>
{
public:
    enum
    {
        IDD = IDD_REVIEW
    };

    explicit CReviewDialog(ReviewWindow window);

    // NAVIGATION_NEXT goes on, _BACK goes to the last page, _CANCEL ends the wizard, after a question. VISIT leads to the page
    // of GetVisited. NAVIGATION_LOAD_FAILED when the window can't be made.
    static constexpr int VISIT = 3;
    [[nodiscard]] int Run();
    // The line whose page is wanted; behind VISIT alone.
    [[nodiscard]] const ReviewNode& GetVisited() const { return *m_visited; }

    BEGIN_MSG_MAP(CReviewDialog)
    MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
    MESSAGE_HANDLER(WM_SIZE, OnSize)
    MESSAGE_HANDLER(WM_GETMINMAXINFO, OnSizeLimits)
    NOTIFY_HANDLER(IDC_REVIEW_TREE, TVN_SELCHANGEDW, OnSelection)
    NOTIFY_HANDLER(IDC_REVIEW_TREE, TVN_KEYDOWN, OnTreeKey)
    NOTIFY_HANDLER(IDC_REVIEW_TREE, NM_DBLCLK, OnDoubleClick)
    COMMAND_ID_HANDLER(IDC_REVIEW_PAGE, OnPage)
    COMMAND_ID_HANDLER(IDC_REVIEW_COPY, OnCopy)
    COMMAND_ID_HANDLER(IDC_REVIEW_BACK, OnBack)
    COMMAND_ID_HANDLER(IDOK, OnNext)
    COMMAND_ID_HANDLER(IDCANCEL, OnCancel)
    END_MSG_MAP()

private:
    // A control, and which of its edges go along with the window's right and lower ones.
    struct Place
    {
        HWND hControl = nullptr;
        RECT first = {}; // in the window as it came up
        bool bMovesRight = false;
        bool bMovesDown = false;
        bool bGrowsRight = false;
        bool bGrowsDown = false;
    };

    LRESULT OnInitDialog(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnSize(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnSizeLimits(UINT, WPARAM, LPARAM limits, BOOL&);
    LRESULT OnSelection(int, NMHDR*, BOOL&);
    LRESULT OnTreeKey(int, NMHDR* header, BOOL&);
    LRESULT OnDoubleClick(int, NMHDR*, BOOL&);
    LRESULT OnPage(WORD, WORD, HWND, BOOL&);
    LRESULT OnCopy(WORD, WORD, HWND, BOOL&);
    LRESULT OnBack(WORD, WORD, HWND, BOOL&);
    LRESULT OnNext(WORD, WORD, HWND, BOOL&);
    LRESULT OnCancel(WORD, WORD, HWND, BOOL&);

    [[nodiscard]] CString Title() const;
    [[nodiscard]] unsigned int HeadingText() const;
    void NotePlaces();
    void SelectFirst();
    void Fill(const ReviewDocument& nodes, HTREEITEM parent, int depth);
    [[nodiscard]] const ReviewNode* Selected() const;
    [[nodiscard]] const ReviewNode* SelectedPage() const;

    const ReviewWindow m_window;
    CTreeViewCtrl m_tree;
    std::map<HTREEITEM, const ReviewNode*> m_nodes;
    HTREEITEM m_hVisited = nullptr; // the line of the page that a person comes back from
    const ReviewNode* m_visited = nullptr;
    std::vector<Place> m_places;
    SIZE m_firstRoom = {}; // of the window's inside as it came up
    SIZE m_leastSize = {}; // of the whole window
};
