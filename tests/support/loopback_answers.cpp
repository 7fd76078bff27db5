// The ways to answer that loopback_server.h names.
#include "tests/support/loopback_server.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <utility>

namespace {

std::string Utf8Of(const CString& text)
{
    std::string bytes;
    AppendUtf8(bytes, text);
    return bytes;
}

std::string LengthHeader(unsigned long long length)
{
    return "Content-Length: " + std::to_string(length) + "\r\n";
}

std::string HexDigits(std::size_t number)
{
    std::string digits;
    for (; number > 0 || digits.empty(); number /= 16) {
        digits.insert(digits.begin(), "0123456789abcdef"[number % 16]);
    }
    return digits;
}

void AppendLittleEndian(std::string& bytes, std::uint32_t number, int count)
{
    for (int index = 0; index < count; ++index) {
        bytes += static_cast<char>(number >> (8 * index) & 0xFF);
    }
}

std::uint32_t Crc32(const std::string& bytes)
{
    std::uint32_t crc = 0xFFFFFFFF;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            crc = crc >> 1 ^ (crc & 1 ? 0xEDB88320u : 0u);
        }
    }
    return ~crc;
}

// A gzip stream of stored blocks: compressed by its form alone.
std::string StoredGzip(const std::string& body)
{
    constexpr std::size_t LONGEST_BLOCK = 0xFFFF;
    std::string packed("\x1F\x8B\x08\0\0\0\0\0\0\xFF", 10);
    std::size_t place = 0;
    do {
        const std::string block = body.substr(place, LONGEST_BLOCK);
        place += block.size();
        packed += static_cast<char>(place == body.size());
        AppendLittleEndian(packed, static_cast<std::uint32_t>(block.size()), 2);
        AppendLittleEndian(packed, ~static_cast<std::uint32_t>(block.size()), 2);
        packed += block;
    } while (place < body.size());
    AppendLittleEndian(packed, Crc32(body), 4);
    AppendLittleEndian(packed, static_cast<std::uint32_t>(body.size()), 4);
    return packed;
}

bool SendWhole(CLoopbackConnection& connection, const std::string& body, const std::string& type)
{
    return connection.SendHead(200, "Content-Type: " + type + "\r\n" + LengthHeader(body.size())) &&
           connection.Send(body);
}

} // namespace

// ---- answers as they should be -----------------------------------------------------------------------------------------

LoopbackHandler ServeBody(std::string body, std::string type)
{
    return [body = std::move(body), type = std::move(type)](CLoopbackConnection& connection) {
        SendWhole(connection, body, type);
    };
}

char ServedByte(unsigned long long index)
{
    return static_cast<char>(index % 251);
}

LoopbackHandler ServeBytes(unsigned long long bytes)
{
    return [bytes](CLoopbackConnection& connection) {
        std::string block(251 * 256, '\0'); // whole periods
        for (std::size_t index = 0; index < block.size(); ++index) {
            block[index] = ServedByte(index);
        }
        bool open = connection.SendHead(200, LengthHeader(bytes));
        for (unsigned long long left = bytes; open && left > 0;) {
            const auto part = static_cast<std::size_t>(std::min<unsigned long long>(left, block.size()));
            open = connection.Send(std::string_view(block).substr(0, part));
            left -= part;
        }
    };
}

void CServedSteps::ReleaseHeaders()
{
    const std::lock_guard lock(m_mutex);
    m_headers = true;
    m_changed.notify_all();
}

void CServedSteps::Release(std::size_t bytes)
{
    const std::lock_guard lock(m_mutex);
    m_headers = true;
    m_released = std::min(m_released + bytes, m_body.size());
    m_changed.notify_all();
}

bool CServedSteps::WaitForHeaders(CLoopbackConnection& connection)
{
    return Wait(connection, [this] { return m_headers; });
}

bool CServedSteps::WaitForMore(CLoopbackConnection& connection, std::size_t sent, std::size_t& released)
{
    return Wait(connection, [&] {
        released = m_released;
        return released > sent;
    });
}

// Short waits in turn, since the end of the server is reported elsewhere.
bool CServedSteps::Wait(CLoopbackConnection& connection, const std::function<bool()>& isDue)
{
    for (;;) {
        {
            std::unique_lock lock(m_mutex);
            if (m_changed.wait_for(lock, std::chrono::milliseconds(20), isDue)) {
                return true;
            }
        }
        if (!connection.Pace(0)) {
            return false;
        }
    }
}

LoopbackHandler ServeInSteps(std::shared_ptr<CServedSteps> steps)
{
    return [steps = std::move(steps)](CLoopbackConnection& connection) {
        const std::string& body = steps->m_body;
        if (!steps->WaitForHeaders(connection) || !connection.SendHead(200, LengthHeader(body.size()))) {
            return;
        }
        std::size_t released = 0;
        for (std::size_t sent = 0; sent < body.size(); sent = released) {
            if (!steps->WaitForMore(connection, sent, released) ||
                !connection.Send(std::string_view(body).substr(sent, released - sent))) {
                return;
            }
        }
    };
}

// ---- answers that are odd, and still whole -----------------------------------------------------------------------------

LoopbackHandler ServeStatus(int status, std::string headers)
{
    return [status, headers = std::move(headers)](CLoopbackConnection& connection) {
        const std::string body =
            status == 204 || status == 304 ? "" : "<html>" + std::to_string(status) + "</html>";
        connection.SendHead(status, headers + (body.empty() ? "" : LengthHeader(body.size()))) &&
            connection.Send(body);
    };
}

LoopbackHandler ServeRedirect(CString address)
{
    return ServeStatus(302, "Location: " + Utf8Of(address) + "\r\n");
}

LoopbackHandler ServeRedirectToItself(int limit)
{
    const auto left = std::make_shared<std::atomic<int>>(limit);
    return [left](CLoopbackConnection& connection) {
        if (left->fetch_sub(1) <= 0) {
            ServeStatus(500)(connection);
            return;
        }
        ServeStatus(301, "Location: " + connection.GetRequest().path + "\r\n")(connection);
    };
}

LoopbackHandler ServeWithoutLength(std::string body)
{
    return [body = std::move(body)](CLoopbackConnection& connection) {
        connection.SendHead(200, "") && connection.Send(body);
    };
}

LoopbackHandler ServeWrongLength(std::string body, unsigned long long length)
{
    return [body = std::move(body), length](CLoopbackConnection& connection) {
        connection.SendHead(200, LengthHeader(length)) && connection.Send(body);
    };
}

LoopbackHandler ServeChunked(std::string body)
{
    return [body = std::move(body)](CLoopbackConnection& connection) {
        constexpr std::size_t CHUNK = 1000;
        bool open = connection.SendHead(200, "Transfer-Encoding: chunked\r\n");
        for (std::size_t place = 0; open && place < body.size(); place += CHUNK) {
            const std::string chunk = body.substr(place, CHUNK);
            open = connection.Send(HexDigits(chunk.size()) + "\r\n" + chunk + "\r\n");
        }
        open&& connection.Send("0\r\n\r\n");
    };
}

LoopbackHandler ServeCompressed(const std::string& body)
{
    const std::string packed = StoredGzip(body);
    return [packed](CLoopbackConnection& connection) {
        connection.SendHead(200, "Content-Encoding: gzip\r\n" + LengthHeader(packed.size())) &&
            connection.Send(packed);
    };
}

LoopbackHandler ServeNothing()
{
    return ServeBody(std::string());
}

LoopbackHandler ServeHtml()
{
    return ServeBody("<!DOCTYPE html>\n<html><head><title>Sign in</title></head><body><p>Please sign "
                     "in.<br></body></html>\n",
                     "text/html");
}

// ---- answers that break off or never end -------------------------------------------------------------------------------

LoopbackHandler ServeReset()
{
    return [](CLoopbackConnection& connection) { connection.Reset(); };
}

LoopbackHandler ServeResetInBody(std::string body, std::size_t bytes)
{
    return [body = std::move(body), bytes](CLoopbackConnection& connection) {
        connection.SendHead(200, LengthHeader(body.size())) &&
            connection.Send(std::string_view(body).substr(0, bytes));
        connection.Reset();
    };
}

LoopbackHandler ServeStall()
{
    return [](CLoopbackConnection& connection) { connection.Stall(); };
}

LoopbackHandler ServeStallInBody(std::string body, std::size_t bytes)
{
    return [body = std::move(body), bytes](CLoopbackConnection& connection) {
        connection.SendHead(200, LengthHeader(body.size())) &&
            connection.Send(std::string_view(body).substr(0, bytes));
        connection.Stall();
    };
}

LoopbackHandler ServeWithoutLastByte(std::string body)
{
    const std::size_t length = body.size();
    body.pop_back();
    return ServeWrongLength(std::move(body), length);
}

LoopbackHandler ServeSlowly(std::string body, unsigned int milliseconds)
{
    return [body = std::move(body), milliseconds](CLoopbackConnection& connection) {
        const std::string answer =
            "HTTP/1.1 200 OK\r\nConnection: close\r\n" + LengthHeader(body.size()) + "\r\n" + body;
        for (const char& byte : answer) {
            if (!connection.Send(std::string_view(&byte, 1)) || !connection.Pace(milliseconds)) {
                return;
            }
        }
    };
}

LoopbackHandler ServeEndlessHeaders(unsigned int milliseconds)
{
    return [milliseconds](CLoopbackConnection& connection) {
        bool open = connection.Send("HTTP/1.1 200 OK\r\n");
        for (int number = 0; open; ++number) {
            open = connection.Send("X-Header-" + std::to_string(number) + ": endless\r\n") &&
                   connection.Pace(milliseconds);
        }
    };
}

LoopbackHandler ServeEndlessBody()
{
    return [](CLoopbackConnection& connection) {
        const std::string block(64u << 10, ' ');
        bool open = connection.SendHead(200, "");
        while (open) {
            open = connection.Send(block);
        }
    };
}

std::string XmlCutOff()
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<PatchAnswer version=\"1\"><Patch name=\"A patch "
           "that en";
}

std::string XmlEntityBomb()
{
    std::string document = "<?xml version=\"1.0\"?>\n<!DOCTYPE bomb [\n<!ENTITY e0 \"boom\">\n";
    for (int level = 1; level <= 9; ++level) {
        const std::string below = "&e" + std::to_string(level - 1) + ";";
        document += "<!ENTITY e" + std::to_string(level) + " \"";
        for (int time = 0; time < 10; ++time) {
            document += below;
        }
        document += "\">\n";
    }
    return document + "]>\n<bomb>&e9;</bomb>\n";
}
