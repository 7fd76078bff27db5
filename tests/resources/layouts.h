// Every state in which a person can see a dialog: its template with the controls shown, hidden and moved as the pages do.
#pragma once

#include "tests/resources/dialog_model.h"
#include "tests/resources/language_library.h"

#include <string>
#include <vector>

struct DialogLayout
{
    std::string name;
    int dialogId;
    CDialogModel dialog;
};

// The dialogs of pages, of which the frame has the same controls in each.
const std::vector<int>& PageDialogs();

// The dialogs of tab pages.
const std::vector<int>& TabDialogs();

// All layouts with everything shown that the frame may show.
std::vector<DialogLayout> AllLayouts(const CLanguageLibrary& library);
