// The page frame: both shapes of a page and the entries that show them.
#pragma once

#include "frame/page_entry.h"
#include "frame/tab_page.h"
#include "frame/wizard_page.h"
