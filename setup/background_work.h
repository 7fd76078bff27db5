// Work that a person waits for: on a thread of its own, while the windows of this one go on.
#pragma once

#include "builder/build_result.h"
#include "setup/build_dialog.h"
#include "setup/run_log.h"

#include <functional>

// Returns when the work has ended, with what it threw. What others send to this thread's windows is answered meanwhile; a window
// says how far it is, and offers to cancel it, when it takes longer than a moment. `name`: the deployment's, for the window.
void WaitForWork(const CString& name, const WorkTexts& texts, CRunLog& log,
                 const std::function<void(IBuildProgress&)>& work);
