// Work that takes its time, beside a page that goes on answering.
#pragma once

#include <functional>

// Runs `work` on a thread of its own and comes back when it has ended; the messages of the calling thread are handled
// meanwhile. `work` throws nothing and touches no window. Runs it on the calling thread when none can be made.
void RunAside(const std::function<void()>& work);
