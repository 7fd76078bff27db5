// A host for page tests. Every call is recorded, in one order for all objects; every answer can be set. What the
// contract calls plain data is set on the members themselves.
//
//     host.manager.m_bHasDeployments = true;
//     host.AddDeployment(L"Alpha");
//     host.manager.setModeAnswer = false;
//     ... show the page ...
//     EXPECT_EQ(host.log.Changes(), Calls({L"SetDeploymentPlatform(3)", ...}));
#pragma once

#include "include/lang_mgr.h"
#include "include/setup_manager.h"
#include "include/ui_manager.h"
#include "tests/support/test_product.h"

#include <deque>
#include <map>
#include <memory>
#include <vector>

using Calls = std::vector<CString>;

class TestSetupManager : public CSetupManager
{
public:
    explicit TestSetupManager(CallLog& callLog) : log(callLog) {}

    std::vector<CString>* GetDeploymentList(const CString& location) override;
    CString GetDeploymentName(const CString& entry) override;
    CString GetSetupCode(const CString& entry) override;
    Setup::tagDEPLOYMENTLOCATIONTYPE CheckForDeploymentLocation(const CString& path) override;
    CString GetImageFolder() override;
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
    const CString& GetWizTextPath() override;
    CString GetSrcWizTextPath() override;
    void SetMsiProperty(const wchar_t* name, const wchar_t* value, bool flag) override;
    void EnableCancelling(bool enable) override;

    // Answers.
    struct Deployment
    {
        CString name;
        CString setupCode;
    };
    std::map<CString, Deployment> deployments; // by list entry
    std::vector<CString> entries;              // the list, in its order
    int locationType = Setup::DEPLOYMENTLOCATION_EMPTY;
    CString imageFolder = L"Image";
    bool imageX86 = true;
    bool imageX64 = true;
    bool platformAllowed = true;
    bool loadAnswer = true;
    bool setModeAnswer = true;
    int resetAnswer = 0;
    CString resourceFolder; // both end in a backslash
    CString sourceResourceFolder;

    CallLog& log;
};

class TestUiManager : public CUiManager
{
public:
    bool IsWindowPosSaved() override { return saved; }
    RECT* GetWindowPos() override { return &position; }
    void SetWindowPos(const RECT& rectangle) override;

    bool saved = false;
    RECT position = {};
    std::vector<RECT> stored; // every rectangle that a page has handed over
};

class TestLangMgr : public CLangMgr
{
public:
    explicit TestLangMgr(CallLog& callLog) : log(callLog) {}

    CString GetWizTextPath() override { return wizTextPath; }
    CString GetWizCoreLanguage() override { return language; }
    CString GetDeploymentLanguage(const CProduct*) override { return language; }
    unsigned short LocaleNameToLANGID(const CString& name) override;
    bool Init(CConfigReader* reader) override;
    void Reset() override;

    CString wizTextPath; // ends in a backslash
    CString language = L"en-US";
    bool initAnswer = true;
    CConfigReader* initReader = nullptr; // the last that Init was given

    CallLog& log;
};

class TestHost
{
public:
    TestHost();
    ~TestHost();
    TestHost(const TestHost&) = delete;
    TestHost& operator=(const TestHost&) = delete;

    // Adds an entry to the list of deployments. The entry is not the name, so that no page can take one for the other.
    void AddDeployment(const wchar_t* name);
    void AddDeployment(const wchar_t* name, const wchar_t* setupCode);
    // A product of the deployment with the texts whose lengths the pages count.
    TestProduct& AddProduct(const wchar_t* msiFile, const wchar_t* folder);
    // The text as one of the contract's pointers, kept as long as the host.
    const wchar_t* Keep(const CString& text);

    CallLog log;
    TestSetupManager manager{log};
    TestUiManager ui;
    TestLangMgr language{log};
    std::vector<CProduct*> products; // what m_pProducts points to

private:
    std::deque<std::unique_ptr<TestProduct>> m_products;
    std::deque<CString> m_texts;
};
