#include "builder/copy_list.h"

#include "base/name_rules.h"
#include "builder/addition_notes.h"
#include "builder/build_names.h"
#include "builder/command_text.h"
#include "builder/deployment_place.h"

#include <algorithm>
#include <functional>
#include <set>

namespace {

const wchar_t g_builder[] = L"the builder's own file";

CString Clash(const CString& target, const CString& first, const CString& second)
{
    return L"Both \"" + first + L"\" and \"" + second + L"\" would become \"" + target +
           L"\" in the deployment. Rename one of them or leave it out.";
}

} // namespace

void AddAdditions(CopyList& list, std::vector<CopyItem> files)
{
    std::set<CString, CompareNoCaseLess> known(list.folders.begin(), list.folders.end());
    const std::function<void(const CString&)> addFolder = [&](const CString& folder) {
        if (!folder.IsEmpty() && known.insert(folder).second) {
            addFolder(FolderAbove(folder));
            list.folders.push_back(folder);
        }
    };
    for (CopyItem& file : files) {
        addFolder(FolderAbove(file.strTarget));
        list.bytes += file.size;
        list.additions.push_back(std::move(file));
    }
}

TargetNames NamedTargets(const BuildPlan& plan)
{
    TargetNames names;
    for (const wchar_t* own : {L"Install.cmd", L"Uninstall.cmd", L"ReadMe.txt", L"Manifest.txt",
                               L"Changes.txt", L"Changes.json", L"Build.log", ADDITIONS_FILE, ANSWERS_FILE}) {
        names[own] = g_builder;
    }
    for (const BuildText& text : plan.texts) {
        names[text.strTarget] = L"a text of the plan";
    }
    for (const BuildDatabase& database : plan.databases) {
        names[database.strTarget] = database.strOriginal;
        const CString logName = LogNameFile(plan, database);
        if (!logName.IsEmpty()) {
            names[logName] = g_builder;
        }
    }
    return names;
}

bool HasAnswers(const BuildPlan& plan)
{
    return std::any_of(plan.texts.begin(), plan.texts.end(),
                       [](const BuildText& text) { return text.strTarget.CompareNoCase(ANSWERS_FILE) == 0; });
}

TargetNames WrittenTargets(const BuildPlan& plan, bool hasAdditions)
{
    TargetNames names = NamedTargets(plan);
    if (!hasAdditions) {
        names.erase(ADDITIONS_FILE);
    }
    if (!HasAnswers(plan)) {
        names.erase(ANSWERS_FILE);
    }
    return names;
}

CString RefusedTargets(const BuildPlan& plan, const CopyList& list)
{
    TargetNames names;
    for (const CString& folder : list.folders) {
        names[folder] = L"a folder";
    }
    const auto add = [&names](const CString& target, const CString& source) -> CString {
        if (!IsPlainRelativePath(target)) {
            return L"\"" + target + L"\" can't be a path inside a deployment (from \"" + source +
                   L"\"). Rename the file, or correct the media's description.";
        }
        const auto [place, isNew] = names.emplace(target, source);
        return isNew ? CString() : Clash(target, place->second, source);
    };
    CString refusal;
    for (const auto& name : NamedTargets(plan)) {
        refusal = add(name.first, name.second);
        if (!refusal.IsEmpty()) {
            return refusal;
        }
    }
    for (const std::vector<CopyItem>* files : {&list.files, &list.additions}) {
        for (const CopyItem& file : *files) {
            refusal = add(file.strTarget, file.strSource);
            if (!refusal.IsEmpty()) {
                return refusal;
            }
        }
    }
    return refusal;
}

CString LongestPath(const BuildPlan& plan, const CopyList& list, const CString& workstationPath)
{
    CString longest;
    const auto consider = [&longest](const CString& target) {
        if (target.GetLength() > longest.GetLength()) {
            longest = target;
        }
    };
    for (const auto& name : NamedTargets(plan)) {
        consider(name.first);
    }
    for (const std::vector<CopyItem>* files : {&list.files, &list.additions}) {
        for (const CopyItem& file : *files) {
            consider(file.strTarget);
        }
    }
    return JoinFolder(workstationPath, longest);
}
