#include "builder/plan_texts.h"

#include "base/guid_text.h"
#include "base/name_rules.h"
#include "builder/build_names.h"
#include "builder/command_text.h"
#include "builder/product_identity.h"
#include "builder/shown_text.h"

namespace {

// True for a folder's path whose characters paths can have; the question mark of `\\?\` in front is one of them.
bool HasPathCharacters(const CString& path)
{
    const int first = path.Left(4) == L"\\\\?\\" ? 4 : 0;
    for (int index = first; index < path.GetLength(); ++index) {
        if (path[index] < 32 || path[index] == 0x7F || CString(L"\"<>|?*").Find(path[index]) >= 0) {
            return false;
        }
    }
    return true;
}

BuildFailure JudgeProduct(const BuildDatabase& database)
{
    const CString name = L"\"" + ShownText(database.strProductName) + L"\"";
    if (!IsBracedGuid(database.strProductCode)) {
        return {BUILD_DATABASE_DAMAGED, L"The product code \"" + ShownText(database.strProductCode) +
                                            L"\" of " + name + L" isn't a GUID in braces. " +
                                            RemedyOf(BUILD_DATABASE_DAMAGED)};
    }
    if (!IsInstallerVersion(database.strProductVersion)) {
        return {BUILD_DATABASE_DAMAGED, L"The version \"" + ShownText(database.strProductVersion) +
                                            L"\" of " + name + L" isn't a version such as 27.0.1. " +
                                            RemedyOf(BUILD_DATABASE_DAMAGED)};
    }
    for (const CString& patch : database.patchTargets) {
        if (!IsPlainRelativePath(patch) || patch.Find(L';') >= 0) {
            return {BUILD_BAD_PATH_NAME,
                    L"The patch \"" + ShownText(patch) + L"\" of " + name +
                        L" can't be chained: its path isn't valid, or contains a semicolon, which separates "
                        L"patches. Rename the file."};
        }
    }
    return {};
}

// Patches are chained by their full paths.
BuildFailure JudgePatchPlace(const BuildPlan& plan)
{
    const CString folder = JoinFolder(plan.strLocation, plan.strName);
    if (folder.Find(L';') < 0) {
        return {};
    }
    return {BUILD_BAD_PATH_NAME,
            L"Patches can't be appended to a deployment in \"" + ShownText(folder) +
                L"\": the path contains a semicolon, which separates patches. Choose another "
                L"location or name."};
}

} // namespace

BuildFailure FindUnfitText(const BuildPlan& plan)
{
    const struct
    {
        const wchar_t* what;
        const CString& path;
    } paths[] = {
        {L"location", plan.strLocation},
        {L"log folder", plan.commands.strLogFolder},
    };
    for (const auto& [what, path] : paths) {
        if (!HasPathCharacters(path)) {
            return {BUILD_BAD_PATH_NAME,
                    CString(L"The ") + what + L" \"" + ShownText(path) +
                        L"\" holds a character that paths can't have: one of \" < > | ? * or "
                        L"a control character. " +
                        RemedyOf(BUILD_BAD_PATH_NAME)};
        }
    }
    if (!IsDisplayOption(plan.commands.strDisplay)) {
        return {BUILD_INVALID_PARAMETER, L"\"" + ShownText(plan.commands.strDisplay) +
                                             L"\" isn't a display option of the installer. " +
                                             RemedyOf(BUILD_INVALID_PARAMETER)};
    }
    for (const BuildDatabase& database : plan.databases) {
        BuildFailure failure = JudgeProduct(database);
        if (failure.code == BUILD_OK && !database.patchTargets.empty()) {
            failure = JudgePatchPlace(plan);
        }
        if (failure.code != BUILD_OK) {
            return failure;
        }
    }
    return {};
}
