#include "setup/page_contents.h"

#include "setup/page_controls.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <utility>

namespace {

const AnswerKey* FindClearKey(const PageAnswerTable& table)
{
    const auto found = std::find_if(table.keys.begin(), table.keys.end(),
                                    [](const AnswerKey& key) { return key.kind == AnswerKind::Clear; });
    return found == table.keys.end() ? nullptr : &*found;
}

void ReadWord(HWND page, const PageAnswerTable& table, const AnswerKey& key, PageContents& contents) noexcept
try {
    if (const std::optional<CString> value = ReadAnswer(page, table, key.word)) {
        // Nobody can enter anything but the choice that a disabled group of buttons shows, which is an answer nevertheless.
        const bool reachable = key.kind == AnswerKind::Radio || CanBeEntered(page, table, key.word);
        contents.values.push_back({&key, *value, reachable});
    }
} catch (...) {
}

void ReadLines(HWND page, const IPageLists* lists, PageContents& contents) noexcept
try {
    if (lists) {
        contents.lines = lists->Read(page);
    }
} catch (...) {
}

const HeldValue* FindValue(const PageContents& contents, const AnswerKey& key)
{
    const auto found = std::find_if(contents.values.begin(), contents.values.end(),
                                    [&key](const HeldValue& value) { return value.pKey == &key; });
    return found == contents.values.end() ? nullptr : &*found;
}

template <class Belongs>
std::vector<ListLine> LinesOf(const PageContents& contents, Belongs belongs)
{
    std::vector<ListLine> lines;
    std::copy_if(contents.lines.begin(), contents.lines.end(), std::back_inserter(lines), belongs);
    return lines;
}

// What stands for itself is the page's own, or changed, as a whole.
void RecordWord(const AnswerKey& key, const PageContents& proposed, const PageContents& held,
                std::vector<RecordedValue>& recorded)
{
    const auto isOfWord = [&key](const ListLine& line) { return line.strWord == key.word; };
    const std::vector<ListLine> lines = LinesOf(held, isOfWord);
    const bool isProposed = lines == LinesOf(proposed, isOfWord);
    for (const ListLine& line : lines) {
        recorded.push_back({.strWord = line.strWord, .fields = line.fields, .bProposed = isProposed});
    }
}

// Lines that stood there at first and have changed are cleared away first, and then none is the page's own. A page that
// can't clear its lists only gets what is new.
void RecordLines(const PageAnswerTable& table, const PageContents& proposed, const PageContents& held,
                 std::vector<RecordedValue>& recorded)
{
    const AnswerKey* const clear = FindClearKey(table);
    const auto isOfLists = [&table](const ListLine& line) {
        const AnswerKey* key = FindAnswerKey(table, line.strWord);
        return key && IsOfList(*key);
    };
    const std::vector<ListLine> first = LinesOf(proposed, isOfLists);
    const std::vector<ListLine> last = LinesOf(held, isOfLists);
    const bool clears = clear && last != first && !first.empty();
    if (clears) {
        recorded.push_back({.strWord = clear->word, .fields = {L"yes"}});
    }
    std::vector<ListLine> own = clears ? std::vector<ListLine>() : first;
    for (const ListLine& line : last) {
        const auto found = std::find(own.begin(), own.end(), line);
        const bool isOwn = found != own.end();
        if (isOwn) {
            own.erase(found);
        }
        recorded.push_back({.strWord = line.strWord, .fields = line.fields, .bProposed = isOwn});
    }
}

void RecordValue(const HeldValue& value, const PageContents& proposed, bool keepsAll,
                 std::vector<RecordedValue>& recorded)
{
    const HeldValue* const first = FindValue(proposed, *value.pKey);
    const bool isProposed = first && first->strValue == value.strValue;
    const bool isKept = !value.bReachable && value.pKey->needs.word && (keepsAll || !isProposed);
    if (value.bReachable || isKept) {
        recorded.push_back({.strWord = value.pKey->word,
                            .fields = {value.strValue},
                            .bKept = isKept,
                            .bProposed = isProposed});
    }
}

} // namespace

PageContents ReadPageContents(HWND page, const PageAnswerTable& table, const IPageLists* lists) noexcept
{
    PageContents contents;
    for (const AnswerKey& key : table.keys) {
        if (!IsOfAdapter(key) && FindAnswerKey(table, key.word) == &key) { // once a word
            ReadWord(page, table, key, contents);
        }
    }
    ReadLines(page, lists, contents);
    return contents;
}

std::vector<RecordedValue> RecordContents(const PageAnswerTable& table, const PageContents& proposed,
                                          const PageContents& held, bool keepsAll)
{
    std::vector<RecordedValue> recorded;
    bool linesRecorded = false;
    for (const AnswerKey& key : table.keys) {
        if (IsOfList(key)) {
            if (!std::exchange(linesRecorded, true)) {
                RecordLines(table, proposed, held, recorded);
            }
        } else if (IsOfAdapter(key)) {
            if (FindAnswerKey(table, key.word) == &key) { // once a word
                RecordWord(key, proposed, held, recorded);
            }
        } else if (const HeldValue* value = FindValue(held, key)) {
            RecordValue(*value, proposed, keepsAll, recorded);
        }
    }
    return recorded;
}
