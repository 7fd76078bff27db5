// What a product's database holds for its custom shortcuts besides their rows in the table Shortcut: the row that all of them
// are made from, and the list of those that were made. Both are properties.
#pragma once

#include "msi/row_columns.h"

#include <vector>

// The twelve columns of the table, joined by ";". Empty for a product without custom shortcuts.
inline constexpr wchar_t SHORTCUT_TEMPLATE_PROPERTY[] = L"ZOLT_SHORTCUT_TEMPLATE";
constexpr int SHORTCUT_TEMPLATE_FIELDS = 12;
constexpr int LONGEST_SHORTCUT_TEMPLATE = 1023; // characters that a page reads

// "next;key;key;...;": the number that the next key has, and the keys that were made, each with a closing ";".
inline constexpr wchar_t SHORTCUT_LIST_PROPERTY[] = L"ZOLT_CUSTOM_SHORTCUT";

// What the installer has for an empty number column.
constexpr int NULL_COLUMN = static_cast<int>(0x80000000);

// The fields between the ";", an empty one at the end included; 1 for the empty text.
[[nodiscard]] int CountTemplateFields(const CString& text);

// The template's row; of its name the part behind the first "|". A row without any text where fields before the last are
// missing.
[[nodiscard]] ShortcutColumns ReadShortcutTemplate(const CString& text);

// 1 for a list without number or ";", and for the number 0.
[[nodiscard]] int ReadNextShortcutNumber(const CString& list);

// In their order, each once. What stands behind the last ";" is none.
[[nodiscard]] std::vector<CString> ReadShortcutKeys(const CString& list);
