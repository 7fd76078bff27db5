#include "setup/page_lists.h"

// No page has lists yet.
PageListsTable AllPageLists()
{
    return {};
}
