// What a run has answered, page by page, and the answers file that says it again.
#pragma once

#include "setup/answers.h"

#include <vector>

// An answer as the page held it when it was left.
struct RecordedValue
{
    CString strWord;
    std::vector<CString> fields; // one, but for a list's line
    bool bKept = false;          // kept by the page while it couldn't be reached
    bool bProposed = false;      // as the page proposed it when it first came up
    bool bAsWritten = false;     // its paths stand as in the file that it was read from
    bool operator==(const RecordedValue&) const = default;
};

struct RecordedQuestion
{
    const AnswerBox* pBox = nullptr;
    bool bYes = false;
    bool operator==(const RecordedQuestion&) const = default;
};

struct RecordedPage
{
    const PageAnswerTable* pTable = nullptr;
    AnswerProduct product;                   // empty for a page that belongs to none
    CString strTitle;                        // in words, for people
    std::vector<RecordedValue> values;       // in the table's order
    std::vector<RecordedQuestion> questions; // put since the page was last asked to go on
    bool bShown = true;                      // false: its tab was never gone to

    [[nodiscard]] const PageRow& Page() const { return *pTable->page; }
    // With its product's name, for people.
    [[nodiscard]] CString Title() const
    {
        return product.strName.IsEmpty() ? strTitle : strTitle + L", " + product.strName;
    }
};

// What the file is for.
struct RecordForm
{
    AnswerFolders folders;               // strBase: where the file will lie
    std::vector<AnswerProduct> products; // of the run; sections name theirs where there are several
    std::vector<CString> comments;       // at its head
    // The deployment whose answers the file is to have: what lies beside it is written relative, as it may be moved. Empty:
    // the run's own, as they were answered.
    CString strDeployment;
    bool bWithLocation = false; // the deployment's own place stands in the file too
    AnswerTables tables = PageAnswerTables();
};

// The file that enters the answers again. What no file can hold is left out, with a comment in its place and a line in
// `warnings`.
[[nodiscard]] AnswersFile ComposeAnswers(const std::vector<RecordedPage>& pages, const RecordForm& form,
                                         std::vector<CString>& warnings);

// The answers of a deployment that others were changed from: what its own file says, in the form in which a run records.
struct BaseAnswers
{
    std::vector<RecordedPage> pages;
    std::vector<CString> warnings; // of what isn't for this run's products
};

// Reads the base's file for the products of the run. `folder`: in which it lies. False with `error` as JoinAnswers.
[[nodiscard]] bool ReadBaseAnswers(const AnswersFile& file, const CString& folder,
                                   const std::vector<AnswerProduct>& products, AnswerTables tables,
                                   BaseAnswers& base, AnswersError& error);

// The base's answers, changed by what this run did: a page that wasn't shown, and a value that a page proposed and nobody
// changed, stay as the base has them. `unknown` gets the pages that weren't shown and of which the base says nothing: what
// the new deployment has of them came with the base, and no file can bring it about.
[[nodiscard]] std::vector<RecordedPage> MergeAnswers(const BaseAnswers& base,
                                                     const std::vector<RecordedPage>& run,
                                                     std::vector<RecordedPage>& unknown);
