#include "catalog/service_exchange.h"

#include "base/handle.h"
#include "catalog/catalog_limits.h"
#include "catalog/catalog_query.h"
#include "catalog/web_address.h"

#include <wininet.h>

#include <atomic>
#include <exception>
#include <memory>
#include <string>

static_assert(CATALOG_TIMED_OUT == ERROR_INTERNET_TIMEOUT &&
              CATALOG_INTERNAL_ERROR == ERROR_INTERNET_INTERNAL_ERROR &&
              CATALOG_ADDRESS_INVALID == ERROR_INTERNET_INVALID_URL &&
              CATALOG_SCHEME_UNKNOWN == ERROR_INTERNET_UNRECOGNIZED_SCHEME &&
              CATALOG_SIGN_IN_REFUSED == ERROR_INTERNET_LOGIN_FAILURE &&
              CATALOG_NOT_FOUND == ERROR_INTERNET_ITEM_NOT_FOUND &&
              CATALOG_CANNOT_CONNECT == ERROR_INTERNET_CANNOT_CONNECT &&
              CATALOG_CONNECTION_BROKEN == ERROR_INTERNET_CONNECTION_ABORTED &&
              CATALOG_LEFT_HTTPS == ERROR_INTERNET_HTTPS_TO_HTTP_ON_REDIR &&
              CATALOG_ANSWER_INVALID == ERROR_HTTP_INVALID_SERVER_RESPONSE &&
              CATALOG_REDIRECT_FAILED == ERROR_HTTP_REDIRECT_FAILED);

namespace {

constexpr wchar_t AGENT[] = L"SETUP";
// No cache, no cookies, no sign-in with the user's own account, no redirection of the library's own: it knows no limit.
constexpr DWORD REQUEST_FLAGS = INTERNET_FLAG_RELOAD | INTERNET_FLAG_NO_CACHE_WRITE |
                                INTERNET_FLAG_PRAGMA_NOCACHE | INTERNET_FLAG_NO_COOKIES |
                                INTERNET_FLAG_NO_AUTH | INTERNET_FLAG_NO_AUTO_REDIRECT | INTERNET_FLAG_NO_UI;

struct InternetKind : NullableKind<HINTERNET>
{
    static void Close(HINTERNET handle) noexcept { InternetCloseHandle(handle); }
};
using CInternetOwner = CHandleOwner<InternetKind>;

// Some systems know the limits on one kind of handle, some on another.
void SetTimeLimits(HINTERNET handle)
{
    for (const DWORD option :
         {INTERNET_OPTION_CONNECT_TIMEOUT, INTERNET_OPTION_SEND_TIMEOUT, INTERNET_OPTION_RECEIVE_TIMEOUT}) {
        DWORD limit = STEP_TIME_LIMIT;
        InternetSetOptionW(handle, option, &limit, sizeof limit);
    }
    DWORD once = 1;
    InternetSetOptionW(handle, INTERNET_OPTION_CONNECT_RETRIES, &once, sizeof once);
}

// Where an address leads, for the library's calls.
struct AddressParts
{
    CString strHost;
    CString strTarget; // path and query
    INTERNET_PORT port = 0;
    bool isSecure = false;
};

bool SplitAddress(const CString& address, AddressParts& parts)
{
    URL_COMPONENTSW found = {};
    found.dwStructSize = sizeof found;
    found.dwHostNameLength = found.dwUrlPathLength = found.dwExtraInfoLength =
        1; // asks for places in the address
    if (!IsWebAddress(address, REQUEST_ADDRESS_LIMIT) || !InternetCrackUrlW(address, 0, 0, &found)) {
        return false;
    }
    parts.strHost = CString(found.lpszHostName, static_cast<int>(found.dwHostNameLength));
    parts.strTarget = CString(found.lpszUrlPath, static_cast<int>(found.dwUrlPathLength)) +
                      CString(found.lpszExtraInfo, static_cast<int>(found.dwExtraInfoLength));
    parts.port = found.nPort;
    parts.isSecure = found.nScheme == INTERNET_SCHEME_HTTPS;
    return found.nScheme == INTERNET_SCHEME_HTTP || parts.isSecure;
}

DWORD QueryNumber(HINTERNET request, DWORD what, DWORD otherwise)
{
    DWORD number = 0;
    DWORD size = sizeof number;
    return HttpQueryInfoW(request, what | HTTP_QUERY_FLAG_NUMBER, &number, &size, nullptr) ? number
                                                                                           : otherwise;
}

// The exchange itself, on the thread of its own. After each call that may wait it looks whether anybody still wants the answer.
class CExchange
{
public:
    CExchange(const CString& address, const std::atomic<bool>& abandoned)
        : m_address(address), m_abandoned(abandoned)
    {
    }

    ServiceAnswer Run()
    {
        m_session.reset(InternetOpenW(AGENT, INTERNET_OPEN_TYPE_PRECONFIG, nullptr, nullptr, 0));
        if (!m_session) {
            return {ErrorOfCall(GetLastError(), 0), {}};
        }
        SetTimeLimits(m_session.get());
        for (int hop = 0; m_answer.error == 0 && hop <= REDIRECT_LIMIT; ++hop) {
            if (!Send()) {
                break;
            }
            const DWORD status = QueryNumber(m_request.get(), HTTP_QUERY_STATUS_CODE, 0);
            if (!IsRedirectStatus(status)) {
                m_answer.error = ErrorOfStatus(status);
                ReadBody();
                return m_answer;
            }
            Redirect();
        }
        m_answer.error = m_answer.error == 0 ? CATALOG_REDIRECT_FAILED : m_answer.error;
        return m_answer;
    }

private:
    // Notes the number of a call that came back without success, by how long it took.
    bool Note(bool done)
    {
        const DWORD error = GetLastError();
        if (m_abandoned) {
            m_answer.error = CATALOG_TIMED_OUT;
        } else if (!done) {
            m_answer.error = ErrorOfCall(error, GetTickCount64() - m_callStart);
        }
        return m_answer.error == 0;
    }

    bool Send()
    {
        AddressParts parts;
        if (!SplitAddress(m_address, parts)) {
            m_answer.error = CATALOG_ADDRESS_INVALID;
            return false;
        }
        m_request.reset();
        m_callStart = GetTickCount64();
        m_connection.reset(InternetConnectW(m_session.get(), parts.strHost, parts.port, nullptr, nullptr,
                                            INTERNET_SERVICE_HTTP, 0, 0));
        if (!Note(static_cast<bool>(m_connection))) {
            return false;
        }
        SetTimeLimits(m_connection.get());
        const wchar_t* accepted[] = {L"application/xml", L"text/xml", nullptr};
        m_request.reset(HttpOpenRequestW(m_connection.get(), nullptr, parts.strTarget, nullptr, nullptr,
                                         accepted,
                                         REQUEST_FLAGS | (parts.isSecure ? INTERNET_FLAG_SECURE : 0), 0));
        if (!Note(static_cast<bool>(m_request))) {
            return false;
        }
        SetTimeLimits(m_request.get());
        m_callStart = GetTickCount64();
        return Note(HttpSendRequestW(m_request.get(), nullptr, 0, nullptr, 0));
    }

    void Redirect()
    {
        wchar_t location[INTERNET_MAX_URL_LENGTH + 1] = {};
        DWORD size = sizeof location;
        wchar_t full[INTERNET_MAX_URL_LENGTH + 1] = {};
        DWORD length = INTERNET_MAX_URL_LENGTH;
        if (!HttpQueryInfoW(m_request.get(), HTTP_QUERY_LOCATION, location, &size, nullptr) ||
            location[0] == L'\0' || !InternetCombineUrlW(m_address, location, full, &length, ICU_NO_ENCODE) ||
            !IsWebAddress(full, REQUEST_ADDRESS_LIMIT)) {
            m_answer.error = CATALOG_REDIRECT_FAILED;
            return;
        }
        AddressParts from;
        AddressParts to;
        if (SplitAddress(m_address, from) && SplitAddress(full, to) && from.isSecure && !to.isSecure) {
            m_answer.error = CATALOG_LEFT_HTTPS;
        }
        m_address = full;
    }

    void ReadBody()
    {
        const bool hasLength = HasLength();
        const DWORD length = QueryNumber(m_request.get(), HTTP_QUERY_CONTENT_LENGTH, MAXDWORD);
        if (m_answer.error == 0 && hasLength && length > ANSWER_BYTES_LIMIT) {
            m_answer.error = CATALOG_ANSWER_INVALID;
        }
        while (m_answer.error == 0) {
            char part[4096];
            DWORD read = 0;
            m_callStart = GetTickCount64();
            if (!Note(InternetReadFile(m_request.get(), part, sizeof part, &read)) || read == 0) {
                break;
            }
            m_answer.body.append(part, read);
            if (m_answer.body.size() > ANSWER_BYTES_LIMIT) {
                m_answer.error = CATALOG_ANSWER_INVALID;
            }
        }
        // A connection that closes too early reads like the end.
        if (m_answer.error == 0 && hasLength && m_answer.body.size() != length) {
            m_answer.error = CATALOG_ANSWER_INVALID;
        }
    }

    bool HasLength()
    {
        wchar_t text[64] = {};
        DWORD size = sizeof text;
        return HttpQueryInfoW(m_request.get(), HTTP_QUERY_CONTENT_LENGTH, text, &size, nullptr) ||
               GetLastError() != ERROR_HTTP_HEADER_NOT_FOUND;
    }

    CString m_address;
    const std::atomic<bool>& m_abandoned;
    CInternetOwner
        m_session; // the handles go in the order in which they depend on each other, the request first
    CInternetOwner m_connection;
    CInternetOwner m_request;
    ULONGLONG m_callStart = 0;
    ServiceAnswer m_answer;
};

// What the caller and the thread share; the last one frees it.
struct Inquiry
{
    CString strAddress;
    std::atomic<bool> abandoned = false;
    ServiceAnswer answer; // the thread's until it has ended
};

struct ThreadStart
{
    std::shared_ptr<Inquiry> inquiry;
    CModuleOwner library; // this one, loaded as long as the thread runs
};

ServiceAnswer RunCaught(const Inquiry& inquiry)
{
    try {
        return CExchange(inquiry.strAddress, inquiry.abandoned).Run();
    } catch (const std::exception&) {
        return {CATALOG_INTERNAL_ERROR, {}};
    }
}

DWORD WINAPI AskOnThread(void* parameter)
{
    HMODULE library = nullptr;
    {
        const std::unique_ptr<ThreadStart> start(static_cast<ThreadStart*>(parameter));
        library = start->library.release();
        start->inquiry->answer = RunCaught(*start->inquiry);
    }
    FreeLibraryAndExitThread(library, 0);
}

} // namespace

ServiceAnswer AskService(const CString& address)
{
    const auto inquiry = std::make_shared<Inquiry>();
    inquiry->strAddress = address;
    auto start = std::make_unique<ThreadStart>();
    start->inquiry = inquiry;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                            reinterpret_cast<const wchar_t*>(&AskOnThread), start->library.put())) {
        return {CATALOG_INTERNAL_ERROR, {}};
    }
    const CKernelOwner thread(CreateThread(nullptr, 0, AskOnThread, start.get(), 0, nullptr));
    if (!thread) {
        return {CATALOG_INTERNAL_ERROR, {}};
    }
    start.release(); // the thread's
    if (WaitForSingleObject(thread.get(), EXCHANGE_TIME_LIMIT) != WAIT_OBJECT_0) {
        inquiry->abandoned = true;
        return {CATALOG_TIMED_OUT, {}};
    }
    return inquiry->answer;
}
