// The program's own texts, and those of the pages.
#pragma once

#include "base/string.h"
#include "include/page_table.h"

#include <initializer_list>

// A text of the program's string table with its holes filled (see FillText); empty when there is none.
CString SetupText(unsigned int id, std::initializer_list<CString> arguments = {});

// A page in words: the caption of its tab, or its name.
CString PageTitle(const PageRow& page);

// A text of the pages' resource library, which the host holds; empty when there is none.
CString PageText(unsigned int id);
