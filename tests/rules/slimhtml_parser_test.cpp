#include "slimhtml/html_colors.h"
#include "slimhtml/html_entities.h"
#include "tests/rules/slimhtml_support.h"

#include <gtest/gtest.h>

#include <chrono>

namespace {

// The font of the run that holds a text.
HtmlFont FontOf(const HtmlDocument& document, const CString& text)
{
    for (const HtmlRun& run : document.runs) {
        if (CString(document.text.data() + run.text, run.length) == text) {
            return document.fonts[run.font];
        }
    }
    ADD_FAILURE() << "no run holds " << Utf8(text);
    return {};
}

const HtmlRun& RunOf(const HtmlDocument& document, const CString& text)
{
    for (const HtmlRun& run : document.runs) {
        if (CString(document.text.data() + run.text, run.length) == text) {
            return run;
        }
    }
    ADD_FAILURE() << "no run holds " << Utf8(text);
    return document.runs.front();
}

CString Repeat(const wchar_t* piece, int count)
{
    CString text;
    for (int index = 0; index < count; ++index) {
        text += piece;
    }
    return text;
}

HtmlReference Reference(const wchar_t* text)
{
    return ReadHtmlReference(text, TextLength(text));
}

} // namespace

TEST(HtmlReferenceTest, ReadsNamesOfEitherCase)
{
    EXPECT_EQ(Reference(L"&eacute;").point, 0xE9u);
    EXPECT_EQ(Reference(L"&Eacute;").point, 0xC9u);
    EXPECT_EQ(Reference(L"&AElig;").point, 0xC6u);
    EXPECT_EQ(Reference(L"&zwnj;").point, 0x200Cu);
}

TEST(HtmlReferenceTest, EveryNameOfTheTableIsFound)
{
    // The table is searched by halving: one name out of order would hide its neighbours.
    for (const wchar_t* name :
         {L"&Aacute;", L"&ETH;",   L"&OElig;",  L"&Omega;", L"&THORN;", L"&Yuml;",   L"&amp;",   L"&apos;",
          L"&bdquo;",  L"&bull;",  L"&cent;",   L"&darr;",  L"&euro;",  L"&frac12;", L"&ge;",    L"&gt;",
          L"&hArr;",   L"&harr;",  L"&hellip;", L"&infin;", L"&lArr;",  L"&laquo;",  L"&larr;",  L"&ldquo;",
          L"&le;",     L"&lsquo;", L"&lt;",     L"&mdash;", L"&nbsp;",  L"&ndash;",  L"&ne;",    L"&ordf;",
          L"&rArr;",   L"&rarr;",  L"&reg;",    L"&shy;",   L"&sup1;",  L"&szlig;",  L"&trade;", L"&uml;",
          L"&uuml;",   L"&yen;",   L"&zwj;"}) {
        EXPECT_EQ(Reference(name).length, TextLength(name)) << Utf8(name);
    }
}

TEST(HtmlReferenceTest, ReadsDecimalAndHexadecimalNumbers)
{
    EXPECT_EQ(Reference(L"&#8212;").point, 0x2014u);
    EXPECT_EQ(Reference(L"&#x2014;").point, 0x2014u);
    EXPECT_EQ(Reference(L"&#X1f600;").point, 0x1F600u);
    EXPECT_EQ(Reference(L"&#65x").length, 4);
}

TEST(HtmlReferenceTest, ACharacterBeyond16BitsBecomesAPairInTextsAndTargets)
{
    const HtmlDocument document = Parse(L"<a href=\"&#x1F600;.html\">&#x1F601;</a>");
    EXPECT_EQ(PlainText(document), CString(L"\U0001F601"));
    ASSERT_EQ(document.links.size(), 1u);
    EXPECT_EQ(document.links[0], CString(L"\U0001F600.html"));
}

TEST(HtmlReferenceTest, NumbersThatAreNoCharacterGiveTheReplacement)
{
    for (const wchar_t* text : {L"&#0;", L"&#xD800;", L"&#x110000;", L"&#99999999999999999999;"}) {
        EXPECT_EQ(Reference(text).point, 0xFFFDu) << Utf8(text);
    }
}

TEST(HtmlReferenceTest, NumbersOfControlsAreReadByCodePage1252)
{
    EXPECT_EQ(Reference(L"&#128;").point, 0x20ACu);
    EXPECT_EQ(Reference(L"&#150;").point, 0x2013u);
}

TEST(HtmlReferenceTest, WhatIsNoReferenceStays)
{
    for (const wchar_t* text : {L"&", L"& ", L"&;", L"&#", L"&#;", L"&#x;", L"&bogus;", L"&eacute",
                                L"&copy=1", L"&ampx", L"&verylongname;"}) {
        EXPECT_EQ(Reference(text).length, 0) << Utf8(text);
    }
}

TEST(HtmlParserTest, WhiteSpaceCollapsesAcrossElements)
{
    EXPECT_EQ(PlainTextOf(L"  a \r\n\t b <b> c</b> <i> </i>d  "), CString(L"a b c d"));
}

TEST(HtmlParserTest, NoBreakSpacesDoNotCollapse)
{
    EXPECT_EQ(PlainTextOf(L"a&nbsp;&nbsp;b"), CString(L"a  b"));
}

TEST(HtmlParserTest, BlocksAreLines)
{
    EXPECT_EQ(PlainTextOf(L"<h1>a</h1>b<p>c<div>d</div>e"), CString(L"a\r\nb\r\nc\r\nd\r\ne"));
}

TEST(HtmlParserTest, ALineBreakEndsALine)
{
    EXPECT_EQ(PlainTextOf(L"a <br> b<br/>c</br>d"), CString(L"a\r\nb\r\nc\r\nd"));
}

TEST(HtmlParserTest, ContentThatIsNoTextIsLeftOut)
{
    EXPECT_EQ(
        PlainTextOf(
            L"<!doctype html><?xml?><head><title>t</title><style>p{}</style><SCRIPT>if (a<b) {}</Script>"
            L"</head>a<!-- c <b> -->b"),
        CString(L"ab"));
}

TEST(HtmlParserTest, ContentWithoutItsEndTagShows)
{
    EXPECT_EQ(PlainTextOf(L"<style>a<p>b"), CString(L"a\r\nb"));
    EXPECT_EQ(PlainTextOf(L"<!-- a <b>b</b>"), CString(L"b"));
}

TEST(HtmlParserTest, ALessThanThatBeginsNoTagShows)
{
    EXPECT_EQ(PlainTextOf(L"1 < 2 <3 a<b"), CString(L"1 < 2 <3 a<b"));
    EXPECT_EQ(PlainTextOf(L"a<"), CString(L"a<"));
}

TEST(HtmlParserTest, UnknownTagsAreLeftOutAndTheirTextShows)
{
    EXPECT_EQ(PlainTextOf(L"<blink>a</blink><x:y z>b"), CString(L"ab"));
}

TEST(HtmlParserTest, FormattingNests)
{
    const HtmlDocument document = Parse(L"<b>one<i>two</i></b>three");
    EXPECT_TRUE(FontOf(document, L"one").bBold);
    EXPECT_FALSE(FontOf(document, L"one").bItalic);
    EXPECT_TRUE(FontOf(document, L"two").bBold && FontOf(document, L"two").bItalic);
    EXPECT_EQ(FontOf(document, L"three"), HtmlFont());
}

TEST(HtmlParserTest, MisnestedFormattingEndsWhereItsOwnTagEndsIt)
{
    const HtmlDocument document = Parse(L"<b>one<i>two</b>three</i>four");
    EXPECT_TRUE(FontOf(document, L"three").bItalic);
    EXPECT_FALSE(FontOf(document, L"three").bBold);
    EXPECT_EQ(FontOf(document, L"four"), HtmlFont());
}

TEST(HtmlParserTest, FontSizesAreOwnOrSteps)
{
    const HtmlDocument document =
        Parse(L"<font size=5>a</font><font size=+3>b</font><font size=\"-9\">c</font>");
    EXPECT_EQ(FontOf(document, L"a").sizePermille, 1500);
    EXPECT_EQ(FontOf(document, L"b").sizePermille, 2000);
    EXPECT_EQ(FontOf(document, L"c").sizePermille, 750);
}

TEST(HtmlParserTest, OnlyTheFirstFaceOfAListIsTaken)
{
    const HtmlDocument document = Parse(L"<font face=\"'Segoe UI', Arial\">a</font>");
    ASSERT_EQ(document.faces.size(), 1u);
    EXPECT_EQ(document.faces[0], CString(L"Segoe UI"));
}

TEST(HtmlParserTest, BodyColoursAreKept)
{
    const HtmlDocument document = Parse(L"<body bgcolor=\"#1F3A5F\" text=white link='#ff0'>x");
    EXPECT_EQ(document.background, 0x5F3A1Fu);
    EXPECT_EQ(document.textColor, 0xFFFFFFu);
    EXPECT_EQ(document.linkColor, 0x00FFFFu);
}

TEST(HtmlParserTest, BodyMarginsAreKept)
{
    const HtmlDocument document = Parse(L"<body leftmargin=\"0\" topmargin=12>x");
    EXPECT_EQ(document.marginHorizontal, 0);
    EXPECT_EQ(document.marginVertical, 12);
}

TEST(HtmlParserTest, WithoutMarginsTheLabelsOwnStay)
{
    for (const wchar_t* html : {L"x", L"<body>x", L"<body leftmargin=wide topmargin=\"\">x",
                                L"<body leftmargin=-5 topmargin=-100000>x"}) {
        EXPECT_EQ(Parse(html).marginHorizontal, noHtmlMargin) << Utf8(html);
        EXPECT_EQ(Parse(html).marginVertical, noHtmlMargin) << Utf8(html);
    }
}

TEST(HtmlParserTest, LinkTargetsAreResolvedAndUnderlined)
{
    const HtmlDocument document = Parse(L"<a href=\"a.html?x=1&amp;y=2&copy=3\">a</a> b");
    ASSERT_EQ(document.links.size(), 1u);
    EXPECT_EQ(document.links[0], CString(L"a.html?x=1&y=2&copy=3"));
    EXPECT_EQ(RunOf(document, L"a").link, 0);
    EXPECT_TRUE(FontOf(document, L"a").bUnderlined);
    EXPECT_EQ(RunOf(document, L" b").link, -1);
}

TEST(HtmlParserTest, ALinkWithinALinkEndsTheOuterOne)
{
    const HtmlDocument document = Parse(L"<a href=1>x<a href=2>y</a>z");
    EXPECT_EQ(RunOf(document, L"y").link, 1);
    EXPECT_EQ(RunOf(document, L"z").link, -1);
}

TEST(HtmlParserTest, ALinkOpenedInBoldStaysOneLinkWhenBoldEnds)
{
    const HtmlDocument document = Parse(L"<b><a href=1>x</b>y</a>");
    EXPECT_EQ(document.links.size(), 1u);
    EXPECT_EQ(RunOf(document, L"y").link, 0);
}

TEST(HtmlParserTest, QuotesMayHoldTheEndOfATag)
{
    EXPECT_EQ(Parse(L"<a href='a>b'>x</a>").links[0], CString(L"a>b"));
}

TEST(HtmlParserTest, AQuoteThatNeverClosesEndsWithItsTag)
{
    const HtmlDocument document = Parse(L"<a href=\"y>z</a>");
    EXPECT_EQ(document.links[0], CString(L"y"));
    EXPECT_EQ(PlainText(document), CString(L"z"));
}

TEST(HtmlParserTest, OrderedItemsAreNumberedFromTheStart)
{
    EXPECT_EQ(PlainTextOf(L"<ol start=9><li>a<li>b</ol><ol><li>c</ol>"), CString(L"9. a\r\n10. b\r\n1. c"));
}

TEST(HtmlParserTest, NestedListsNumberOnTheirOwn)
{
    EXPECT_EQ(PlainTextOf(L"<ol><li>a<ul><li>x</ul><li>b</ol>"), CString(L"1. a\r\n\u2013 x\r\n2. b"));
}

TEST(HtmlParserTest, AnEmptyItemKeepsItsNumber)
{
    EXPECT_EQ(PlainTextOf(L"<ol><li></li><li>b</ol>"), CString(L"1. \r\n2. b"));
}

TEST(HtmlParserTest, PreformattedTextKeepsItsSpaces)
{
    EXPECT_EQ(PlainTextOf(L"<pre>a  b\r\n\tc</pre>"), CString(L"a  b\r\n        c"));
}

TEST(HtmlParserTest, ImagesGiveTheirText)
{
    EXPECT_EQ(PlainTextOf(L"<img src=x alt=\"A &amp; B\"> c"), CString(L"A & B c"));
}

TEST(HtmlParserTest, EveryTextShowsBelowAThousandElements)
{
    EXPECT_EQ(PlainTextOf(Repeat(L"<b><ul><li>", 1000) + L"deep"),
              PlainTextOf(Repeat(L"<b><ul><li>", 2000) + L"deep"));
    EXPECT_GE(PlainTextOf(Repeat(L"<div>", 1000) + L"deep").Find(L"deep"), 0);
}

TEST(HtmlParserTest, ManyFontsUseNoMoreThanTheirLimit)
{
    CString html;
    for (int index = 0; index < 1000; ++index) {
        html += L"<font face=f" + NumberText(index) + L" size=" + NumberText(index % 7 + 1) + L">x</font>";
    }
    EXPECT_LE(Parse(html).fonts.size(), 96u);
}

TEST(HtmlParserTest, BrokenMarkupOfAMegabyteTakesLinearTime)
{
    // Each of these once needs a search to the end of the text; were it each time, the test would run for hours.
    for (const wchar_t* piece : {L"<a ", L"<a b=\"", L"<a b='\"", L"<!-- >", L"<script>", L"<style></style ",
                                 L"&#", L"</", L"<b><i>x</b>", L"<li>", L"<ul><li>", L"<a href=x>"}) {
        const auto start = std::chrono::steady_clock::now();
        (void)Parse(Repeat(piece, 1000000 / TextLength(piece)) + L"='>'\"");
        const auto seconds =
            std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - start)
                .count();
        EXPECT_LT(seconds, 20) << Utf8(piece);
    }
}

TEST(HtmlColorTest, ReadsNamesAndDigits)
{
    EXPECT_EQ(ParseHtmlColor(L"Navy"), 0x800000u);
    EXPECT_EQ(ParseHtmlColor(L"#12aBcD"), 0xCDAB12u);
    EXPECT_EQ(ParseHtmlColor(L"12ABCD"), 0xCDAB12u);
    EXPECT_EQ(ParseHtmlColor(L"#F80"), 0x0088FFu);
}

TEST(HtmlColorTest, AnythingElseIsNoColour)
{
    for (const wchar_t* text : {L"", L"#", L"#12345", L"#GG0000", L"nocolour", L"#1234567"}) {
        EXPECT_EQ(ParseHtmlColor(text), noHtmlColor) << Utf8(text);
    }
}

TEST(HtmlColorTest, AReadableColourIsTheWantedOneUnlessItRunsTogetherWithTheBackground)
{
    EXPECT_EQ(ReadableColor(0xFFFFFF, 0x5F3A1F), 0xFFFFFFu);
    EXPECT_EQ(ReadableColor(0xFFFFFF, 0xFFFFFF), 0x000000u);
    EXPECT_EQ(ReadableColor(0x000000, 0x000000), 0xFFFFFFu);
    EXPECT_EQ(ReadableColor(0xC0C0C0, 0xFFFFFF), 0x000000u);
}
