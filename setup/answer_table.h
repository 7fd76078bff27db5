// Which words the section of a page knows in an answers file: one row a key, and one row a box that the page may put.
// Read from its controls, they are what a run records; entered through them, what it replays. A page's rows stand in
// <section>_answers.cpp; how its lists and trees are read and entered stands in page_lists.h.
#pragma once

#include "base/string.h"
#include "include/page_table.h"

#include <span>

enum class AnswerKind
{
    Text,      // an edit
    Path,      // an edit with a path; a relative one counts from the folder of the answers file
    Radio,     // one of several buttons: a row a choice, all of one word
    Check,     // a check box: "yes" or "no"
    ListLine,  // a line of a list box, by its text
    Entry,     // a line of a drop-down list, by its place: a row a line, all of one word, in the lines' order
    List,      // a line of a list or tree; may stand several times, and order counts
    Value,     // a single value of a list or tree, such as a node's label
    Clear,     // empties the page's lists before anything is added to them: "yes" or "no"
    Choice,    // as Radio, but read and entered by the page's adapter: picking it has the page do more
    WorkLimit, // of the run: whole seconds in place of the table's workSeconds
};

enum class FieldKind
{
    Text,
    Path,
};

// The answer that lets a person reach a control. No word: it can always be reached.
struct AnswerNeed
{
    const wchar_t* word = nullptr;
    const wchar_t* value = nullptr;
};

struct AnswerKey
{
    const wchar_t* word = nullptr;
    AnswerKind kind = AnswerKind::Text;
    unsigned int control = 0;
    const wchar_t* choice =
        nullptr; // Radio, Choice: the value that picks this button; Entry: the one that picks the line
    // Radio: this choice is what the page does by itself when it doesn't show the buttons.
    bool bDefaultWhenHidden = false;
    AnswerNeed needs = {};
    std::span<const FieldKind> fields = {}; // List; Value: one
    // List: its lines replace all that the page has of the word. Without it they come behind those.
    bool bReplaces = false;
    // Of the product, for what stands on the page's tab alone: the other shape accepts the value that the product has. A
    // check box is on when the property is empty or has the value for it.
    const wchar_t* property = nullptr;
    const wchar_t* propertyOn = nullptr;
};

enum class BoxKind
{
    Question, // Yes and No, answered by "on_question.<role>"
    Refusal,  // the page won't take the value of the key
    Notice,   // the page says what it has done, and goes on behind OK
};

struct AnswerBox
{
    BoxKind kind = BoxKind::Question;
    const wchar_t* role = nullptr; // Question: the word behind "on_question."
    const wchar_t* key = nullptr;  // the key that the box is about; null: the one that is being entered
    unsigned int string =
        0; // its text in the resource library; "%s" or "%1" stands for any text; or PROGRAM_BOX
    // What is refused stands behind its text, after a colon.
    bool bNamesRefused = false;
    // That is a piece of the line's last field between slashes, of the first line with such a piece.
    bool bRefusesPiece = false;
    // Question: comes up while a value is entered, not when the page is left. Yes is remembered then, as what No has kept
    // out isn't entered again.
    bool bWhileEntering = false;
};

struct PageAnswerTable
{
    const PageRow* page = nullptr;
    // In the order in which they are entered: what changes the page's layout, or enables another, comes first. What an
    // adapter enters comes where the first of it stands, in the order of the answers.
    std::span<const AnswerKey> keys = {};
    std::span<const AnswerBox> boxes = {};
    // How long the page may be at work, such as downloading, behind each of its answers and before it is left; 0 for one
    // that never is. The answers may have another limit (AnswerKind::WorkLimit).
    unsigned int workSeconds = 0;
};

// The longest work limit that an answer may set: a day.
constexpr unsigned int MOST_WORK_SECONDS = 86400;

// A box of the program's own, put behind the page.
constexpr unsigned int PROGRAM_BOX = 0;
constexpr wchar_t ROLE_REPLACE_UNLISTED[] = L"replace_unlisted";
// Of the first page: whether a place that is no network path will do.
constexpr wchar_t ROLE_LOCAL_LOCATION[] = L"local_location";

// Words of every section.
constexpr wchar_t LEAVE_KEY[] = L"leave"; // what ends the page once its answers are entered
constexpr wchar_t SHOW_KEY[] = L"show";   // whether the tab of the page is gone to
constexpr wchar_t QUESTION_PREFIX[] = L"on_question.";
// Behind a key: its value is entered letter for letter, and not as a path that may be relative.
constexpr wchar_t LITERAL_SUFFIX[] = L".literal";
// Behind a key: what the page keeps while the answer that the key needs is another one.
constexpr wchar_t KEPT_SUFFIX[] = L".kept";

// Behind a key: its value could not be written, so a run that would go on without it is refused.
constexpr wchar_t LEFT_OUT_SUFFIX[] = L".left_out";

// A key with what may stand behind it: "site_feed.kept.literal".
struct AnswerKeyForm
{
    explicit AnswerKeyForm(const CString& key);
    CString strWord;
    bool bLiteral = false;
    bool bKept = false;
    bool bLeftOut = false;
};

// The tables that a run goes by. The pages' own, or those of tests.
using AnswerTables = std::span<const PageAnswerTable* const>;
AnswerTables PageAnswerTables();

// Null when no page has the section.
const PageAnswerTable* FindAnswerTable(AnswerTables tables, const CString& section);
// By the export of either shape of its page; null when no page with answers has it.
const PageAnswerTable* FindAnswerTableOfExport(AnswerTables tables, const CString& exportName);
// The first row of the word; null for an unknown one.
const AnswerKey* FindAnswerKey(const PageAnswerTable& table, const CString& word);
// The row of a question's role; null for an unknown one.
const AnswerBox* FindQuestion(const PageAnswerTable& table, const CString& role);
// Whether that field of an answer of the row is a path.
bool IsPathField(const AnswerKey& key, std::size_t field);
bool IsListKey(const PageAnswerTable& table, const CString& word);
// Whether the row's answers are read and entered by the page's adapter (page_lists.h).
bool IsOfAdapter(const AnswerKey& key);
// Whether the row is of the page's lists as far as they are one value: their lines stand in one order and are cleared
// together. All others of an adapter stand for themselves, word by word.
bool IsOfList(const AnswerKey& key);
// Where an answer of the row is entered among those of the page. Rows of an adapter are one place, in which the order of the
// answers decides, with clearing lists before it.
std::size_t EntryOrder(const PageAnswerTable& table, const AnswerKey& key);
// The place of an Entry's line in its drop-down list.
int EntryPlace(const PageAnswerTable& table, const AnswerKey& entry);
