// The features that additions are installed by. The pages put all of them into one feature; the installer takes 1,600
// components in a feature, so the database that is built has further ones, which install like the first. No window
// header.
#pragma once

#include "builder/change_report.h"
#include "installer/user_feature.h"

#include <set>

constexpr std::size_t MAX_FEATURE_COMPONENTS = 1600; // the installer's documented limit

// The name of a further feature: `_UserDeploymentFile2` and so on.
[[nodiscard]] bool IsFurtherFeatureName(const CString& feature);

// Writes the feature of the additions where it is missing, and spreads the components of `keys`, in that order, over it
// and as many further features as they need. Further features of an earlier build go.
void FinishUserFeatures(DatabaseSnapshot& database, const std::vector<CString>& keys);
