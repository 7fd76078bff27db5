// What a patch state means from one wizard to the next.
#include "host/patch_states.h"

#include <gtest/gtest.h>

namespace {

struct StateRow
{
    PatchesOfImage patches;
    Setup::tagPATCHSTATE inImage;
    Setup::tagPATCHSTATE chosen;
};

constexpr auto NONE = Setup::PATCHSTATE_NONE;
constexpr auto MERGE_EMPTY = Setup::PATCHSTATE_MERGE_EMPTY;
constexpr auto APPEND = Setup::PATCHSTATE_APPEND;
constexpr auto APPENDED = Setup::PATCHSTATE_APPENDED;
constexpr auto MERGE = Setup::PATCHSTATE_MERGE;
constexpr auto MERGED = Setup::PATCHSTATE_MERGED;

// Stored state, merged ones, others; then what the page finds in the image and as chosen.
constexpr StateRow ROWS[] = {
    {{NONE, false, false}, NONE, NONE},
    {{NONE, false, true}, NONE, NONE},
    {{NONE, true, false}, MERGED, NONE},
    {{NONE, true, true}, MERGED, NONE},
    {{MERGE_EMPTY, false, false}, NONE, MERGE_EMPTY},
    {{MERGE_EMPTY, false, true}, NONE, MERGE_EMPTY},
    {{MERGE_EMPTY, true, false}, MERGED, MERGE_EMPTY},
    {{MERGE_EMPTY, true, true}, MERGED, MERGE_EMPTY},
    {{APPEND, false, false}, NONE, NONE},
    {{APPEND, false, true}, APPENDED, APPEND},
    {{APPEND, true, false}, MERGED, NONE},
    {{APPEND, true, true}, APPENDED, APPEND},
    {{APPENDED, false, false}, NONE, NONE},
    {{APPENDED, false, true}, APPENDED, APPEND},
    {{APPENDED, true, false}, MERGED, NONE},
    {{APPENDED, true, true}, APPENDED, APPEND},
    {{MERGE, false, false}, NONE, MERGE_EMPTY},
    {{MERGE, false, true}, NONE, MERGE},
    {{MERGE, true, false}, MERGED, MERGED},
    {{MERGE, true, true}, MERGED, MERGED},
    {{MERGED, false, false}, NONE, MERGE_EMPTY},
    {{MERGED, false, true}, NONE, MERGE},
    {{MERGED, true, false}, MERGED, MERGED},
    {{MERGED, true, true}, MERGED, MERGED},
};

} // namespace

TEST(PatchStatesTest, EveryStoredStateComesBackAsItsRowSays)
{
    for (const StateRow& row : ROWS) {
        const testing::Message name = testing::Message()
                                      << row.patches.storedState << " merged " << row.patches.hasMerged
                                      << " others " << row.patches.hasUnmerged;
        EXPECT_EQ(StateInImage(row.patches), row.inImage) << name;
        EXPECT_EQ(ChosenState(row.patches), row.chosen) << name;
    }
}

TEST(PatchStatesTest, OnlyAppendingAndMergingBringPatchesIntoABuild)
{
    EXPECT_EQ(UseOfPatches(NONE), PatchUse::None);
    EXPECT_EQ(UseOfPatches(MERGE_EMPTY), PatchUse::None);
    EXPECT_EQ(UseOfPatches(APPEND), PatchUse::Append);
    EXPECT_EQ(UseOfPatches(APPENDED), PatchUse::Append);
    EXPECT_EQ(UseOfPatches(MERGE), PatchUse::Merge);
    EXPECT_EQ(UseOfPatches(MERGED), PatchUse::Merge);
    EXPECT_EQ(UseOfPatches(static_cast<Setup::tagPATCHSTATE>(6)), PatchUse::None);
}
