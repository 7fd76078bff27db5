// The tree of the page of additional files, read and entered for runs without a person.
#pragma once

#include "setup/page_lists.h"

const IPageLists& FilesPageLists();
