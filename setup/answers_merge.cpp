#include "setup/answers_record.h"

#include "setup/record_comments.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <utility>

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
    return left.pTable == right.pTable && left.product == right.product;
}

// Nobody has agreed to replace anything in the place of another deployment.
bool IsInherited(const RecordedPage& page, const RecordedQuestion& question)
{
    return page.Page().role != PageRole::Target || CString(question.pBox->role) == ROLE_LOCAL_LOCATION;
}

void AddQuestions(const RecordedPage& base, RecordedPage& page)
{
    for (const RecordedQuestion& question : base.questions) {
        const bool asked = std::any_of(page.questions.begin(), page.questions.end(),
                                       [&question](const RecordedQuestion& other) {
                                           return CString(other.pBox->role) == question.pBox->role;
                                       });
        if (!asked && IsInherited(page, question)) {
            page.questions.push_back(question);
        }
    }
}

using Values = std::vector<RecordedValue>;

const RecordedValue* FindWord(const Values& values, const RecordedValue& wanted, bool inEitherForm)
{
    for (const RecordedValue& value : values) {
        if (value.strWord == wanted.strWord && (inEitherForm || value.bKept == wanted.bKept)) {
            return &value;
        }
    }
    return nullptr;
}

// Below which media a base was built isn't known any more, so its text is trusted.
bool SaysTheSame(const RecordedValue& base, const RecordedValue& run)
{
    return base.bAsWritten || base.fields == run.fields;
}

// The value that stands for the run's: the base's line, where nobody changed it and it says the same; none for what a page
// keeps by itself.
std::optional<RecordedValue> MergeValue(const Values& base, const RecordedValue& run)
{
    if (!run.bProposed) {
        return run;
    }
    if (const RecordedValue* same = FindWord(base, run, false)) {
        RecordedValue value = SaysTheSame(*same, run) ? *same : run;
        value.bProposed = SaysTheSame(*same, run) && same->bProposed;
        return value;
    }
    if (run.bKept && !FindWord(base, run, true)) {
        return std::nullopt;
    }
    return run;
}

bool IsList(const RecordedPage& page, const RecordedValue& value)
{
    const AnswerKey* key = FindAnswerKey(*page.pTable, value.strWord);
    return key && IsOfList(*key);
}

Values ListsOf(const RecordedPage& page)
{
    Values lists;
    std::copy_if(page.values.begin(), page.values.end(), std::back_inserter(lists),
                 [&page](const RecordedValue& value) { return IsList(page, value); });
    return lists;
}

// The lists of a page are one value, in the order of their lines.
Values MergeLists(const RecordedPage& base, const RecordedPage& run)
{
    const Values lists = ListsOf(run);
    const bool changed =
        std::any_of(lists.begin(), lists.end(), [](const RecordedValue& value) { return !value.bProposed; });
    const Values bases = ListsOf(base);
    return changed || bases.empty() ? lists : bases;
}

bool IsOwnList(const RecordedPage& page, const RecordedValue& value)
{
    const AnswerKey* key = FindAnswerKey(*page.pTable, value.strWord);
    return key && key->kind == AnswerKind::List && !IsOfList(*key);
}

Values LinesOf(const Values& values, const CString& word)
{
    Values lines;
    std::copy_if(values.begin(), values.end(), std::back_inserter(lines),
                 [&word](const RecordedValue& value) { return value.strWord == word; });
    return lines;
}

// A list that stands for itself is one value, as above: its lines are the page's own, or changed, together.
Values MergeOwnList(const Values& base, const Values& run)
{
    if (!run.front().bProposed || base.empty()) {
        return run;
    }
    if (std::equal(base.begin(), base.end(), run.begin(), run.end(), SaysTheSame)) {
        return base;
    }
    Values lines = run;
    for (RecordedValue& line : lines) {
        line.bProposed = false;
    }
    return lines;
}

// The run's page, with the base's value for each word that nobody changed.
RecordedPage MergePage(const RecordedPage& base, const RecordedPage& run)
{
    RecordedPage page = run;
    page.values.clear();
    const Values lists = MergeLists(base, run);
    bool listsAdded = false;
    std::set<CString> ownLists;
    const auto addLists = [&] {
        if (!std::exchange(listsAdded, true)) {
            page.values.insert(page.values.end(), lists.begin(), lists.end());
        }
    };
    for (const RecordedValue& value : run.values) {
        if (IsList(run, value)) {
            addLists();
        } else if (IsOwnList(run, value)) {
            if (ownLists.insert(value.strWord).second) {
                const Values lines =
                    MergeOwnList(LinesOf(base.values, value.strWord), LinesOf(run.values, value.strWord));
                page.values.insert(page.values.end(), lines.begin(), lines.end());
            }
        } else if (std::optional<RecordedValue> merged = MergeValue(base.values, value)) {
            page.values.push_back(std::move(*merged));
        }
    }
    addLists();
    AddQuestions(base, page);
    return page;
}

// A new deployment has its own place, whatever the base's file says of its.
void RemoveOwnPlace(RecordedPage& page)
{
    if (page.Page().role == PageRole::Target) {
        std::erase_if(page.values, [](const RecordedValue& value) { return value.strWord == LOCATION_WORD; });
    }
}

// What the base could not write stays out of what is made of it.
AnswersFile WithoutLeftOut(AnswersFile file)
{
    for (AnswerSection& section : file.sections) {
        std::erase_if(section.answers,
                      [](const AnswerLine& answer) { return AnswerKeyForm(answer.strKey).bLeftOut; });
    }
    return file;
}

} // namespace

bool ReadBaseAnswers(const AnswersFile& file, const CString& folder,
                     const std::vector<AnswerProduct>& products, AnswerTables tables, BaseAnswers& base,
                     AnswersError& error)
{
    AnswerSources sources;
    sources.file = WithoutLeftOut(file);
    sources.strFileFolder = folder;
    sources.tables = tables;
    CAnswers answers;
    if (!JoinAnswers(sources, answers, error)) {
        return false;
    }
    const std::set<int> proposedLines = ProposedLines(file);
    base = BaseAnswers();
    if (AnswersError stray; !CheckProductsReached(answers, products, stray)) {
        base.warnings.push_back(stray.Text());
    }
    for (const PageAnswerTable* table : tables) {
        const std::vector<AnswerProduct> owners =
            table->page->bOfProduct ? products : std::vector<AnswerProduct>(1);
        for (const AnswerProduct& product : owners) {
            if (const PageAnswers* page = answers.Find(table->page->section, product)) {
                base.pages.push_back(PageOfBase(*page, product, proposedLines));
                RemoveOwnPlace(base.pages.back());
            }
        }
    }
    return true;
}

std::vector<RecordedPage> MergeAnswers(const BaseAnswers& base, const std::vector<RecordedPage>& run,
                                       std::vector<RecordedPage>& unknown)
{
    std::vector<RecordedPage> pages;
    for (const RecordedPage& page : run) {
        const auto found =
            std::find_if(base.pages.begin(), base.pages.end(),
                         [&page](const RecordedPage& other) { return IsSamePage(other, page); });
        if (found != base.pages.end()) {
            pages.push_back(page.bShown ? MergePage(*found, page) : *found);
            pages.back().strTitle = page.strTitle;
        } else {
            (page.bShown ? pages : unknown).push_back(page);
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
