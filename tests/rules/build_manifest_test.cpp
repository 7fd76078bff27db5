// Manifest.txt as it is read back to distinguish a build's own files from others.
#include "builder/manifest_text.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const std::string HASH(64, 'a');

bool Read(const std::string& text, std::vector<ManifestEntry>& entries)
{
    return ReadManifest(text.data(), text.size(), entries);
}

std::vector<ManifestEntry> entries;

} // namespace

TEST(BuildManifest, WhatABuildWritesIsReadBack)
{
    const std::vector<ManifestEntry> written = {
        {L"a b\\c.txt", 0, CString(L'0', 64)},
        {L"Image\\\x65E5\x672C.msi", 9223372036854775807, CString(L'f', 64)},
    };
    const std::string text = "\xEF\xBB\xBF" + Utf8(ComposeManifest(written));
    ASSERT_TRUE(Read(text, entries));
    ASSERT_EQ(entries.size(), 2u);
    for (std::size_t index = 0; index < 2; ++index) {
        EXPECT_EQ(entries[index].strPath, written[index].strPath);
        EXPECT_EQ(entries[index].size, written[index].size);
        EXPECT_EQ(entries[index].strSha256, written[index].strSha256);
    }
}

TEST(BuildManifest, APathKeepsItsBlanks)
{
    ASSERT_TRUE(Read(HASH + " 12  two  blanks \r\n", entries));
    EXPECT_EQ(entries[0].strPath, CString(L" two  blanks "));
}

TEST(BuildManifest, LinesThatAreNotUnderstoodMakeItNoManifest)
{
    const std::string good = HASH + " 1 a\r\n";
    ASSERT_TRUE(Read(good, entries));
    const std::string lines[] = {
        "\r\n",
        "x\r\n",
        HASH + "\r\n",
        HASH + " 1\r\n",
        HASH + " 1 \r\n",
        HASH + " x a\r\n",
        HASH + " -1 a\r\n",
        HASH + "  a\r\n",
        HASH + " 12345678901234567890 a\r\n",
        HASH + " 9223372036854775808 a\r\n", // one more than a file can have, written as a negative number
        HASH.substr(1).append(" 1 a\r\n"),
        HASH + "a 1 a\r\n",
        std::string(64, 'A').append(" 1 a\r\n"),
        std::string(64, 'g').append(" 1 a\r\n"),
        (HASH + " 1 a").append(1, '\0').append("\r\n"),
    };
    for (const std::string& line : lines) {
        EXPECT_FALSE(Read(good + line, entries)) << line;
    }
}

TEST(BuildManifest, OneThatIsCutOffOrEmptyIsNoManifest)
{
    for (const std::string& text : {std::string(), std::string("# only a comment\r\n"), HASH + " 1 a",
                                    std::string("\xEF\xBB\xBF"), std::string("\xEF\xBB")}) {
        EXPECT_FALSE(Read(text, entries)) << text;
    }
}

TEST(BuildManifest, NamesOfKeptFilesAreListedUpToTen)
{
    std::vector<CString> names;
    for (int number = 1; number <= 12; ++number) {
        names.push_back(L"f" + NumberText(number));
    }
    const CString reported = DescribeKept(true, names, L"C:\\kept");
    EXPECT_GE(reported.Find(L"\"f10\" and 2 more"), 0) << Utf8(reported);
    EXPECT_LT(reported.Find(L"f11"), 0) << Utf8(reported);
    EXPECT_GE(DescribeKept(false, {}, L"C:\\kept").Find(L"kept whole in \"C:\\kept\""), 0);
}
