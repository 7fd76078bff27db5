// When the process breaks off (an access violation, a stack overflow, an exception that nobody catches, a pure virtual
// call), notes in its record what and where, and ends it: no box of the system's, no debugger. Nothing of this wants
// memory, a lock or more than a little stack, since any of them may be what broke.
#pragma once

// For the rest of the process's life. The record must be in use already.
void NoteCrashes();
