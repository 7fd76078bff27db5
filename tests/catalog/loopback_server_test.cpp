// The server that the tests of the network stand on, seen through a bare socket.
#include "tests/support/loopback_server.h"

#include <windows.h>
#include <winsock2.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

namespace {

struct Received
{
    std::string bytes;
    int error = 0; // of the socket, when the connection didn't end in order

    std::string Body() const { return bytes.substr(bytes.find("\r\n\r\n") + 4); }
    bool Holds(const char* part) const { return bytes.find(part) != bytes.npos; }
};

class CLoopbackClient
{
public:
    CLoopbackClient(const CString& address, const std::string& target)
    {
        m_socket = socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
        sockaddr_in to = {};
        to.sin_family = AF_INET;
        to.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        const CString port = address.Mid(CString(L"http://127.0.0.1:").GetLength());
        to.sin_port = htons(static_cast<u_short>(_wtoi(port)));
        m_connected = connect(m_socket, reinterpret_cast<sockaddr*>(&to), sizeof to) == 0;
        const std::string request = "GET " + target + " HTTP/1.1\r\nHost: here\r\nX-Mark: 7\r\n\r\n";
        send(m_socket, request.data(), static_cast<int>(request.size()), 0);
    }
    ~CLoopbackClient() { closesocket(m_socket); }
    CLoopbackClient(const CLoopbackClient&) = delete;
    CLoopbackClient& operator=(const CLoopbackClient&) = delete;

    bool IsConnected() const { return m_connected; }

    // Up to so many bytes; fewer at the end of the connection.
    Received Receive(std::size_t limit = 1u << 20)
    {
        Received received;
        while (received.bytes.size() < limit) {
            char part[1024];
            const auto room = std::min(sizeof part, limit - received.bytes.size());
            const int count = recv(m_socket, part, static_cast<int>(room), 0);
            if (count <= 0) {
                received.error = count < 0 ? WSAGetLastError() : 0;
                break;
            }
            received.bytes.append(part, static_cast<std::size_t>(count));
        }
        return received;
    }

private:
    SOCKET m_socket;
    bool m_connected;
};

Received Fetch(const CLoopbackServer& server, const std::string& target)
{
    return CLoopbackClient(server.Url(L""), target).Receive();
}

} // namespace

TEST(LoopbackServerTest, ABodyComesWithItsLengthAndTheRequestIsRecorded)
{
    CLoopbackServer server;
    server.Serve(L"/a.msp", ServeBody("contents"));
    const Received received = Fetch(server, "/a.msp?key=1&b=%41");
    EXPECT_EQ(received.Body(), "contents");
    EXPECT_TRUE(received.Holds("Connection: close\r\n")) << received.bytes;
    EXPECT_TRUE(received.Holds("Content-Length: 8\r\n")) << received.bytes;
    EXPECT_EQ(received.error, 0);
    ASSERT_TRUE(server.WaitForRequests(1));
    const LoopbackRequest request = server.GetRequests().at(0);
    EXPECT_EQ(request.path, "/a.msp");
    EXPECT_EQ(request.query, "key=1&b=%41");
    EXPECT_EQ(request.headers.at("x-mark"), "7");
    EXPECT_TRUE(server.WaitUntilIdle());
}

TEST(LoopbackServerTest, WhatNobodyServesIsNotFound)
{
    CLoopbackServer server;
    EXPECT_TRUE(Fetch(server, "/none").Holds("HTTP/1.1 404 "));
}

TEST(LoopbackServerTest, AClosedPortRefuses)
{
    CLoopbackServer server;
    EXPECT_FALSE(CLoopbackClient(server.RefusedUrl(L""), "/").IsConnected());
}

TEST(LoopbackServerTest, AResetIsNoOrderlyEnd)
{
    CLoopbackServer server;
    server.Serve(L"/before", ServeReset());
    server.Serve(L"/middle", ServeResetInBody("0123456789", 4));
    EXPECT_EQ(Fetch(server, "/before").error, WSAECONNRESET);
    const Received middle = Fetch(server, "/middle");
    EXPECT_EQ(middle.Body(), "0123");
    EXPECT_EQ(middle.error, WSAECONNRESET);
}

TEST(LoopbackServerTest, StepsComeWhenTheyAreReleased)
{
    CLoopbackServer server;
    const auto steps = std::make_shared<CServedSteps>("0123456789");
    server.Serve(L"/steps", ServeInSteps(steps));
    CLoopbackClient client(server.Url(L""), "/steps");
    steps->Release(3);
    const Received head = client.Receive(
        std::string("HTTP/1.1 200 Status\r\nConnection: close\r\nContent-Length: 10\r\n\r\n012").size());
    EXPECT_EQ(head.Body(), "012");
    steps->ReleaseAll();
    EXPECT_EQ(client.Receive().bytes, "3456789");
}

TEST(LoopbackServerTest, TheEndOfTheServerEndsEveryWait)
{
    std::unique_ptr<CLoopbackClient> clients[5];
    {
        CLoopbackServer server;
        server.Serve(L"/0", ServeStall());
        server.Serve(L"/1", ServeStallInBody("abc", 1));
        server.Serve(L"/2", ServeSlowly("abc", 100000));
        server.Serve(L"/3", ServeEndlessHeaders(100000));
        server.Serve(L"/4", ServeInSteps(std::make_shared<CServedSteps>("abc")));
        for (int index = 0; index < 5; ++index) {
            clients[index] = std::make_unique<CLoopbackClient>(server.Url(L""), "/" + std::to_string(index));
        }
        ASSERT_TRUE(server.WaitForRequests(5));
    }
    for (int index = 0; index < 5; ++index) {
        EXPECT_FALSE(clients[index]->Receive().Holds("\r\n\r\nabc")) << index;
    }
}

TEST(LoopbackServerTest, AnEndlessBodyEndsWithTheClient)
{
    CLoopbackServer server;
    server.Serve(L"/endless", ServeEndlessBody());
    EXPECT_EQ(CLoopbackClient(server.Url(L""), "/endless").Receive(100000).bytes.size(), 100000u);
    EXPECT_TRUE(server.WaitUntilIdle());
}

TEST(LoopbackServerTest, ManyBytesAreTheirPattern)
{
    CLoopbackServer server;
    server.Serve(L"/bytes", ServeBytes(200000));
    const std::string body = Fetch(server, "/bytes").Body();
    ASSERT_EQ(body.size(), 200000u);
    for (std::size_t index = 0; index < body.size(); index += 777) {
        ASSERT_EQ(body[index], ServedByte(index)) << index;
    }
}

TEST(LoopbackServerTest, ARedirectToItselfIsBounded)
{
    CLoopbackServer server;
    server.Serve(L"/self", ServeRedirectToItself(2));
    EXPECT_TRUE(Fetch(server, "/self").Holds("301"));
    EXPECT_TRUE(Fetch(server, "/self").Holds("Location: /self\r\n"));
    EXPECT_TRUE(Fetch(server, "/self").Holds("500"));
}

TEST(LoopbackServerTest, ChunksAndGzipCarryTheBody)
{
    CLoopbackServer server;
    server.Serve(L"/chunked", ServeChunked(std::string(1001, 'x')));
    server.Serve(L"/gzip", ServeCompressed("abc"));
    EXPECT_EQ(Fetch(server, "/chunked").Body(),
              "3e8\r\n" + std::string(1000, 'x') + "\r\n1\r\nx\r\n0\r\n\r\n");
    const std::string packed = Fetch(server, "/gzip").Body();
    EXPECT_EQ(packed.substr(15, 3), "abc");
    EXPECT_EQ(packed.substr(18, 4), "\xC2\x41\x24\x35"); // CRC-32 of "abc"
}

TEST(LoopbackServerTest, HundredServersLeaveNoHandle)
{
    DWORD before = 0;
    DWORD after = 0;
    for (int round = 0; round < 101; ++round) {
        CLoopbackServer server;
        Fetch(server, "/none");
        if (round == 0) {
            GetProcessHandleCount(GetCurrentProcess(), &before);
        }
        GetProcessHandleCount(GetCurrentProcess(), &after);
    }
    EXPECT_LE(after, before + 3) << before; // a round stands in the middle of its work
}
