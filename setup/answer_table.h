// Which words the section of a page knows in an answers file: one row a key, and one row a box that the page may put.
// Which section is which page's stands in include/page_table.h.
#pragma once

#include "base/string.h"

enum class AnswerKind
{
    Text,     // an edit
    Path,     // an edit with a path; a relative one counts from the folder of the answers file
    Radio,    // one of several buttons: a row a choice, all of one word
    Check,    // a check box: "yes" or "no"
    ListLine, // a line of a list box, by its text
    Entry,    // a line of a drop-down list, by its place: a row a line, all of one word, in the lines' order
};

struct AnswerKey
{
    const wchar_t* section;
    const wchar_t* word;
    AnswerKind kind;
    unsigned int control;
    const wchar_t* choice; // Radio: the value that picks this button; Entry: the value that picks the line
    // Radio: this choice is what the page does by itself when it doesn't show the buttons.
    bool bDefaultWhenHidden;
};

enum class BoxKind
{
    Question, // Yes and No, answered by "on_question.<role>"
    Refusal,  // the page won't take the value of the key
};

struct AnswerBox
{
    const wchar_t* section;
    BoxKind kind;
    const wchar_t* role; // Question: the word behind "on_question."
    const wchar_t* key;  // the key that the box is about
    unsigned int string; // its text in the resource library; "%s" stands for any text; or PROGRAM_BOX
};

// A box of the program's own, put behind the page.
constexpr unsigned int PROGRAM_BOX = 0;
constexpr wchar_t ROLE_REPLACE_UNLISTED[] = L"replace_unlisted";

// A word of every section: what ends the page once its answers are entered.
constexpr wchar_t LEAVE_KEY[] = L"leave";
constexpr wchar_t QUESTION_PREFIX[] = L"on_question.";

// A borrowed run of rows, for range-based loops.
template <class Row>
struct TableRows
{
    const Row* first;
    const Row* last;
    const Row* begin() const { return first; }
    const Row* end() const { return last; }
};

// In the order in which a page's answers are entered: what changes the page's layout comes first.
TableRows<AnswerKey> AnswerKeys();
TableRows<AnswerBox> AnswerBoxes();
