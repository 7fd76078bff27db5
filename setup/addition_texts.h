// What is wrong with additions, in the words of a box and of the log.
#pragma once

#include "builder/addition_finding.h"

#include <vector>

// On one line.
[[nodiscard]] CString DescribeFinding(const AdditionFinding& finding);

// The text of a box: what refuses a build, then what doesn't, each by its first few. The log has all.
[[nodiscard]] CString ComposeFindings(const std::vector<AdditionFinding>& findings);
