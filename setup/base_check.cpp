#include "setup/base_check.h"

#include "base/path_text.h"
#include "setup/build_dialog.h"
#include "setup/exit_codes.h"
#include "setup/resource.h"
#include "setup/run_record.h"
#include "setup/text_forms.h"
#include "setup/texts.h"
#include "window/wait_cursor.h"

#include <atomic>
#include <mutex>
#include <thread>

namespace {

constexpr std::size_t NAMED_FINDINGS = 10;   // more would make a box that no screen holds
constexpr std::size_t LOGGED_FINDINGS = 100; // --verify names all
constexpr DWORD MOMENT_MILLISECONDS = 1000;  // a window for less would only flicker

// Work on a thread of its own, which a window may be put in front of.
class CBackgroundCheck final : private IBuildProgress
{
public:
    explicit CBackgroundCheck(std::function<void(IBuildProgress&)> work)
        : m_done(CreateEventW(nullptr, TRUE, FALSE, nullptr)), m_thread([this, work = std::move(work)] {
              work(*this);
              SetEvent(m_done.get());
          })
    {
    }
    CBackgroundCheck(const CBackgroundCheck&) = delete;
    CBackgroundCheck& operator=(const CBackgroundCheck&) = delete;
    ~CBackgroundCheck()
    {
        m_cancelled = true;
        m_thread.join();
    }

    // Answers what others send to this thread's windows meanwhile. True when the work is done.
    bool IsDoneWithin(DWORD milliseconds) const
    {
        const ULONGLONG end = GetTickCount64() + milliseconds;
        const HANDLE done = m_done.get();
        for (ULONGLONG now = GetTickCount64(); now < end; now = GetTickCount64()) {
            const DWORD waited =
                MsgWaitForMultipleObjects(1, &done, FALSE, static_cast<DWORD>(end - now), QS_SENDMESSAGE);
            if (waited != WAIT_OBJECT_0 + 1) {
                return waited == WAIT_OBJECT_0;
            }
            MSG message;
            PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | PM_QS_SENDMESSAGE);
        }
        return WaitForSingleObject(done, 0) == WAIT_OBJECT_0;
    }

    // Reports to the window until the work is done.
    void ReportTo(IBuildProgress& window)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_window = &window;
            window.OnStep(m_step);
        }
        WaitForSingleObject(m_done.get(), INFINITE);
        const std::lock_guard lock(m_mutex);
        m_window = nullptr;
    }

private:
    void OnStep(const CString& sentence) override
    {
        NoteSignOfLife();
        const std::lock_guard lock(m_mutex);
        m_step = sentence;
        if (m_window) {
            m_window->OnStep(sentence);
        }
    }

    bool OnProgress(std::uint64_t done, std::uint64_t total, const CString& file) override
    {
        NoteSignOfLife();
        const std::lock_guard lock(m_mutex);
        return !m_cancelled && (!m_window || m_window->OnProgress(done, total, file));
    }

    CKernelOwner m_done;
    std::atomic<bool> m_cancelled = false;
    std::mutex m_mutex; // guards what follows
    IBuildProgress* m_window = nullptr;
    CString m_step;
    std::thread m_thread; // last: it uses the rest
};

constexpr WorkTexts CHECK_TEXTS = {IDS_CHECK_TITLE, IDS_CHECK_TITLE_SHARE, IDS_CHECK_CANCELLING,
                                   IDS_CHECK_CANCEL_QUESTION, IDS_CHECK_SHUTDOWN_REASON};

CString FindingLines(const VerifyResult& result)
{
    CString lines;
    for (std::size_t index = 0; index < result.findings.size() && index < NAMED_FINDINGS; ++index) {
        lines += L"\n" + FindingLine(result.findings[index]);
    }
    if (result.findings.size() > NAMED_FINDINGS) {
        lines +=
            L"\n" + SetupText(IDS_REPLACE_MORE_FILES,
                              {NumberText(static_cast<long long>(result.findings.size() - NAMED_FINDINGS))});
    }
    return lines;
}

} // namespace

CString BaseQuestion(const VerifyResult& result)
{
    const unsigned int text =
        result.verdict == VerifyVerdict::Differs ? IDS_BASE_DIFFERS : IDS_BASE_UNDETERMINED;
    return SetupText(text, {VerdictSentence(result), FindingLines(result)});
}

bool CBaseCheck::Check(CSetupHost& host)
{
    const CString folder = host.GetBaseFolder();
    const int opening = host.CountProductOpenings();
    if (folder.IsEmpty() || (folder == m_strChecked && opening == m_nOpening)) {
        return true;
    }
    const VerifyResult result = Verify(folder);
    if (result.bCancelled) {
        return false;
    }
    LogFindings(result);
    const bool goesOn = m_bUnattended || result.verdict == VerifyVerdict::AsBuilt || AskPerson(result);
    m_strChecked = goesOn ? folder : CString();
    m_nOpening = opening;
    return goesOn;
}

VerifyResult CBaseCheck::Verify(const CString& folder)
{
    VerifyResult result;
    CString complaint;
    {
        const CWaitCursor waitCursor;
        CBackgroundCheck check(
            [&](IBuildProgress& progress) { complaint = m_verify(folder, progress, result); });
        if (!check.IsDoneWithin(MOMENT_MILLISECONDS)) {
            CBuildDialog dialog(
                LastName(folder),
                [&check](IBuildProgress& window) {
                    check.ReportTo(window);
                    return BuildResult();
                },
                CHECK_TEXTS);
            const BuildResult shown = dialog.Run();
            if (shown.error) { // no window: it goes on without one
                m_log.Line(L"Warning: " + shown.error.message);
            }
            while (!check.IsDoneWithin(MOMENT_MILLISECONDS)) {
            }
        }
    }
    if (!complaint.IsEmpty()) {
        result = VerifyResult();
        result.unknown.push_back(complaint);
    }
    return result;
}

void CBaseCheck::LogFindings(const VerifyResult& result)
{
    const bool isGood = result.verdict == VerifyVerdict::AsBuilt;
    m_log.Line((isGood ? CString() : CString(L"Warning: ")) + VerdictSentence(result));
    for (std::size_t index = 0; index < result.findings.size() && index < LOGGED_FINDINGS; ++index) {
        m_log.Line(L"  " + FindingLine(result.findings[index]));
    }
    if (result.findings.size() > LOGGED_FINDINGS) {
        m_log.Line(L"  Setup.exe --verify names all " +
                   NumberText(static_cast<long long>(result.findings.size())) + L".");
    }
}

bool CBaseCheck::AskPerson(const VerifyResult& result)
{
    const CString question = BaseQuestion(result);
    const bool yes = MessageBoxW(nullptr, question, SetupText(IDS_PROGRAM_TITLE),
                                 MB_YESNO | MB_ICONWARNING | MB_DEFBUTTON2 | MB_SETFOREGROUND) == IDYES;
    m_log.Line(L"Question \"" + OneLine(question) + (yes ? L"\" = yes" : L"\" = no"));
    return yes;
}
