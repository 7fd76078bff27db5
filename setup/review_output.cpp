#include "setup/review_output.h"

#include "base/system_text.h"
#include "setup/record_file.h"
#include "setup/resource.h"
#include "setup/texts.h"

void LogReview(const ReviewDocument& review, CRunLog& log)
{
    log.Text(ComposeReviewText(review));
}

CString WritePlan(const ReviewDocument& review, const CString& file)
{
    const bool asJson = file.Right(5).CompareNoCase(L".json") == 0;
    const CString text = asJson ? ComposeReviewJson(review) : ComposeReviewText(review);
    const unsigned long code = ReplaceTextFile(file, text, !asJson);
    return code == 0 ? CString() : SetupText(IDS_PLAN_FAILED, {file, SystemErrorText(code)});
}
