// Texts brought into the form that they are shown in. No window header.
#pragma once

#include "base/string.h"

// A box's text in one line of output: a blank stands for the line ends between two lines, however many they are.
CString OneLine(const CString& text);

// "DeploymentSettings" as people write it: "Deployment settings".
CString StemInWords(const CString& stem);
