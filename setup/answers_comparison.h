// What the answers of two deployments differ in: page by page and product by product, lists as lists. What says how a run
// went, and not what the deployment holds, is left out: the deployment's name and place, the one that it was made from and
// what of it was cleared, answers to questions, tabs that nobody went to.
#pragma once

#include "builder/deployment_difference.h"
#include "setup/answers.h"

#include <vector>

// The answers of one deployment.
struct ComparedAnswers
{
    AnswersFile file;
    std::vector<AnswerProduct> products; // of the deployment
};

[[nodiscard]] std::vector<DeploymentDifference> CompareAnswers(const ComparedAnswers& first,
                                                               const ComparedAnswers& second);
