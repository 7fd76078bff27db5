// The window that is up while a deployment is built: what is being done, how much of it, how long it may still take,
// and a Cancel that asks first. The build goes on while it asks.
#pragma once

#include "setup/build_worker.h"
#include "setup/resource.h"
#include "setup/taskbar_progress.h"
#include "window/dialog_impl.h"
#include "window/message_map.h"

#include <commctrl.h>

// Ids of the texts in which a build differs from other work that a window shows.
struct WorkTexts
{
    unsigned int title = IDS_BUILD_TITLE;
    unsigned int titleShare = IDS_BUILD_TITLE_SHARE;
    unsigned int cancelling = IDS_BUILD_CANCELLING;
    unsigned int cancelQuestion = IDS_BUILD_CANCEL_QUESTION;
    unsigned int shutdownReason = IDS_BUILD_SHUTDOWN_REASON;
};

class CBuildDialog : public CDialogImpl<CBuildDialog>
{
public:
    enum
    {
        IDD = IDD_BUILD
    };

    // `name`: the deployment's.
    CBuildDialog(const CString& name, BuildFunction build, const WorkTexts& texts = {});

    // Shows the window until the build has ended. A window that can't be made is a failed build: nothing is begun that
    // nobody could stop.
    [[nodiscard]] BuildResult Run();

    BEGIN_MSG_MAP(CBuildDialog)
    MESSAGE_HANDLER(WM_INITDIALOG, OnInitDialog)
    MESSAGE_HANDLER(WM_DESTROY, OnDestroy)
    MESSAGE_HANDLER(WM_QUERYENDSESSION, OnQueryEndSession)
    MESSAGE_HANDLER(WM_TIMER, OnTimer)
    MESSAGE_HANDLER(BUILD_MESSAGE_PROGRESS, OnProgress)
    MESSAGE_HANDLER(BUILD_MESSAGE_DONE, OnDone)
    COMMAND_ID_HANDLER(IDCANCEL, OnCancel)
    END_MSG_MAP()

private:
    LRESULT OnInitDialog(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnDestroy(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnQueryEndSession(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnTimer(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnProgress(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnDone(UINT, WPARAM, LPARAM, BOOL&);
    LRESULT OnCancel(WORD, WORD, HWND, BOOL&);

    void ShowProgress();
    void ShowStep(const BuildSnapshot& snapshot);
    void ShowAmount(const BuildSnapshot& snapshot);
    void ShowTimeLeft();
    void ShowText(int control, const CString& text);
    void SetMarquee(bool on);
    void CloseQuestion();

    CString m_strName;
    WorkTexts m_texts;
    BuildFunction m_build;

    CTaskbarProgress m_taskbar;
    BuildSnapshot m_shown;
    ULONGLONG m_bytesSince = 0; // tick count when the first byte was reported
    int m_thousandths = -1;
    bool m_bMarquee = false;
    bool m_bAsking = false; // the cancel question is up
    bool m_bCancelling = false;
    bool m_bDone = false;
    CBuildWorker m_worker; // last: its end waits for the build, which uses the rest
};
