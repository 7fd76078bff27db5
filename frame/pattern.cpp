#include "frame/pattern.h"

#include "base/character.h"

namespace {

bool IsLetterOrDigit(wchar_t character)
{
    return IsLetterCharacter(character) || IsDigitCharacter(character);
}

bool IsSameCharacter(wchar_t left, wchar_t right, bool ignoreCase)
{
    return CollateCharacters(left, right, ignoreCase) == 0;
}

// The set after its "[": moves `pattern` behind the "]" and returns whether the character belongs to the set.
bool MatchSet(wchar_t character, const wchar_t*& pattern, const wchar_t* patternEnd, bool ignoreCase)
{
    const bool negated = pattern != patternEnd && *pattern == L'~';
    if (negated) {
        ++pattern;
    }
    bool found = false;
    for (bool first = true; pattern != patternEnd; first = false) {
        const wchar_t low = *pattern++;
        if (low == L']' && !first) {
            return found != negated;
        }
        const bool isRange = patternEnd - pattern >= 2 && pattern[0] == L'-' && pattern[1] != L']';
        if (isRange) {
            // Ranges go by code unit even where case is ignored; the lists in use rely on it.
            found = found || (low <= character && character <= pattern[1]);
            pattern += 2;
        } else {
            found = found || IsSameCharacter(character, low, ignoreCase);
        }
    }
    return false; // the "]" is missing
}

// One element of the pattern (not "*") against the start of the text. Moves both behind what matched.
bool MatchElement(const wchar_t*& text, const wchar_t*& pattern, const wchar_t* patternEnd, bool ignoreCase)
{
    const wchar_t character = *text++;
    const wchar_t mark = *pattern++;
    switch (mark) {
    case L'?':
        return true;
    case L'#':
        return IsDigitCharacter(character);
    case L'@':
        return IsLetterCharacter(character);
    case L'.':
        return !IsLetterOrDigit(character);
    case L' ':
        if (character != L' ') {
            return false;
        }
        while (*text == L' ') {
            ++text;
        }
        return true;
    case L'[':
        return MatchSet(character, pattern, patternEnd, ignoreCase);
    case L'`':
        return pattern != patternEnd && IsSameCharacter(character, *pattern++, ignoreCase);
    default:
        return IsSameCharacter(character, mark, ignoreCase);
    }
}

// Elements match from the earliest place on, and an earlier place never ends later; so only the last "*" needs to be
// tried again, and a hostile pattern costs no more than the product of both lengths.
bool MatchElements(const wchar_t* text, const wchar_t* pattern, const wchar_t* patternEnd, bool ignoreCase)
{
    const wchar_t* afterStar = nullptr;
    const wchar_t* retry = nullptr;
    for (;;) {
        if (pattern != patternEnd && *pattern == L'*') {
            afterStar = ++pattern;
            retry = text;
            continue;
        }
        if (*text == 0 && pattern == patternEnd) {
            return true;
        }
        if (*text != 0 && pattern != patternEnd && MatchElement(text, pattern, patternEnd, ignoreCase)) {
            continue;
        }
        if (!afterStar || *retry == 0) {
            return false;
        }
        text = ++retry;
        pattern = afterStar;
    }
}

} // namespace

bool MatchPattern(const wchar_t* text, const wchar_t* pattern, const wchar_t* patternEnd, bool ignoreCase,
                  bool allowNegation)
{
    if (!text) {
        text = L"";
    }
    const bool negated = allowNegation && pattern != patternEnd && *pattern == L'~';
    if (negated) {
        ++pattern;
    }
    return MatchElements(text, pattern, patternEnd, ignoreCase) != negated;
}

bool MatchPatternList(const wchar_t* text, const wchar_t* list)
{
    if (!list) {
        return false;
    }
    const wchar_t* pattern = list;
    int backquotes = 0;
    for (const wchar_t* place = list;; ++place) {
        const bool atEnd = *place == 0;
        if (atEnd || (*place == L',' && backquotes % 2 == 0)) {
            if (MatchPattern(text, pattern, place, false, true)) {
                return true;
            }
            if (atEnd) {
                return false;
            }
            pattern = place + 1;
        }
        backquotes = *place == L'`' ? backquotes + 1 : 0;
    }
}

bool IsDrivePath(const wchar_t* text)
{
    return MatchPatternList(text, L"@:*");
}
