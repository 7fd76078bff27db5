#include "setup/page_lists.h"

#include "setup/files_lists.h"
#include "setup/page_answers.h"
#include "setup/paths_lists.h"
#include "setup/workstation_lists.h"

PageListsTable AllPageLists()
{
    static const PageListsRow ROWS[] = {{&PATHS_ANSWERS, &PathsPageLists()},
                                        {&FILES_ANSWERS, &FilesPageLists()},
                                        {&WORKSTATION_ANSWERS, &WorkstationPageLists()}};
    return ROWS;
}
