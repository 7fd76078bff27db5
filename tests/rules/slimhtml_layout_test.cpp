#include "slimhtml/line_breaks.h"
#include "slimhtml/link_walk.h"
#include "tests/rules/slimhtml_support.h"

#include <gtest/gtest.h>

TEST(HtmlLayoutTest, WordsGoToTheNextLineWhenTheyHaveNoRoom)
{
    EXPECT_EQ(LinesOf(L"one two three", 80), CString(L"one two|three"));
}

TEST(HtmlLayoutTest, AWordThatJustFitsStays)
{
    EXPECT_EQ(LinesOf(L"one two", 70), CString(L"one two"));
    EXPECT_EQ(LinesOf(L"one two", 69), CString(L"one|two"));
}

TEST(HtmlLayoutTest, AWordGoesTogetherAcrossItsFonts)
{
    EXPECT_EQ(LinesOf(L"one t<b>w</b>o", 60), CString(L"one|two"));
}

TEST(HtmlLayoutTest, AWordWiderThanTheLabelIsCut)
{
    EXPECT_EQ(LinesOf(L"a abcdefgh", 40), CString(L"a|abcd|efgh"));
}

TEST(HtmlLayoutTest, ACutKeepsSurrogatesTogether)
{
    EXPECT_EQ(LinesOf(L"ab\U0001F600\U0001F600c", 50), CString(L"ab\U0001F600|\U0001F600c"));
}

TEST(HtmlLayoutTest, NoBreakSpacesKeepWordsTogether)
{
    EXPECT_EQ(LinesOf(L"x a&nbsp;b", 40), CString(L"x|a\u00A0b"));
}

TEST(HtmlLayoutTest, IdeographsBreakAnywhereButBeforeClosingMarks)
{
    EXPECT_EQ(LinesOf(L"\u65E5\u672C\u8A9E\u3002\u6587", 40), CString(L"\u65E5\u672C\u8A9E\u3002|\u6587"));
    EXPECT_FALSE(CanBreakBetween(0x8A9E, 0x3002));
    EXPECT_FALSE(CanBreakBetween(0x300C, 0x8A9E));
}

TEST(HtmlLayoutTest, HyphensBetweenLettersEndLines)
{
    EXPECT_EQ(LinesOf(L"well-known", 60), CString(L"well-|known"));
    EXPECT_FALSE(CanBreakBetween(L'-', L'1'));
}

TEST(HtmlLayoutTest, WithoutWrappingOnlyBreaksEndLines)
{
    const HtmlDocument document = Parse(L"one two three<br>four");
    HtmlLayoutOptions options = Wide(40);
    options.bWrap = false;
    EXPECT_EQ(LinesOf(document, LayOut(document, options)), CString(L"one two three|four"));
}

TEST(HtmlLayoutTest, TwoBreaksLeaveALineEmpty)
{
    EXPECT_EQ(LinesOf(L"a<br><br>b", 100), CString(L"a||b"));
}

TEST(HtmlLayoutTest, ABreakAtTheEndLeavesNoEmptyLine)
{
    EXPECT_EQ(LinesOf(L"a<br>", 100), CString(L"a"));
}

TEST(HtmlLayoutTest, MarginsStandAroundTheText)
{
    const HtmlDocument document = Parse(L"a");
    HtmlLayoutOptions options = Wide(100);
    options.marginHorizontal = 7;
    options.marginVertical = 5;
    const HtmlLayout layout = LayOut(document, options);
    EXPECT_EQ(layout.height, 5 + 20 + 5);
    EXPECT_EQ(layout.lines[0].top, 5);
    EXPECT_EQ(layout.fragments[0].x, 7);
}

TEST(HtmlLayoutTest, FontsOfOneLineShareABaseline)
{
    const HtmlDocument document = Parse(L"small <font size=6>large</font>");
    const HtmlLayout layout = LayOut(document, Wide(1000));
    ASSERT_EQ(layout.lines.size(), 1u);
    EXPECT_EQ(layout.lines[0].baseline, 32); // the larger font's ascent
    EXPECT_EQ(layout.lines[0].height, 40);
}

TEST(HtmlLayoutTest, ParagraphsStandApart)
{
    const HtmlLayout layout = LayOut(Parse(L"<p>a<p>b"), Wide(100));
    EXPECT_EQ(layout.lines[1].top, 20 + 14);
}

TEST(HtmlLayoutTest, LineSpacingMakesLinesHigher)
{
    HtmlLayoutOptions options = Wide(100);
    options.lineSpacingPermille = 1500;
    EXPECT_EQ(LayOut(Parse(L"a<br>b"), options).height, 60);
}

TEST(HtmlLayoutTest, AlignmentShiftsLines)
{
    const HtmlDocument document = Parse(L"<center>ab</center><p align=right>ab");
    const HtmlLayout layout = LayOut(document, Wide(100));
    EXPECT_EQ(layout.fragments[0].x, 40);
    EXPECT_EQ(layout.fragments[1].x, 80);
}

TEST(HtmlLayoutTest, ItemsAreSetInAndTheirBulletStandsLeftOfThem)
{
    const HtmlDocument document = Parse(L"<ul><li>ab</ul>");
    const HtmlLayout layout = LayOut(document, Wide(200));
    ASSERT_EQ(layout.fragments.size(), 2u);
    EXPECT_EQ(layout.fragments[0].x, 32);
    EXPECT_EQ(layout.fragments[1].x + layout.fragments[1].width, 32 - 8);
}

TEST(HtmlLayoutTest, AnItemOfTwoLinesHasItsBulletBesideTheFirst)
{
    const HtmlDocument document = Parse(L"<ul><li>ab cd</ul>");
    const HtmlLayout layout = LayOut(document, Wide(80));
    ASSERT_EQ(layout.lines.size(), 2u);
    EXPECT_EQ(layout.lines[0].fragmentCount, 2);
    EXPECT_EQ(layout.lines[1].fragmentCount, 1);
}

TEST(HtmlLayoutTest, DeepListsLeaveHalfTheWidth)
{
    CString html;
    for (int depth = 0; depth < 40; ++depth) {
        html += L"<ul><li>";
    }
    const HtmlLayout layout = LayOut(Parse(html + L"x"), Wide(200));
    for (const HtmlFragment& fragment : layout.fragments) {
        EXPECT_LE(fragment.x, 100);
    }
}

TEST(HtmlLayoutTest, ImagesStandOnTheBaseline)
{
    const HtmlDocument document = Parse(L"a <img src=x> b");
    TenPixelLetters letters(document);
    letters.bHasImages = true;
    const HtmlLayout layout = LayOutHtml(document, Wide(500), letters);
    EXPECT_EQ(layout.lines[0].baseline, 40);
    EXPECT_EQ(layout.lines[0].height, 40 + 4);
}

TEST(HtmlLayoutTest, AnImageWiderThanTheLabelKeepsItsProportions)
{
    const HtmlDocument document = Parse(L"<img src=x>");
    TenPixelLetters letters(document);
    letters.bHasImages = true;
    letters.imageSize = {400, 200};
    const HtmlLayout layout = LayOutHtml(document, Wide(100), letters);
    EXPECT_EQ(layout.fragments[0].width, 100);
    EXPECT_EQ(layout.fragments[0].height, 50);
}

TEST(HtmlLayoutTest, AnImageThatCannotBeShownIsItsText)
{
    EXPECT_EQ(LinesOf(L"a <img src=x alt=\"some picture\">", 90), CString(L"a some|picture"));
}

TEST(HtmlLayoutTest, AnEndlessWordIsMeasuredInLinearTime)
{
    CString html;
    for (int index = 0; index < 100000; ++index) {
        html += L"x";
    }
    const HtmlDocument document = Parse(html);
    TenPixelLetters letters(document);
    const HtmlLayout layout = LayOutHtml(document, Wide(500), letters);
    EXPECT_GE(layout.lines.size(), 2000u);
    EXPECT_LT(letters.measuredUnits, 100000 * 20);
}

TEST(HtmlLayoutTest, ALabelWithoutWidthKeepsAColumnForItsText)
{
    EXPECT_EQ(LinesOf(L"ab cd", 0), CString(L"ab|cd"));
}

TEST(HtmlLayoutTest, AnEmptyPageHasNoHeight)
{
    HtmlLayoutOptions options = Wide(100);
    options.marginVertical = 10;
    EXPECT_EQ(LayOut(Parse(L" <p></p> "), options).height, 0);
}

TEST(LinkWalkTest, FindsTheLinkUnderAPoint)
{
    const HtmlDocument document = Parse(L"ab <a href=x>cd</a> ef");
    const HtmlLayout layout = LayOut(document, Wide(500));
    EXPECT_EQ(LinkAt(document, layout, 29, 10), -1);
    EXPECT_EQ(LinkAt(document, layout, 30, 10), 0);
    EXPECT_EQ(LinkAt(document, layout, 49, 19), 0);
    EXPECT_EQ(LinkAt(document, layout, 50, 10), -1);
    EXPECT_EQ(LinkAt(document, layout, 30, 20), -1);
}

TEST(LinkWalkTest, LinksWithoutTextAreNoStops)
{
    const HtmlDocument document = Parse(L"<a href=1></a><a href=2>x</a><a href=3>y z</a>");
    EXPECT_EQ(FocusOrder(document, LayOut(document, Wide(500))), (std::vector<int>{1, 2}));
}

TEST(LinkWalkTest, TheWalkEntersAndLeavesAtItsEnds)
{
    const std::vector<int> order = {3, 5};
    EXPECT_EQ(NextLink(order, -1, 1), 3);
    EXPECT_EQ(NextLink(order, 3, 1), 5);
    EXPECT_EQ(NextLink(order, 5, 1), -1);
    EXPECT_EQ(NextLink(order, -1, -1), 5);
    EXPECT_EQ(NextLink(order, 3, -1), -1);
    EXPECT_EQ(NextLink({}, -1, 1), -1);
}

TEST(LinkWalkTest, ALinkOnTwoLinesHasTwoBoxes)
{
    const HtmlDocument document = Parse(L"<a href=x>one two</a>");
    const std::vector<HtmlBox> boxes = LinkBoxes(document, LayOut(document, Wide(40)), 0);
    ASSERT_EQ(boxes.size(), 2u);
    EXPECT_EQ(boxes[1].top, 20);
    EXPECT_EQ(boxes[1].right, 30);
}
