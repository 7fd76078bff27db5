#include "setup/page_lists.h"

#include "setup/files_lists.h"
#include "setup/page_answers.h"
#include "setup/paths_lists.h"
#include "setup/service_pack_lists.h"
#include "setup/workstation_lists.h"

PageListsTable AllPageLists()
{
    static const PageListsRow ROWS[] = {{&PATHS_ANSWERS, &PathsPageLists()},
                                        {&FILES_ANSWERS, &FilesPageLists()},
                                        {&SERVICE_PACK_ANSWERS, &ServicePackPageLists()},
                                        {&WORKSTATION_ANSWERS, &WorkstationPageLists()}};
    return ROWS;
}
