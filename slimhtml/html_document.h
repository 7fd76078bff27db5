// What a page of HTML holds once its markup is read: blocks of runs over one text. Knows nothing of pixels.
#pragma once

#include "base/string.h"

#include <cstdint>
#include <vector>

// Red in the lowest byte, as the platform's colours.
using HtmlColor = std::uint32_t;
constexpr HtmlColor noHtmlColor = 0xFFFFFFFF;

constexpr int noHtmlMargin = -1;

enum class HtmlAlign
{
    Default, // the label's own
    Left,
    Center,
    Right
};

struct HtmlFont
{
    int sizePermille = 1000; // of the label's font
    bool bBold = false;
    bool bItalic = false;
    bool bUnderlined = false;
    bool bStruckOut = false;
    bool bMonospaced = false;
    int face = -1; // index into HtmlDocument::faces; -1 is the label's

    bool operator==(const HtmlFont&) const = default;
};

enum class HtmlRunKind
{
    Text,
    LineBreak,
    Image // its text is what stands for the image when it can't be shown
};

// A stretch of text in one style. Single spaces are the places where a line may end.
struct HtmlRun
{
    HtmlRunKind kind = HtmlRunKind::Text;
    int text = 0; // index into HtmlDocument::text
    int length = 0;
    int font = 0; // index into HtmlDocument::fonts
    HtmlColor color = noHtmlColor;
    int link = -1;  // index into HtmlDocument::links
    int image = -1; // index into HtmlDocument::images
};

enum class HtmlBlockKind
{
    Paragraph,
    Rule
};

struct HtmlBlock
{
    HtmlBlockKind kind = HtmlBlockKind::Paragraph;
    int firstRun = 0;
    int runCount = 0;
    int marker = -1;     // run that holds a list item's bullet or number
    int indentSteps = 0; // one a list or quotation
    HtmlAlign align = HtmlAlign::Default;
    int spaceAbovePermille = 0; // of the label's line height
};

struct HtmlImage
{
    CString source;
    int width = 0; // pixels at 96 dpi; 0: the image's own
    int height = 0;
};

struct HtmlDocument
{
    std::vector<wchar_t> text;
    std::vector<HtmlRun> runs;
    std::vector<HtmlBlock> blocks;
    std::vector<HtmlFont> fonts{HtmlFont()}; // the first is the label's own
    std::vector<CString> faces;
    std::vector<CString> links; // targets, in the order of the text
    std::vector<HtmlImage> images;
    HtmlColor background = noHtmlColor; // what the body gives
    HtmlColor textColor = noHtmlColor;
    HtmlColor linkColor = noHtmlColor;
    int marginHorizontal = noHtmlMargin; // pixels at 96 dpi, likewise
    int marginVertical = noHtmlMargin;
};

// The text alone, a line a block, as assistive tools read it. Lines end in "\r\n", the last one excepted.
[[nodiscard]] CString PlainText(const HtmlDocument& document);
