#include "setup/build_dialog.h"

#include "base/system_text.h"
#include "setup/exit_codes.h"
#include "setup/program_icon.h"
#include "setup/progress_rules.h"
#include "setup/texts.h"

#include <utility>

namespace {

constexpr UINT_PTR TIME_LEFT_TIMER = 1;
constexpr UINT TIME_LEFT_MILLISECONDS = 1000; // more often would only make a screen reader talk
constexpr DWORD LIVE_REGION_CHANGED = 0x8019; // EVENT_OBJECT_LIVEREGIONCHANGED, which older headers lack

CString TimeLeftText(const TimeLeft& left)
{
    const CString count = NumberText(left.count);
    switch (left.kind) {
    case TimeLeftKind::Seconds:
        return SetupText(IDS_BUILD_SECONDS_LEFT, {count});
    case TimeLeftKind::Minutes:
        return left.count == 1 ? SetupText(IDS_BUILD_MINUTE_LEFT)
                               : SetupText(IDS_BUILD_MINUTES_LEFT, {count});
    case TimeLeftKind::Hours:
        return SetupText(IDS_BUILD_HOURS_LEFT, {count});
    case TimeLeftKind::Unknown:
        break;
    }
    return CString();
}

} // namespace

CBuildDialog::CBuildDialog(const CString& name, BuildFunction build, const WorkTexts& texts)
    : m_strName(name), m_texts(texts), m_build(std::move(build))
{
}

BuildResult CBuildDialog::Run()
{
    if (DoModal(nullptr) == -1) {
        BuildResult result;
        result.error = {SETUP_FAILED, SystemErrorText(GetLastError())};
        return result;
    }
    return m_worker.GetResult();
}

LRESULT CBuildDialog::OnInitDialog(UINT, WPARAM, LPARAM, BOOL&)
{
    SetProgramIcon(*this);
    SetText(SetupText(m_texts.title, {m_strName}));
    ShowText(IDC_BUILD_STEP, SetupText(IDS_BUILD_STARTING));
    SendDlgItemMessage(IDC_BUILD_BAR, PBM_SETRANGE32, 0, 1000);
    m_taskbar.Attach(m_hWnd);
    SetMarquee(true);
    ShutdownBlockReasonCreate(m_hWnd, SetupText(m_texts.shutdownReason));
    SetTimer(TIME_LEFT_TIMER, TIME_LEFT_MILLISECONDS);
    m_worker.Start(m_hWnd, std::move(m_build));
    return TRUE;
}

LRESULT CBuildDialog::OnDestroy(UINT, WPARAM, LPARAM, BOOL&)
{
    KillTimer(TIME_LEFT_TIMER);
    ShutdownBlockReasonDestroy(m_hWnd);
    return 0;
}

LRESULT CBuildDialog::OnQueryEndSession(UINT, WPARAM, LPARAM, BOOL&)
{
    return FALSE; // the system shows the reason and lets the user decide
}

LRESULT CBuildDialog::OnTimer(UINT, WPARAM, LPARAM, BOOL&)
{
    ShowProgress();
    ShowTimeLeft();
    return 0;
}

LRESULT CBuildDialog::OnProgress(UINT, WPARAM, LPARAM, BOOL&)
{
    ShowProgress();
    return 0;
}

LRESULT CBuildDialog::OnDone(UINT, WPARAM, LPARAM, BOOL&)
{
    ShowProgress(); // the last step may not have been reported yet
    m_bDone = true;
    if (m_bAsking) {
        CloseQuestion(); // there is nothing left to cancel; OnCancel then ends the dialog
    } else {
        EndDialog(IDOK);
    }
    return 0;
}

LRESULT CBuildDialog::OnCancel(WORD, WORD, HWND, BOOL&)
{
    if (m_bAsking || m_bCancelling || m_bDone) {
        return 0;
    }
    m_bAsking = true;
    const int answer = MessageBox(SetupText(m_texts.cancelQuestion), SetupText(m_texts.title, {m_strName}),
                                  MB_YESNO | MB_ICONQUESTION | MB_DEFBUTTON2);
    m_bAsking = false;
    if (m_bDone) {
        EndDialog(IDOK);
    } else if (answer == IDYES) {
        m_bCancelling = true;
        m_worker.Cancel();
        CWindow(GetDlgItem(IDCANCEL)).EnableWindow(FALSE);
        ShowText(IDC_BUILD_STEP, SetupText(m_texts.cancelling));
        ShowText(IDC_BUILD_TIME_LEFT, CString());
        SetMarquee(true);
    }
    return 0;
}

void CBuildDialog::ShowProgress()
{
    const BuildSnapshot snapshot = m_worker.GetSnapshot();
    ShowStep(snapshot);
    ShowAmount(snapshot);
    m_shown = snapshot;
}

void CBuildDialog::ShowStep(const BuildSnapshot& snapshot)
{
    if (snapshot.nStep == m_shown.nStep) {
        return;
    }
    if (!m_bCancelling) {
        ShowText(IDC_BUILD_STEP, snapshot.strStep);
    }
}

void CBuildDialog::ShowAmount(const BuildSnapshot& snapshot)
{
    ShowText(IDC_BUILD_FILE, snapshot.strFile);
    if (snapshot.bytesTotal == 0) {
        return;
    }
    if (m_bytesSince == 0) {
        m_bytesSince = GetTickCount64();
    }
    const CString point = SetupText(IDS_DECIMAL_POINT);
    ShowText(IDC_BUILD_AMOUNT, SetupText(IDS_BUILD_AMOUNT, {ByteCountText(snapshot.bytesDone, point[0]),
                                                            ByteCountText(snapshot.bytesTotal, point[0])}));
    const int thousandths = DoneInThousand(snapshot.bytesDone, snapshot.bytesTotal);
    if (m_bCancelling || thousandths == m_thousandths) {
        return;
    }
    SetMarquee(false);
    if (thousandths / 10 != m_thousandths / 10) {
        SetText(SetupText(m_texts.titleShare, {NumberText(thousandths / 10), m_strName}));
    }
    m_thousandths = thousandths;
    SendDlgItemMessage(IDC_BUILD_BAR, PBM_SETPOS, static_cast<WPARAM>(thousandths));
    m_taskbar.Show(thousandths);
}

void CBuildDialog::ShowTimeLeft()
{
    if (m_bCancelling || m_bytesSince == 0) {
        return;
    }
    ShowText(IDC_BUILD_TIME_LEFT, TimeLeftText(EstimateTimeLeft(GetTickCount64() - m_bytesSince,
                                                                m_shown.bytesDone, m_shown.bytesTotal)));
}

void CBuildDialog::ShowText(int control, const CString& text)
{
    if (GetDlgItemText(control) == text) {
        return; // the same text anew would flicker, and be read out again
    }
    SetDlgItemText(control, text);
    if (control == IDC_BUILD_STEP) {
        NotifyWinEvent(LIVE_REGION_CHANGED, GetDlgItem(control), OBJID_CLIENT, CHILDID_SELF);
    }
}

void CBuildDialog::SetMarquee(bool on)
{
    if (on == m_bMarquee) {
        return;
    }
    m_bMarquee = on;
    CWindow bar(GetDlgItem(IDC_BUILD_BAR));
    bar.ModifyStyle(on ? 0 : PBS_MARQUEE, on ? PBS_MARQUEE : 0);
    bar.SendMessage(PBM_SETMARQUEE, on);
    if (on) {
        m_taskbar.ShowUnknown();
    }
}

void CBuildDialog::CloseQuestion()
{
    const HWND question = GetLastActivePopup(m_hWnd);
    if (question && question != m_hWnd) {
        ::PostMessageW(question, WM_COMMAND, IDNO, 0);
    }
}
