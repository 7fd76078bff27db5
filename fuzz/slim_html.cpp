// A page of UTF-8, laid out at a width that its first byte gives: no input may crash, hang or lose its order.
#include "slimhtml/file_rules.h"
#include "slimhtml/html_parser.h"
#include "slimhtml/link_walk.h"

#include <algorithm>

namespace {

class FuzzedDevice : public IHtmlMeasurer
{
public:
    virtual ~FuzzedDevice() = default;
    HtmlFontMetrics Metrics(int font) override { return {10 + font, 3}; }
    int TextWidth(int font, const wchar_t*, int length) override { return length * (6 + font % 5); }
    int FitText(int font, const wchar_t*, int length, int width) override
    {
        return std::clamp(width / (6 + font % 5), 0, length);
    }
    bool ImageSize(int image, HtmlSize& size) override
    {
        size = {image * 20 + 1, 15};
        return image % 2 == 0;
    }
};

void CheckLayout(const HtmlDocument& document, const HtmlLayout& layout)
{
    int bottom = 0;
    int fragments = 0;
    for (const HtmlLine& line : layout.lines) {
        if (line.top < bottom || line.firstFragment != fragments) {
            __builtin_trap();
        }
        bottom = line.top + line.height;
        fragments += line.fragmentCount;
    }
    for (const HtmlFragment& fragment : layout.fragments) {
        const int end = fragment.text + fragment.length;
        if (fragment.text < 0 || fragment.length < 0 || end > static_cast<int>(document.text.size())) {
            __builtin_trap();
        }
    }
    if (bottom > layout.height || fragments != static_cast<int>(layout.fragments.size())) {
        __builtin_trap();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0) {
        return 0;
    }
    const CString html = TextFromFileBytes(data + 1, size - 1);
    const HtmlDocument document = ParseHtml(html, html.GetLength());
    FuzzedDevice device;
    HtmlLayoutOptions options;
    options.width = data[0] * 4;
    options.bWrap = data[0] % 8 != 7;
    const HtmlLayout layout = LayOutHtml(document, options, device);
    CheckLayout(document, layout);
    for (int link : FocusOrder(document, layout)) {
        const std::vector<HtmlBox> boxes = LinkBoxes(document, layout, link);
        if (boxes.empty()) {
            __builtin_trap();
        }
        static_cast<void>(LinkAt(document, layout, boxes[0].left, boxes[0].top));
    }
    for (const HtmlImage& image : document.images) {
        static_cast<void>(ImagePath(L"C:\\pages\\", image.source));
    }
    static_cast<void>(PlainText(document));
    HtmlSize imageSize;
    static_cast<void>(ReadImageHeader(data, size, imageSize));
    return 0;
}
