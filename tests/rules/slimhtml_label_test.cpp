#include "slimhtml/file_rules.h"
#include "slimhtml/label_keys.h"
#include "tests/support/text.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr ScrollRange tall = {100, 50, 400, 10};
constexpr ScrollRange fits = {0, 50, 50, 10};

CString TextFrom(const std::string& bytes)
{
    return TextFromFileBytes(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

bool ReadHeader(const std::string& bytes, HtmlSize& size)
{
    return ReadImageHeader(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), size);
}

int ScrollTo(LabelKey key)
{
    const LabelDecision decision = DecideKey(key, {}, -1, tall);
    EXPECT_EQ(decision.action, LabelAction::Scroll);
    return decision.value;
}

} // namespace

TEST(LabelScrollTest, PositionsStayWithinTheText)
{
    EXPECT_EQ(ClampScroll(tall, -1), 0);
    EXPECT_EQ(ClampScroll(tall, 351), 350);
    EXPECT_EQ(ClampScroll(fits, 1), 0);
}

TEST(LabelScrollTest, WhatIsInViewMovesNothing)
{
    EXPECT_EQ(ScrollIntoView(tall, 110, 140), 100);
}

TEST(LabelScrollTest, WhatIsOutOfViewMovesNoMoreThanItMust)
{
    EXPECT_EQ(ScrollIntoView(tall, 160, 170), 120);
    EXPECT_EQ(ScrollIntoView(tall, 40, 60), 40);
    EXPECT_EQ(ScrollIntoView(tall, 200, 300), 200); // higher than the label: its upper end
}

TEST(LabelScrollTest, SmallTurnsOfTheWheelAddUp)
{
    int rest = 0;
    EXPECT_EQ(ScrollByWheel(tall, -3, 3, rest), 100);
    int position = 100;
    for (int turn = 1; turn < 40; ++turn) {
        position = ScrollByWheel({position, 50, 400, 10}, -3, 3, rest);
    }
    EXPECT_EQ(position, 130);
}

TEST(LabelScrollTest, TheWheelMayTurnWholePages)
{
    int rest = 0;
    EXPECT_EQ(ScrollByWheel(tall, 120, -1, rest), 50);
}

TEST(LabelKeysTest, ScrollKeysMoveByLineAndPage)
{
    EXPECT_EQ(ScrollTo(LabelKey::Up), 90);
    EXPECT_EQ(ScrollTo(LabelKey::Down), 110);
    EXPECT_EQ(ScrollTo(LabelKey::PageUp), 60);
    EXPECT_EQ(ScrollTo(LabelKey::PageDown), 140);
    EXPECT_EQ(ScrollTo(LabelKey::Home), 0);
    EXPECT_EQ(ScrollTo(LabelKey::End), 350);
}

TEST(LabelKeysTest, ALabelThatDoesNotScrollLeavesTheScrollKeys)
{
    EXPECT_EQ(DecideKey(LabelKey::Down, {0}, 0, fits).action, LabelAction::None);
}

TEST(LabelKeysTest, EnterWithoutALinkIsTheDialogs)
{
    EXPECT_EQ(DecideKey(LabelKey::Activate, {0}, -1, tall).action, LabelAction::None);
}

TEST(LabelKeysTest, ShiftTabFromNoLinkIsTheDialogs)
{
    EXPECT_EQ(DecideKey(LabelKey::Previous, {0, 1}, -1, tall).action, LabelAction::None);
}

TEST(FileRulesTest, TextsAreReadByTheirByteOrderMark)
{
    EXPECT_EQ(TextFrom("\xC3\xA9"), CString(L"\u00E9"));
    EXPECT_EQ(TextFrom("\xEF\xBB\xBF\xC3\xA9"), CString(L"\u00E9"));
    EXPECT_EQ(TextFrom(std::string("\xFF\xFE\xE9\0", 4)), CString(L"\u00E9"));
    EXPECT_EQ(TextFrom(std::string("\xFE\xFF\0\xE9", 4)), CString(L"\u00E9"));
    EXPECT_EQ(TextFrom(std::string("\xFF\xFE\xE9\0\x41", 5)), CString(L"\u00E9"));
    EXPECT_EQ(TextFrom(""), CString());
}

TEST(FileRulesTest, ImageHeadersGiveTheirSize)
{
    HtmlSize size;
    ASSERT_TRUE(ReadHeader(std::string("\x89PNG\r\n\x1A\n\0\0\0\rIHDR\0\0\1\0\0\0\0\x10", 24), size));
    EXPECT_EQ(size.width, 256);
    EXPECT_EQ(size.height, 16);
    ASSERT_TRUE(ReadHeader(std::string("GIF89a\x02\x01\x03\0", 10), size));
    EXPECT_EQ(size.width, 0x102);
    EXPECT_EQ(size.height, 3);
}

TEST(FileRulesTest, OtherFilesAreNoImages)
{
    HtmlSize size;
    EXPECT_FALSE(ReadHeader("", size));
    EXPECT_FALSE(ReadHeader("GIF89a", size));
    EXPECT_FALSE(ReadHeader(std::string("BM\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0", 26), size));
}

TEST(FileRulesTest, HugeImagesAreRefused)
{
    EXPECT_TRUE(IsReasonableImage({1920, 1080}));
    EXPECT_FALSE(IsReasonableImage({60000, 60000}));
    EXPECT_FALSE(IsReasonableImage({16384, 16384}));
    EXPECT_FALSE(IsReasonableImage({0, 10}));
}

TEST(FileRulesTest, ImagesLieBesideOrBelowThePage)
{
    EXPECT_EQ(ImagePath(L"C:\\help\\", L"images/a%20b.png"), CString(L"C:\\help\\images\\a b.png"));
}

TEST(FileRulesTest, ImagesFromElsewhereAreNotLoaded)
{
    for (const wchar_t* source :
         {L"http://host/a.png", L"\\\\host\\share\\a.png", L"//host/a.png", L"C:\\a.png",
          L"%5C%5Chost%5Cshare%5Ca.png", L"file:a.png", L"../a.png", L"images/..%2f../a.png", L""}) {
        EXPECT_EQ(ImagePath(L"C:\\help\\", source), CString()) << Utf8(source);
    }
    EXPECT_EQ(ImagePath(L"C:\\help\\", L"a..b/..c.png"), CString(L"C:\\help\\a..b\\..c.png"));
}

TEST(FileRulesTest, ATextNamesItsImagesByFullPaths)
{
    EXPECT_EQ(ImagePath(L"", L"C:\\R&D 50%20\\a.gif"), CString(L"C:\\R&D 50%20\\a.gif"));
    EXPECT_EQ(ImagePath(L"", L"c:/images/a.gif"), CString(L"c:\\images\\a.gif"));
    EXPECT_EQ(ImagePath(L"", L"\\\\server\\share\\a.gif"), CString(L"\\\\server\\share\\a.gif"));
}

TEST(FileRulesTest, ATextNamesNoImagesInAnyOtherWay)
{
    for (const wchar_t* source :
         {L"a.png", L"images\\a.png", L"\\a.png", L"C:a.png", L"C:", L"1:\\a.png", L"http://host/a.png",
          L"file:///C:/a.png", L"C:\\a.png:stream", L"\\\\?\\C:\\a.png", L"\\\\?\\UNC\\server\\share\\a.png",
          L"\\\\.\\pipe\\a", L"//?/C:/a.png", L"\\??\\C:\\a.png", L"\\\\\\a.png", L"\\\\server\\share:a",
          L""}) {
        EXPECT_EQ(ImagePath(L"", source), CString()) << Utf8(source);
    }
}

TEST(FileRulesTest, DisplaySizesFollowThePageAndTheDevice)
{
    const auto shown = [](int width, int height, int dpi) {
        const HtmlSize size = DisplaySize({CString(), width, height}, {40, 20}, dpi);
        return std::pair(size.width, size.height);
    };
    EXPECT_EQ(shown(0, 0, 96), std::pair(40, 20));
    EXPECT_EQ(shown(80, 0, 96), std::pair(80, 40));
    EXPECT_EQ(shown(0, 10, 96), std::pair(20, 10));
    EXPECT_EQ(shown(30, 30, 96), std::pair(30, 30));
    EXPECT_EQ(shown(0, 0, 192), std::pair(80, 40));
}
