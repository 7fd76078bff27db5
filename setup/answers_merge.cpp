#include "setup/answers_record.h"

#include "setup/record_comments.h"

#include <algorithm>
#include <set>

namespace {

bool Stands(const std::vector<CString>& comments, const wchar_t* title)
{
    return std::find(comments.begin(), comments.end(), CString(title)) != comments.end();
}

// The lines of a file below "As the page proposed:". A file that was changed by hand may have none, and then all counts as
// changed.
std::set<int> ProposedLines(const AnswersFile& file)
{
    std::set<int> lines;
    for (const AnswerSection& section : file.sections) {
        bool proposed = false;
        for (const AnswerLine& answer : section.answers) {
            proposed = (proposed || Stands(answer.comments, RECORD_PROPOSED)) &&
                       !Stands(answer.comments, RECORD_QUESTIONS);
            if (proposed) {
                lines.insert(answer.nLine);
            }
        }
    }
    return lines;
}

RecordedPage PageOfBase(const PageAnswers& answers, const AnswerProduct& product,
                        const std::set<int>& proposedLines)
{
    RecordedPage page;
    page.pTable = answers.pTable;
    page.product = product;
    page.bShown = answers.bShow;
    for (const PageAnswer& answer : answers.entries) {
        RecordedValue value{answer.pKey->word, answer.fields, answer.bKept, false, false};
        value.bProposed = proposedLines.contains(answer.origin.nLine);
        for (const CString& field : answer.fields) {
            value.bAsWritten = value.bAsWritten || (!answer.bLiteral && HasMediaMark(field));
        }
        page.values.push_back(std::move(value));
    }
    for (const QuestionAnswer& question : answers.questions) {
        page.questions.push_back({question.pBox, question.bYes});
    }
    return page;
}

bool IsSamePage(const RecordedPage& left, const RecordedPage& right)
{
    return left.pTable == right.pTable && left.product.strCode == right.product.strCode &&
           left.product.strName == right.product.strName;
}

bool IsOfWord(const RecordedValue& value, const RecordedValue& other)
{
    return value.strWord == other.strWord && value.bKept == other.bKept;
}

void AddQuestions(const std::vector<RecordedQuestion>& base, RecordedPage& page)
{
    for (const RecordedQuestion& question : base) {
        const bool asked =
            std::any_of(page.questions.begin(), page.questions.end(),
                        [&question](const RecordedQuestion& other) { return other.pBox == question.pBox; });
        if (!asked) {
            page.questions.push_back(question);
        }
    }
}

// The run's page, with the base's value for each word that nobody changed. All lines of a list count as one value.
RecordedPage MergePage(const RecordedPage& base, const RecordedPage& run)
{
    RecordedPage page = run;
    page.values.clear();
    const auto has = [](const std::vector<RecordedValue>& values, const RecordedValue& value) {
        return std::any_of(values.begin(), values.end(),
                           [&value](const RecordedValue& other) { return IsOfWord(other, value); });
    };
    std::vector<RecordedValue> replaced;
    for (const RecordedValue& value : run.values) {
        const bool isBases = value.bProposed && has(base.values, value);
        if (!isBases && value.bKept && value.bProposed) {
            continue; // the base's answers bring it about
        }
        if (!isBases) {
            page.values.push_back(value);
        } else if (!has(replaced, value)) {
            std::copy_if(base.values.begin(), base.values.end(), std::back_inserter(page.values),
                         [&value](const RecordedValue& other) { return IsOfWord(other, value); });
            replaced.push_back(value);
        }
    }
    AddQuestions(base.questions, page);
    return page;
}

} // namespace

bool ReadBaseAnswers(const AnswersFile& file, const CString& folder,
                     const std::vector<AnswerProduct>& products, AnswerTables tables, BaseAnswers& base,
                     AnswersError& error)
{
    AnswerSources sources;
    sources.file = file;
    sources.strFileFolder = folder;
    sources.tables = tables;
    CAnswers answers;
    if (!JoinAnswers(sources, answers, error)) {
        return false;
    }
    const std::set<int> proposedLines = ProposedLines(file);
    base = BaseAnswers();
    for (const PageAnswerTable* table : tables) {
        const std::vector<AnswerProduct> owners =
            table->page->bOfProduct ? products : std::vector<AnswerProduct>(1);
        for (const AnswerProduct& product : owners) {
            if (const PageAnswers* page = answers.Find(table->page->section, product)) {
                base.pages.push_back(PageOfBase(*page, product, proposedLines));
            }
        }
    }
    return true;
}

std::vector<RecordedPage> MergeAnswers(const BaseAnswers& base, const std::vector<RecordedPage>& run)
{
    std::vector<RecordedPage> pages;
    for (const RecordedPage& page : run) {
        const auto found =
            std::find_if(base.pages.begin(), base.pages.end(),
                         [&page](const RecordedPage& other) { return IsSamePage(other, page); });
        if (found == base.pages.end()) {
            pages.push_back(page);
        } else {
            pages.push_back(page.bShown ? MergePage(*found, page) : *found);
            pages.back().strTitle = page.strTitle;
        }
    }
    for (const RecordedPage& page : base.pages) {
        const bool merged = std::any_of(pages.begin(), pages.end(), [&page](const RecordedPage& other) {
            return IsSamePage(other, page);
        });
        if (!merged) {
            pages.push_back(page);
        }
    }
    return pages;
}
