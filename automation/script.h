// A script of steps that are played on the thread that starts it, from whatever message loop runs there: a page's, a
// message box's, a picker's.
//
//     CScript script;
//     script.Add(L"wait for the page", [&] { page = FindWindowWithControls({IDC_LOCATION}); return ...; });
//     script.Add(L"press Next", [&] { return CControl(page, IDC_NEXT).Click(); });
//     script.Start();
//     const int result = BeginDeploymentDialog(&context); // the steps run in there
//
// A step that answers "not yet" is tried again until the deadline, which is counted for each step anew. A step that
// opens a box while it runs (by a sent message) doesn't hold up the steps behind it.
#pragma once

#include "automation/step_outcome.h"
#include "base/string.h"

#include <windows.h>

#include <deque>
#include <functional>
#include <memory>

class CScript
{
public:
    using Step = std::function<StepOutcome()>;

    static constexpr DWORD DEFAULT_DEADLINE = 15000; // milliseconds

    CScript();
    ~CScript(); // a script that still runs stops
    CScript(const CScript&) = delete;
    CScript& operator=(const CScript&) = delete;

    // Adds a step behind all others; a running step may add more. `milliseconds`: a deadline of its own; 0: the script's.
    void Add(const CString& name, Step step, DWORD milliseconds = 0);
    // Adds a step in front of those that wait, behind what the running step has added so already.
    void AddNext(const CString& name, Step step);

    // Looks at the thread before each try of a step: "done" leaves the word to the step, "not yet" says that it is
    // dealing with something (the step waits, and its deadline starts anew), "failed" ends the script.
    void SetWatcher(Step watcher);
    // Called once when the script has failed, on the same thread, from within the running message loop. Typically
    // closes what stands open.
    void SetFailureHandler(std::function<void()> handler);
    void SetDeadline(DWORD milliseconds);
    // What is waited for once all steps are done, with the deadline of a step: "not yet" is the usual answer until
    // the window's loop has ended, so that a window that stays fails the script instead of holding it for ever. It is
    // no step: the script counts as finished meanwhile.
    void SetEnding(const CString& name, Step ending);

    void Start();
    // No more tries until the next start; the ending is forgotten. For the caller whose loop has ended.
    void Stop();

    bool IsFinished() const; // all steps done
    bool HasFailed() const;
    // What failed, why, and which windows were there; empty without a failure.
    const CString& GetFailure() const;
    // Name of the step that is being tried; empty when none is left.
    CString GetCurrentStep() const;

private:
    class Player;
    std::unique_ptr<Player> m_player;
};

// A condition as a step and has nothing to do.
StepOutcome Until(bool condition, const wchar_t* reason);

// Ends message boxes and menus and destroys the other visible windows of the calling thread, frontmost first, one at each call:
// the way out of a script that failed. True while there was one to close.
bool CloseFrontWindow();
// The same by and by, one window at a time, until it is stopped: the loop of an inner box has to come back before the window
// that opened it may go. For a failure handler whose windows would hold the program for ever.
void StartClosingWindows();
void StopClosingWindows();
