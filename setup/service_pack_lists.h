// The choice, the download and the list of the service pack page for runs without a person.
#pragma once

#include "setup/page_lists.h"

const IPageLists& ServicePackPageLists();
