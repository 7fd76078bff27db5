// What a page holds, read word by word by its table, and what of it is worth an answer.
#pragma once

#include "setup/answers_record.h"
#include "setup/page_lists.h"

#include <windows.h>

#include <vector>

struct HeldValue
{
    const AnswerKey* pKey = nullptr; // the first row of the word
    CString strValue;
    bool bReachable = false; // a person could enter another one
};

struct PageContents
{
    std::vector<HeldValue> values; // that are shown, in the table's order
    std::vector<ListLine> lines;
};

// Never throws: what can't be read, be it for want of memory, is left out. Also of a page that is itself hidden.
[[nodiscard]] PageContents ReadPageContents(HWND page, const PageAnswerTable& table,
                                            const IPageLists* lists) noexcept;

// `proposed`: what the page held when it first came up. What can't be reached because another answer stands in the way is
// kept by the page; of that only what was changed is recorded, or all of it with `keepsAll`.
[[nodiscard]] std::vector<RecordedValue> RecordContents(const PageAnswerTable& table,
                                                        const PageContents& proposed,
                                                        const PageContents& held, bool keepsAll);
