// What the page of additional files leaves for the host in the product's own properties.
#pragma once

// "1" while the product's database holds anything that was added, "0" otherwise; set when the page is left.
inline constexpr wchar_t ADDITIONAL_FILES_MODIFIED[] = L"ADDITIONALFILES_MODIFIED";

// Full paths, with "|" between them, of files that the last command could not add although they exist. The page itself says
// nothing of them: who reads the property in a hook behind the command reports them, and empties it.
inline constexpr wchar_t ADDITIONAL_FILES_NOT_ADDED[] = L"ADDITIONALFILES_NOT_ADDED";
