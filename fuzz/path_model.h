// Both forms of a path's value, worked out a second time. It shares no code with paths/ and doesn't look for speed: each
// function is one rule of the definition, on texts of its own type. Only what a letter and what white space is comes from
// base/, since the system decides it.
#pragma once

#include "base/character.h"
#include "base/string.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace PathModel {

using Text = std::u16string;

struct Row
{
    Text directory;
    Text local;
    int flags = 0;
};

// As the table gives them: in any order, with any key more than once.
using Rows = std::vector<Row>;

// What an entry in display form begins with.
struct Split
{
    bool isAnchored = false;
    Text key;
    Text rest;
};

inline Text From(const CString& text)
{
    Text units;
    for (int index = 0; index < text.GetLength(); ++index) {
        units.push_back(static_cast<char16_t>(text[index]));
    }
    return units;
}

inline CString To(const Text& text)
{
    CString units;
    for (const char16_t unit : text) {
        units += static_cast<wchar_t>(unit);
    }
    return units;
}

// The order of std::map is that of the code units; a later row of the same key takes the place of the former.
inline std::map<Text, Row> InKeyOrder(const Rows& rows)
{
    std::map<Text, Row> map;
    for (const Row& row : rows) {
        map[row.directory] = row;
    }
    return map;
}

inline Text WithoutTrailing(Text text, char16_t unit)
{
    while (!text.empty() && text.back() == unit) {
        text.pop_back();
    }
    return text;
}

inline Text WithoutLeading(const Text& text, char16_t unit)
{
    const std::size_t first = text.find_first_not_of(unit);
    return first == Text::npos ? Text() : text.substr(first);
}

// Entries between semicolons without the white space around them; those of which nothing is left don't count.
inline std::vector<Text> Entries(const Text& value)
{
    std::vector<Text> entries(1);
    for (const char16_t unit : value) {
        if (unit == u';') {
            entries.emplace_back();
        } else {
            entries.back().push_back(unit);
        }
    }
    for (Text& entry : entries) {
        const auto isSpace = [](char16_t unit) { return IsSpaceCharacter(static_cast<wchar_t>(unit)); };
        while (!entry.empty() && isSpace(entry.back())) {
            entry.pop_back();
        }
        while (!entry.empty() && isSpace(entry.front())) {
            entry.erase(0, 1);
        }
    }
    std::erase(entries, Text());
    return entries;
}

// One bracket or brace that the database holds escaped, from the left, wherever it stands.
inline Text Unescaped(const Text& value, char16_t literal)
{
    const Text escape = {u'[', u'\\', literal, u']'};
    Text plain;
    for (std::size_t index = 0; index < value.size();) {
        const bool isEscape = value.compare(index, escape.size(), escape) == 0;
        plain.push_back(isEscape ? literal : value[index]);
        index += isEscape ? escape.size() : 1;
    }
    return plain;
}

// Key and rest of an entry in installer form, by where its first brackets stand.
inline Split SplitBrackets(const Text& entry)
{
    const auto indexOf = [&entry](char16_t unit) {
        const std::size_t index = entry.find(unit);
        return index == Text::npos ? -1 : static_cast<int>(index);
    };
    const auto behind = [&entry](int index) { return entry.substr(static_cast<std::size_t>(index) + 1); };
    const int open = indexOf(u'[');
    const int close = indexOf(u']');
    Split split;
    if (open == -1 && close == -1) {
        split.key = entry;
        split.rest = entry;
    } else if (close > open && open == -1) {
        split.key = entry.substr(0, static_cast<std::size_t>(close));
        split.rest = behind(close);
    } else if (close > open) {
        split.key = behind(open).substr(0, static_cast<std::size_t>(close - open - 1));
        split.rest = behind(close);
    } else {
        split.key = behind(open);
        split.rest = close == -1 ? entry : behind(close);
    }
    return split;
}

// From installer to display form. The marker for no path at all is left to the caller.
inline Text Decode(const Rows& rows, const Text& value)
{
    const std::map<Text, Row> map = InKeyOrder(rows);
    Text source = value;
    for (const char16_t literal : {u'[', u']', u'{', u'}'}) {
        source = Unescaped(source, literal);
    }
    Text display;
    for (const Text& entry : Entries(source)) {
        const Split split = SplitBrackets(entry);
        const auto row = map.find(split.key);
        if (row == map.end()) {
            display += split.rest;
        } else {
            display += row->second.local;
            display += split.rest.empty() ? Text() : u"\\" + split.rest;
        }
        display += u';';
    }
    return WithoutTrailing(WithoutTrailing(display, u';'), u'\\');
}

inline bool HasDriveLetter(const Text& path)
{
    return path.size() >= 2 && IsLetterCharacter(static_cast<wchar_t>(path[0])) && path[1] == u':';
}

// The first row in key order that is marked as a prefix and begins the path, be it the longest or not.
inline std::optional<Row> FindPrefix(const Rows& rows, const Text& path)
{
    constexpr int USABLE_AS_PREFIX = 0x2;
    for (const auto& [key, row] : InKeyOrder(rows)) {
        if ((row.flags & USABLE_AS_PREFIX) != 0 && !row.local.empty() && path.starts_with(row.local)) {
            return row;
        }
    }
    return std::nullopt;
}

inline Split SplitPrefix(const Rows& rows, const Text& path)
{
    if (HasDriveLetter(path)) {
        return {true, Text(), path};
    }
    const std::optional<Row> row = FindPrefix(rows, path);
    if (!row) {
        return {false, Text(), path};
    }
    const Text behind = path.substr(row->local.size());
    return {true, row->directory, WithoutTrailing(WithoutLeading(behind, u'\\'), u'\\')};
}

// From display to installer form. The marker for no path at all is left to the caller.
inline Text Encode(const Rows& rows, const Text& value)
{
    Text output;
    for (const Text& entry : Entries(value)) {
        const Split split = SplitPrefix(rows, entry);
        output += split.key.empty() ? Text() : u"[" + split.key + u"]";
        output += split.rest;
        output += output.ends_with(u';') ? Text() : Text(u";");
    }
    return WithoutTrailing(output, u';');
}

} // namespace PathModel
