// What the service does wrong, and under which number it is reported: always the same one, always in time, and with everything
// as it was.
#include "base/files.h"
#include "tests/catalog/catalog_library.h"
#include "tests/support/loopback_server.h"
#include "tests/support/test_folder.h"
#include "tests/support/text.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace {

constexpr unsigned long long WHOLE_LIMIT = 15000;
constexpr unsigned long long SLACK = 3000; // of a busy computer
constexpr ULONGLONG PATIENCE = 30000;

struct Misbehavior
{
    const char* name;
    LoopbackHandler handler;
    unsigned int error;
    unsigned long long least = 0; // milliseconds
    unsigned long long most = 5000;
};

void PrintTo(const Misbehavior& misbehavior, std::ostream* stream)
{
    *stream << misbehavior.name;
}

std::vector<std::string> NamesIn(const CTestFolder& folder)
{
    std::vector<FolderItem> items;
    std::vector<std::string> names;
    if (ListFolder(folder.GetPath(), items) == ERROR_SUCCESS) {
        for (const FolderItem& item : items) {
            names.push_back(Utf8(item.strName));
        }
    }
    return names;
}

std::string Contents(const CString& path)
{
    std::string bytes;
    return ReadWholeFile(path, 1u << 20, bytes) == ERROR_SUCCESS ? bytes : std::string("(can't be read)");
}

DWORD Handles()
{
    DWORD count = 0;
    GetProcessHandleCount(GetCurrentProcess(), &count);
    return count;
}

// A short wait in a loop that looks for a condition.
template <class Condition>
bool ComesTrue(Condition condition)
{
    const ULONGLONG deadline = GetTickCount64() + PATIENCE;
    while (!condition()) {
        if (GetTickCount64() > deadline) {
            return false;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, 0);
    }
    return true;
}

class CService
{
public:
    explicit CService(const CTestFolder& folder) : m_folder(folder)
    {
        m_server.Serve(L"/good", ServeBody(GoodAnswer()));
    }
    CString List() const { return m_folder / L"patchlist.npl"; }
    CatalogSaid Ask(const CString& address) const
    {
        CatalogAsk ask;
        ask.strTemplate = address + L"?%s";
        ask.strList = List();
        return AskCatalog(ask);
    }
    CatalogSaid AskPath(const wchar_t* path) const { return Ask(m_server.Url(path)); }
    CLoopbackServer& Server() { return m_server; }

private:
    const CTestFolder& m_folder;
    CLoopbackServer m_server;
};

class MisbehaviorTest : public testing::TestWithParam<Misbehavior>
{
protected:
    // The first query of a process makes what the network library then keeps.
    static void SetUpTestSuite()
    {
        const CTestFolder folder;
        const CService service(folder);
        for (int round = 0; round < 3; ++round) {
            ASSERT_EQ(service.AskPath(L"/good").Error(), 0u);
        }
        s_handles = Handles();
    }

    CTestFolder m_folder;
    static DWORD s_handles;
};

DWORD MisbehaviorTest::s_handles = 0;

std::string NameOf(const testing::TestParamInfo<Misbehavior>& info)
{
    return info.param.name;
}

LoopbackHandler ServeRaw(std::string bytes)
{
    return [bytes = std::move(bytes)](CLoopbackConnection& connection) { connection.Send(bytes); };
}

std::string Doubled(const std::string& answer)
{
    return answer + answer;
}

// ---- how the answer comes ----------------------------------------------------------------------------------------------

const Misbehavior ON_THE_WAY[] = {
    {"ResetBefore", ServeReset(), 12030},
    {"ResetInTheBody", ServeResetInBody(GoodAnswer(), 100), 12030},
    {"ClosedWithoutAnswer", [](CLoopbackConnection&) {}, 12030},
    {"StallBeforeHeaders", ServeStall(), 12002, 7000, 12000},
    {"StallInTheBody", ServeStallInBody(GoodAnswer(), 100), 12002, 7000, 12000},
    {"OneByteASecond", ServeSlowly(GoodAnswer()), 12002, 14000, WHOLE_LIMIT + SLACK},
    {"OneByteASecondInTheBody",
     [](CLoopbackConnection& connection) {
         const std::string body = GoodAnswer();
         bool open = connection.SendHead(200, "Content-Length: " + std::to_string(body.size()) + "\r\n");
         for (std::size_t place = 0; open && place < body.size(); ++place) {
             open = connection.Send(body.substr(place, 1)) && connection.Pace(1000);
         }
     },
     12002, 14000, WHOLE_LIMIT + SLACK},
    {"EndlessHeaders", ServeEndlessHeaders(0), 12002, 14000, WHOLE_LIMIT + SLACK},
    {"EndlessBody", ServeEndlessBody(), 12152},
    {"WithoutTheLastByte", ServeWithoutLastByte(GoodAnswer()), 12152},
    {"LengthTooLarge", ServeWrongLength(GoodAnswer(), 5000), 12152},
    {"LengthTooSmall", ServeWrongLength(GoodAnswer(), 100), 12152},
    {"LengthOfFiveGigabytes", ServeWrongLength(GoodAnswer(), SERVED_HUGE_LENGTH), 12152},
    {"LengthIsNoNumber", ServeRaw("HTTP/1.1 200 OK\r\nContent-Length: abc\r\n\r\n" + GoodAnswer()), 12152},
    {"LengthIsNegative", ServeRaw("HTTP/1.1 200 OK\r\nContent-Length: -5\r\n\r\n" + GoodAnswer()), 12152},
    {"Compressed", ServeCompressed(GoodAnswer()), 12152},
    {"ChunkCutOff",
     ServeRaw("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nfff\r\n" + GoodAnswer().substr(0, 50)),
     12152},
    {"NoHttp", ServeRaw("hello"), 12030},
    {"PageWithoutHeaders", ServeRaw("<html>\r\n<body>\r\nhello\r\n</body></html>\r\n"), 12152},
    {"NothingAtAll", ServeNothing(), 12152},
    {"RedirectToItself", ServeRedirectToItself(), 12156},
    {"NoContent", ServeStatus(204), 12152},
    {"PartOfIt", ServeStatus(206), 12152},
    {"NotChanged", ServeStatus(304), 12152},
    {"Unauthorized", ServeStatus(401, "WWW-Authenticate: Basic realm=\"x\"\r\n"), 12015},
    {"NotFound", ServeStatus(404), 12028},
    {"ProxyWantsCredentials", ServeStatus(407, "Proxy-Authenticate: Basic realm=\"x\"\r\n"), 12015},
    {"ServerError", ServeStatus(500), 12152},
};

// ---- what stands in it -------------------------------------------------------------------------------------------------

const Misbehavior IN_THE_ANSWER[] = {
    {"Html", ServeHtml(), 12152},
    {"XmlCutOff", ServeBody(XmlCutOff()), 12152},
    {"EntityBomb", ServeBody(XmlEntityBomb()), 12152},
    {"TwoDocuments", ServeBody(Doubled(GoodAnswer())), 12152},
    {"TooLong", ServeBody(GoodAnswer() + std::string(300000, ' ')), 12152},
    {"FolderInTheName", ServeBody(GoodAnswer("http://127.0.0.1/a/..%5Czolt.msp", "..%5Czolt.msp")), 12152},
    {"DeviceAsName", ServeBody(GoodAnswer("http://127.0.0.1/con.msp", "con.msp")), 12152},
    {"FileAddress", ServeBody(GoodAnswer("file://server/share/zolt71.msp")), 12152},
};

} // namespace

TEST_P(MisbehaviorTest, HasItsNumberComesBackInTimeAndLeavesEverythingAsItWas)
{
    {
        CService service(m_folder);
        ASSERT_EQ(service.AskPath(L"/good").Error(), 0u);
        const std::string list = Contents(service.List());
        service.Server().Serve(L"/bad", GetParam().handler);

        const CatalogSaid said = service.AskPath(L"/bad");
        EXPECT_EQ(said.Error(), GetParam().error);
        EXPECT_TRUE(said.IsEmptyBeforeError());
        EXPECT_TRUE(said.isInBounds);
        EXPECT_GE(said.milliseconds, GetParam().least);
        EXPECT_LE(said.milliseconds, GetParam().most);
        EXPECT_EQ(Contents(service.List()), list);
        EXPECT_EQ(NamesIn(m_folder), std::vector<std::string>{"patchlist.npl"});

        const CatalogSaid again = service.AskPath(L"/good");
        EXPECT_EQ(again.Error(), 0u) << "a query behind it";
        EXPECT_EQ(again.Count(), 1);
    }
    EXPECT_TRUE(ComesTrue([] { return !GetModuleHandleW(L"FixMgr.dll"); })) << "the library is still loaded";
    EXPECT_TRUE(ComesTrue([] { return Handles() <= s_handles; }))
        << Handles() << " handles, before " << s_handles;
}

INSTANTIATE_TEST_SUITE_P(OnTheWay, MisbehaviorTest, testing::ValuesIn(ON_THE_WAY), NameOf);
INSTANTIATE_TEST_SUITE_P(InTheAnswer, MisbehaviorTest, testing::ValuesIn(IN_THE_ANSWER), NameOf);

TEST(MisbehaviorOfTheNetworkTest, ARefusedConnectionIsNoConnection)
{
    const CTestFolder folder;
    CService service(folder);
    const CatalogSaid said = service.Ask(service.Server().RefusedUrl(L"/bad"));
    EXPECT_EQ(said.Error(), 12029u);
    EXPECT_TRUE(said.IsEmptyBeforeError());
    EXPECT_LE(said.milliseconds, 5000u);
    EXPECT_TRUE(NamesIn(folder).empty()) << "no list is made";
}

TEST(MisbehaviorOfTheNetworkTest, AConnectionThatIsNeverMadeEndsInTime)
{
    const CTestFolder folder;
    {
        CService service(folder);
        const CString address = service.Server().RefusedUrl(L"/bad");
        ASSERT_TRUE(service.Server().StallConnections());
        const CatalogSaid said = service.Ask(address);
        EXPECT_EQ(said.Error(), 12002u);
        EXPECT_GE(said.milliseconds, 7000u);
        EXPECT_LE(said.milliseconds, WHOLE_LIMIT + SLACK);
        EXPECT_EQ(service.AskPath(L"/good").Error(), 0u) << "a query behind it";
    }
    EXPECT_TRUE(ComesTrue([] { return !GetModuleHandleW(L"FixMgr.dll"); })) << "the library is still loaded";
}

TEST(MisbehaviorOfTheNetworkTest, WhatHasNoLengthOrComesInChunksIsRead)
{
    const CTestFolder folder;
    CService service(folder);
    service.Server().Serve(L"/chunked", ServeChunked(GoodAnswer()));
    service.Server().Serve(L"/open", ServeWithoutLength(GoodAnswer()));
    EXPECT_EQ(service.AskPath(L"/chunked").Error(), 0u);
    EXPECT_EQ(service.AskPath(L"/open").Error(), 0u);
}

TEST(MisbehaviorOfTheNetworkTest, AHundredQueriesLeaveNoHandle)
{
    const CTestFolder folder;
    CService service(folder);
    service.Server().Serve(L"/bad", ServeReset());
    DWORD before = 0;
    for (int round = 0; round < 51; ++round) {
        ASSERT_EQ(service.AskPath(L"/good").Error(), 0u);
        ASSERT_EQ(service.AskPath(L"/bad").Error(), 12030u);
        if (round == 0) {
            before = Handles();
        }
    }
    EXPECT_TRUE(ComesTrue([&] { return Handles() <= before; })) << Handles() << " handles, before " << before;
}
