// The program's icon on its windows.
#pragma once

#include "window/window.h"

void SetProgramIcon(const CWindow& window);
