// Which media a run is about when the command line doesn't say.
#pragma once

#include "base/string.h"

// The folder Media beside the program, whether it is there or not.
CString MediaBesideProgram();

// Asks for a folder. Empty when the user cancels.
CString AskForMedia();
