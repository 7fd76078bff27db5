#include "setup/addition_texts.h"

#include "setup/resource.h"
#include "setup/texts.h"

namespace {

constexpr std::size_t SHOWN = 8; // with target and reason about as many as a screen holds

// Those of one kind, each below its target.
CString FindingLines(const std::vector<AdditionFinding>& findings, bool blocking)
{
    CString lines;
    std::size_t count = 0;
    for (const AdditionFinding& finding : findings) {
        if (finding.Blocks() != blocking || ++count > SHOWN) {
            continue;
        }
        lines += L"\n\n" + (finding.strTarget.IsEmpty() ? CString() : finding.strTarget + L"\n") +
                 finding.strReason;
    }
    if (count > SHOWN) {
        lines +=
            L"\n\n" + SetupText(IDS_BUILD_MORE_WARNINGS, {NumberText(static_cast<long long>(count - SHOWN))});
    }
    return lines;
}

} // namespace

CString DescribeFinding(const AdditionFinding& finding)
{
    return (finding.strTarget.IsEmpty() ? CString() : finding.strTarget + L": ") + finding.strReason;
}

CString ComposeFindings(const std::vector<AdditionFinding>& findings)
{
    const CString blocking = FindingLines(findings, true);
    const CString others = FindingLines(findings, false);
    CString text = blocking.IsEmpty() ? CString() : SetupText(IDS_ADDITIONS_BLOCK, {blocking});
    if (!others.IsEmpty()) {
        text += (text.IsEmpty() ? L"" : L"\n\n") + SetupText(IDS_ADDITIONS_NOTE, {others});
    }
    return text;
}
