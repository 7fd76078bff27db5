// The page functions that RolloutUi.dll exports. Each shows one page of the wizard on the calling thread and comes
// back with a NavigationResult.
#pragma once

#include "include/navigation.h"
#include "include/page_context.h"

#if defined(ROLLOUTUI_EXPORTS)
#define ROLLOUTUI_PAGE extern "C" __declspec(dllexport)
#else
#define ROLLOUTUI_PAGE extern "C" __declspec(dllimport)
#endif

ROLLOUTUI_PAGE int BeginDeploymentDialog(PageContext* context);
ROLLOUTUI_PAGE int ProductContactDialog(PageContext* context);
ROLLOUTUI_PAGE int DeploymentSettingsDialog(PageContext* context);
ROLLOUTUI_PAGE int DeploymentCompleteDialog(PageContext* context);
ROLLOUTUI_PAGE int DeploymentFailedDialog(PageContext* context);
