// What the update service is asked, where, and under which number an end is reported.
#include "catalog/catalog_limits.h"
#include "catalog/catalog_query.h"
#include "catalog/web_address.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace {

CString Query(const CString& key, const CString& product)
{
    CString query;
    return ComposeQuery(key, product, L"1.0.0", query) ? query : CString(L"(refused)");
}

unsigned int ErrorOfTemplate(const CString& addressTemplate)
{
    CString address;
    return ComposeRequestAddress(addressTemplate, L"key=a", address);
}

} // namespace

TEST(CatalogQueryTest, ValuesTravelInPercentForm)
{
    EXPECT_EQ(Query(L"A-z0.9_~", L"B"), L"key=A-z0.9_~&product=B&client=1.0.0");
    EXPECT_EQ(Query(L"a b&c=d%", L"#?/+"), L"key=a%20b%26c%3Dd%25&product=%23%3F%2F%2B&client=1.0.0");
    EXPECT_EQ(Query(L"\x00E4\x20AC", CString(L"\xD83D\xDE00")),
              L"key=%C3%A4%E2%82%AC&product=%F0%9F%98%80&client=1.0.0");
    EXPECT_EQ(Query(L"", L""), L"key=&product=&client=1.0.0");
}

TEST(CatalogQueryTest, ValuesThatNoAddressCarriesAreRefused)
{
    for (const CString& value :
         {CString(L"a\tb"), CString(L"a\nb"), CString(L"\x7F"), CString(L"\x85"),
          CString(static_cast<wchar_t>(0xD800)), CString(static_cast<wchar_t>(0xDC00)),
          CString(static_cast<wchar_t>(0xFFFF)), CString(L"a\0b", 3), CString(L'x', 1025)}) {
        EXPECT_EQ(Query(value, L"a"), L"(refused)") << Utf8(value);
        EXPECT_EQ(Query(L"a", value), L"(refused)") << Utf8(value);
    }
    EXPECT_NE(Query(CString(L'x', 1024), CString(L'y', 1024)), L"(refused)");
}

TEST(CatalogQueryTest, TheQueryReplacesTheFirstMarkAsText)
{
    CString address;
    EXPECT_EQ(ComposeRequestAddress(L"http://a/b?%s", L"key=a", address), 0u);
    EXPECT_EQ(address, L"http://a/b?key=a");
    EXPECT_EQ(ComposeRequestAddress(L"HTTPS://a:8080/?x=%20&%s&preview=1", L"key=%41%73", address), 0u);
    EXPECT_EQ(address, L"HTTPS://a:8080/?x=%20&key=%41%73&preview=1");
}

TEST(CatalogQueryTest, ATemplateThatMakesNoAddressIsRefused)
{
    for (const wchar_t* addressTemplate :
         {L"", L"http://a/", L"http://a/?%S", L"http://a/?%s%s", L"http://a/?%s%n", L"%s", L"//a/?%s",
          L"http:/a/?%s", L"http:///?%s", L"http://a b/?%s", L"://a/?%s"}) {
        EXPECT_EQ(ErrorOfTemplate(addressTemplate), 12005u) << Utf8(addressTemplate);
    }
    EXPECT_EQ(ErrorOfTemplate(L"http://a/?%s&" + CString(L'x', 2083)), 12005u);
    for (const wchar_t* addressTemplate :
         {L"ftp://a/?%s", L"file:///c:/a?%s", L"javascript://a/%s", L"res://a/%s"}) {
        EXPECT_EQ(ErrorOfTemplate(addressTemplate), 12006u) << Utf8(addressTemplate);
    }
}

TEST(CatalogQueryTest, EachStatusHasOneNumber)
{
    for (unsigned int status = 0; status < 1000; ++status) {
        const unsigned int expected = status == 200                                     ? 0
                                      : status == 0                                     ? 12030
                                      : status == 401 || status == 403 || status == 407 ? 12015
                                      : status == 404 || status == 410                  ? 12028
                                                                                        : 12152;
        EXPECT_EQ(ErrorOfStatus(status), expected) << status;
        const bool isRedirect =
            status == 301 || status == 302 || status == 303 || status == 307 || status == 308;
        EXPECT_EQ(IsRedirectStatus(status), isRedirect) << status;
    }
}

TEST(CatalogQueryTest, TimeDecidesBeforeTheNumberOfACall)
{
    for (const unsigned int error : {0u, 12002u, 12029u, 12030u, 10054u, 10060u, 6u}) {
        EXPECT_EQ(ErrorOfCall(error, STEP_TIME_LIMIT), 12002u) << error;
        EXPECT_EQ(ErrorOfCall(error, STEP_TIME_LIMIT - 100), 12002u) << error;
    }
    EXPECT_EQ(ErrorOfCall(12029, STEP_TIME_LIMIT - 101), 12029u);
    EXPECT_EQ(ErrorOfCall(12175, 0), 12175u);
    EXPECT_EQ(ErrorOfCall(12002, 0), 12002u);
    for (const unsigned int error : {0u, 6u, 10054u, 10060u, 12000u, 12176u}) {
        EXPECT_EQ(ErrorOfCall(error, 0), 12030u) << error;
    }
}

// ---- addresses and names -----------------------------------------------------------------------------------------------

TEST(CatalogAddressTest, AddressesOfTheWebAreKnown)
{
    for (const wchar_t* address :
         {L"http://a", L"https://a.example/x/y.msp", L"HTTP://A:1/", L"http://127.0.0.1:65535/?a=b#c",
          L"http://[::1]:80/x", L"http://a_b-c.d/%41%5c?%2F", L"http://a?b", L"http://a#b"}) {
        EXPECT_TRUE(IsWebAddress(address, 259)) << Utf8(address);
    }
}

TEST(CatalogAddressTest, OtherAddressesAreNot)
{
    for (const wchar_t* address : {L"",
                                   L"http://",
                                   L"http:///x",
                                   L"a",
                                   L"//a/x",
                                   L"ftp://a/x",
                                   L"file:///c:/x",
                                   L"javascript:alert(1)",
                                   L"http:a",
                                   L" http://a",
                                   L"http://a ",
                                   L"http://a/b c",
                                   L"http://u@a/",
                                   L"http://u:p@a/",
                                   L"http://a:0/",
                                   L"http://a:65536/",
                                   L"http://a:/",
                                   L"http://a:b/",
                                   L"http://a:1:2/",
                                   L"http://[::1/",
                                   L"http://[]/",
                                   L"http://[g]/",
                                   L"http://a\\b/",
                                   L"http://a/\"b",
                                   L"http://a/<b>",
                                   L"http://a/%",
                                   L"http://a/%4",
                                   L"http://a/%zz",
                                   L"http://a/\x00E4",
                                   L"http://\x0430/",
                                   L"http://a/\n",
                                   L"httpx://a/"}) {
        EXPECT_FALSE(IsWebAddress(address, 259)) << Utf8(address);
    }
}

TEST(CatalogAddressTest, AnAddressMayFillItsField)
{
    const CString start = L"http://a/";
    EXPECT_TRUE(IsWebAddress(start + CString(L'x', 259 - start.GetLength()), 259));
    EXPECT_FALSE(IsWebAddress(start + CString(L'x', 260 - start.GetLength()), 259));
}

TEST(CatalogAddressTest, TheNameOfADownloadIsTheLastElementAsItStands)
{
    EXPECT_EQ(DownloadName(L"http://a/b/Zolt_7.1-SP1.msp"), L"Zolt_7.1-SP1.msp");
    EXPECT_EQ(DownloadName(L"https://a:81/x/../y.EXE"), L"y.EXE");
}

TEST(CatalogAddressTest, AnAddressWithoutAPlainNameHasNone)
{
    for (const wchar_t* address : {L"http://a",
                                   L"http://a/",
                                   L"http://a.msp",
                                   L"http://a/b.msp/",
                                   L"http://a/b.msp?c",
                                   L"http://a/c?b.msp",
                                   L"http://a/b.msp#c",
                                   L"http://a/b#/c.msp",
                                   L"http://a/b?/c.msp",
                                   L"http://a/b%2Emsp",
                                   L"http://a/..%5Cb.msp",
                                   L"http://a/..%2Fb.msp",
                                   L"http://a/%62.msp",
                                   L"http://a/..",
                                   L"http://a/...msp",
                                   L"http://a/.msp",
                                   L"http://a/b.txt",
                                   L"http://a/b",
                                   L"http://a/b.msp.",
                                   L"http://a/b.msp:c",
                                   L"http://a/c:b.msp",
                                   L"http://a/nul.msp",
                                   L"http://a/COM1.exe",
                                   L"http://a/con.b.msp",
                                   L"http://a/b;c.msp",
                                   L"http://a/b~1.msp",
                                   L"http://a/b*.msp",
                                   L"http://a/b'.msp",
                                   L"http://a/patchlist.npl",
                                   L"http://a/b.dll",
                                   L"ftp://a/b.msp",
                                   L"file:///b.msp"}) {
        EXPECT_EQ(DownloadName(address), L"") << Utf8(address);
    }
    EXPECT_EQ(DownloadName(L"http://a/" + CString(L'b', 97) + L".msp"), L"");
    EXPECT_NE(DownloadName(L"http://a/" + CString(L'b', 96) + L".msp"), L"");
}

TEST(CatalogAddressTest, AProgramWritesThePatchOfItsStem)
{
    EXPECT_TRUE(IsProgramName(L"Zolt.7.EXE"));
    EXPECT_FALSE(IsProgramName(L"Zolt.exe.msp"));
    EXPECT_EQ(UnpackedName(L"Zolt.7.EXE"), L"Zolt.7.msp");
}
