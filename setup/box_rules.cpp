#include "setup/box_rules.h"

namespace {

const AnswerBox* FindBox(const PageAnswerTable* table, const CString& text, bool asks,
                         const std::function<CString(unsigned int)>& loadString)
{
    const BoxKind kind = asks ? BoxKind::Question : BoxKind::Refusal;
    for (const AnswerBox& box : table ? table->boxes : std::span<const AnswerBox>()) {
        if (box.kind != kind) {
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

} // namespace

BoxVerdict JudgeBox(const PageAnswerTable* table, const PageAnswers* page, const CString& text, bool asks,
                    const std::function<CString(unsigned int)>& loadString)
{
    BoxVerdict verdict;
    verdict.pBox = FindBox(table, text, asks, loadString);
    verdict.meaning = asks ? BoxMeaning::Unanswered : BoxMeaning::Refused;
    if (!page || !verdict.pBox) {
        return verdict;
    }
    for (const QuestionAnswer& answer : page->questions) {
        if (asks && answer.pBox == verdict.pBox) {
            verdict.meaning = BoxMeaning::Answered;
            verdict.pAnswer = &answer;
        }
    }
    for (const PageAnswer& answer : page->entries) {
        if (!asks && CString(answer.pKey->word) == verdict.pBox->key) {
            verdict.pRefused = &answer;
        }
    }
    return verdict;
}
