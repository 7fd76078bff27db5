#include "setup/box_rules.h"

#include <algorithm>

namespace {

constexpr wchar_t REFUSED_BEHIND[] = L": %s";

// The system writes a line end of a text that it fills in as two characters.
CString WithPlainLineEnds(CString text)
{
    text.Replace(L"\r\n", L"\n");
    return text;
}

const AnswerBox* FindBox(const PageAnswerTable* table, const CString& text, bool asks,
                         const std::function<CString(unsigned int)>& loadString)
{
    for (const AnswerBox& box : table ? table->boxes : std::span<const AnswerBox>()) {
        if ((box.kind == BoxKind::Question) != asks) {
            continue;
        }
        const CString format = loadString(box.string);
        // A library that lacks the text matches nothing.
        if (!format.IsEmpty() &&
            MatchesFormat(box.bNamesRefused ? format + REFUSED_BEHIND : format, WithPlainLineEnds(text))) {
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

// Of the lines of the key the last that is what is refused, else the first that holds it, else the last.
const PageAnswer* FindNamed(const PageAnswers& page, const CString& key, const CString& refused)
{
    const PageAnswer* found = nullptr;
    bool holdsIt = false;
    for (const PageAnswer& answer : page.entries) {
        if (key != answer.pKey->word) {
            continue;
        }
        const auto& fields = answer.fields;
        if (std::find(fields.begin(), fields.end(), refused) != fields.end()) {
            found = &answer;
            holdsIt = true;
        } else if (!holdsIt) {
            found = &answer;
            holdsIt = std::any_of(fields.begin(), fields.end(), [&refused](const CString& field) {
                return !refused.IsEmpty() && field.Find(refused) >= 0;
            });
        }
    }
    return found;
}

bool HasPiece(CString text, const CString& piece)
{
    text += L"/";
    for (int start = 0, end; (end = text.Find(L'/', start)) >= 0; start = end + 1) {
        if (text.Mid(start, end - start).Trim() == piece) {
            return true;
        }
    }
    return false;
}

// Null when no line of the key has the piece.
const PageAnswer* FindPiece(const PageAnswers& page, const CString& key, const CString& piece)
{
    const auto found = std::find_if(page.entries.begin(), page.entries.end(), [&](const PageAnswer& answer) {
        return key == answer.pKey->word && HasPiece(answer.fields.back(), piece);
    });
    return found == page.entries.end() ? nullptr : &*found;
}

const PageAnswer* FindRefusedBy(const AnswerBox& box, const PageAnswers& page, const CString& text,
                                int wordsLength)
{
    if (!box.bNamesRefused) {
        return FindRefused(page, box.key, text);
    }
    const CString refused = text.Mid(wordsLength + 2);
    const PageAnswer* line = box.bRefusesPiece ? FindPiece(page, box.key, refused) : nullptr;
    return line ? line : FindNamed(page, box.key, refused);
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
        verdict.pRefused =
            FindRefusedBy(*verdict.pBox, *page, text, loadString(verdict.pBox->string).GetLength());
    }
    return verdict;
}
