#include "builder/user_features.h"

#include "base/ascii.h"
#include "base/guid_text.h"
#include "builder/build_names.h"
#include "builder/incomplete_additions.h"
#include "builder/named_table.h"

#include <algorithm>

namespace {

CString FurtherFeatureName(std::size_t number)
{
    return USER_FEATURE + NumberText(static_cast<long long>(number));
}

// The pages write the feature once in a run, into the first product that lacks it; and it names INSTALLDIR whether or
// not the product has such a directory.
void FinishFirstFeature(const WriteTable& features, const WriteTable& directories)
{
    if (!features.Has(USER_FEATURE)) {
        RowValues row = features.EmptyRow();
        features.Set(row, L"Feature", USER_FEATURE);
        features.Set(row, L"Title", L"User Deployment Files");
        features.Set(row, L"Description", L"User deployment files.");
        features.Set(row, L"Display", L"0"); // nobody is asked for it
        features.Set(row, L"Level", L"1");
        features.Set(row, L"Directory_", L"INSTALLDIR");
        features.Set(row, L"Attributes", L"16"); // it can't be left out
        features.Rows()[{USER_FEATURE}] = std::move(row);
    }
    if (!directories.Has(L"INSTALLDIR")) {
        features.Set(features.Rows().at({USER_FEATURE}), L"Directory_", CString());
    }
}

// A feature of such a name that holds anything but additions is the product's own.
std::set<CString> EarlierFeatures(const WriteTable& features, const WriteTable& components)
{
    std::set<CString> earlier;
    for (const auto& [key, row] : features.Rows()) {
        if (IsFurtherFeatureName(key.front())) {
            earlier.insert(key.front());
        }
    }
    for (const auto& [key, row] : components.Rows()) {
        if (!IsUserKey(components.Value(row, L"Component_"))) {
            earlier.erase(components.Value(row, L"Feature_"));
        }
    }
    return earlier;
}

void AddComponent(const WriteTable& components, const CString& feature, const CString& component)
{
    RowValues row = components.EmptyRow();
    components.Set(row, L"Feature_", feature);
    components.Set(row, L"Component_", component);
    components.Rows()[{feature, component}] = std::move(row);
}

} // namespace

bool IsFurtherFeatureName(const CString& feature)
{
    const int length = CString(USER_FEATURE).GetLength();
    if (feature.GetLength() <= length || !(feature.Left(length) == USER_FEATURE) || feature[length] == L'0') {
        return false;
    }
    const CString digits = feature.Mid(length);
    for (int index = 0; index < digits.GetLength(); ++index) {
        if (!IsAsciiDigit(digits[index])) {
            return false;
        }
    }
    return !(digits == L"1");
}

void FinishUserFeatures(DatabaseSnapshot& database, const std::vector<CString>& keys)
{
    const WriteTable features = TableToWrite(database, L"Feature");
    const WriteTable components = TableToWrite(database, L"FeatureComponents");
    if (!features.Exists() || !components.Exists()) {
        return;
    }
    std::set<CString> ours = EarlierFeatures(features, components);
    for (const CString& feature : ours) {
        features.Rows().erase({feature});
    }
    ours.insert(USER_FEATURE);
    std::erase_if(components.Rows(), [&](const auto& row) {
        return ours.count(components.Value(row.second, L"Feature_")) != 0 &&
               IsUserKey(components.Value(row.second, L"Component_"));
    });
    if (keys.empty()) {
        return;
    }
    FinishFirstFeature(features, TableToWrite(database, L"Directory"));
    CString feature = USER_FEATURE;
    std::size_t number = 1;
    std::size_t count = 0;
    for (const CString& key : keys) {
        if (count == MAX_FEATURE_COMPONENTS) {
            do {
                feature = FurtherFeatureName(++number);
            } while (features.Has(feature));
            RowValues row = features.Rows().at({USER_FEATURE});
            features.Set(row, L"Feature", feature);
            features.Rows()[{feature}] = std::move(row);
            count = 0;
        }
        AddComponent(components, feature, key);
        ++count;
    }
}
