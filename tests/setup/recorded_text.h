// What was recorded, as a text that tests can compare.
#pragma once

#include "setup/answers_record.h"

#include <vector>

// A line a page: `notices/Zolt: feeds=no, (site_feed=x), ~site_name=Site, ?feed_kind=yes`. In round brackets what the page
// proposed by itself, behind "~" what it keeps, behind "?" a question; "not shown" for a tab that wasn't gone to.
inline CString RecordedText(const RecordedPage& page)
{
    CString text = page.pTable->page->section;
    if (!page.product.strName.IsEmpty()) {
        text += L"/" + page.product.strName;
    }
    text += page.bShown ? L":" : L": not shown";
    const int head = text.GetLength();
    const auto append = [&text, head](const CString& part) {
        text += (text.GetLength() == head && text.Right(1) == L":" ? L" " : L", ") + part;
    };
    for (const RecordedValue& value : page.values) {
        CString fields;
        for (const CString& field : value.fields) {
            fields += (fields.IsEmpty() ? CString() : CString(L"|")) + field;
        }
        const CString answer = (value.bKept ? L"~" : L"") + value.strWord + L"=" + fields;
        append(value.bProposed ? L"(" + answer + L")" : answer);
    }
    for (const RecordedQuestion& question : page.questions) {
        append(CString(L"?") + question.pBox->role + (question.bYes ? L"=yes" : L"=no"));
    }
    return text;
}

inline CString RecordedText(const std::vector<RecordedPage>& pages)
{
    CString text;
    for (const RecordedPage& page : pages) {
        text += (text.IsEmpty() ? CString() : CString(L"\n")) + RecordedText(page);
    }
    return text;
}
