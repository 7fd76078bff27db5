// The program's libraries, loaded by full path from the program's folder when they are needed, so that a missing one
// is reported in words instead of by the system's loader.
//
//   CHostLibrary   WizCore.dll, which opens media
//   CComparisonLibrary   WizCore.dll, which compares deployments
//   CPageLibrary   RolloutUi.dll, which shows pages
#pragma once

#include "base/handle.h"
#include "base/string.h"
#include "host/deployment_check.h"
#include "host/deployment_comparison.h"
#include "include/page_context.h"

#include <memory>

using PageFunction = int (*)(PageContext* context);
using TabPageFunction = CTabPage (*)(PageContext* context);

class CHostLibrary
{
public:
    // The empty text, or why it failed.
    [[nodiscard]] CString Load(const CString& programFolder);
    // Null with `error` on failure. The library outlives the host.
    [[nodiscard]] std::unique_ptr<CSetupHost> Open(const HostOptions& options, OperationError& error) const;

    // Any thread. The empty text, or why it could not be done at all.
    [[nodiscard]] CString Verify(const CString& folder, IBuildProgress& progress, VerifyResult& result) const;

private:
    using OpenFunction = CSetupHost* (*)(const HostOptions& options, OperationError& error);

    CModuleOwner m_module;
    CString m_strPath;
    OpenFunction m_open = nullptr;
};

class CComparisonLibrary
{
public:
    [[nodiscard]] CString Load(const CString& programFolder);
    // As CompareTwoDeployments.
    [[nodiscard]] bool Compare(const CString& first, const CString& second, TwoDeployments& compared,
                               OperationError& error) const
    {
        return m_compare(first, second, compared, error);
    }

private:
    CModuleOwner m_module;
    decltype(&CompareTwoDeployments) m_compare = nullptr;
};

class CPageLibrary
{
public:
    [[nodiscard]] CString Load(const CString& programFolder);
    // By the exports of the table of pages: the kinds differ in what they return, so that one called as the other would
    // write to nowhere. Null when the library doesn't have the page, and for the empty name.
    [[nodiscard]] PageFunction Find(const CString& page) const;
    [[nodiscard]] TabPageFunction FindTab(const CString& tabPage) const;
    const CString& Path() const { return m_strPath; }

private:
    CModuleOwner m_module;
    CString m_strPath;
};
