// The stages of the service pack page: how an answer of the service leads to one, what each does to the controls, and what the
// action button means in it.
#include "include/resource_ids.h"
#include "patches/patch_stage_rules.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <vector>

namespace {

constexpr std::uint32_t UNSET = 0xFFFFFFFF;
constexpr unsigned int SHOW_AND_ENABLE = STAGE_SHOW | STAGE_ENABLE;

struct Deeds
{
    unsigned int deeds;
    unsigned int text = 0;
    bool bInDeploymentFlow = false;

    bool operator==(const Deeds&) const = default;
};
void PrintTo(const Deeds& deeds, std::ostream* stream)
{
    *stream << deeds.deeds << (deeds.bInDeploymentFlow ? ", in a deployment" : "") << ", text " << deeds.text;
}
using Controls = std::map<int, Deeds>;

Controls Of(std::span<const StageControl> rows)
{
    Controls controls;
    for (const StageControl& row : rows) {
        EXPECT_TRUE(controls.insert({row.control, {row.deeds, row.text, row.bInDeploymentFlow}}).second)
            << row.control << " is named twice";
    }
    return controls;
}

} // namespace

TEST(PatchStageTest, EachAnswerAtEntryHasItsStage)
{
    const struct
    {
        bool fetched;
        std::uint32_t error;
        std::int32_t count;
        PatchStage stage;
    } rows[] = {
        {true, 0, 0, StageUpToDate},
        {true, 0, 1, StageAvailable},
        {true, 0, 2147483647, StageAvailable},
        {true, 0, -1, StageNoService},
        {true, 0, -2147483647 - 1, StageNoService},
        {false, 12017, 0, StageConnectFailed},
        {false, 12017, 1, StageConnectFailed},
        {false, 12002, 0, StageTimedOut},
        {false, 12002, -1, StageTimedOut},
        {false, UNSET, 0, StageNoService},
        {false, 12029, 1, StageNoService},
        {false, 0, 1, StageNoService},
        {false, 0, 0, StageNoService},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(StageAtEntry(row.fetched, {row.error, row.count}), row.stage)
            << row.fetched << ", " << row.error << ", " << row.count;
    }
}

TEST(PatchStageTest, EachAnswerAtARetryHasItsStage)
{
    const struct
    {
        std::uint32_t error;
        std::int32_t count;
        PatchStage stage;
    } rows[] = {
        {0, 1, StageAvailable},         {0, 0, StageUpToDate},          {0, -1, StageUpToDate},
        {12002, 0, StageTimedOut},      {12002, 1, StageTimedOut},      {12017, 0, StageConnectFailed},
        {12029, 1, StageConnectFailed}, {UNSET, 0, StageConnectFailed}, {1, 1, StageConnectFailed},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(StageAtRetry({row.error, row.count}), row.stage) << row.error << ", " << row.count;
    }
}

TEST(PatchStageTest, ARecordByItselfHasItsStage)
{
    EXPECT_EQ(StageOfOutcome({0, 1}), StageAvailable);
    EXPECT_EQ(StageOfOutcome({0, 0}), StageUpToDate);
    EXPECT_EQ(StageOfOutcome({0, -1}), StageNoService);
    EXPECT_EQ(StageOfOutcome({12002, 1}), StageTimedOut);
    EXPECT_EQ(StageOfOutcome({12017, 1}), StageConnectFailed);
    EXPECT_EQ(StageOfOutcome({UNSET, 1}), StageConnectFailed);
}

TEST(PatchStageTest, BeforeEachStageTheServicesPartIsHiddenAndTheLocalChoicesAreOn)
{
    EXPECT_EQ(Of(ControlsBeforeStage()), (Controls{{1350, {STAGE_HIDE}},
                                                   {1337, {STAGE_HIDE}},
                                                   {1352, {STAGE_HIDE}},
                                                   {1353, {STAGE_HIDE}},
                                                   {1348, {STAGE_HIDE}},
                                                   {1349, {STAGE_HIDE}},
                                                   {1342, {STAGE_HIDE}},
                                                   {1351, {STAGE_HIDE}},
                                                   {1341, {STAGE_HIDE}},
                                                   {1330, {STAGE_ENABLE}},
                                                   {1331, {STAGE_ENABLE}}}));
}

TEST(PatchStageTest, EachStageDoesItsOwnToTheControls)
{
    EXPECT_EQ(Of(ControlsOfStage(StageNoService)),
              (Controls{{1332, {STAGE_HIDE}}, {1346, {STAGE_HIDE}}, {1330, {STAGE_CHECK}}}));
    EXPECT_EQ(Of(ControlsOfStage(StageConnectFailed)),
              (Controls{{1341, {SHOW_AND_ENABLE, 24}}, {1352, {SHOW_AND_ENABLE}}, {1353, {STAGE_SHOW, 44}}}));
    EXPECT_EQ(Of(ControlsOfStage(StageTimedOut)),
              (Controls{{1341, {SHOW_AND_ENABLE, 24}}, {1352, {SHOW_AND_ENABLE}}, {1353, {STAGE_SHOW, 45}}}));
    EXPECT_EQ(Of(ControlsOfStage(StageRetryOffered)), Controls());
    EXPECT_EQ(Of(ControlsOfStage(StageCancelRequested)),
              (Controls{{1348, {STAGE_SHOW}}, {1349, {STAGE_SHOW}}, {1341, {STAGE_SHOW, 41}}}));
    EXPECT_EQ(Of(ControlsOfStage(StageAvailable)), (Controls{{1337, {SHOW_AND_ENABLE}},
                                                             {1348, {SHOW_AND_ENABLE}},
                                                             {1349, {SHOW_AND_ENABLE}},
                                                             {1341, {SHOW_AND_ENABLE, 41}},
                                                             {1330, {STAGE_ENABLE | STAGE_UNCHECK}},
                                                             {1331, {STAGE_ENABLE | STAGE_UNCHECK}},
                                                             {1332, {STAGE_ENABLE}}}));
    EXPECT_EQ(Of(ControlsOfStage(StageDownloading)), (Controls{{1348, {STAGE_SHOW}},
                                                               {1349, {STAGE_SHOW}},
                                                               {1342, {SHOW_AND_ENABLE}},
                                                               {1341, {STAGE_SHOW, 42}},
                                                               {1330, {STAGE_DISABLE}},
                                                               {1331, {STAGE_DISABLE}},
                                                               {1347, {STAGE_DISABLE, 0, true}},
                                                               {1206, {STAGE_DISABLE, 0, true}},
                                                               {1207, {STAGE_DISABLE, 0, true}}}));
    EXPECT_EQ(Of(ControlsOfStage(StageDownloaded)), (Controls{{1341, {STAGE_SHOW | STAGE_DISABLE, 41}},
                                                              {1348, {STAGE_SHOW}},
                                                              {1349, {STAGE_SHOW}},
                                                              {1351, {STAGE_SHOW}},
                                                              {1343, {STAGE_SHOW, 43}},
                                                              {1332, {STAGE_ENABLE}}}));
    constexpr unsigned int offAndDisabled = STAGE_UNCHECK | STAGE_DISABLE;
    EXPECT_EQ(Of(ControlsOfStage(StageUpToDate)), (Controls{{1350, {STAGE_SHOW}},
                                                            {1337, {SHOW_AND_ENABLE, 46}},
                                                            {1346, {STAGE_HIDE}},
                                                            {1330, {offAndDisabled}},
                                                            {1332, {offAndDisabled}},
                                                            {1331, {offAndDisabled}},
                                                            {1205, {STAGE_DISABLE}},
                                                            {1011, {STAGE_DISABLE}},
                                                            {1200, {STAGE_DISABLE}},
                                                            {1206, {offAndDisabled, 0, true}},
                                                            {1207, {offAndDisabled, 0, true}},
                                                            {1347, {STAGE_DISABLE, 0, true}}}));
}

TEST(PatchStageTest, AChoiceThatWasMadeChecksItsRadio)
{
    constexpr unsigned int on = STAGE_CHECK | STAGE_ENABLE;
    EXPECT_EQ(Of(ControlsOfChoice(-1)), Controls());
    EXPECT_EQ(Of(ControlsOfChoice(0)), (Controls{{1331, {STAGE_UNCHECK}}, {1330, {on}}}));
    EXPECT_EQ(Of(ControlsOfChoice(1)),
              (Controls{{1331, {STAGE_UNCHECK}}, {1330, {STAGE_UNCHECK}}, {1332, {on}}}));
    EXPECT_EQ(Of(ControlsOfChoice(2)),
              (Controls{{1330, {STAGE_UNCHECK}}, {1332, {STAGE_UNCHECK}}, {1331, {on}}}));
    EXPECT_EQ(Of(ControlsOfChoice(3)), Of(ControlsOfChoice(0)));
    EXPECT_EQ(Of(ControlsOfChoice(-2)), Of(ControlsOfChoice(0)));
}

TEST(PatchStageTest, EachRadioTurnsOnWhatBelongsToIt)
{
    EXPECT_EQ(Of(ControlsOfRadio(PatchChoice::None)), (Controls{{1205, {STAGE_DISABLE}},
                                                                {1011, {STAGE_DISABLE}},
                                                                {1200, {STAGE_DISABLE}},
                                                                {1343, {STAGE_DISABLE}},
                                                                {1207, {STAGE_DISABLE}},
                                                                {1206, {STAGE_DISABLE}}}));
    EXPECT_EQ(Of(ControlsOfRadio(PatchChoice::Offered)), (Controls{{1205, {STAGE_DISABLE}},
                                                                   {1011, {STAGE_DISABLE}},
                                                                   {1200, {STAGE_DISABLE}},
                                                                   {1343, {STAGE_ENABLE}}}));
    EXPECT_EQ(Of(ControlsOfRadio(PatchChoice::Listed)),
              (Controls{{1205, {STAGE_ENABLE}}, {1011, {STAGE_ENABLE}}, {1343, {STAGE_DISABLE}}}));
    EXPECT_EQ(Of(ControlsOfRadio(PatchChoice::Unmade)), (Controls{{1205, {STAGE_DISABLE}},
                                                                  {1011, {STAGE_DISABLE}},
                                                                  {1200, {STAGE_DISABLE}},
                                                                  {1330, {STAGE_DISABLE}},
                                                                  {1332, {STAGE_DISABLE}},
                                                                  {1331, {STAGE_DISABLE}}}));
}

TEST(PatchStageTest, TheActionIsOnForAnOfferAndForARetry)
{
    for (std::uint32_t number = StageNoService; number <= StageUpToDate; ++number) {
        const auto stage = static_cast<PatchStage>(number);
        for (const PatchChoice choice : {PatchChoice::None, PatchChoice::Listed}) {
            EXPECT_EQ(IsActionEnabled(choice, stage),
                      stage == StageRetryOffered ? std::nullopt : std::optional(false))
                << number;
        }
        EXPECT_EQ(IsActionEnabled(PatchChoice::Offered, stage),
                  stage == StageDownloaded ? std::nullopt : std::optional(true))
            << number;
        EXPECT_EQ(IsActionEnabled(PatchChoice::Unmade, stage), std::nullopt) << number;
    }
}

TEST(PatchStageTest, TheActionMeansRetryDownloadOrCancelAndNothingElsewhere)
{
    const std::map<PatchStage, ActionMeaning> meanings = {{StageRetryOffered, ActionMeaning::AskAgain},
                                                          {StageAvailable, ActionMeaning::Download},
                                                          {StageDownloading, ActionMeaning::Cancel}};
    for (std::uint32_t number = StageNoService; number <= StageUpToDate; ++number) {
        const auto stage = static_cast<PatchStage>(number);
        const auto found = meanings.find(stage);
        EXPECT_EQ(MeaningOfAction(stage), found == meanings.end() ? ActionMeaning::Nothing : found->second)
            << number;
    }
}

TEST(PatchStageTest, NineControlsMoveWhenTheServicesPartCloses)
{
    const std::span<const int> moved = ControlsBelowService();
    std::vector<int> controls(moved.begin(), moved.end());
    std::sort(controls.begin(), controls.end());
    EXPECT_EQ(controls, (std::vector<int>{1011, 1200, 1205, 1206, 1207, 1330, 1331, 1336, 1347}));
}
