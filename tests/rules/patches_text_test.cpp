// What the service pack page makes of texts and numbers of the service.
#include "patches/patch_text_rules.h"

#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <utility>

TEST(PatchTextTest, ASizeIsCutToWholeKilobytesAndJunkIsNone)
{
    const std::pair<const wchar_t*, int> rows[] = {
        {L"0", 0},
        {L"1023", 0},
        {L"1024", 1},
        {L"2047", 1},
        {L"2048", 2},
        {L"104857600", 102400},
        {L"5368709120", 5242880}, // 5 GB
        {L"", 0},
        {L"  2048", 2},
        {L"2048 bytes", 2},
        {L"two", 0},
        {L"-2048", 0},
        {L"\xFF12\xFF10\xFF14\xFF18", 0}, // digits of another script
    };
    for (const auto& [text, kilobytes] : rows) {
        EXPECT_EQ(SizeInKilobytes(text), kilobytes) << Utf8(text);
    }
}

TEST(PatchTextTest, ASizeOfAnyLengthIsNeverNegative)
{
    for (const wchar_t* text : {L"9223372036854775807", L"18446744073709551615", L"18446744073709551616",
                                L"99999999999999999999999999999999999999999999"}) {
        EXPECT_GE(SizeInKilobytes(text), 0) << Utf8(text);
    }
}

TEST(PatchTextTest, APercentageIsCutAndMayExceedAHundred)
{
    const struct
    {
        double received;
        std::uint32_t promised;
        int percent;
    } rows[] = {
        {0, 1000, 0},      {1, 1000, 0},
        {9.99, 1000, 0},   {10, 1000, 1},
        {999, 1000, 99},   {1000, 1000, 100},
        {2500, 1000, 250}, {4294967295.0, 4294967295u, 100},
        {0, 0, 0},         {2147483647.0, 4294967295u, 49},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(DownloadPercentage(row.received, row.promised), row.percent)
            << row.received << " of " << row.promised;
    }
}

TEST(PatchTextTest, MoreThanAnyNumberOfPercentStaysANumber)
{
    EXPECT_GT(DownloadPercentage(1e15, 1), 100);
    EXPECT_GT(DownloadPercentage(1, 0), 100);
}

TEST(PatchTextTest, TheTemplateHasThePlaceOfTheQueryAndThePreviewOfOneAlone)
{
    EXPECT_EQ(CatalogUrlTemplate(L"http://host/path", 0), CString(L"http://host/path?%s"));
    EXPECT_EQ(CatalogUrlTemplate(L"http://host/path", 1), CString(L"http://host/path?%s&preview=1"));
    EXPECT_EQ(CatalogUrlTemplate(L"http://host/path", 2), CString(L"http://host/path?%s"));
    EXPECT_EQ(CatalogUrlTemplate(L"http://host/path", 0xFFFFFFFF), CString(L"http://host/path?%s"));
    EXPECT_EQ(CatalogUrlTemplate(L"http://host/%d%n", 1), CString(L"http://host/%d%n?%s&preview=1"));
}

TEST(PatchTextTest, OnlyAddressesOfTheWebAreOpened)
{
    for (const wchar_t* address :
         {L"http://host", L"https://host/readme.html", L"HTTP://HOST", L"Https://h"}) {
        EXPECT_TRUE(IsWebAddress(address)) << Utf8(address);
    }
    for (const wchar_t* address :
         {L"", L"http:/host", L"file:///c:/x.exe", L"C:\\Windows\\notepad.exe", L" http://host",
          L"\\\\host\\share\\x.exe", L"javascript:alert(1)", L"httpx://host", L"notepad"}) {
        EXPECT_FALSE(IsWebAddress(address)) << Utf8(address);
    }
}
