#include "files/file_progress.h"

#include "frame/resource_text.h"

#include <commctrl.h>

namespace {

constexpr ULONGLONG LONG_WORK = 500; // milliseconds; shorter work needs no window
constexpr ULONGLONG READING_TIME = 250;
constexpr int MARQUEE_STEP = 100;

} // namespace

CFileProgress::CFileProgress(HWND page)
    : m_page(page), m_root(::GetAncestor(page, GA_ROOT)), m_started(::GetTickCount64())
{
}

// The page's window is enabled first: otherwise the system would activate another program's.
CFileProgress::~CFileProgress()
{
    if (!m_hWnd) {
        return;
    }
    if (!m_rootWasDisabled) {
        ::EnableWindow(m_root, TRUE);
    }
    DestroyWindow();
}

void CFileProgress::Open()
{
    m_isOpen = true;
    if (!Create(m_root)) {
        return; // the work goes on without, and nothing else meanwhile
    }
    CenterWindow();
    ::SendDlgItemMessageW(m_hWnd, IDC_FILES_PROGRESS_BAR, PBM_SETMARQUEE, TRUE, MARQUEE_STEP);
    ShowWindow(SW_SHOW);
    m_rootWasDisabled = ::EnableWindow(m_root, FALSE) != FALSE;
}

bool CFileProgress::Continue(int filesAdded, const CString& folder)
{
    const ULONGLONG now = ::GetTickCount64();
    if (!m_isOpen && now - m_started >= LONG_WORK) {
        Open();
    }
    if (m_hWnd && now - m_shown >= READING_TIME) {
        m_shown = now;
        SetDlgItemText(IDC_FILES_PROGRESS_TEXT,
                       FormatResource(IDS_FILES_PROGRESS, NumberText(filesAdded)) + L"\n" + folder);
        HandleMessages();
    }
    return !m_stopped && ::IsWindow(m_page);
}

void CFileProgress::HandleMessages()
{
    MSG message = {};
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            ::PostQuitMessage(static_cast<int>(message.wParam)); // for the loop outside
            m_stopped = true;
            return;
        }
        if (!m_hWnd || !::IsDialogMessageW(m_hWnd, &message)) {
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
    }
}

LRESULT CFileProgress::OnCancel(WORD, WORD, HWND, BOOL&)
{
    m_stopped = true;
    EnableWindow(FALSE);
    return 0;
}
