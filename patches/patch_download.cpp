#include "patches/patch_download.h"

#include "patches/patch_text_rules.h"
#include "window/message_wait.h"

#include <windows.h>

#include <shlwapi.h>
#include <wininet.h>

#include <vector>

namespace {

struct InternetKind : NullableKind<HINTERNET>
{
    static void Close(HINTERNET handle) noexcept { ::InternetCloseHandle(handle); }
};
using CInternetOwner = CHandleOwner<InternetKind>;

constexpr DWORD CONNECT_LIMIT = 60000; // milliseconds
// Between two arrivals, in milliseconds: what Windows does by itself, and Wine on request.
constexpr DWORD RECEIVE_LIMIT = 30000;
constexpr DWORD READ_BYTES = 1024;
constexpr int CHUNKS_BETWEEN_TESTS = 5;
constexpr DWORD REQUEST_FLAGS =
    INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE | INTERNET_FLAG_KEEP_CONNECTION;
static_assert(REQUEST_FLAGS == 0x84400000);
constexpr DWORD QUEUE_FULL_PAUSE = 20; // milliseconds until a message is posted again
constexpr DWORD FORMER_RUN_PAUSE = 50; // milliseconds between two looks for a cancel
constexpr DWORD CANCELED_IN_TIME = ERROR_INTERNET_OPERATION_CANCELLED;
constexpr DWORD NOTHING_TO_REPORT = 0;

// Why a download ended; thrown where it happened, and caught at the worker's end alone.
struct DownloadFailure
{
    DWORD code;
};

[[noreturn]] void Fail(DWORD code)
{
    throw DownloadFailure{code};
}

void Require(bool success)
{
    if (!success) {
        Fail(::GetLastError());
    }
}

// The file's errors travel as results of the component model.
void RequireFile(bool success)
{
    if (!success) {
        Fail(static_cast<DWORD>(HRESULT_FROM_WIN32(::GetLastError())));
    }
}

struct ServerAddress
{
    CString strHost;
    CString strPath;
    INTERNET_PORT port = 0;
    DWORD service = 0;
};

// A query is left behind: it doesn't reach the server. So are user and password.
ServerAddress SplitAddress(const CString& url)
{
    const auto capacity = static_cast<DWORD>(url.GetLength()) + 1;
    std::vector<wchar_t> texts(std::size_t{6} * capacity);
    URL_COMPONENTSW parts = {};
    parts.dwStructSize = sizeof parts;
    wchar_t** const buffers[] = {&parts.lpszScheme,   &parts.lpszHostName, &parts.lpszUserName,
                                 &parts.lpszPassword, &parts.lpszUrlPath,  &parts.lpszExtraInfo};
    DWORD* const lengths[] = {&parts.dwSchemeLength,   &parts.dwHostNameLength, &parts.dwUserNameLength,
                              &parts.dwPasswordLength, &parts.dwUrlPathLength,  &parts.dwExtraInfoLength};
    for (std::size_t index = 0; index < std::size(buffers); ++index) {
        *buffers[index] = texts.data() + index * capacity;
        *lengths[index] = capacity;
    }
    // The outcome is judged by what the call leaves behind, not by its result.
    static_cast<void>(::InternetCrackUrlW(url, 0, 0, &parts));
    if (const DWORD error = ::GetLastError()) {
        Fail(error);
    }
    return {parts.lpszHostName, parts.lpszUrlPath, parts.nPort, static_cast<DWORD>(parts.nScheme)};
}

DWORD QueryNumber(HINTERNET request, DWORD what)
{
    DWORD number = 0;
    DWORD bytes = sizeof number;
    Require(::HttpQueryInfoW(request, HTTP_QUERY_FLAG_NUMBER | what, &number, &bytes, nullptr));
    return number;
}

void CheckConnection()
{
    Require(::InternetCheckConnectionW(nullptr, 0, 0));
}

} // namespace

struct SharedDownload
{
    PatchDownload& state;
    CString strUrl;
    CString strTarget;
    HWND page = nullptr;
    LPARAM number = 0;
    std::shared_ptr<SharedDownload> former; // until it has ended
    std::atomic<bool> isAbandoned{false};   // nobody listens any more
    CKernelOwner ended{::CreateEventW(nullptr, TRUE, FALSE, nullptr)};
};

namespace {

class CDownloadWorker
{
public:
    explicit CDownloadWorker(std::shared_ptr<SharedDownload> run) : m_run(std::move(run)) {}
    // The code that it ended with.
    DWORD Work();

private:
    void Download();
    void WaitForFormerRun();
    void Connect();
    void SendRequest();
    void CheckStatus();
    void ReadFile(DWORD promised);
    void RemoveTarget();
    void Report(DWORD code);
    bool IsCancelRequested();
    void StopIfCanceled();
    void Post(UINT message, WPARAM wParam = 0) const;
    void Close();

    std::shared_ptr<SharedDownload> m_run;
    bool m_hasWritten = false; // the target is this worker's
    CInternetOwner m_session;
    CInternetOwner m_connection;
    CInternetOwner m_request;
    CFileOwner m_file;
};

DWORD CDownloadWorker::Work()
{
    DWORD code = NOTHING_TO_REPORT;
    if (::InternetAttemptConnect(0) != ERROR_SUCCESS) {
        return code; // without any network the page is left to whoever ends the setup
    }
    try {
        Download();
    } catch (const DownloadFailure& failure) {
        code = failure.code;
        RemoveTarget();
        Report(code);
    }
    Close();
    return code;
}

void CDownloadWorker::Download()
{
    WaitForFormerRun();
    Connect();
    SendRequest();
    CheckStatus();
    StopIfCanceled();
    CheckConnection();
    const DWORD promised = QueryNumber(m_request.get(), HTTP_QUERY_CONTENT_LENGTH);
    StopIfCanceled();
    m_file.reset(::CreateFileW(m_run->strTarget, GENERIC_WRITE, FILE_SHARE_READ, nullptr, CREATE_ALWAYS,
                               FILE_ATTRIBUTE_NORMAL, nullptr));
    RequireFile(static_cast<bool>(m_file));
    m_hasWritten = true;
    ReadFile(promised);
    Post(WM_PATCH_FINISHED); // whether all came that was promised is the page's to check
}

// It may still have the target open, and removes it.
void CDownloadWorker::WaitForFormerRun()
{
    // One that was canceled while it waited itself has left those before it.
    for (std::shared_ptr<SharedDownload> former = m_run->former; former; former = former->former) {
        while (::WaitForSingleObject(former->ended.get(), FORMER_RUN_PAUSE) == WAIT_TIMEOUT) {
            StopIfCanceled();
        }
    }
    m_run->former.reset();
}

void CDownloadWorker::Connect()
{
    m_session.reset(::InternetOpenW(L"SETUP", INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
    Require(static_cast<bool>(m_session));
    DWORD limit = CONNECT_LIMIT;
    Require(::InternetSetOptionW(m_session.get(), INTERNET_OPTION_CONNECT_TIMEOUT, &limit, sizeof limit));
    const ServerAddress address = SplitAddress(m_run->strUrl);
    // The scheme's number serves as that of the service: equal for http, unknown to the call for what it can't fetch.
    m_connection.reset(::InternetConnectW(m_session.get(), address.strHost, address.port, nullptr, nullptr,
                                          address.service, 0, 0));
    if (!m_connection) {
        // Of a service that it doesn't know the call says little (87), and Wine nothing: the page would wait for ever.
        const DWORD error = ::GetLastError();
        Fail(error != 0 && error != ERROR_INVALID_PARAMETER ? error : ERROR_INTERNET_UNRECOGNIZED_SCHEME);
    }
    limit = RECEIVE_LIMIT;
    static_cast<void>(
        ::InternetSetOptionW(m_connection.get(), INTERNET_OPTION_RECEIVE_TIMEOUT, &limit, sizeof limit));
    CheckConnection();
    const wchar_t* accepted[] = {L"*/*", nullptr};
    m_request.reset(::HttpOpenRequestW(m_connection.get(), nullptr, address.strPath, nullptr, nullptr,
                                       accepted, REQUEST_FLAGS, 0));
    Require(static_cast<bool>(m_request));
}

void CDownloadWorker::SendRequest()
{
    StopIfCanceled();
    CheckConnection();
    Require(::HttpSendRequestW(m_request.get(), nullptr, 0, nullptr, 0));
    StopIfCanceled();
}

// The status itself is reported nowhere. What is thrown is the error that the question for its text leaves: the number's room
// holds one character of it, so every text that is longer counts as a failure.
void CDownloadWorker::CheckStatus()
{
    if (QueryNumber(m_request.get(), HTTP_QUERY_STATUS_CODE) == HTTP_STATUS_OK) {
        return;
    }
    DWORD scratch = 0;
    DWORD bytes = sizeof scratch;
    static_cast<void>(::HttpQueryInfoW(m_request.get(), HTTP_QUERY_STATUS_TEXT, &scratch, &bytes, nullptr));
    Fail(::GetLastError());
}

void CDownloadWorker::ReadFile(DWORD promised)
{
    char buffer[READ_BYTES];
    double received = 0;
    int chunks = 0;
    DWORD read = 0;
    do {
        Require(::InternetReadFile(m_request.get(), buffer, sizeof buffer, &read));
        if (read > 0) {
            if (chunks == CHUNKS_BETWEEN_TESTS) {
                if (IsCancelRequested()) {
                    Fail(NOTHING_TO_REPORT);
                }
                chunks = 0;
            }
            DWORD written = 0;
            RequireFile(::WriteFile(m_file.get(), buffer, read, &written, nullptr));
            received += read;
            m_run->state.DownloadPercent = DownloadPercentage(received, promised);
            // Not repeated when the queue is full: the next one has a newer number.
            ::PostMessageW(m_run->page, WM_PATCH_PROGRESS, 0, m_run->number);
        }
        ++chunks;
    } while (read > 0);
}

// What stood in the target's place before goes too, but not for a page that is gone: another one may write there by now.
void CDownloadWorker::RemoveTarget()
{
    m_file.reset();
    if ((m_hasWritten || !m_run->isAbandoned) && ::PathFileExistsW(m_run->strTarget)) {
        ::DeleteFileW(m_run->strTarget);
    }
}

void CDownloadWorker::Report(DWORD code)
{
    if (code == ERROR_INTERNET_TIMEOUT) {
        Post(WM_PATCH_TIMEDOUT);
    } else if (code != NOTHING_TO_REPORT && !IsCancelRequested()) {
        Post(WM_PATCH_FAILED, code);
    }
}

// Each test that finds the request says so to the page. One too many does no harm there.
bool CDownloadWorker::IsCancelRequested()
{
    if (!m_run->isAbandoned && m_run->state.Stage() != StageCancelRequested) {
        return false;
    }
    Post(WM_PATCH_CANCELLED);
    return true;
}

void CDownloadWorker::StopIfCanceled()
{
    if (IsCancelRequested()) {
        Fail(CANCELED_IN_TIME);
    }
}

// Windows refuses a message while 10,000 wait. Without this one the page would wait for ever.
void CDownloadWorker::Post(UINT message, WPARAM wParam) const
{
    while (!m_run->isAbandoned && !::PostMessageW(m_run->page, message, wParam, m_run->number) &&
           ::IsWindow(m_run->page)) {
        ::Sleep(QUEUE_FULL_PAUSE);
    }
}

void CDownloadWorker::Close()
{
    m_request.reset();
    m_connection.reset();
    m_session.reset();
    m_file.reset();
}

// The library stays loaded while a worker runs, whoever lets go of it meanwhile.
HMODULE HoldThisLibrary()
{
    HMODULE module = nullptr;
    ::GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                         reinterpret_cast<const wchar_t*>(&HoldThisLibrary), &module);
    return module;
}

struct WorkerStart
{
    HMODULE library;
    std::shared_ptr<SharedDownload> run;
};

DWORD WINAPI DownloadThreadProc(void* argument)
{
    HMODULE library = nullptr;
    DWORD code = 0;
    {
        const std::unique_ptr<WorkerStart> start(static_cast<WorkerStart*>(argument));
        library = start->library;
        code = CDownloadWorker(start->run).Work();
        ::SetEvent(start->run->ended.get());
    }
    ::FreeLibraryAndExitThread(library, code);
}

} // namespace

void StartDownloadRun(PatchDownload& state, const CString& url)
{
    auto run = std::make_shared<SharedDownload>(state, url, state.DownloadTargetPath, state.PageWindow);
    run->number = state.lastRun ? state.lastRun->number + 1 : 1;
    run->former = std::exchange(state.lastRun, run);
    auto start = std::make_unique<WorkerStart>(HoldThisLibrary(), run);
    state.DownloadThread = ::CreateThread(nullptr, 0, DownloadThreadProc, start.get(), 0, nullptr);
    if (state.DownloadThread) {
        static_cast<void>(start.release()); // the worker's
        ::CloseHandle(state.DownloadThread);
        return;
    }
    const DWORD error = ::GetLastError();
    ::FreeLibrary(start->library);
    ::SetEvent(run->ended.get());
    ::PostMessageW(state.PageWindow, WM_PATCH_FAILED, error, run->number); // nobody else would
}

bool IsOfLastRun(const PatchDownload& state, LPARAM run)
{
    return run == 0 || (state.lastRun && state.lastRun->number == run);
}

void WaitForDownloadEnd(const PatchDownload& state)
{
    if (const std::shared_ptr<SharedDownload> run = state.lastRun) {
        static_cast<void>(
            WaitWithMessages(run->ended.get())); // a page that is left meanwhile doesn't wait on
    }
}

void AbandonDownload(const PatchDownload& state)
{
    if (state.lastRun) {
        state.lastRun->isAbandoned = true;
    }
}
