// What a character is: the few questions that text rules ask of the platform. One answer a character, so that the
// rules need neither the C library's wide functions nor a window header.
#pragma once

wchar_t UpperCase(wchar_t character) noexcept;
wchar_t LowerCase(wchar_t character) noexcept;
bool IsSpaceCharacter(wchar_t character) noexcept;
bool IsDigitCharacter(wchar_t character) noexcept;
bool IsLetterCharacter(wchar_t character) noexcept;

// The collation's order of two single characters: negative, zero or positive.
int CollateCharacters(wchar_t left, wchar_t right, bool ignoreCase) noexcept;
