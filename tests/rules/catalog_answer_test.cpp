// The update service's answer, the patch list that is kept of it, and the record.
#include "catalog/catalog_answer.h"
#include "catalog/catalog_limits.h"
#include "catalog/kmd_config.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

const std::string HASH(64, 'a');

std::string File(const std::string& name, const std::string& size = "21", const std::string& hash = HASH)
{
    return "<File name=\"" + name + "\" size=\"" + size + "\" sha256=\"" + hash + "\"/>";
}

std::string Patch(const std::string& download, const std::string& files, const std::string& name = "Zolt 7.1",
                  const std::string& readme = "http://a/r.html")
{
    return "<Patch name=\"" + name + "\" readme=\"" + readme + "\" download=\"" + download + "\">" + files +
           "</Patch>";
}

std::string Answer(const std::string& patches, const std::string& root = "PatchAnswer version=\"1\"")
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<" + root + ">" + patches + "</" +
           root.substr(0, root.find(' ')) + ">\n";
}

const std::string GOOD = Answer(Patch("http://a/b.msp", File("b.msp")));

bool IsRead(const std::string& answer)
{
    return ReadCatalogAnswer(answer.data(), answer.size()).has_value();
}

CatalogAnswer Read(const std::string& answer)
{
    return ReadCatalogAnswer(answer.data(), answer.size()).value_or(CatalogAnswer());
}

std::string Replaced(std::string text, const std::string& was, const std::string& becomes)
{
    const std::size_t place = text.find(was);
    EXPECT_NE(place, text.npos) << was;
    return text.replace(place, was.size(), becomes);
}

std::string Repeated(const std::string& text, int count)
{
    std::string all;
    for (; count > 0; --count) {
        all += text;
    }
    return all;
}

} // namespace

TEST(CatalogAnswerTest, AnOfferIsReadWhole)
{
    const CatalogAnswer answer = Read(GOOD);
    ASSERT_EQ(answer.patches.size(), 1u);
    const CatalogPatch& patch = answer.patches[0];
    EXPECT_EQ(patch.strName, L"Zolt 7.1");
    EXPECT_EQ(patch.strReadme, L"http://a/r.html");
    EXPECT_EQ(patch.strDownload, L"http://a/b.msp");
    ASSERT_EQ(patch.files.size(), 1u);
    EXPECT_EQ(patch.files[0].strName, L"b.msp");
    EXPECT_EQ(patch.files[0].size, 21);
    EXPECT_EQ(patch.files[0].strSha256, CString(L'a', 64));
}

TEST(CatalogAnswerTest, NoPatchIsAnAnswer)
{
    EXPECT_TRUE(IsRead(Answer("")));
    EXPECT_TRUE(IsRead("<PatchAnswer version='1'/>"));
    EXPECT_TRUE(IsRead(Answer("\n <!-- nothing today -->\n")));
}

TEST(CatalogAnswerTest, WhatIsNoAnswerIsRefused)
{
    for (const std::string& answer :
         {std::string(), std::string("hello"), std::string("<html/>"),
          Answer("", "PatchAnswer version=\"2\""), Answer("", "PatchAnswer version=\"\""),
          std::string("<PatchAnswer/>"), Answer("", "PatchAnswer version=\"1\" x=\"1\""),
          Answer("", "PatchList version=\"1\""), Answer("text"), Answer("<Other/>"), Answer(File("b.msp")),
          Answer(Answer("")), GOOD + GOOD, GOOD.substr(0, GOOD.size() - 3), std::string("\xFF\xFE<\0", 4),
          Replaced(GOOD, "utf-8", "utf-16"), "<!DOCTYPE PatchAnswer>" + Answer("").substr(39)}) {
        EXPECT_FALSE(IsRead(answer)) << answer;
    }
}

TEST(CatalogAnswerTest, EachAttributeIsNeededOnceAndNoOtherIsKnown)
{
    for (const char* name : {"name", "readme", "download", "size", "sha256"}) {
        const std::string mark = std::string(" ") + name + "=";
        EXPECT_FALSE(IsRead(Replaced(GOOD, mark, " x" + mark.substr(1)))) << name;
        EXPECT_FALSE(IsRead(Replaced(GOOD, mark, mark + "\"1\"" + mark))) << name << " twice";
    }
    EXPECT_FALSE(IsRead(Replaced(GOOD, "<Patch ", "<Patch more=\"1\" ")));
    EXPECT_FALSE(IsRead(Replaced(GOOD, "<File ", "<File more=\"1\" ")));
}

TEST(CatalogAnswerTest, ATextThatHasNoRoomInItsFieldIsRefused)
{
    const auto named = [](const std::string& name) {
        return Answer(Patch("http://a/b.msp", File("b.msp"), name));
    };
    EXPECT_TRUE(IsRead(named(std::string(259, 'n'))));
    EXPECT_FALSE(IsRead(named(std::string(260, 'n'))));
    EXPECT_TRUE(IsRead(named(Repeated("\xC3\xA4", 259)))) << "units are counted, not bytes";
    EXPECT_FALSE(IsRead(named(Repeated("\xF0\x9F\x98\x80", 130)))) << "such a letter is two units";
    const auto withReadme = [](std::size_t length) {
        return Answer(
            Patch("http://a/b.msp", File("b.msp"), "n", "http://a/" + std::string(length - 9, 'r')));
    };
    EXPECT_TRUE(IsRead(withReadme(259)));
    EXPECT_FALSE(IsRead(withReadme(260)));
    const auto at = [](std::size_t length) {
        return Answer(Patch("http://a/" + std::string(length - 15, 'd') + "/b.msp", File("b.msp")));
    };
    EXPECT_TRUE(IsRead(at(259)));
    EXPECT_FALSE(IsRead(at(260)));
}

TEST(CatalogAnswerTest, ANameThatShowsNothingOrMoreThanTextIsRefused)
{
    for (const char* name :
         {"", " ", "&#9;", "a&#10;b", "a&#13;b", "\x7F", "\xC2\x85", "a&#xFFFE;", "&#xD800;"}) {
        EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.msp", File("b.msp"), name)))) << name;
    }
}

TEST(CatalogAnswerTest, OnlyAddressesOfTheWebAreAccepted)
{
    for (const char* address :
         {"", "b.msp", "/b.msp", "//a/b.msp", "ftp://a/b.msp", "file:///c:/b.msp", "javascript:b.msp",
          "\\\\a\\b.msp", "c:\\b.msp", "http://u:p@a/b.msp", "http://a/b.msp?x=1", "http://a/..%2fb.msp"}) {
        EXPECT_FALSE(IsRead(Answer(Patch(address, File("b.msp"))))) << address;
    }
    for (const char* address :
         {"", "r.html", "ftp://a/r", "file:///c:/r.html", "javascript:r", "http://u@a/r", "http://a/ r"}) {
        EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.msp", File("b.msp"), "n", address)))) << address;
    }
}

TEST(CatalogAnswerTest, ASizeIsAWholeNumberOfBytes)
{
    for (const char* size : {"1", "4294967295"}) {
        EXPECT_TRUE(IsRead(Answer(Patch("http://a/b.msp", File("b.msp", size))))) << size;
    }
    for (const char* size : {"", "0", "-1", "+1", " 1", "1 ", "1.0", "1e3", "0x10", "many", "4294967296",
                             "99999999999999999999"}) {
        EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.msp", File("b.msp", size))))) << size;
    }
}

TEST(CatalogAnswerTest, AHashIsOfSha256AndIsKeptInSmallLetters)
{
    EXPECT_EQ(Read(Answer(Patch("http://a/b.msp", File("b.msp", "1", Repeated("aB", 32)))))
                  .patches.at(0)
                  .files.at(0)
                  .strSha256,
              TextFromUtf8(Repeated("ab", 32).data(), 64));
    for (const std::string& hash :
         {std::string(), std::string(63, 'a'), std::string(65, 'a'), std::string(63, 'a') + "g",
          std::string(40, 'a'), std::string(63, 'a') + " "}) {
        EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.msp", File("b.msp", "1", hash))))) << hash;
    }
}

TEST(CatalogAnswerTest, TheFilesAreThoseOfTheDownload)
{
    EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.msp", "")))) << "none";
    EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.msp", File("c.msp"))))) << "another";
    EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.msp", File("B.msp"))))) << "another letter";
    EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.msp", File("b.msp") + File("c.msp"))))) << "one too many";
    EXPECT_TRUE(IsRead(Answer(Patch("http://a/b.exe", File("b.exe") + File("B.msp")))));
    EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.exe", File("b.exe"))))) << "not what it writes";
    EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.exe", File("b.msp") + File("b.exe")))))
        << "in the wrong order";
    EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.exe", File("b.exe") + File("c.msp"))))) << "another patch";
    EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.exe", File("b.exe") + File("b.exe")))))
        << "twice the program";
    EXPECT_FALSE(IsRead(Answer(Patch("http://a/b.exe", File("b.exe") + File("..\\b.msp"))))) << "elsewhere";
}

TEST(CatalogAnswerTest, NoFileIsNamedTwice)
{
    const std::string first = Patch("http://a/b.msp", File("b.msp"));
    EXPECT_TRUE(IsRead(Answer(first + Patch("http://a/c.msp", File("c.msp")))));
    EXPECT_FALSE(IsRead(Answer(first + Patch("http://c/b.msp", File("b.msp")))));
    EXPECT_FALSE(IsRead(Answer(first + Patch("http://c/B.msp", File("B.msp")))));
}

TEST(CatalogAnswerTest, NumberAndSizeAreBounded)
{
    std::string patches;
    for (int number = 0; number < 32; ++number) {
        const std::string name = "b" + std::to_string(number) + ".msp";
        patches += Patch("http://a/" + name, File(name));
    }
    EXPECT_EQ(Read(Answer(patches)).patches.size(), 32u);
    EXPECT_FALSE(IsRead(Answer(patches + Patch("http://a/b.msp", File("b.msp")))));
    EXPECT_TRUE(IsRead(GOOD + std::string(ANSWER_BYTES_LIMIT - GOOD.size(), ' ')));
    EXPECT_FALSE(IsRead(GOOD + std::string(ANSWER_BYTES_LIMIT + 1 - GOOD.size(), ' ')));
}

TEST(CatalogAnswerTest, AListReadsBackAsTheAnswer)
{
    const CatalogAnswer answer = Read(Answer(Patch("http://a/b.exe", File("b.exe") + File("b.msp", "7"),
                                                   "&lt;&amp;&quot;&gt;\xC3\xA4", "http://a/?x=1&amp;y=2")));
    ASSERT_EQ(answer.patches.size(), 1u);
    const CString text = ComposePatchList(answer, {L"2026-01-01T00:00:00Z", L"key <&> \"\x00E4", L"product"});
    std::string bytes;
    AppendUtf8(bytes, text);
    const std::optional<CatalogAnswer> list = ReadPatchList(bytes.data(), bytes.size());
    ASSERT_TRUE(list) << bytes;
    ASSERT_EQ(list->patches.size(), 1u);
    EXPECT_EQ(list->patches[0].strName, L"<&\">\x00E4");
    EXPECT_EQ(list->patches[0].strReadme, L"http://a/?x=1&y=2");
    EXPECT_EQ(list->patches[0].strDownload, L"http://a/b.exe");
    ASSERT_EQ(list->patches[0].files.size(), 2u);
    EXPECT_EQ(list->patches[0].files[1].size, 7);
    EXPECT_FALSE(IsRead(bytes)) << "a list is no answer";
}

TEST(CatalogAnswerTest, AListSaysWhenAndForWhatItWasAsked)
{
    const std::string root = "PatchList version=\"1\" asked=\"\" key=\"\" product=\"\"";
    const auto isList = [](const std::string& text) {
        return ReadPatchList(text.data(), text.size()).has_value();
    };
    EXPECT_TRUE(isList(Answer("", root)));
    for (const char* name : {"version=\"1\"", "asked=\"\"", "key=\"\"", "product=\"\""}) {
        EXPECT_FALSE(isList(Answer("", Replaced(root, std::string(" ") + name, "")))) << name;
    }
    EXPECT_FALSE(isList(Answer("", Replaced(root, "key=\"\"", "key=\"" + std::string(1025, 'k') + "\""))));
    EXPECT_FALSE(isList(Answer("", Replaced(root, "key=\"\"", "key=\"&#9;\""))));
}

TEST(CatalogAnswerTest, AFileIsFoundByNameInAnyCase)
{
    const CatalogAnswer answer = Read(GOOD);
    ASSERT_NE(FindListedFile(answer, L"B.MSP"), nullptr);
    EXPECT_EQ(FindListedFile(answer, L"b"), nullptr);
    EXPECT_EQ(FindListedFile(answer, L""), nullptr);
    EXPECT_EQ(FindListedFile(CatalogAnswer(), L"b.msp"), nullptr);
}

TEST(CatalogAnswerTest, TheRecordHoldsTheFirstPatchOrAnErrorAlone)
{
    const CatalogAnswer answer = Read(Answer(Patch("http://a/b.msp", File("b.msp", "4294967295")) +
                                             Patch("http://a/c.msp", File("c.msp"))));
    PatchInfoRecord record;
    std::fill_n(reinterpret_cast<unsigned char*>(&record), sizeof record, 0xCC);
    FillPatchInfo(record, answer, 0);
    EXPECT_EQ(CString(record.PatchName), L"Zolt 7.1");
    EXPECT_EQ(CString(record.PatchSize), L"4294967295");
    EXPECT_EQ(CString(record.ReadmeUrl), L"http://a/r.html");
    EXPECT_EQ(CString(record.DownloadUrl), L"http://a/b.msp");
    EXPECT_EQ(record.PatchCount, 2);
    EXPECT_EQ(record.ErrorCode, 0u);
    FillPatchInfo(record, answer, 12002);
    EXPECT_EQ(CString(record.DownloadUrl), L"");
    EXPECT_EQ(record.PatchCount, 0);
    EXPECT_EQ(record.ErrorCode, 12002u);
}

// ---- Kmdconfig.xml -----------------------------------------------------------------------------------------------------

namespace {

CString Identity(const std::string& config)
{
    return ReadProductIdentity(config.data(), config.size());
}

std::string Config(const std::string& inner)
{
    return "<KmdConfig version=\"1\">" + inner + "</KmdConfig>";
}

} // namespace

TEST(KmdConfigTest, TheIdentityIsTheValueOfItsOneProduct)
{
    EXPECT_EQ(Identity(Config("<Product value=\"ZOLT 7 &amp; \xC3\xA4\"/>")), L"ZOLT 7 & \x00E4");
    EXPECT_EQ(Identity(Config("\n<!-- one -->\n<Product value='a'/>\n")), L"a");
    EXPECT_EQ(Identity(Config("<Product value=\"" + std::string(1024, 'x') + "\"/>")), CString(L'x', 1024));
}

TEST(KmdConfigTest, AnythingElseIsNoIdentity)
{
    for (const std::string& config :
         {std::string(), Config(""), Config("<Product/>"), Config("<Product value=\"\"/>"),
          Config("<Product value=\" \"/>"), Config("<Product value=\"a\"/><Product value=\"b\"/>"),
          Config("<Product value=\"a\" x=\"1\"/>"),
          Config("<Product value=\"a\"><Product value=\"b\"/></Product>"), Config("a<Product value=\"a\"/>"),
          Config("<Product value=\"a&#10;b\"/>"),
          Config("<Product value=\"" + std::string(1025, 'x') + "\"/>"),
          std::string("<KmdConfig><Product value=\"a\"/></KmdConfig>"), std::string("<Product value=\"a\"/>"),
          std::string("<KmdConfig version=\"2\"><Product value=\"a\"/></KmdConfig>"),
          Config("<Product value=\"a\"/>") + "x",
          "<!DOCTYPE KmdConfig [<!ENTITY a \"b\">]>" + Config("<Product value=\"&a;\"/>"),
          Config("<Product value=\"a\"/>") + std::string(CONFIG_BYTES_LIMIT, ' ')}) {
        EXPECT_EQ(Identity(config), L"") << config.substr(0, 200);
    }
}
