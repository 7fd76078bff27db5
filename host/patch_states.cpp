#include "host/patch_states.h"

PatchUse UseOfPatches(Setup::tagPATCHSTATE chosen)
{
    switch (chosen) {
    case Setup::PATCHSTATE_APPEND:
    case Setup::PATCHSTATE_APPENDED:
        return PatchUse::Append;
    case Setup::PATCHSTATE_MERGE:
    case Setup::PATCHSTATE_MERGED:
        return PatchUse::Merge;
    default:
        return PatchUse::None;
    }
}

Setup::tagPATCHSTATE StateInImage(const PatchesOfImage& patches)
{
    const bool appends =
        UseOfPatches(static_cast<Setup::tagPATCHSTATE>(patches.storedState)) == PatchUse::Append;
    if (appends && patches.hasUnmerged) {
        return Setup::PATCHSTATE_APPENDED;
    }
    return patches.hasMerged ? Setup::PATCHSTATE_MERGED : Setup::PATCHSTATE_NONE;
}

Setup::tagPATCHSTATE ChosenState(const PatchesOfImage& patches)
{
    const Setup::tagPATCHSTATE stored = static_cast<Setup::tagPATCHSTATE>(patches.storedState);
    switch (UseOfPatches(stored)) {
    case PatchUse::Append:
        return patches.hasUnmerged ? Setup::PATCHSTATE_APPEND : Setup::PATCHSTATE_NONE;
    case PatchUse::Merge:
        return patches.hasMerged     ? Setup::PATCHSTATE_MERGED
               : patches.hasUnmerged ? Setup::PATCHSTATE_MERGE
                                     : Setup::PATCHSTATE_MERGE_EMPTY;
    default:
        return stored; // 0 or 1
    }
}
