// The grid of the workstations' page for runs without a person.
#pragma once

#include "setup/page_lists.h"

const IPageLists& WorkstationPageLists();
