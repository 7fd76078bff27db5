#include "setup/program_libraries.h"

#include "base/system_text.h"
#include "setup/resource.h"
#include "setup/texts.h"

#include <string>

namespace {

// The name of an export is plain ASCII; a name that isn't can't be one.
FARPROC FindExport(HMODULE module, const CString& name)
{
    std::string bytes;
    AppendUtf8(bytes, name);
    return module && !bytes.empty() ? GetProcAddress(module, bytes.c_str()) : nullptr;
}

template <class Function>
Function CastExport(FARPROC address)
{
    return reinterpret_cast<Function>(reinterpret_cast<void*>(address));
}

CString LoadFrom(const CString& path, CModuleOwner& module)
{
    // What the library itself needs lies beside it.
    module.reset(LoadLibraryExW(path, nullptr, LOAD_WITH_ALTERED_SEARCH_PATH));
    return module ? CString() : SetupText(IDS_LIBRARY_MISSING, {path, SystemErrorText(GetLastError())});
}

} // namespace

CString CHostLibrary::Load(const CString& programFolder)
{
    constexpr wchar_t OPEN[] = L"OpenSetupHost";
    m_strPath = programFolder + L"WizCore.dll";
    const CString complaint = LoadFrom(m_strPath, m_module);
    if (!complaint.IsEmpty()) {
        return complaint;
    }
    m_open = CastExport<OpenFunction>(FindExport(m_module.get(), OPEN));
    return m_open ? CString() : SetupText(IDS_LIBRARY_FOREIGN, {m_strPath, OPEN});
}

CString CHostLibrary::Verify(const CString& folder, IBuildProgress& progress, VerifyResult& result) const
{
    constexpr wchar_t VERIFY[] = L"VerifyDeploymentFolder";
    const auto verify = CastExport<decltype(&VerifyDeploymentFolder)>(FindExport(m_module.get(), VERIFY));
    if (!verify) {
        return SetupText(IDS_LIBRARY_FOREIGN, {m_strPath, VERIFY});
    }
    verify(folder, progress, result);
    return {};
}

std::unique_ptr<CSetupHost> CHostLibrary::Open(const HostOptions& options, OperationError& error) const
{
    return std::unique_ptr<CSetupHost>(m_open(options, error));
}

CString CComparisonLibrary::Load(const CString& programFolder)
{
    constexpr wchar_t COMPARE[] = L"CompareTwoDeployments";
    const CString path = programFolder + L"WizCore.dll";
    const CString complaint = LoadFrom(path, m_module);
    if (!complaint.IsEmpty()) {
        return complaint;
    }
    m_compare = CastExport<decltype(m_compare)>(FindExport(m_module.get(), COMPARE));
    return m_compare ? CString() : SetupText(IDS_LIBRARY_FOREIGN, {path, COMPARE});
}

CString CPageLibrary::Load(const CString& programFolder)
{
    m_strPath = programFolder + L"RolloutUi.dll";
    return LoadFrom(m_strPath, m_module);
}

PageFunction CPageLibrary::Find(const CString& page) const
{
    return CastExport<PageFunction>(FindExport(m_module.get(), page));
}

TabPageFunction CPageLibrary::FindTab(const CString& tabPage) const
{
    return CastExport<TabPageFunction>(FindExport(m_module.get(), tabPage));
}
