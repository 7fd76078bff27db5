#include "setup/box_rules.h"

#include <algorithm>

namespace {

const AnswerBox* FindBox(const PageAnswerTable* table, const CString& text, bool asks,
                         const std::function<CString(unsigned int)>& loadString)
{
    for (const AnswerBox& box : table ? table->boxes : std::span<const AnswerBox>()) {
        if ((box.kind == BoxKind::Question) != asks) {
            continue;
        }
        const CString format = loadString(box.string);
        if (!format.IsEmpty() &&
            MatchesFormat(format, text)) { // a library that lacks the text matches nothing
            return &box;
        }
    }
    return nullptr;
}

bool IsNamedIn(const CString& text, const PageAnswer& answer)
{
    return std::any_of(answer.fields.begin(), answer.fields.end(),
                       [&text](const CString& field) { return !field.IsEmpty() && text.Find(field) >= 0; });
}

// Of several lines of the key the one that the text names, else the last.
const PageAnswer* FindRefused(const PageAnswers& page, const CString& key, const CString& text)
{
    const PageAnswer* refused = nullptr;
    for (const PageAnswer& answer : page.entries) {
        if (key != answer.pKey->word) {
            continue;
        }
        refused = &answer;
        if (answer.pKey->kind == AnswerKind::List && IsNamedIn(text, answer)) {
            break;
        }
    }
    return refused;
}

} // namespace

BoxVerdict JudgeBox(const PageAnswerTable* table, const PageAnswers* page, const CString& text, bool asks,
                    const std::function<CString(unsigned int)>& loadString)
{
    BoxVerdict verdict;
    verdict.pBox = FindBox(table, text, asks, loadString);
    const bool isNotice = verdict.pBox && verdict.pBox->kind == BoxKind::Notice;
    verdict.meaning = asks ? BoxMeaning::Unanswered : isNotice ? BoxMeaning::Noticed : BoxMeaning::Refused;
    if (!page || !verdict.pBox || isNotice) {
        return verdict;
    }
    for (const QuestionAnswer& answer : page->questions) {
        if (asks && answer.IsOf(*verdict.pBox)) {
            verdict.meaning = BoxMeaning::Answered;
            verdict.pAnswer = &answer;
        }
    }
    if (!asks && verdict.pBox->key) {
        verdict.pRefused = FindRefused(*page, verdict.pBox->key, text);
    }
    return verdict;
}
