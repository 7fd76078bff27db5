// What stands between the answers that a run writes, and the words of the first page that such a file treats apart.
#pragma once

// Above the first line of each group of a section. The second one is read again, from the file of a base.
constexpr wchar_t RECORD_CHANGED[] = L"Changed from what the page proposed:";
constexpr wchar_t RECORD_PROPOSED[] = L"As the page proposed:";
constexpr wchar_t RECORD_QUESTIONS[] = L"Questions that came up:";

constexpr wchar_t MODE_WORD[] = L"mode";
constexpr wchar_t BASE_WORD[] = L"base";
constexpr wchar_t NAME_WORD[] = L"name";
constexpr wchar_t LOCATION_WORD[] = L"location";
