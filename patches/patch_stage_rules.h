// The stages of the service pack page: how it comes to them from the service's answer, what each shows, and what its buttons
// mean. Needs no window.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

enum PatchStage : std::uint32_t
{
    StageNoService = 0,       // the service isn't available to this product
    StageConnectFailed = 1,   // a failure that is to be shown
    StageTimedOut = 2,        // likewise
    StageRetryOffered = 3,    // a failure is on show
    StageCancelRequested = 4, // the user canceled, and the download hasn't ended yet
    StageAvailable = 5,       // the service offers a patch
    StageDownloading = 6,
    StageDownloaded = 7,
    StageUpToDate = 8, // the service offers nothing
};

// What the service's record says that decides the stage.
struct CatalogOutcome
{
    std::uint32_t errorCode = 0; // ErrorCode of the record
    std::int32_t patchCount = 0; // PatchCount of the record
};

// The stage that a record means by itself.
[[nodiscard]] PatchStage StageOfOutcome(const CatalogOutcome& answer) noexcept;
// The stage of a page that opens. `isFetched`: what FetchPatchCatalog returned.
[[nodiscard]] PatchStage StageAtEntry(bool isFetched, const CatalogOutcome& answer) noexcept;
// The stage when the user asked again. It differs on purpose: somebody who tries again has seen a failure, and gets one
// wherever the opening page would close the service's part.
[[nodiscard]] PatchStage StageAtRetry(const CatalogOutcome& answer) noexcept;

// What happens to a control when a stage is shown; bits of a set.
enum StageDeeds : unsigned int
{
    STAGE_SHOW = 1,
    STAGE_HIDE = 2,
    STAGE_ENABLE = 4,
    STAGE_DISABLE = 8,
    STAGE_CHECK = 16,
    STAGE_UNCHECK = 32,
};

struct StageControl
{
    PatchStage stage;
    int control;
    unsigned int deeds;
    unsigned int text = 0;          // a string of the resource library that becomes the control's text
    bool bInDeploymentFlow = false; // only where a deployment is made or modified
};

// Done before each stage; `stage` has no meaning in them.
[[nodiscard]] std::span<const StageControl> ControlsBeforeStage() noexcept;
// What the stage itself asks, in its order; none for a stage that changes nothing.
[[nodiscard]] std::span<const StageControl> ControlsOfStage(PatchStage stage) noexcept;
// What a choice that was made before does to the three radios. None for the choice that is not made (-1).
[[nodiscard]] std::span<const StageControl> ControlsOfChoice(int includeChoice) noexcept;

// The radio that is checked; it decides what can be used.
enum class PatchChoice
{
    None, // no service pack
    Offered,
    Listed,
    Unmade, // no radio is checked
};
[[nodiscard]] std::span<const StageControl> ControlsOfRadio(PatchChoice choice) noexcept;
// Whether the choice turns the action button on or off; nothing for a button that stays as the stage has it.
[[nodiscard]] std::optional<bool> IsActionEnabled(PatchChoice choice, PatchStage stage) noexcept;

enum class ActionMeaning
{
    Nothing,
    AskAgain,
    Download,
    Cancel,
};
[[nodiscard]] ActionMeaning MeaningOfAction(PatchStage stage) noexcept;

// The controls that move when the service's part is closed.
[[nodiscard]] std::span<const int> ControlsBelowService() noexcept;
