#include "patches/patch_list_rules.h"

PatchVerdict SettlePatches(const std::vector<CString>& merged, const std::vector<JudgedPatch>& judged)
{
    PatchVerdict verdict{merged, CString()};
    for (const JudgedPatch& patch : judged) {
        if (patch.status == 0) {
            verdict.list.push_back(patch.strPath);
        } else {
            verdict.strInapplicable += patch.strPath + L"\n";
        }
    }
    return verdict;
}

bool NamesProduct(const CString& targets, const CString& productCode) noexcept
{
    return targets.Find(productCode) >= 0;
}

PatchWay WayAtEntry(Setup::tagPATCHSTATE stored, Setup::tagPATCHSTATE chosen) noexcept
{
    switch (stored) {
    case Setup::PATCHSTATE_APPENDED:
        return {false, true, false};
    case Setup::PATCHSTATE_MERGED:
        return {true, true, true};
    default:
        break;
    }
    return {chosen == Setup::PATCHSTATE_MERGE_EMPTY || chosen == Setup::PATCHSTATE_MERGE ||
                chosen == Setup::PATCHSTATE_MERGED,
            false, false};
}

std::optional<Setup::tagPATCHSTATE> StateToStore(const PatchesOnPage& page,
                                                 Setup::tagPATCHSTATE current) noexcept
{
    if (page.isNoneChosen) {
        return Setup::PATCHSTATE_NONE;
    }
    if (page.isListEmpty) {
        return page.isMergeChosen ? Setup::PATCHSTATE_MERGE_EMPTY : Setup::PATCHSTATE_NONE;
    }
    if (current == Setup::PATCHSTATE_MERGED) {
        return std::nullopt; // further patches are merged too
    }
    return page.isMergeChosen ? Setup::PATCHSTATE_MERGE : Setup::PATCHSTATE_APPEND;
}
