#include "tests/slimhtml/label_test_window.h"

#include <gtest/gtest.h>

#include <string>

namespace {

constexpr COLORREF red = RGB(255, 0, 0);
constexpr COLORREF green = RGB(0, 255, 0);

class LabelImageTest : public testing::Test
{
protected:
    void SetUp() override
    {
        label.SetRenderFormat(LabelTestWindow::FrameFormat());
        ASSERT_TRUE(label.SubclassWindow(window.Label()));
    }
    void TearDown() override
    {
        if (!m_page.IsEmpty()) {
            DeleteFileW(m_page);
        }
    }

    // Loads a page that stands beside the images.
    void LoadPage(const char* html)
    {
        m_page = FixtureFolder() + L"page_of_test.html";
        const HANDLE file =
            CreateFileW(m_page, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        DWORD written = 0;
        WriteFile(file, html, static_cast<DWORD>(strlen(html)), &written, nullptr);
        CloseHandle(file);
        ASSERT_TRUE(label.LoadFile(m_page));
    }

    LabelTestWindow window{240, 100};
    CSlimHtmlCtrl label;

private:
    CString m_page;
};

} // namespace

TEST_F(LabelImageTest, APngBesideThePageIsShown)
{
    LoadPage("<img src=\"red.png\">");
    EXPECT_TRUE(window.Shows(red));
}

TEST_F(LabelImageTest, AGifIsShownAtTheSizeThatThePageGives)
{
    LoadPage("<img src=\"green.gif\" width=40 height=30>");
    EXPECT_EQ(window.Pixel(10 + 20, 10 + 15), green);
}

TEST_F(LabelImageTest, AMissingHeightFollowsFromTheWidth)
{
    LoadPage("<img src=\"red.png\" width=64>"); // 16 by 8
    EXPECT_EQ(label.MeasureHeight(240), 10 + 32 + 10);
}

TEST_F(LabelImageTest, AnImageWiderThanTheLabelIsMadeToFit)
{
    LoadPage("<img src=\"red.png\" width=2000 height=100>");
    EXPECT_EQ(window.Pixel(240 - 11, 12), red);
    EXPECT_EQ(window.Pixel(240 - 5, 12), RGB(255, 255, 255));
}

TEST_F(LabelImageTest, PercentsInTheSourceAreResolved)
{
    LoadPage("<img src=\"red%20image.png\">");
    EXPECT_TRUE(window.Shows(red));
}

TEST_F(LabelImageTest, ImagesThatCannotBeShownGiveTheirText)
{
    for (const char* source :
         {"missing.png", "broken.png", "no_image.png", "enormous.png", "http://host/a.png"}) {
        LoadPage((std::string("<img src=\"") + source + "\" alt=\"a picture\">").c_str());
        EXPECT_EQ(WindowText(window.Label()), CString(L"a picture"));
        EXPECT_FALSE(window.Shows(red)) << source;
        EXPECT_EQ(label.MeasureHeight(240), (label.LoadText(L"x"), label.MeasureHeight(240))) << source;
    }
}

TEST_F(LabelImageTest, ATextWithoutAFileLoadsNoImages)
{
    label.LoadText(L"<img src=\"red.png\" alt=\"none\">");
    EXPECT_FALSE(window.Shows(red));
}

TEST_F(LabelImageTest, ATextShowsTheImageOfAFullPath)
{
    label.LoadText(L"<img src=\"" + FixtureFolder() + L"red.png\" width=32>");
    EXPECT_EQ(window.Pixel(10 + 16, 10 + 8), red);
}

TEST_F(LabelImageTest, APageShowsNoImageOfAFullPath)
{
    LoadPage(Utf8(L"<img src=\"" + FixtureFolder() + L"red.png\">").c_str());
    EXPECT_FALSE(window.Shows(red));
}

TEST_F(LabelImageTest, APageShowsNoImageOfTheFolderAbove)
{
    const CString folder = FixtureFolder().Left(FixtureFolder().GetLength() - 1);
    LoadPage(Utf8(L"<img src=\"../" + folder.Mid(folder.ReverseFind(L'\\') + 1) + L"/red.png\">").c_str());
    EXPECT_FALSE(window.Shows(red));
}

TEST_F(LabelImageTest, MarginsOfTheBodyPutTheImageIntoTheCorner)
{
    label.LoadText(L"<body leftmargin=\"0\" topmargin=\"0\"><img src=\"" + FixtureFolder() + L"red.png\">");
    EXPECT_EQ(window.Pixel(1, 1), red);
    EXPECT_EQ(label.MeasureHeight(240), 8); // its own height
}

TEST(LabelMarkTest, AMarkFitsIntoItsSmallLabel)
{
    LabelTestWindow window(18, 18); // 12 by 11 dialog units
    CSlimHtmlCtrl label;
    label.SetRenderFormat(LabelTestWindow::FrameFormat());
    ASSERT_TRUE(label.SubclassWindow(window.Label()));
    label.LoadText(L"<body leftmargin=\"0\" topmargin=\"0\"><img src=\"" + FixtureFolder() +
                   L"red.png\" width=16 height=16>");
    EXPECT_EQ(window.Pixel(1, 1), red);
    EXPECT_EQ(window.Pixel(14, 14), red);
    EXPECT_FALSE(label.IsScrollable());
    EXPECT_EQ(WindowText(window.Label()), CString()) << "what a mark means stands in the text beside it";
}
