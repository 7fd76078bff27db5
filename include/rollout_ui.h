// The page functions that RolloutUi.dll exports. A ...Dialog function shows one page of the wizard on the calling thread
// and comes back with a NavigationResult. A ...Page function makes the page as a child of the context's parent window
// and comes back at once; the host shows it and drives it by the messages of include/navigation.h.
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

ROLLOUTUI_PAGE int WorkstationSettingDialog(PageContext* context);
ROLLOUTUI_PAGE CTabPage WorkstationSettingPage(PageContext* context);
ROLLOUTUI_PAGE int PathCustomizationDialog(PageContext* context);
ROLLOUTUI_PAGE CTabPage PathCustomizationPage(PageContext* context);
ROLLOUTUI_PAGE int AddAdditionalFilesDialog(PageContext* context);
ROLLOUTUI_PAGE CTabPage AddAdditionalFilesPage(PageContext* context);
ROLLOUTUI_PAGE int NoticeDeskFeedBoardDialog(PageContext* context);
ROLLOUTUI_PAGE CTabPage NoticeDeskFeedBoardPage(PageContext* context);
ROLLOUTUI_PAGE int OnlineResourcesDialog(PageContext* context);
ROLLOUTUI_PAGE CTabPage OnlineResourcesPage(PageContext* context);
ROLLOUTUI_PAGE int ServicePackDialog(PageContext* context);
ROLLOUTUI_PAGE CTabPage ServicePackPage(PageContext* context);
