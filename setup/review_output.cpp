#include "setup/review_output.h"

#include "base/system_text.h"
#include "setup/record_file.h"
#include "setup/resource.h"
#include "setup/texts.h"

void LogReview(const ReviewDocument& review, CRunLog& log)
{
    const CString text = ComposeReviewText(review);
    for (int start = 0; start < text.GetLength();) {
        const int end = text.Find(L"\r\n", start);
        log.Line(text.Mid(start, end - start));
        start = end + 2;
    }
}

CString WritePlan(const ReviewDocument& review, const CString& file)
{
    const bool asJson = file.Right(5).CompareNoCase(L".json") == 0;
    const CString text = asJson ? ComposeReviewJson(review) : ComposeReviewText(review);
    const unsigned long code = ReplaceTextFile(file, text, !asJson);
    return code == 0 ? CString() : SetupText(IDS_PLAN_FAILED, {file, SystemErrorText(code)});
}
