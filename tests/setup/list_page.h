// The answers of the tests' page with lists (tab_pages/list_page.h): its rows, and the adapter that works its lists as a
// person does.
#pragma once

#include "setup/page_lists.h"

// Sections "things", whose page belongs to a product and may be a tab.
extern const PageRow LIST_PAGE;
extern const PageAnswerTable LIST_PAGE_ANSWERS;
PageListsTable ListPageLists();
