// The rows of each page's answers, a file a page.
#pragma once

#include "setup/answer_table.h"

extern const PageAnswerTable BEGIN_ANSWERS;
extern const PageAnswerTable SETTINGS_ANSWERS;
extern const PageAnswerTable WORKSTATION_ANSWERS;
extern const PageAnswerTable PATHS_ANSWERS;
extern const PageAnswerTable FILES_ANSWERS;
extern const PageAnswerTable SERVICE_PACK_ANSWERS;
extern const PageAnswerTable RESOURCES_ANSWERS;
extern const PageAnswerTable NOTICES_ANSWERS;
extern const PageAnswerTable CONTACT_ANSWERS;
extern const PageAnswerTable COMPLETE_ANSWERS;
extern const PageAnswerTable FAILED_ANSWERS;
