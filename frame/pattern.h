// The wildcard matcher.
//
//   ?      any one character                 #   one decimal digit
//   @      one letter                        .   one character that is neither letter nor digit
//   *      any run, also an empty one        `   the next pattern character taken literally
//   blank  one or more blanks of the text (so a second blank in the pattern finds none left)
//   [...]  one character of the set: "~" first negates, "]" first is a literal, a-z is a range of code units,
//          a "-" at either end is a literal; a set without its "]" matches nothing
//   ~      at the very start, where negation is allowed: inverts the result of the whole match
//
// Everything else is a literal, compared by collation one character at a time.
#pragma once

#include "base/string.h"

// True when all of `text` matches the pattern that runs from `pattern` up to `patternEnd`.
[[nodiscard]] bool MatchPattern(const wchar_t* text, const wchar_t* pattern, const wchar_t* patternEnd,
                                bool ignoreCase, bool allowNegation);

// True when any pattern of the list matches, with regard to case and negation allowed. Patterns are separated by ",";
// a comma after an odd number of backquotes belongs to its pattern.
[[nodiscard]] bool MatchPatternList(const wchar_t* text, const wchar_t* list);

// A letter, a colon and anything.
[[nodiscard]] bool IsDrivePath(const wchar_t* text);
