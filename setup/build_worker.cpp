#include "setup/build_worker.h"

#include "setup/exit_codes.h"
#include "setup/resource.h"
#include "setup/run_record.h"
#include "setup/texts.h"

#include <exception>
#include <utility>

namespace {

constexpr ULONGLONG SHORTEST_INTERVAL_MILLISECONDS = 50;

} // namespace

CBuildWorker::~CBuildWorker()
{
    Cancel();
    if (m_thread.joinable()) {
        m_thread.join();
    }
}

void CBuildWorker::Start(HWND window, BuildFunction build)
{
    m_hWindow = window;
    m_build = std::move(build);
    m_thread = std::thread([this] { Run(); });
}

BuildSnapshot CBuildWorker::GetSnapshot()
{
    m_bNotified = false; // before the copy: what comes after it is reported by a message of its own
    const std::lock_guard lock(m_mutex);
    return m_snapshot;
}

BuildResult CBuildWorker::GetResult()
{
    if (m_thread.joinable()) {
        m_thread.join();
    }
    return std::move(m_result);
}

void CBuildWorker::OnStep(const CString& sentence)
{
    NoteSignOfLife();
    {
        const std::lock_guard lock(m_mutex);
        m_snapshot.strStep = sentence;
        m_snapshot.strFile.Empty();
        ++m_snapshot.nStep;
    }
    Notify(true);
}

bool CBuildWorker::OnProgress(std::uint64_t bytesDone, std::uint64_t bytesTotal, const CString& file)
{
    NoteSignOfLife();
    {
        const std::lock_guard lock(m_mutex);
        m_snapshot.bytesDone = bytesDone;
        m_snapshot.bytesTotal = bytesTotal;
        m_snapshot.strFile = file;
    }
    Notify(false);
    return !m_bCancelled;
}

void CBuildWorker::Notify(bool atOnce)
{
    const ULONGLONG now = GetTickCount64();
    if (!atOnce && now - m_notifiedAt < SHORTEST_INTERVAL_MILLISECONDS) {
        return;
    }
    m_notifiedAt = now;
    if (!m_bNotified.exchange(true) && !m_post(m_hWindow, BUILD_MESSAGE_PROGRESS, 0, 0)) {
        m_bNotified = false; // a full queue: the next piece of news tries again
    }
}

void CBuildWorker::Run() noexcept
{
    try {
        try {
            m_result = m_build(*this);
        } catch (const std::exception& exception) {
            const CString what(
                TextFromUtf8(exception.what(), std::char_traits<char>::length(exception.what())));
            m_result.error = {SETUP_FAILED, SetupText(IDS_BUILD_BROKE_OFF, {what})};
        }
    } catch (...) { // something foreign, or no memory for the sentence
        m_result.error.code = SETUP_FAILED;
    }
    // The window waits for this one message; a full queue empties, as its thread does nothing but read it.
    while (!m_post(m_hWindow, BUILD_MESSAGE_DONE, 0, 0) && IsWindow(m_hWindow)) {
        SwitchToThread();
    }
}
