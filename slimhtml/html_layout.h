// Where everything of a document stands: lines of fragments, in pixels from the label's upper left corner.
#pragma once

#include "slimhtml/html_document.h"

struct HtmlSize
{
    int width = 0;
    int height = 0;
};

struct HtmlFontMetrics
{
    int ascent = 0;
    int descent = 0;
};

// Answers the layout how large things are on the device. Fonts and images are indexes into the document's lists.
class IHtmlMeasurer
{
public:
    virtual HtmlFontMetrics Metrics(int font) = 0;
    virtual int TextWidth(int font, const wchar_t* text, int length) = 0;
    // How many units from the start are at most that wide.
    virtual int FitText(int font, const wchar_t* text, int length, int width) = 0;
    // False when the image can't be shown: its text is laid out instead.
    virtual bool ImageSize(int image, HtmlSize& size) = 0;

protected:
    ~IHtmlMeasurer() = default;
};

struct HtmlLayoutOptions
{
    int width = 0;            // of the label
    int marginHorizontal = 0; // pixels on both sides
    int marginVertical = 0;
    int lineSpacingPermille = 1000;
    bool bWrap = true;
    HtmlAlign align = HtmlAlign::Left; // of blocks that name none
};

enum class HtmlFragmentKind
{
    Text,
    Image,
    Rule
};

struct HtmlFragment
{
    HtmlFragmentKind kind = HtmlFragmentKind::Text;
    int x = 0;
    int width = 0;
    int height = 0; // of an image, which stands on the baseline
    int run = -1;
    int text = 0;
    int length = 0;
};

struct HtmlLine
{
    int top = 0;
    int height = 0;
    int baseline = 0; // from the top of the label
    int firstFragment = 0;
    int fragmentCount = 0;
};

struct HtmlLayout
{
    std::vector<HtmlLine> lines; // from top to bottom
    std::vector<HtmlFragment> fragments;
    int height = 0; // margins included; 0 margins and no text give 0
};

[[nodiscard]] HtmlLayout LayOutHtml(const HtmlDocument& document, const HtmlLayoutOptions& options,
                                    IHtmlMeasurer& measurer);
