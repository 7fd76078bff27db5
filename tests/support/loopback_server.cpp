#include "tests/support/loopback_server.h"

#include <windows.h>
#include <winsock2.h>
#include <ws2tcpip.h>

#include <algorithm>
#include <cctype>
#include <chrono>
#include <iterator>
#include <stdexcept>
#include <utility>

namespace {

constexpr auto PATIENCE = std::chrono::seconds(30);
constexpr std::size_t LONGEST_REQUEST = 64u << 10;

sockaddr_in LoopbackAddress(int port)
{
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<u_short>(port));
    return address;
}

// A socket on a free port of the loopback address.
SOCKET BindSocket(int& port)
{
    const SOCKET made = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
    sockaddr_in address = LoopbackAddress(0);
    int length = sizeof address;
    if (made == INVALID_SOCKET || bind(made, reinterpret_cast<sockaddr*>(&address), length) != 0 ||
        getsockname(made, reinterpret_cast<sockaddr*>(&address), &length) != 0) {
        throw std::runtime_error("no socket on the loopback address");
    }
    port = ntohs(address.sin_port);
    return made;
}

std::string Utf8Of(const CString& text)
{
    std::string bytes;
    AppendUtf8(bytes, text);
    return bytes;
}

CString Address(int port, const wchar_t* path)
{
    return L"http://127.0.0.1:" + NumberText(port) + path;
}

std::string Lower(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char letter) { return static_cast<char>(std::tolower(letter)); });
    return text;
}

LoopbackRequest ParseRequest(const std::string& text)
{
    LoopbackRequest request;
    const std::size_t end = text.find("\r\n");
    const std::string line = text.substr(0, end);
    const std::size_t first = line.find(' ');
    const std::size_t second = line.find(' ', first + 1);
    request.method = line.substr(0, first);
    const std::string target =
        first == line.npos ? std::string() : line.substr(first + 1, second - first - 1);
    const std::size_t question = target.find('?');
    request.path = target.substr(0, question);
    request.query = question == target.npos ? std::string() : target.substr(question + 1);
    for (std::size_t start = end + 2; start < text.size();) {
        const std::size_t next = std::min(text.find("\r\n", start), text.size());
        const std::string header = text.substr(start, next - start);
        if (const std::size_t colon = header.find(':'); colon != header.npos) {
            const std::size_t value = std::min(header.find_first_not_of(' ', colon + 1), header.size());
            request.headers[Lower(header.substr(0, colon))] = header.substr(value);
        }
        start = next + 2;
    }
    return request;
}

} // namespace

// ---- connections -------------------------------------------------------------------------------------------------------

CLoopbackConnection::~CLoopbackConnection()
{
    Close();
}

CLoopbackConnection::CLoopbackConnection(CLoopbackServer& server, std::uintptr_t socket)
    : m_server(server), m_socket(socket)
{
    u_long atOnce = 1;
    ioctlsocket(m_socket, FIONBIO, &atOnce);
}

// In short turns: not every system ends a wait on a socket that another thread shuts down.
bool CLoopbackConnection::WaitUntilReady(bool toSend)
{
    while (Pace(0)) {
        fd_set sockets;
        FD_ZERO(&sockets);
        FD_SET(m_socket, &sockets);
        timeval turn = {0, 20000};
        const int ready = select(0, toSend ? nullptr : &sockets, toSend ? &sockets : nullptr, nullptr, &turn);
        if (ready != 0) {
            return ready > 0;
        }
    }
    return false;
}

bool CLoopbackConnection::Send(std::string_view bytes)
{
    while (!bytes.empty()) {
        const int sent =
            send(m_socket, bytes.data(), static_cast<int>(std::min<std::size_t>(bytes.size(), 1 << 20)), 0);
        if (sent > 0) {
            bytes.remove_prefix(static_cast<std::size_t>(sent));
        } else if (WSAGetLastError() != WSAEWOULDBLOCK || !WaitUntilReady(true)) {
            return false;
        }
    }
    return Pace(0);
}

bool CLoopbackConnection::SendHead(int status, std::string_view headers)
{
    return Send("HTTP/1.1 " + std::to_string(status) + " Status\r\nConnection: close\r\n" +
                std::string(headers) + "\r\n");
}

void CLoopbackConnection::Stall()
{
    char rest[256];
    while (WaitUntilReady(false) && recv(m_socket, rest, sizeof rest, 0) > 0) {
    }
}

bool CLoopbackConnection::Pace(unsigned int milliseconds)
{
    std::unique_lock lock(m_server.m_mutex);
    return !m_server.m_changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                        [this] { return m_server.m_ending; });
}

void CLoopbackConnection::Reset()
{
    const linger atOnce = {1, 0};
    setsockopt(m_socket, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&atOnce), sizeof atOnce);
    Close();
}

void CLoopbackConnection::Close()
{
    if (m_socket != INVALID_SOCKET) {
        closesocket(std::exchange(m_socket, INVALID_SOCKET));
    }
}

bool CLoopbackConnection::ReadRequest()
{
    std::string text;
    while (text.find("\r\n\r\n") == text.npos && text.size() < LONGEST_REQUEST) {
        char part[2048];
        const int count = WaitUntilReady(false) ? recv(m_socket, part, sizeof part, 0) : 0;
        if (count <= 0) {
            return false;
        }
        text.append(part, static_cast<std::size_t>(count));
    }
    m_request = ParseRequest(text);
    return true;
}

// ---- the server --------------------------------------------------------------------------------------------------------

CLoopbackServer::CLoopbackServer()
{
    SetEnvironmentVariableW(L"http_proxy", nullptr); // which would stand between this server and who asks it
    WSADATA data = {};
    WSAStartup(MAKEWORD(2, 2), &data);
    m_listener = BindSocket(m_port);
    m_closed = BindSocket(m_closedPort);
    if (listen(m_listener, SOMAXCONN) != 0) {
        throw std::runtime_error("no listening on the loopback address");
    }
    m_acceptor = std::thread([this] { Accept(); });
}

CLoopbackServer::~CLoopbackServer()
{
    {
        const std::lock_guard lock(m_mutex);
        m_ending = true;
    }
    m_changed.notify_all();
    int port = 0; // a connection wakes what accepts
    const SOCKET waker = BindSocket(port);
    const sockaddr_in address = LoopbackAddress(m_port);
    connect(waker, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    m_acceptor.join();
    for (const SOCKET used : {waker, static_cast<SOCKET>(m_listener), static_cast<SOCKET>(m_closed)}) {
        closesocket(used);
    }
    for (const std::uintptr_t used : m_waiting) {
        closesocket(used);
    }
    for (Worker& worker : m_workers) {
        worker.thread.join();
    }
    WSACleanup();
}

CString CLoopbackServer::Url(const wchar_t* path) const
{
    return Address(m_port, path);
}

CString CLoopbackServer::RefusedUrl(const wchar_t* path) const
{
    return Address(m_closedPort, path);
}

bool CLoopbackServer::StallConnections()
{
    constexpr int MORE_THAN_ANY_QUEUE = 64;
    listen(m_closed, 1);
    while (m_waiting.size() < MORE_THAN_ANY_QUEUE) {
        const SOCKET tried = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
        u_long atOnce = 1;
        ioctlsocket(tried, FIONBIO, &atOnce);
        m_waiting.push_back(tried);
        const sockaddr_in address = LoopbackAddress(m_closedPort);
        connect(tried, reinterpret_cast<const sockaddr*>(&address), sizeof address);
        fd_set sockets;
        FD_ZERO(&sockets);
        FD_SET(tried, &sockets);
        timeval turn = {0, 300000};
        if (select(0, nullptr, &sockets, nullptr, &turn) == 0) {
            return true; // the queue is full
        }
    }
    return false;
}

void CLoopbackServer::Serve(const wchar_t* path, LoopbackHandler handler)
{
    const std::lock_guard lock(m_mutex);
    m_handlers[Utf8Of(path)] = std::move(handler);
}

std::vector<LoopbackRequest> CLoopbackServer::GetRequests() const
{
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

bool CLoopbackServer::WaitForRequests(std::size_t count)
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, PATIENCE, [&] { return m_requests.size() >= count; });
}

bool CLoopbackServer::WaitUntilIdle()
{
    std::unique_lock lock(m_mutex);
    return m_changed.wait_for(lock, PATIENCE, [this] {
        return std::all_of(m_workers.begin(), m_workers.end(),
                           [](const Worker& worker) { return worker.done; });
    });
}

void CLoopbackServer::Accept()
{
    for (;;) {
        const SOCKET accepted = accept(m_listener, nullptr, nullptr);
        const std::lock_guard lock(m_mutex);
        if (m_ending) {
            closesocket(accepted);
            return;
        }
        if (accepted == INVALID_SOCKET) {
            continue;
        }
        for (auto worker = m_workers.begin(); worker != m_workers.end();) { // has released the lock for good
            const auto next = std::next(worker);
            if (worker->done) {
                worker->thread.join();
                m_workers.erase(worker);
            }
            worker = next;
        }
        Worker& worker = m_workers.emplace_back();
        worker.thread = std::thread([this, &worker, accepted] { Answer(worker, accepted); });
    }
}

void CLoopbackServer::Answer(Worker& worker, std::uintptr_t socket)
{
    {
        CLoopbackConnection connection(*this, socket);
        if (connection.ReadRequest()) {
            FindHandler(connection.GetRequest())(connection);
        }
    }
    const std::lock_guard lock(m_mutex);
    worker.done = true;
    m_changed.notify_all();
}

LoopbackHandler CLoopbackServer::FindHandler(const LoopbackRequest& request)
{
    const std::lock_guard lock(m_mutex);
    m_requests.push_back(request);
    m_changed.notify_all();
    const auto found = m_handlers.find(request.path);
    return found == m_handlers.end() ? ServeStatus(404) : found->second;
}
