// The list of patches: what stays after the installer's word, whose patch one is, and the states at entry and on leaving.
#include "patches/patch_list_rules.h"

#include "tests/support/text.h"

#include <gtest/gtest.h>

namespace {

using Paths = std::vector<CString>;

} // namespace

TEST(PatchVerdictTest, MergedPatchesComeFirstAndThenThoseThatApplyEachInTheirOrder)
{
    const PatchVerdict verdict =
        SettlePatches({L"m2", L"m1"}, {{L"b", 0}, {L"x", 1642}, {L"a", 0}, {L"y", 1}});
    EXPECT_EQ(verdict.list, (Paths{L"m2", L"m1", L"b", L"a"}));
    EXPECT_EQ(verdict.strInapplicable, CString(L"x\ny\n"));
}

TEST(PatchVerdictTest, NothingGivesAnEmptyListAndNoWords)
{
    const PatchVerdict verdict = SettlePatches({}, {});
    EXPECT_EQ(verdict.list, Paths());
    EXPECT_EQ(verdict.strInapplicable, CString());
}

TEST(PatchTargetsTest, ACodeAnywhereInTheTextCountsInItsCaseAlone)
{
    const CString code = L"{5C0FFEE0-0000-4000-8000-0000000000A1}";
    for (const CString& targets : {code, L"{OTHER};" + code, code + L";{OTHER}", L"x" + code + L"x"}) {
        EXPECT_TRUE(NamesProduct(targets, code)) << Utf8(targets);
    }
    for (const CString& targets :
         {CString(), CString(L"{OTHER}"), CString(code).MakeLower(), code.Left(code.GetLength() - 1)}) {
        EXPECT_FALSE(NamesProduct(targets, code)) << Utf8(targets);
    }
}

TEST(PatchWayTest, TheStoredStateLocksAndOtherwiseTheChosenOneDecides)
{
    for (int stored = 0; stored <= 5; ++stored) {
        for (int chosen = 0; chosen <= 5; ++chosen) {
            const PatchWay way = WayAtEntry(static_cast<Setup::tagPATCHSTATE>(stored),
                                            static_cast<Setup::tagPATCHSTATE>(chosen));
            const bool merges = chosen == 1 || chosen == 4 || chosen == 5;
            EXPECT_EQ(way.isMerge, stored == 3 ? false : stored == 5 ? true : merges) << stored << chosen;
            EXPECT_EQ(way.isLocked, stored == 3 || stored == 5) << stored << chosen;
            EXPECT_EQ(way.isRemovalLocked, stored == 5) << stored << chosen;
        }
    }
}

TEST(PatchStateTest, NoPatchIsStoredWhateverElseIsThere)
{
    for (const bool empty : {false, true}) {
        for (const bool merge : {false, true}) {
            for (int state = 0; state <= 5; ++state) {
                EXPECT_EQ(StateToStore({true, empty, merge}, static_cast<Setup::tagPATCHSTATE>(state)),
                          std::optional(Setup::PATCHSTATE_NONE));
            }
        }
    }
}

TEST(PatchStateTest, AListIsAppendedOrMergedButForOneThatIsMergedAlready)
{
    for (int state = 0; state <= 5; ++state) {
        const auto current = static_cast<Setup::tagPATCHSTATE>(state);
        EXPECT_EQ(StateToStore({false, false, true}, current),
                  state == 5 ? std::nullopt : std::optional(Setup::PATCHSTATE_MERGE))
            << state;
        EXPECT_EQ(StateToStore({false, false, false}, current),
                  state == 5 ? std::nullopt : std::optional(Setup::PATCHSTATE_APPEND))
            << state;
    }
}

TEST(PatchStateTest, AnEmptyListKeepsTheWayAlone)
{
    for (int state = 0; state <= 5; ++state) {
        const auto current = static_cast<Setup::tagPATCHSTATE>(state);
        EXPECT_EQ(StateToStore({false, true, true}, current), std::optional(Setup::PATCHSTATE_MERGE_EMPTY));
        EXPECT_EQ(StateToStore({false, true, false}, current), std::optional(Setup::PATCHSTATE_NONE));
    }
}
