// The window that reports a long addition and lets it be canceled. The work runs on the page's own thread and calls
// Continue between its pieces; the page's window is disabled meanwhile.
#pragma once

#include "include/resource_ids.h"
#include "window/dialog_impl.h"

class CFileProgress : public CDialogImpl<CFileProgress>
{
public:
    enum
    {
        IDD = IDD_FILES_PROGRESS
    };

    explicit CFileProgress(HWND page);
    ~CFileProgress() override;

    // Shows where the work is, not more often than a person reads, and handles the messages that wait. False: stop, as the
    // administrator canceled or the page is gone.
    [[nodiscard]] bool Continue(int filesAdded, const CString& folder);

    BEGIN_MSG_MAP(CFileProgress)
    COMMAND_ID_HANDLER(IDCANCEL, OnCancel)
    END_MSG_MAP()

private:
    LRESULT OnCancel(WORD, WORD, HWND, BOOL&);
    void Open();
    void HandleMessages();

    HWND m_page;
    HWND m_root; // the window that the page lies in
    ULONGLONG m_started;
    ULONGLONG m_shown = 0;
    bool m_stopped = false;
    bool m_isOpen = false;
    bool m_rootWasDisabled = false;
};
