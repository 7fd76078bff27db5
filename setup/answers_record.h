// What a run has answered, page by page, and the answers file that says it again.
#pragma once

#include "setup/answers.h"

#include <vector>

// An answer as the page held it when it was left.
struct RecordedValue
{
    CString strWord;
    std::vector<CString> fields; // one, but for a list's line
    bool bKept = false;          // kept by the page while it couldn't be reached
    bool bProposed = false;      // as the page proposed it when it first came up
    bool operator==(const RecordedValue&) const = default;
};

struct RecordedQuestion
{
    const AnswerBox* pBox = nullptr;
    bool bYes = false;
    bool operator==(const RecordedQuestion&) const = default;
};

struct RecordedPage
{
    const PageAnswerTable* pTable = nullptr;
    AnswerProduct product; // empty for a page that belongs to none
    CString strTitle;      // in words, for people
    std::vector<RecordedValue> values; // in the table's order
    std::vector<RecordedQuestion> questions; // put since the page was last asked to go on
    bool bShown = true;                      // false: its tab was never gone to
};
