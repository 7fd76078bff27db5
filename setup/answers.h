// The answers of a run: the file's and the command line's joined, every word checked against the table before the
// first page is shown.
#pragma once

#include "include/page_table.h"
#include "setup/answer_table.h"
#include "setup/answers_file.h"
#include "setup/command_line.h"

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
    CString strValue;
    AnswerOrigin origin;
};

struct QuestionAnswer
{
    const AnswerBox* pBox = nullptr;
    bool bYes = false;
    AnswerOrigin origin;
};

struct PageAnswers
{
    const PageRow* pPage = nullptr;
    AnswerOrigin origin;             // of the section
    std::vector<PageAnswer> entries; // in the table's order
    std::vector<QuestionAnswer> questions;
    bool bCancel = false; // leave = cancel
    AnswerOrigin leaveOrigin;
};

class CAnswers
{
public:
    // Null when nothing is answered on that page.
    [[nodiscard]] const PageAnswers* Find(const CString& section) const;

    std::vector<PageAnswers> pages;
};

// What JoinAnswers works on.
struct AnswerSources
{
    AnswersFile file;         // empty without a file
    CString strFile;          // its full path
    CString strFileFolder;    // base of its relative paths; both folders are full paths
    CommandLine line;         // --set and --out
    CString strCurrentFolder; // base of the command line's relative paths
};

// Joins and checks. False with `error` at the first word or value that the table doesn't know.
[[nodiscard]] bool JoinAnswers(const AnswerSources& sources, CAnswers& answers, AnswersError& error);

// Answers for a page that isn't among those that will be shown: false with `error`. Outcome pages are free, as only
// one of them comes.
[[nodiscard]] bool CheckPagesReached(const CAnswers& answers, const std::vector<CString>& pages,
                                     AnswersError& error);

// An error that names an answer.
AnswersError RefusedAnswer(const PageAnswers& page, const wchar_t* key, const AnswerOrigin& origin,
                           const CString& reason);

// A path as the page's edit wants it: a relative one joined to `folder`, "." and ".." taken out, slashes turned. Doubled
// and closing backslashes, drive-relative paths ("C:x") and all that is no path stay as they are: the page judges them as
// it would a person's.
CString ResolveAnswerPath(const CString& folder, const CString& path);

// True when `text` is `format` with any text in the place of each "%s".
bool MatchesFormat(const CString& format, const CString& text);
