// What lies where a deployment will be: whether it is a deployment, and whether it is still the same one.
#pragma once

#include "base/string.h"

constexpr const wchar_t* DEPLOYMENT_FILE = L"Deployment.xml";
// Beside it: the answers that the deployment was built from, when whoever built it gave them.
constexpr const wchar_t* ANSWERS_FILE = L"Answers.txt";

// A text that two looks at one unchanged deployment agree on, under whatever path it is reached, and that differs for any
// other deployment and after each build. Empty when `folder` is no folder with a deployment file.
[[nodiscard]] CString StampOfDeployment(const CString& folder);

// The folder with a deployment file that `location` is or lies in; empty when it lies in none. What can't be looked at
// counts as none.
[[nodiscard]] CString DeploymentAround(const CString& location);
