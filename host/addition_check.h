// The additions of a product, judged while its page is up (builder/addition_check.h).
#pragma once

#include "builder/added_files.h"
#include "builder/addition_finding.h"

class CHostProduct;

// A database that can't be read gives one finding that blocks nothing: the build says it again.
[[nodiscard]] std::vector<AdditionFinding> CheckAdditionsOf(CHostProduct& product, SourceLook look,
                                                            KnownSources& known);
