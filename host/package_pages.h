// The flow of a package that comes without a description.
#pragma once

#include "host/setup_description.h"
#include "installer/handle.h"

// The pages that mean something for the package, in their order, each with its help file. A page that only sets
// properties is among them when the package knows one of these: has it in its Property table, or names it in a text or
// condition that it installs by. The contact page isn't: it names the maker of another product.
[[nodiscard]] std::vector<PageDescription> ChoosePages(MSIHANDLE database);
