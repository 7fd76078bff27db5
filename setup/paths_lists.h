// The tree of the paths page, read and entered as a person does: by its selection, label edits and buttons.
#pragma once

#include "setup/page_lists.h"

const IPageLists& PathsPageLists();
