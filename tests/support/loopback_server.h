// A web server of a test's own on the loopback address, which answers each path as the test says and misbehaves on demand.
//
//   CLoopbackServer server;
//   server.Serve(L"/patch.msp", ServeBody("contents"));
//   server.Serve(L"/slow.msp", ServeStall("half", 8));
//   ... use server.Url(L"/patch.msp"), look at server.GetRequests() ...
//
// A path that nobody serves gets 404. A handler may be replaced at any time; a connection keeps the one it began with. Every
// connection ends with its answer. Nothing is paced by time but what is slow or endless; all else that waits does so until the other side has gone or
// the server object ends, and that ends all threads and sockets. Nothing may still be using the network when it goes, unless that
// copes with a connection that closes. Link rollout_loopback_server.
#pragma once

#include "base/string.h"

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

struct LoopbackRequest
{
    std::string method;
    std::string path;                           // without the query
    std::string query;                          // without "?", as it was sent
    std::map<std::string, std::string> headers; // names in lower case
};

class CLoopbackServer;

// One connection, for handlers of a test's own. False from a sending call: the other side has gone, or the server ends.
class CLoopbackConnection
{
public:
    CLoopbackConnection(CLoopbackServer& server, std::uintptr_t socket);
    ~CLoopbackConnection();
    CLoopbackConnection(const CLoopbackConnection&) = delete;
    CLoopbackConnection& operator=(const CLoopbackConnection&) = delete;

    const LoopbackRequest& GetRequest() const { return m_request; }
    bool Send(std::string_view bytes);
    // Status line, "Connection: close", the headers (each with its line end), the blank line.
    bool SendHead(int status, std::string_view headers);
    // Until the other side goes or the server ends.
    void Stall();
    // The other side sees a connection that was reset; what it hasn't read yet may be lost.
    void Reset();
    // False at once when the server ends, otherwise true after the time.
    bool Pace(unsigned int milliseconds);

private:
    friend class CLoopbackServer;
    bool ReadRequest();
    bool WaitUntilReady(bool toSend);
    void Close();

    CLoopbackServer& m_server;
    std::uintptr_t m_socket;
    LoopbackRequest m_request;
};

using LoopbackHandler = std::function<void(CLoopbackConnection&)>;

class CLoopbackServer
{
public:
    CLoopbackServer();
    ~CLoopbackServer();
    CLoopbackServer(const CLoopbackServer&) = delete;
    CLoopbackServer& operator=(const CLoopbackServer&) = delete;

    // "http://127.0.0.1:<port>" and the path.
    CString Url(const wchar_t* path) const;
    // The same of a port that refuses connections as long as the server stands.
    CString RefusedUrl(const wchar_t* path) const;
    // From now on the closed port listens and connects nobody: who tries waits. False when the system connects all the same.
    [[nodiscard]] bool StallConnections();
    void Serve(const wchar_t* path, LoopbackHandler handler);

    std::vector<LoopbackRequest> GetRequests() const;
    // False when so many requests have not come within 30 seconds.
    [[nodiscard]] bool WaitForRequests(std::size_t count);
    // False when a connection is still being answered after 30 seconds.
    [[nodiscard]] bool WaitUntilIdle();

private:
    friend class CLoopbackConnection;
    struct Worker
    {
        std::thread thread;
        bool done = false;
    };

    void Accept();
    void Answer(Worker& worker, std::uintptr_t socket);
    // Notes the request.
    LoopbackHandler FindHandler(const LoopbackRequest& request);

    std::uintptr_t m_listener;
    std::uintptr_t m_closed; // bound, and never listens
    int m_port = 0;
    int m_closedPort = 0;
    std::vector<std::uintptr_t> m_waiting; // connections that fill the closed port's queue
    mutable std::mutex m_mutex;            // of all that follows
    std::condition_variable m_changed;
    bool m_ending = false;
    std::map<std::string, LoopbackHandler> m_handlers;
    std::vector<LoopbackRequest> m_requests;
    std::list<Worker> m_workers;
    std::thread m_acceptor;
};

// ---- answers as they should be ---------------------------------------------------------------------------------------

// 200 with its length.
LoopbackHandler ServeBody(std::string body, std::string type = "application/octet-stream");
// 200 with so many bytes, of which only one block is ever in memory: byte `index` is ServedByte(index).
LoopbackHandler ServeBytes(unsigned long long bytes);
char ServedByte(unsigned long long index);

// A body that the test releases in steps, so that it knows where the other side stands: one object a request.
class CServedSteps
{
public:
    explicit CServedSteps(std::string body) : m_body(std::move(body)) {}
    void ReleaseHeaders();
    void Release(std::size_t bytes); // the headers too, when they haven't gone
    void ReleaseAll() { Release(m_body.size()); }

private:
    friend LoopbackHandler ServeInSteps(std::shared_ptr<CServedSteps> steps);
    // False when the server ends.
    bool WaitForHeaders(CLoopbackConnection& connection);
    // For more than `sent` bytes.
    bool WaitForMore(CLoopbackConnection& connection, std::size_t sent, std::size_t& released);
    bool Wait(CLoopbackConnection& connection, const std::function<bool()>& isDue);

    const std::string m_body;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    bool m_headers = false;
    std::size_t m_released = 0;
};
LoopbackHandler ServeInSteps(std::shared_ptr<CServedSteps> steps);

// ---- answers that are odd, and still whole ---------------------------------------------------------------------------

// Any status, with a short body (204 and 304 without one) and further headers, each with "\r\n" behind it.
LoopbackHandler ServeStatus(int status, std::string headers = {});
// 302 to the address.
LoopbackHandler ServeRedirect(CString address);
// 301 to itself, at most `limit` times; then 500.
LoopbackHandler ServeRedirectToItself(int limit = 200);
LoopbackHandler ServeWithoutLength(std::string body);
// The length of the headers is not that of the body.
LoopbackHandler ServeWrongLength(std::string body, unsigned long long length);
constexpr unsigned long long SERVED_HUGE_LENGTH = 5ull << 30;
LoopbackHandler ServeChunked(std::string body);
// "Content-Encoding: gzip" in front of a real gzip stream that stores the body as it is.
LoopbackHandler ServeCompressed(const std::string& body);
// 200 with length 0, 200 with a page for people.
LoopbackHandler ServeNothing();
LoopbackHandler ServeHtml();

// ---- answers that break off or never end -----------------------------------------------------------------------------

LoopbackHandler ServeReset();
// The length of the whole body, `bytes` of it, then a reset.
LoopbackHandler ServeResetInBody(std::string body, std::size_t bytes);
LoopbackHandler ServeStall();
LoopbackHandler ServeStallInBody(std::string body, std::size_t bytes);
// All but the last byte, then the connection closes as if that were all.
LoopbackHandler ServeWithoutLastByte(std::string body);
// A byte of headers and body at a time.
LoopbackHandler ServeSlowly(std::string body, unsigned int milliseconds = 1000);
// Header after header.
LoopbackHandler ServeEndlessHeaders(unsigned int milliseconds = 10);
// A body without a length and without an end.
LoopbackHandler ServeEndlessBody();

// ---- documents that no reader of XML should swallow -------------------------------------------------------------------

std::string XmlCutOff();
std::string XmlEntityBomb();
