#include "setup/review_document.h"

#include "builder/change_report.h"

namespace {

constexpr wchar_t INDENT[] = L"  ";

void AppendText(CString& text, const ReviewDocument& nodes, const CString& indent)
{
    for (const ReviewNode& node : nodes) {
        text += MarkOf(node);
        text += indent;
        text += node.strText;
        text += L"\r\n";
        AppendText(text, node.children, indent + INDENT);
    }
}

void AppendJson(CString& text, const ReviewDocument& nodes, const CString& indent)
{
    text += L"[";
    for (std::size_t index = 0; index < nodes.size(); ++index) {
        const ReviewNode& node = nodes[index];
        text += index ? L",\r\n" : L"\r\n";
        text += indent;
        text += L"{\"text\": " + JsonText(node.strText);
        text += node.bChanged ? L", \"changed\": true" : L"";
        text += node.bWarning ? L", \"warning\": true" : L"";
        if (!node.strPage.IsEmpty()) {
            text += L", \"page\": " + JsonText(node.strPage);
        }
        if (!node.strProductCode.IsEmpty()) {
            text += L", \"product\": " + JsonText(node.strProductCode);
        }
        if (!node.children.empty()) {
            text += L", \"lines\": ";
            AppendJson(text, node.children, indent + INDENT);
        }
        text += L"}";
    }
    text += L"]";
}

} // namespace

CString MarkOf(const ReviewNode& node)
{
    return node.bWarning ? L"! " : node.bChanged ? L"* " : L"  ";
}

CString ComposeReviewText(const ReviewDocument& review)
{
    CString text;
    AppendText(text, review, CString());
    return text;
}

CString ComposeReviewJson(const ReviewDocument& review)
{
    CString text = L"{\r\n\"version\": 1,\r\n\"review\": ";
    AppendJson(text, review, INDENT);
    return text + L"\r\n}\r\n";
}
