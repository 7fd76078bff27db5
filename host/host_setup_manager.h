// The setup manager: the state of the whole setup, and the products of the media that is current.
#pragma once

#include "host/deployment_base.h"
#include "host/host_product.h"
#include "host/host_ui_manager.h"
#include "host/setup_log.h"
#include "include/setup_manager.h"

#include <atomic>
#include <memory>
#include <vector>

class CHostSetupManager final : public CSetupManager
{
public:
    // `workFolder`: with backslash, the manager's alone.
    CHostSetupManager(Media media, const CString& workFolder, CSetupLog& log);
    ~CHostSetupManager() override;

    // Opens the products of the first platform that the media holds, or of the deployment that it is the image of.
    OperationError Start();

    std::vector<CString>* GetDeploymentList(const CString& location) override;
    CString GetDeploymentName(const CString& entry) override;
    CString GetSetupCode(const CString& entry) override;
    Setup::tagDEPLOYMENTLOCATIONTYPE CheckForDeploymentLocation(const CString& path) override;
    CString GetImageFolder() override { return IMAGE_FOLDER; }
    bool DoesImageMatchPlatform(Setup::tagPLATFORM platform) override;
    bool IsTargetPlatformAllowed(Setup::tagPLATFORM platform) override;
    void SetDeploymentPlatform(Setup::tagPLATFORM platform) override;
    void SetDeploymentLocation(const CString& path) override;
    void SetBaseDeploymentName(const CString& name) override;
    void SetDeploymentName(const CString& name) override;
    bool LoadDeploymentInfo(const CString& name) override;
    void ReloadProductData() override;
    void DeleteProductList() override;
    bool SetSetupMode(Setup::tagSETUPMODE mode) override;
    int ResetSetupMode() override;
    const CString& GetWizTextPath() override { return m_strTextFolder; }
    CString GetSrcWizTextPath() override;
    void SetMsiProperty(const wchar_t* name, const wchar_t* value, bool flag) override;
    void EnableCancelling(bool enable) override { m_bCancellingEnabled = enable; }

    bool IsCancellingEnabled() const { return m_bCancellingEnabled; }
    const Media& GetMedia() const { return m_media; }
    // As the host's calls of the same names (setup_host.h).
    CString GetMediaFolder() const;
    CString GetBaseFolder() const;
    // Opens the products when nobody has them open. Repeats the failure of the last try until something changes.
    OperationError EnsureProducts();
    const std::vector<std::unique_ptr<CHostProduct>>& GetProductObjects() const { return m_productObjects; }
    // What the deployment's file is to hold.
    DeploymentFile DescribeDeployment() const;
    // What the step label of the next page says: the media's text, followed by the product's name unless that is empty.
    void NameProductInStep(const CString& product);
    // A page of the product comes up: it downloads into a folder of the run, as nothing may appear in the deployment's place
    // before it is built. Null: a page of no product, or the build.
    void UseFoldersOf(CProduct* product);
    void SetResultLines(const CString& first, const CString& second);
    // What stands in the place of the new deployment. What may be replaced: the deployment that is modified, one that the
    // begin page asked about, and one that AllowReplacing named.
    TargetVerdict JudgeTarget() const;
    void AllowReplacing(const TargetVerdict& verdict) { m_answeredStamp = verdict.strStamp; }
    void DeclineReplacing();
    // Why the mode that the begin page asked for could not be entered, once; empty when it was.
    CString ReadModeFailure();
    int CountProductOpenings() const { return m_workNumber; }

private:
    OperationError OpenProducts();
    // Opens the products anew from the media. After a failure those that were open still are.
    OperationError ReplaceProducts();
    void RemoveWorkCopies(int number);
    OperationError COpenProduct(const ProductDescription& product, std::unique_ptr<CHostProduct>& opened);
    OperationError LoadStored(CHostProduct& product, std::vector<CString>& warnings);
    void ApplyStoredSettings();
    void UseMedia(const Media& media);
    void UpdatePathRule();
    void UpdateDeploymentFolder();
    OperationError EnterFirstStage();
    CString FindBaseEntry(const CString& name) const;
    OperationError UseBase(const CString& entry);
    OperationError UseBaseNamed(const CString& name);
    bool IsBaseLoaded() const { return !m_base.strEntry.IsEmpty(); }
    bool IsBaseCurrent(const CString& name) const; // loaded, and unchanged on the disk
    void LeavePage(const CString& reason);
    void AddBaseOfElsewhere();
    void ForgetBase();
    void ReportFailure(const CString& message);

    // All that a page's choices can change and that a reset takes back.
    struct Stage
    {
        Media media;
        DeploymentBase base;
        CString strDeploymentLanguage;
        Setup::tagSETUPMODE mode;
        Setup::tagPLATFORM platform;
        CString strLocation, strName, strBaseName, strLines[2], strAnsweredStamp;
        int installMode;
        bool bNetworkLog;
        CString strNetworkLogFolder;
        bool bSettingsOption;
        PropertyStore properties;
    };
    Stage GetStage() const;
    void UseStage(const Stage& stage);

    struct ListedDeployment
    {
        CString strEntry;
        CString strStamp; // when it was listed
    };

    const Media m_openedMedia;
    Setup::tagPLATFORM m_firstPlatform = Setup::PLATFORM_X64; // of the media as they were opened
    Media m_media; // the base deployment's image, once one is loaded
    const CString m_strWorkFolder;
    CSetupLog& m_log;
    CHostConfigReader m_config;
    CHostUiManager m_ui;
    std::vector<CString> m_deployments;     // result of GetDeploymentList
    std::vector<ListedDeployment> m_listed; // the same entries
    std::vector<std::unique_ptr<CHostProduct>> m_productObjects;
    std::vector<CProduct*> m_products;
    bool m_productsOpen = false;
    Setup::tagPLATFORM m_productsPlatform = Setup::PLATFORM_X64; // while they are open
    int m_workNumber = 0; // each opening of products has a folder of its own
    int m_downloadNumber = 0;
    DeploymentBase m_base;
    CString m_answeredStamp; // of the deployment that the program asked about
    CString m_strModeFailure;
    PropertyStore m_properties;
    std::atomic<bool> m_bCancellingEnabled = true;

    // What the public pointers of the base class point into.
    CString m_strCodeText, m_strNameText, m_strMediaFileText, m_strTextFolder, m_strRootText,
        m_strLinkText[2];
    CString m_strLogText, m_strSuffixText, m_strLocationText, m_strBaseText, m_strDeploymentText,
        m_strLineText[2];
    CString m_strStepText, m_strStepOfProduct;
};
