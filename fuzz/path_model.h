// Both forms of a path's text once more, step by step as they are defined and without a thought for speed: what the
// product's own routines must agree with on every input. Shared by the fuzzer and the tests of the rules.
#pragma once

#include "base/character.h"
#include "base/string.h"

#include <string>
#include <vector>

namespace PathModel {

using Text = std::u16string;

struct Row
{
    Text directory;
    Text localString;
    int flags = 0;
};
using Rows = std::vector<Row>; // in the order in which a database gives them

inline Text From(const CString& text)
{
    Text copy;
    for (int index = 0; index < text.GetLength(); ++index) {
        copy += static_cast<char16_t>(text[index]);
    }
    return copy;
}

inline CString To(const Text& text)
{
    CString copy;
    for (const char16_t unit : text) {
        copy += static_cast<wchar_t>(unit);
    }
    return copy;
}

// Of several rows with one key the last counts.
inline const Row* RowOf(const Rows& rows, const Text& key)
{
    const Row* found = nullptr;
    for (const Row& row : rows) {
        found = row.directory == key ? &row : found;
    }
    return found;
}

inline void Replace(Text& text, const Text& old, const Text& with)
{
    for (std::size_t at = text.find(old); at != Text::npos; at = text.find(old, at + with.size())) {
        text.replace(at, old.size(), with);
    }
}

inline bool IsBlank(char16_t unit)
{
    return IsSpaceCharacter(static_cast<wchar_t>(unit));
}

inline std::vector<Text> EntriesOf(const Text& list)
{
    std::vector<Text> entries;
    Text entry;
    for (std::size_t at = 0; at <= list.size(); ++at) {
        if (at < list.size() && list[at] != u';') {
            entry += list[at];
            continue;
        }
        while (!entry.empty() && IsBlank(entry.front())) {
            entry.erase(0, 1);
        }
        while (!entry.empty() && IsBlank(entry.back())) {
            entry.pop_back();
        }
        if (!entry.empty()) {
            entries.push_back(entry);
        }
        entry.clear();
    }
    return entries;
}

inline void DropAtEnd(Text& text, char16_t unit)
{
    while (!text.empty() && text.back() == unit) {
        text.pop_back();
    }
}

inline Text Decode(const Rows& rows, Text value)
{
    Replace(value, u"[\\[]", u"[");
    Replace(value, u"[\\]]", u"]");
    Replace(value, u"[\\{]", u"{");
    Replace(value, u"[\\}]", u"}");
    Text shown;
    for (const Text& entry : EntriesOf(value)) {
        const std::size_t open = entry.find(u'[');
        const std::size_t close = entry.find(u']');
        Text key, rest;
        if (open == Text::npos && close == Text::npos) {
            key = rest = entry;
        } else if (close == Text::npos) {
            key = entry.substr(open + 1);
            rest = entry;
        } else if (open == Text::npos) {
            key = entry.substr(0, close);
            rest = entry.substr(close + 1);
        } else if (open < close) {
            key = entry.substr(open + 1, close - open - 1);
            rest = entry.substr(close + 1);
        } else {
            key = entry.substr(open + 1);
            rest = entry.substr(close + 1);
        }
        if (const Row* row = RowOf(rows, key)) {
            shown += row->localString + (rest.empty() ? u"" : u"\\");
        }
        shown += rest + u";";
    }
    DropAtEnd(shown, u';');
    DropAtEnd(shown, u'\\');
    return shown;
}

struct Split
{
    bool isAnchored = false;
    Text key;
    Text rest;
};

inline Split SplitPrefix(const Rows& rows, const Text& path)
{
    if (path.size() >= 2 && IsLetterCharacter(static_cast<wchar_t>(path[0])) && path[1] == u':') {
        return {true, {}, path};
    }
    const Row* best = nullptr;
    for (const Row& candidate : rows) {
        const Row& row = *RowOf(rows, candidate.directory);
        const bool fits = (row.flags & 2) != 0 && !row.localString.empty() &&
                          path.compare(0, row.localString.size(), row.localString) == 0;
        if (fits && (!best || row.directory < best->directory)) {
            best = &row;
        }
    }
    if (!best) {
        return {false, {}, path};
    }
    Text rest = path.substr(best->localString.size());
    while (!rest.empty() && rest.front() == u'\\') {
        rest.erase(0, 1);
    }
    DropAtEnd(rest, u'\\');
    return {true, best->directory, rest};
}

inline Text Encode(const Rows& rows, const Text& value)
{
    Text stored;
    for (const Text& entry : EntriesOf(value)) {
        const Split parts = SplitPrefix(rows, entry);
        if (!parts.key.empty()) {
            stored += u"[" + parts.key + u"]";
        }
        stored += parts.rest;
        if (stored.empty() || stored.back() != u';') {
            stored += u";";
        }
    }
    DropAtEnd(stored, u';');
    return stored;
}

} // namespace PathModel
