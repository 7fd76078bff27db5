// The host's central object. The pages read its members, call its operations, and keep nothing of their own
// between two calls.
#pragma once

#include "base/string.h"
#include "include/setup_enums.h"

#include <windows.h>

#include <vector>

class CConfigReader;
class CProduct;
class CUiManager;

class CSetupManager
{
public:
    virtual ~CSetupManager() = default;

    // Scans a folder for deployments: one entry for each deployment file found, never null. Valid until the next
    // call. What an entry looks like is the host's own affair; the two operations below take it.
    virtual std::vector<CString>* GetDeploymentList(const CString& location) = 0;
    virtual CString GetDeploymentName(const CString& entry) = 0;
    virtual CString GetSetupCode(const CString& entry) = 0;

    virtual Setup::tagDEPLOYMENTLOCATIONTYPE CheckForDeploymentLocation(const CString& path) = 0;
    // Name of the folder below a deployment that holds its image.
    virtual CString GetImageFolder() = 0;
    // True when the media holds the image for that platform.
    virtual bool DoesImageMatchPlatform(Setup::tagPLATFORM platform) = 0;
    // True when a deployment for that platform can be made here.
    virtual bool IsTargetPlatformAllowed(Setup::tagPLATFORM platform) = 0;

    virtual void SetDeploymentPlatform(Setup::tagPLATFORM platform) = 0;
    virtual void SetDeploymentLocation(const CString& path) = 0;
    virtual void SetBaseDeploymentName(const CString& name) = 0;
    virtual void SetDeploymentName(const CString& name) = 0;

    // Loads the stored settings of the named deployment into the products. False when that failed.
    virtual bool LoadDeploymentInfo(const CString& name) = 0;
    // Reloads the product data of the deployment; called before LoadDeploymentInfo.
    virtual void ReloadProductData() = 0;
    // Drops the product objects, so that they are built anew.
    virtual void DeleteProductList() = 0;

    // Moves to the mode. False when that failed; the begin page then stays.
    virtual bool SetSetupMode(Setup::tagSETUPMODE mode) = 0;
    // Returns the host to its first stage. 0 means done.
    virtual int ResetSetupMode() = 0;

    // The folder of the setup's resources in the image, and the same folder on the source media.
    virtual const CString& GetWizTextPath() = 0;
    virtual CString GetSrcWizTextPath() = 0;

    // Sets a property for the setup as a whole. The pages pass false for `flag`.
    virtual void SetMsiProperty(const wchar_t* name, const wchar_t* value, bool flag) = 0;
    // False before the cancel question is put, true when the user declined.
    virtual void EnableCancelling(bool enable) = 0;

    // Texts are the host's; each may be null.
    CConfigReader* m_pConfigReader = nullptr;
    CUiManager* m_pUiManager = nullptr;
    unsigned int m_uiStage = 0; // 4: the Cancel button acts as Next
    const wchar_t* m_strSetupCode = nullptr;
    const wchar_t* m_strProductName = nullptr; // title of all message boxes and value of "[ProductName]"
    const wchar_t* m_strMediaFile = nullptr;   // its length enters the path length rule
    Setup::tagSETUPMODE m_setupMode = Setup::SETUPMODE_CREATE_DEPLOYMENT;
    Setup::tagPLATFORM m_platform = Setup::PLATFORM_X64;
    const wchar_t* m_strResourceFolder = nullptr; // same as GetWizTextPath
    const wchar_t* m_strMediaRoot = nullptr;
    const wchar_t* m_strLinkTarget1 = nullptr; // null or empty when the link is off
    const wchar_t* m_strLinkTarget2 = nullptr;
    const wchar_t* m_strLogPath = nullptr;
    CString m_strNetworkLogFolder; // empty when the network log is off
    bool m_bSettingsOption = false;
    bool m_bNetworkLog = false;
    bool m_bHasDeployments = false;            // the host runs from an existing deployment's image
    const wchar_t* m_strImageSuffix = nullptr; // its length enters the path length rule
    const wchar_t* m_strDeploymentLocation = nullptr;
    const wchar_t* m_strBaseDeploymentName = nullptr;
    const wchar_t* m_strDeploymentName = nullptr;
    int m_installMode = 2; // 2 or 3: the choice of the settings page
    const wchar_t* m_strCompleteLine1 = nullptr;
    const wchar_t* m_strCompleteLine2 = nullptr;
    std::vector<CProduct*>* m_pProducts = nullptr;
    unsigned int m_exitCode = 0; // the installer result; 1602 after a cancel
    HWND m_hCurrentPage = nullptr;
    // In the modes 4, 5 and 6: while a page of a product is up, a folder of the run's own for that product, which need not be
    // there yet and goes with the run; otherwise the folder of the deployment, ending in a backslash. Pages keep what they
    // fetch in the former; a build copies what it needs from there.
    CString m_strDeploymentFolder;
};
