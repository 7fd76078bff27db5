#include "patches/patch_stage_rules.h"

#include "include/resource_ids.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::uint32_t TIMED_OUT = 12002;           // ERROR_INTERNET_TIMEOUT
constexpr std::uint32_t OPERATION_CANCELLED = 12017; // ERROR_INTERNET_OPERATION_CANCELLED

constexpr StageControl BEFORE_STAGE[] = {
    {StageNoService, IDC_PATCH_UP_TO_DATE_MARK, STAGE_HIDE},
    {StageNoService, IDC_PATCH_OFFER, STAGE_HIDE},
    {StageNoService, IDC_PATCH_FAILURE_MARK, STAGE_HIDE},
    {StageNoService, IDC_PATCH_FAILURE, STAGE_HIDE},
    {StageNoService, IDC_PATCH_LINK, STAGE_HIDE},
    {StageNoService, IDC_PATCH_SIZE, STAGE_HIDE},
    {StageNoService, IDC_PATCH_PROGRESS, STAGE_HIDE},
    {StageNoService, IDC_PATCH_DOWNLOADED_MARK, STAGE_HIDE},
    {StageNoService, IDC_PATCH_ACTION, STAGE_HIDE},
    {StageNoService, IDC_PATCH_NONE, STAGE_ENABLE},
    {StageNoService, IDC_PATCH_LISTED, STAGE_ENABLE},
};

constexpr StageControl STAGES[] = {
    {StageNoService, IDC_PATCH_OFFERED, STAGE_HIDE},
    {StageNoService, IDC_PATCH_SERVICE_TEXT, STAGE_HIDE},
    {StageNoService, IDC_PATCH_NONE, STAGE_CHECK},

    {StageConnectFailed, IDC_PATCH_ACTION, STAGE_ENABLE | STAGE_SHOW, IDS_PATCH_RETRY},
    {StageConnectFailed, IDC_PATCH_FAILURE_MARK, STAGE_ENABLE | STAGE_SHOW},
    {StageConnectFailed, IDC_PATCH_FAILURE, STAGE_SHOW, IDS_PATCH_CONNECT_FAILED},

    {StageTimedOut, IDC_PATCH_ACTION, STAGE_ENABLE | STAGE_SHOW, IDS_PATCH_RETRY},
    {StageTimedOut, IDC_PATCH_FAILURE_MARK, STAGE_ENABLE | STAGE_SHOW},
    {StageTimedOut, IDC_PATCH_FAILURE, STAGE_SHOW, IDS_PATCH_TIMED_OUT},

    {StageCancelRequested, IDC_PATCH_LINK, STAGE_SHOW},
    {StageCancelRequested, IDC_PATCH_SIZE, STAGE_SHOW},
    {StageCancelRequested, IDC_PATCH_ACTION, STAGE_SHOW, IDS_PATCH_DOWNLOAD},

    {StageAvailable, IDC_PATCH_OFFER, STAGE_ENABLE | STAGE_SHOW},
    {StageAvailable, IDC_PATCH_LINK, STAGE_ENABLE | STAGE_SHOW},
    {StageAvailable, IDC_PATCH_SIZE, STAGE_ENABLE | STAGE_SHOW},
    {StageAvailable, IDC_PATCH_ACTION, STAGE_ENABLE | STAGE_SHOW, IDS_PATCH_DOWNLOAD},
    {StageAvailable, IDC_PATCH_NONE, STAGE_ENABLE | STAGE_UNCHECK},
    {StageAvailable, IDC_PATCH_LISTED, STAGE_ENABLE | STAGE_UNCHECK},
    {StageAvailable, IDC_PATCH_OFFERED, STAGE_ENABLE},

    {StageDownloading, IDC_PATCH_LINK, STAGE_SHOW},
    {StageDownloading, IDC_PATCH_SIZE, STAGE_SHOW},
    {StageDownloading, IDC_PATCH_PROGRESS, STAGE_ENABLE | STAGE_SHOW},
    {StageDownloading, IDC_PATCH_ACTION, STAGE_SHOW, IDS_PATCH_CANCEL_DOWNLOAD},
    {StageDownloading, IDC_PATCH_NONE, STAGE_DISABLE},
    {StageDownloading, IDC_PATCH_LISTED, STAGE_DISABLE},
    {StageDownloading, IDC_PATCH_WAY_HEADING, STAGE_DISABLE, 0, true},
    {StageDownloading, IDC_PATCH_APPEND, STAGE_DISABLE, 0, true},
    {StageDownloading, IDC_PATCH_MERGE, STAGE_DISABLE, 0, true},

    {StageDownloaded, IDC_PATCH_ACTION, STAGE_DISABLE | STAGE_SHOW, IDS_PATCH_DOWNLOAD},
    {StageDownloaded, IDC_PATCH_LINK, STAGE_SHOW},
    {StageDownloaded, IDC_PATCH_SIZE, STAGE_SHOW},
    {StageDownloaded, IDC_PATCH_DOWNLOADED_MARK, STAGE_SHOW},
    {StageDownloaded, IDC_PATCH_DOWNLOADED, STAGE_SHOW, IDS_PATCH_IS_DOWNLOADED},
    {StageDownloaded, IDC_PATCH_OFFERED, STAGE_ENABLE},

    {StageUpToDate, IDC_PATCH_UP_TO_DATE_MARK, STAGE_SHOW},
    {StageUpToDate, IDC_PATCH_OFFER, STAGE_ENABLE | STAGE_SHOW, IDS_PATCH_UP_TO_DATE},
    {StageUpToDate, IDC_PATCH_SERVICE_TEXT, STAGE_HIDE},
    {StageUpToDate, IDC_PATCH_NONE, STAGE_UNCHECK | STAGE_DISABLE},
    {StageUpToDate, IDC_PATCH_OFFERED, STAGE_UNCHECK | STAGE_DISABLE},
    {StageUpToDate, IDC_PATCH_LISTED, STAGE_UNCHECK | STAGE_DISABLE},
    {StageUpToDate, IDC_PATCH_LIST, STAGE_DISABLE},
    {StageUpToDate, IDC_PATCH_BROWSE, STAGE_DISABLE},
    {StageUpToDate, IDC_PATCH_REMOVE, STAGE_DISABLE},
    {StageUpToDate, IDC_PATCH_APPEND, STAGE_UNCHECK | STAGE_DISABLE, 0, true},
    {StageUpToDate, IDC_PATCH_MERGE, STAGE_UNCHECK | STAGE_DISABLE, 0, true},
    {StageUpToDate, IDC_PATCH_WAY_HEADING, STAGE_DISABLE, 0, true},
};

constexpr StageControl CHOICE_OFFERED[] = {
    {StageNoService, IDC_PATCH_LISTED, STAGE_UNCHECK},
    {StageNoService, IDC_PATCH_NONE, STAGE_UNCHECK},
    {StageNoService, IDC_PATCH_OFFERED, STAGE_CHECK | STAGE_ENABLE},
};
constexpr StageControl CHOICE_LISTED[] = {
    {StageNoService, IDC_PATCH_NONE, STAGE_UNCHECK},
    {StageNoService, IDC_PATCH_OFFERED, STAGE_UNCHECK},
    {StageNoService, IDC_PATCH_LISTED, STAGE_CHECK | STAGE_ENABLE},
};
// The service's radio keeps its mark.
constexpr StageControl CHOICE_NONE[] = {
    {StageNoService, IDC_PATCH_LISTED, STAGE_UNCHECK},
    {StageNoService, IDC_PATCH_NONE, STAGE_CHECK | STAGE_ENABLE},
};

constexpr StageControl RADIO_NONE[] = {
    {StageNoService, IDC_PATCH_LIST, STAGE_DISABLE},   {StageNoService, IDC_PATCH_BROWSE, STAGE_DISABLE},
    {StageNoService, IDC_PATCH_REMOVE, STAGE_DISABLE}, {StageNoService, IDC_PATCH_DOWNLOADED, STAGE_DISABLE},
    {StageNoService, IDC_PATCH_MERGE, STAGE_DISABLE},  {StageNoService, IDC_PATCH_APPEND, STAGE_DISABLE},
};
constexpr StageControl RADIO_OFFERED[] = {
    {StageNoService, IDC_PATCH_LIST, STAGE_DISABLE},
    {StageNoService, IDC_PATCH_BROWSE, STAGE_DISABLE},
    {StageNoService, IDC_PATCH_REMOVE, STAGE_DISABLE},
    {StageNoService, IDC_PATCH_DOWNLOADED, STAGE_ENABLE},
};
// Whether a line can be removed is the selection's to say.
constexpr StageControl RADIO_LISTED[] = {
    {StageNoService, IDC_PATCH_LIST, STAGE_ENABLE},
    {StageNoService, IDC_PATCH_BROWSE, STAGE_ENABLE},
    {StageNoService, IDC_PATCH_DOWNLOADED, STAGE_DISABLE},
};
constexpr StageControl RADIO_UNMADE[] = {
    {StageNoService, IDC_PATCH_LIST, STAGE_DISABLE},    {StageNoService, IDC_PATCH_BROWSE, STAGE_DISABLE},
    {StageNoService, IDC_PATCH_REMOVE, STAGE_DISABLE},  {StageNoService, IDC_PATCH_NONE, STAGE_DISABLE},
    {StageNoService, IDC_PATCH_OFFERED, STAGE_DISABLE}, {StageNoService, IDC_PATCH_LISTED, STAGE_DISABLE},
};

constexpr int BELOW_SERVICE[] = {IDC_PATCH_LISTED, IDC_PATCH_LIST,        IDC_PATCH_BROWSE,
                                 IDC_PATCH_REMOVE, IDC_PATCH_NONE,        IDC_PATCH_MERGE,
                                 IDC_PATCH_APPEND, IDC_PATCH_WAY_HEADING, IDC_PATCH_LIST_HEADING};

} // namespace

PatchStage StageOfOutcome(const CatalogOutcome& answer) noexcept
{
    if (answer.errorCode != 0) {
        return answer.errorCode == TIMED_OUT ? StageTimedOut : StageConnectFailed;
    }
    return answer.patchCount > 0 ? StageAvailable : answer.patchCount == 0 ? StageUpToDate : StageNoService;
}

PatchStage StageAtEntry(bool isFetched, const CatalogOutcome& answer) noexcept
{
    if (isFetched) {
        return StageOfOutcome(answer);
    }
    switch (answer.errorCode) {
    case OPERATION_CANCELLED:
        return StageConnectFailed;
    case TIMED_OUT:
        return StageTimedOut;
    default:
        return StageNoService;
    }
}

PatchStage StageAtRetry(const CatalogOutcome& answer) noexcept
{
    switch (answer.errorCode) {
    case 0:
        return answer.patchCount > 0 ? StageAvailable : StageUpToDate;
    case TIMED_OUT:
        return StageTimedOut;
    default:
        return StageConnectFailed;
    }
}

std::span<const StageControl> ControlsBeforeStage() noexcept
{
    return BEFORE_STAGE;
}

std::span<const StageControl> ControlsOfStage(PatchStage stage) noexcept
{
    const auto isOfStage = [stage](const StageControl& control) { return control.stage == stage; };
    const auto first = std::find_if(std::begin(STAGES), std::end(STAGES), isOfStage);
    return {first, std::find_if_not(first, std::end(STAGES), isOfStage)};
}

std::span<const StageControl> ControlsOfChoice(int includeChoice) noexcept
{
    switch (includeChoice) {
    case -1:
        return {};
    case 1:
        return CHOICE_OFFERED;
    case 2:
        return CHOICE_LISTED;
    default:
        return CHOICE_NONE;
    }
}

std::span<const StageControl> ControlsOfRadio(PatchChoice choice) noexcept
{
    switch (choice) {
    case PatchChoice::None:
        return RADIO_NONE;
    case PatchChoice::Offered:
        return RADIO_OFFERED;
    case PatchChoice::Listed:
        return RADIO_LISTED;
    case PatchChoice::Unmade:
        break;
    }
    return RADIO_UNMADE;
}

std::optional<bool> IsActionEnabled(PatchChoice choice, PatchStage stage) noexcept
{
    switch (choice) {
    case PatchChoice::None:
    case PatchChoice::Listed:
        return stage == StageRetryOffered ? std::nullopt : std::optional(false);
    case PatchChoice::Offered:
        return stage == StageDownloaded ? std::nullopt : std::optional(true);
    case PatchChoice::Unmade:
        break;
    }
    return std::nullopt;
}

ActionMeaning MeaningOfAction(PatchStage stage) noexcept
{
    switch (stage) {
    case StageRetryOffered:
        return ActionMeaning::AskAgain;
    case StageAvailable:
        return ActionMeaning::Download;
    case StageDownloading:
        return ActionMeaning::Cancel;
    default:
        return ActionMeaning::Nothing;
    }
}

std::span<const int> ControlsBelowService() noexcept
{
    return BELOW_SERVICE;
}
