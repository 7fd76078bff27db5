// First line the text, the rest the pattern.
#include "frame/pattern.h"
#include "fuzz/wide_input.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    CString pattern;
    const CString text = FirstLine(WideInput(data, size), pattern);
    const wchar_t* start = pattern;
    // The matcher reads a pattern up to its end and a text up to its zero.
    const wchar_t* end = start + TextLength(start);
    const bool matches = MatchPattern(text, start, end, false, false);
    const CString negated = CString(L"~") + start;
    const wchar_t* negatedStart = negated;
    if (MatchPattern(text, negatedStart, negatedStart + negated.GetLength(), false, true) == matches) {
        __builtin_trap(); // negation must turn every answer round
    }
    const CString starred = CString(L"*") + start;
    const wchar_t* starredStart = starred;
    if (matches && !MatchPattern(text, starredStart, starredStart + starred.GetLength(), false, false)) {
        __builtin_trap(); // a star in front takes the empty run
    }
    static_cast<void>(MatchPattern(text, start, end, true, true));
    static_cast<void>(MatchPatternList(text, pattern));
    return 0;
}
