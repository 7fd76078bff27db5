// Which words the service pack has in an answers file.
#pragma once

inline constexpr wchar_t SERVICE_PACK_CHOICE[] = L"choice";
inline constexpr wchar_t SERVICE_PACK_NONE[] = L"none";
inline constexpr wchar_t SERVICE_PACK_OFFERED[] = L"offered";
inline constexpr wchar_t SERVICE_PACK_FILES[] = L"files";
inline constexpr wchar_t SERVICE_PACK_FILE[] = L"file";
inline constexpr wchar_t SERVICE_PACK_WAY[] = L"way";
inline constexpr wchar_t SERVICE_PACK_APPEND[] = L"append";
inline constexpr wchar_t SERVICE_PACK_MERGE[] = L"merge";
