// The answers of a run: the file's and the command line's, every word checked against the table before the first page is
// shown, and joined for each page and product when it comes.
#pragma once

#include "setup/answer_paths.h"
#include "setup/answer_table.h"
#include "setup/answers_file.h"
#include "setup/command_line.h"

#include <list>
#include <vector>

// Where an answer came from, to be named when its page refuses it.
struct AnswerOrigin
{
    CString strSource; // the file's path, or the option
    int nLine = 0;     // 0: no line
};

// "yes", of the two words that a check box or a question takes.
bool IsYes(const CString& value);

struct PageAnswer
{
    const AnswerKey* pKey = nullptr;
    std::vector<CString> fields; // as the page is to have them; one, but for a list's line
    bool bKept = false;          // what the page keeps while it can't be reached
    bool bLiteral = false;       // no path to make full
    AnswerOrigin origin;

    const CString& Value() const { return fields.front(); }
    // In quotes, several with commas between them: for messages.
    [[nodiscard]] CString QuotedFields() const;
};

struct QuestionAnswer
{
    const AnswerBox* pBox = nullptr;
    bool bYes = false;
    AnswerOrigin origin;

    // A role may stand for several boxes.
    [[nodiscard]] bool IsOf(const AnswerBox& box) const { return CString(pBox->role) == box.role; }
};

// A product as answers name it.
struct AnswerProduct
{
    CString strName;
    CString strCode; // with braces

    // Display name or product code, without regard to case.
    [[nodiscard]] bool IsNamed(const CString& text) const;
    bool operator==(const AnswerProduct&) const = default;
};

struct PageAnswers
{
    const PageAnswerTable* pTable = nullptr;
    CString strProduct;              // as the section names it; empty for one of any product
    AnswerOrigin origin;             // of the section
    std::vector<PageAnswer> entries; // in the order in which they are entered
    std::vector<QuestionAnswer> questions;
    bool bCancel = false; // leave = cancel
    bool bShow = true;    // show = no: the page's tab isn't gone to
    AnswerOrigin leaveOrigin;
    AnswerOrigin showOrigin;

    [[nodiscard]] const PageRow& Page() const { return *pTable->page; }
};

class CAnswers
{
public:
    // The answers of the page: those of any product, and those of this one, which win; the command line's win over both.
    // Null when nothing is answered. Stays as long as the object, until the sections change.
    [[nodiscard]] const PageAnswers* Find(const CString& section, const AnswerProduct& product = {}) const;

    // Makes the paths that begin with "<media>" full. To be called before the first Find.
    void UseMediaFolder(const CString& folder);

    // As they were written: the file's, then the command line's.
    std::vector<PageAnswers> fileSections;
    std::vector<PageAnswers> lineSections;

private:
    struct Joined
    {
        CString strSection;
        AnswerProduct product;
        PageAnswers answers;
    };
    mutable std::list<Joined> m_joined;
};

// What JoinAnswers works on.
struct AnswerSources
{
    AnswersFile file;         // empty without a file
    CString strFile;          // its full path
    CString strFileFolder;    // base of its relative paths; both folders are full paths
    CommandLine line;         // --set and --out
    CString strCurrentFolder; // base of the command line's relative paths
    AnswerTables tables = PageAnswerTables();
};

// Joins and checks. False with `error` at the first word or value that the table doesn't know.
[[nodiscard]] bool JoinAnswers(const AnswerSources& sources, CAnswers& answers, AnswersError& error);

// Answers for a page that isn't among those that will be shown: false with `error`. Outcome pages are free, as only
// one of them comes.
[[nodiscard]] bool CheckPagesReached(const CAnswers& answers, const std::vector<CString>& pages,
                                     AnswersError& error);

// Answers for a product that isn't among these, that could be either of two, or that two sections name: false with
// `error`.
[[nodiscard]] bool CheckProductsReached(const CAnswers& answers, const std::vector<AnswerProduct>& products,
                                        AnswersError& error);

// An error that names an answer.
AnswersError RefusedAnswer(const PageAnswers& page, const wchar_t* key, const AnswerOrigin& origin,
                           const CString& reason);

// True when `text` is `format` with any text in the place of each "%s", or of each "%1" to "%9".
bool MatchesFormat(const CString& format, const CString& text);
