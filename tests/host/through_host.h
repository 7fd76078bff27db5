// A host on media of the test's, led through the begin page's steps to a build.
#pragma once

#include "include/product.h"
#include "tests/host/package_maker.h"
#include "tests/host/review_check.h"

#include <gtest/gtest.h>

class CSilentProgress final : public IBuildProgress
{
public:
    void OnDecided(const BuildReview& review) override { decided.push_back(review); }
    void OnStep(const CString&) override {}
    bool OnProgress(std::uint64_t, std::uint64_t, const CString&) override { return !cancel; }
    bool cancel = false;
    std::vector<BuildReview> decided;
};

// Runs a program to its end: its exit code, or why it could not be started.
inline unsigned long RunAndWait(CString command)
{
    STARTUPINFOW startup = {};
    startup.cb = sizeof startup;
    PROCESS_INFORMATION process = {};
    if (!CreateProcessW(nullptr, command.GetBuffer(command.GetLength()), nullptr, nullptr, FALSE,
                        CREATE_NO_WINDOW, nullptr, nullptr, &startup, &process)) {
        return GetLastError();
    }
    EXPECT_EQ(WaitForSingleObject(process.hProcess, 120000), DWORD{WAIT_OBJECT_0}) << Utf8(command);
    DWORD code = ~0ul;
    GetExitCodeProcess(process.hProcess, &code);
    CloseHandle(process.hProcess);
    CloseHandle(process.hThread);
    return code;
}

class ThroughHostTest : public testing::Test
{
protected:
    void SetUp() override { ASSERT_EQ(MakeFolders(location), 0u); }
    void TearDown() override
    {
        host.reset();
        EXPECT_EQ(MsiCloseAllHandles(), 0u) << "installer handles were left open";
    }

    CSetupManager& Open(const CString& path)
    {
        host.reset();
        host = OpenHost(path, work);
        return host->GetSetupManager();
    }

    // The begin page's steps, with its answers.
    void Begin(CSetupManager& manager, Setup::tagSETUPMODE mode, const CString& base, const CString& name)
    {
        const CString before = manager.m_strBaseDeploymentName;
        manager.GetDeploymentList(location);
        manager.SetDeploymentPlatform(manager.m_platform);
        manager.SetDeploymentLocation(location);
        manager.SetBaseDeploymentName(base);
        manager.SetDeploymentName(name);
        if (before.CompareNoCase(base) != 0) {
            manager.ReloadProductData();
            manager.LoadDeploymentInfo(base);
            manager.DeleteProductList();
            CLangMgr::Instance().Init(manager.m_pConfigReader);
            CLangMgr::Instance().Reset();
        }
        ASSERT_TRUE(manager.SetSetupMode(mode));
    }

    // Reviewed beforehand, and held against what the review said.
    void Build()
    {
        CSilentProgress progress;
        BuildReview review;
        const OperationError refusal = host->ReviewBuild(progress, review);
        const BuildResult result = host->Build(progress);
        ExpectPlanHeld(refusal, review, progress.decided, result);
        EXPECT_EQ(result.error.code, 0u) << Utf8(result.error.message);
        EXPECT_EQ(result.strDeploymentFolder, host->GetSetupManager().m_strDeploymentFolder);
    }

    static CString ReadText(const CString& path)
    {
        std::string bytes;
        EXPECT_EQ(ReadWholeFile(path, 1u << 24, bytes), 0u) << Utf8(path);
        return TextFromUtf8(bytes.data(), bytes.size());
    }

    static CString Stored(CSetupManager& manager, const wchar_t* name)
    {
        wchar_t buffer[300] = {};
        int size = 300;
        return manager.m_pProducts->at(0)->GetMsiProperty(name, buffer, &size) ? CString(buffer)
                                                                               : CString(L"(none)");
    }

    ScratchFolder work{L"work"};
    ScratchFolder scratch{L"build \u00E4 \u4E2D"};
    CString location = scratch + L"shared deployments\\";
    HostOwner host;
};
