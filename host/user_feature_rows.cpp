#include "host/user_feature_rows.h"

#include "base/guid_text.h"
#include "builder/incomplete_additions.h"
#include "builder/user_features.h"
#include "installer/query.h"
#include "installer/record.h"

#include <set>
#include <vector>

namespace {

struct Assignment
{
    CString strFeature;
    CString strComponent;
};

// The further features and their components. One that holds anything but additions is the product's own.
unsigned int FindFurther(MSIHANDLE database, std::set<CString>& features, std::vector<CString>& components)
{
    unsigned int result = ForEachRow(database, L"SELECT `Feature` FROM `Feature`", {}, [&](MSIHANDLE record) {
        const CString feature = RecordText(record, 1);
        if (IsFurtherFeatureName(feature)) {
            features.insert(feature);
        }
        return true;
    });
    if (result != ERROR_SUCCESS || features.empty()) {
        return result; // as in every package but large deployments
    }
    std::vector<Assignment> all;
    result = ForEachRow(database, L"SELECT `Feature_`,`Component_` FROM `FeatureComponents`", {},
                        [&](MSIHANDLE record) {
                            all.push_back({RecordText(record, 1), RecordText(record, 2)});
                            return true;
                        });
    for (const Assignment& assignment : all) {
        if (!IsUserKey(assignment.strComponent)) {
            features.erase(assignment.strFeature);
        }
    }
    for (const Assignment& assignment : all) {
        if (features.count(assignment.strFeature) != 0) {
            components.push_back(assignment.strComponent);
        }
    }
    return result;
}

unsigned int AssignToUserFeature(MSIHANDLE database, const std::vector<CString>& components)
{
    CQuery insert; // opened once, as there may be thousands
    unsigned int result =
        insert.Open(database, L"INSERT INTO `FeatureComponents` (`Feature_`,`Component_`) VALUES (?,?)");
    for (const CString& component : components) {
        CInstallerHandle values;
        if (result == ERROR_SUCCESS) {
            result = MakeTextRecord({USER_FEATURE, component}, values);
        }
        if (result == ERROR_SUCCESS) {
            result = insert.Execute(values.get());
        }
        if (result == ERROR_SUCCESS) {
            result = insert.Close();
        }
    }
    return result;
}

} // namespace

unsigned int GatherUserFeatures(MSIHANDLE database)
{
    std::set<CString> features;
    std::vector<CString> components;
    unsigned int result = FindFurther(database, features, components);
    for (const CString& feature : features) {
        if (result == ERROR_SUCCESS) {
            result = RunStatement(database, L"DELETE FROM `FeatureComponents` WHERE `Feature_`=?", {feature});
        }
        if (result == ERROR_SUCCESS) {
            result = RunStatement(database, L"DELETE FROM `Feature` WHERE `Feature`=?", {feature});
        }
    }
    return result == ERROR_SUCCESS && !components.empty() ? AssignToUserFeature(database, components)
                                                          : result;
}
