// The frame's code stands in this program as it stands in the page library, so it needs the module object too.
#include "window/module.h"

CAppModule _Module;
