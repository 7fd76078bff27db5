// What the pages and the builder name alike.
#pragma once

// The feature that installs what an administrator added: the pages write it, the builder completes it.
inline constexpr wchar_t USER_FEATURE[] = L"_UserDeploymentFile";
