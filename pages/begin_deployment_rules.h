// What the begin page decides without a window.
#pragma once

#include "base/string.h"
#include "frame/folder_check.h"
#include "include/setup_enums.h"

#include <vector>

// Characters that the longest paths of a deployment are made of.
struct PathLengths
{
    int location = 0;
    int name = 0;
    int imageFolder = 0;
    int imageSuffix = 0;
    int mediaFile = 0;
    int resourceFolder = 0;
};

// Of a product's installer file in the image.
struct ProductPathLengths
{
    int msiFile = 0;
    int folder = 0;
};

// True when every path of the deployment stays below 259 characters.
[[nodiscard]] bool ArePathsShortEnough(const PathLengths& lengths,
                                       const std::vector<ProductPathLengths>& products);

// What the page shows: which of the controls, and where.
enum class BeginLayout
{
    None,   // the host runs from a deployment's image, but in a mode that isn't about deployments
    Plain,  // no deployments to choose from
    Create, // the modes 4, 5 and 6
    CreateFrom,
    Modify,
};
[[nodiscard]] BeginLayout LayoutFor(bool hasDeployments, Setup::tagSETUPMODE mode);

// True when Next may be pressed.
[[nodiscard]] bool IsChoiceComplete(BeginLayout layout, bool hasSelection, const CString& location,
                                    const CString& name);

// The first name that equals `name` without regard to case; otherwise the first of the list; empty without any.
[[nodiscard]] CString FindDeploymentName(const std::vector<CString>& names, const CString& name);

// True for a name that can name a deployment's folder and file: not empty, a valid file name, no ";". Ends are the
// caller's to trim.
[[nodiscard]] bool IsDeploymentNameValid(const CString& name);

// True for the results that a deployment's location may have.
[[nodiscard]] bool IsLocationUsable(PathCheckResult result);

// The string that says why it can't be used.
[[nodiscard]] unsigned int LocationErrorId(PathCheckResult result);
