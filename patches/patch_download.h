// The download of a patch: a worker thread that writes the file and reports to the page by posted messages.
#pragma once

#include "base/handle.h"
#include "base/string.h"
#include "patches/patch_stage_rules.h"

#include <atomic>
#include <memory>

// From the worker to the page. lParam: the number of the run, so that a page can leave out what a former one says.
constexpr UINT WM_PATCH_PROGRESS = 1074;  // DownloadPercent has changed
constexpr UINT WM_PATCH_CANCELLED = 1075; // the worker saw the cancel request
constexpr UINT WM_PATCH_FINISHED = 1076;  // the file is complete
constexpr UINT WM_PATCH_FAILED = 1077;    // wParam: why, as a code of the system
constexpr UINT WM_PATCH_TIMEDOUT = 1078;

struct SharedDownload; // of one run: worker and page own it together

// What page and worker share. One of each kind of page, for the length of the module's life: the wizard page and the tab page
// don't share it.
struct PatchDownload
{
    std::atomic<std::uint32_t> PageStage{StageNoService}; // written by the page alone
    HWND PageWindow = nullptr;                            // which the messages go to
    std::atomic<int> DownloadPercent{0};                  // of the progress messages
    HANDLE DownloadThread = nullptr;                      // of the thread that was started last; closed
    CString DownloadTargetPath;                           // full path of the file that is written
    std::shared_ptr<SharedDownload> lastRun;              // the page's; null before the first

    [[nodiscard]] PatchStage Stage() const { return static_cast<PatchStage>(PageStage.load()); }
};

// Starts the worker; what it can't do it reports. It begins when the last run has let go of its file.
void StartDownloadRun(PatchDownload& state, const CString& url);
// Whether a message with that lParam is of the run that was started last. 0 is of any.
[[nodiscard]] bool IsOfLastRun(const PatchDownload& state, LPARAM run);
// Until the last run's file is closed. The page's messages go on meanwhile; at once when there was no run.
void WaitForDownloadEnd(const PatchDownload& state);
// The page goes: the worker reports to nobody any more, and ends as if it had been canceled.
void AbandonDownload(const PatchDownload& state);
