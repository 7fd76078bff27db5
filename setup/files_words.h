// Which words the additional files have in an answers file, and how their paths begin there.
#pragma once

inline constexpr wchar_t FILES_FOLDER[] = L"folder";
inline constexpr wchar_t FILES_FILE[] = L"file";
inline constexpr wchar_t FILES_FOLDER_TREE[] = L"folder_tree";
inline constexpr wchar_t FILES_DRIVE[] = L"drive";
inline constexpr wchar_t FILES_RENAME[] = L"rename";
inline constexpr wchar_t FILES_REMOVE[] = L"remove";

// At the front of a path: the product's folder, whatever a package calls it.
inline constexpr wchar_t FILES_ROOT_MARK[] = L"<root>";
