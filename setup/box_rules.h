// What a message box on a page means to a run without a person.
#pragma once

#include "base/string.h"
#include "setup/answers.h"

#include <functional>

enum class BoxMeaning
{
    Answered,   // a question, and the answers hold its answer
    Unanswered, // a question of which they say nothing
    Refused,    // the page won't take a value
    Noticed,    // the page says what it has done, and goes on
};

struct BoxVerdict
{
    BoxMeaning meaning = BoxMeaning::Unanswered;
    const AnswerBox* pBox = nullptr;         // null for a box that the table doesn't know
    const QuestionAnswer* pAnswer = nullptr; // Answered
    const PageAnswer* pRefused = nullptr;    // Refused: the answer that is to blame, null for a default
};

// `text` is the box's, `asks` says whether it offers more than OK, `loadString` gives the page library's texts by id.
// `table` is null for a page that the answers don't know; `page` may be null when nothing is answered there.
BoxVerdict JudgeBox(const PageAnswerTable* table, const PageAnswers* page, const CString& text, bool asks,
                    const std::function<CString(unsigned int)>& loadString);
