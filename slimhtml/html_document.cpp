#include "slimhtml/html_document.h"

namespace {

void AppendRunText(CString& text, const HtmlDocument& document, const HtmlRun& run)
{
    constexpr wchar_t noBreakSpace = 0xA0;
    if (run.kind == HtmlRunKind::LineBreak) {
        text += L"\r\n";
    }
    for (int at = run.text; at < run.text + run.length; ++at) {
        text += document.text[at] == noBreakSpace ? L' ' : document.text[at];
    }
}

} // namespace

CString PlainText(const HtmlDocument& document)
{
    CString text;
    for (const HtmlBlock& block : document.blocks) {
        if (block.kind == HtmlBlockKind::Rule) {
            continue;
        }
        if (!text.IsEmpty()) {
            text += L"\r\n";
        }
        if (block.marker >= 0) {
            AppendRunText(text, document, document.runs[block.marker]);
            text += L' ';
        }
        for (int run = block.firstRun; run < block.firstRun + block.runCount; ++run) {
            AppendRunText(text, document, document.runs[run]);
        }
    }
    return text;
}
