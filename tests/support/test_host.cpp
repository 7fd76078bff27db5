#include "tests/support/test_host.h"

#include "tests/support/test_wiz_core.h"

#include <windows.h>

namespace {

CString Call(const wchar_t* operation, const CString& argument = CString())
{
    return CString(operation) + L"(" + argument + L")";
}

CString Truth(bool value)
{
    return value ? L"true" : L"false";
}

} // namespace

std::vector<CString>* TestSetupManager::GetDeploymentList(const CString& location)
{
    log.Add(Call(L"GetDeploymentList", location));
    return &entries;
}

CString TestSetupManager::GetDeploymentName(const CString& entry)
{
    return deployments.at(entry).name;
}

CString TestSetupManager::GetSetupCode(const CString& entry)
{
    log.Add(Call(L"GetSetupCode", entry));
    return deployments.at(entry).setupCode;
}

Setup::tagDEPLOYMENTLOCATIONTYPE TestSetupManager::CheckForDeploymentLocation(const CString& path)
{
    log.Add(Call(L"CheckForDeploymentLocation", path));
    return static_cast<Setup::tagDEPLOYMENTLOCATIONTYPE>(locationType);
}

CString TestSetupManager::GetImageFolder()
{
    return imageFolder;
}

bool TestSetupManager::DoesImageMatchPlatform(Setup::tagPLATFORM platform)
{
    return platform == Setup::PLATFORM_X86 ? imageX86 : imageX64;
}

bool TestSetupManager::IsTargetPlatformAllowed(Setup::tagPLATFORM platform)
{
    log.Add(Call(L"IsTargetPlatformAllowed", NumberText(platform)));
    return platformAllowed;
}

void TestSetupManager::SetDeploymentPlatform(Setup::tagPLATFORM platform)
{
    log.Add(Call(L"SetDeploymentPlatform", NumberText(platform)));
}

void TestSetupManager::SetDeploymentLocation(const CString& path)
{
    log.Add(Call(L"SetDeploymentLocation", path));
}

void TestSetupManager::SetBaseDeploymentName(const CString& name)
{
    log.Add(Call(L"SetBaseDeploymentName", name));
}

void TestSetupManager::SetDeploymentName(const CString& name)
{
    log.Add(Call(L"SetDeploymentName", name));
}

bool TestSetupManager::LoadDeploymentInfo(const CString& name)
{
    log.Add(Call(L"LoadDeploymentInfo", name));
    return loadAnswer;
}

void TestSetupManager::ReloadProductData()
{
    log.Add(Call(L"ReloadProductData"));
}

void TestSetupManager::DeleteProductList()
{
    log.Add(Call(L"DeleteProductList"));
}

bool TestSetupManager::SetSetupMode(Setup::tagSETUPMODE mode)
{
    log.Add(Call(L"SetSetupMode", NumberText(mode)));
    return setModeAnswer;
}

int TestSetupManager::ResetSetupMode()
{
    log.Add(Call(L"ResetSetupMode"));
    return resetAnswer;
}

const CString& TestSetupManager::GetWizTextPath()
{
    return resourceFolder;
}

CString TestSetupManager::GetSrcWizTextPath()
{
    return sourceResourceFolder;
}

void TestSetupManager::SetMsiProperty(const wchar_t* name, const wchar_t* value, bool flag)
{
    log.Add(Call(L"SetMsiProperty", CString(name) + L", \"" + value + L"\", " + Truth(flag)));
}

void TestSetupManager::EnableCancelling(bool enable)
{
    log.Add(Call(L"EnableCancelling", Truth(enable)));
}

void TestUiManager::SetWindowPos(const RECT& rectangle)
{
    saved = true;
    position = rectangle;
    stored.push_back(rectangle);
}

unsigned short TestLangMgr::LocaleNameToLANGID(const CString& name)
{
    return static_cast<unsigned short>(LocaleNameToLCID(name, 0));
}

bool TestLangMgr::Init(CConfigReader* reader)
{
    log.Add(Call(L"Init"));
    initReader = reader;
    return initAnswer;
}

void TestLangMgr::Reset()
{
    log.Add(Call(L"Reset"));
}

TestHost::TestHost()
{
    manager.m_pUiManager = &ui;
    manager.m_pProducts = &products;
    manager.m_strProductName = L"Zolt 2027";
    manager.m_strSetupCode = L"{5C0FFEE0-0000-4000-8000-000000000001}";
    SetTestLangMgr(&language);
}

TestHost::~TestHost()
{
    SetTestLangMgr(nullptr);
}

void TestHost::AddDeployment(const wchar_t* name)
{
    AddDeployment(name, manager.m_strSetupCode);
}

void TestHost::AddDeployment(const wchar_t* name, const wchar_t* setupCode)
{
    const CString entry = L"entry " + NumberText(static_cast<long long>(manager.entries.size()));
    manager.entries.push_back(entry);
    manager.deployments[entry] = {name, setupCode};
}

TestProduct& TestHost::AddProduct(const wchar_t* msiFile, const wchar_t* folder)
{
    m_products.push_back(std::make_unique<TestProduct>(log));
    TestProduct& product = *m_products.back();
    product.m_strMsiFile = Keep(msiFile);
    product.m_strFolder = Keep(folder);
    products.push_back(&product);
    return product;
}

const wchar_t* TestHost::Keep(const CString& text)
{
    m_texts.push_back(text);
    return m_texts.back();
}
