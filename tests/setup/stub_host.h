// A host without media, for what asks it little.
#pragma once

#include "builder/build_review.h"
#include "host/setup_host.h"

#include <stdexcept>

class StubHost final : public CSetupHost
{
public:
    CSetupManager& GetSetupManager() override { throw std::logic_error("nobody needs it here"); }
    const std::vector<FlowPage>& GetFlow() override { return m_flow; }
    bool OffersConfigure() override { return false; }
    const std::vector<CProduct*>& GetProducts() override { return products; }
    int CountProductOpenings() override { return 1; }
    PageContext MakePageContext(const FlowPage&, bool) override { return {}; }
    PageContext MakePageContext(const FlowPage&, bool, CProduct*) override { return {}; }
    OperationError CheckDatabase(CProduct&) override { return {}; }
    std::vector<AdditionFinding> CheckAdditions(CProduct&, SourceLook) override { return findings; }
    TargetVerdict JudgeTarget() override { return verdict; }
    void AllowReplacing(const TargetVerdict& allowed) override { allowedStamps.push_back(allowed.strStamp); }
    void DeclineReplacing() override { ++declined; }
    CString ReadModeFailure() override { return {}; }
    bool IsCancellingEnabled() override { return cancelling; }
    CString GetBaseFolder() override { return baseFolder; }
    CString GetMediaFolder() override { return mediaFolder; }
    void SetAnswersText(const CString& text) override { answersText = text; }
    BuildResult Build(IBuildProgress&) override { return {}; }
    OperationError ReviewBuild(IBuildProgress&, BuildReview&) override { return {}; }
    void AppendLog(const CString& line) override { logged.push_back(line); }

    bool cancelling = true;
    int declined = 0;
    CString baseFolder, mediaFolder, answersText;
    TargetVerdict verdict;
    std::vector<CString> allowedStamps;
    std::vector<CProduct*> products;
    std::vector<AdditionFinding> findings;
    std::vector<CString> logged;

private:
    std::vector<FlowPage> m_flow;
};
