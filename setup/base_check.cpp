#include "setup/base_check.h"

#include "base/path_text.h"
#include "setup/background_work.h"
#include "setup/exit_codes.h"
#include "setup/resource.h"
#include "setup/text_forms.h"
#include "setup/texts.h"

namespace {

constexpr std::size_t NAMED_FINDINGS = 10;   // more would make a box that no screen holds
constexpr std::size_t LOGGED_FINDINGS = 100; // --verify names all

constexpr WorkTexts CHECK_TEXTS = {IDS_CHECK_TITLE, IDS_CHECK_TITLE_SHARE, IDS_CHECK_CANCELLING,
                                   IDS_CHECK_CANCEL_QUESTION, IDS_CHECK_SHUTDOWN_REASON};

CString FindingLines(const VerifyResult& result)
{
    CString lines;
    for (std::size_t index = 0; index < result.findings.size() && index < NAMED_FINDINGS; ++index) {
        lines += L"\n" + FindingLine(result.findings[index]);
    }
    if (result.findings.size() > NAMED_FINDINGS) {
        lines +=
            L"\n" + SetupText(IDS_REPLACE_MORE_FILES,
                              {NumberText(static_cast<long long>(result.findings.size() - NAMED_FINDINGS))});
    }
    return lines;
}

} // namespace

CString BaseQuestion(const VerifyResult& result)
{
    const unsigned int text =
        result.verdict == VerifyVerdict::Differs ? IDS_BASE_DIFFERS : IDS_BASE_UNDETERMINED;
    return SetupText(text, {VerdictSentence(result), FindingLines(result)});
}

bool CBaseCheck::Check(CSetupHost& host)
{
    const CString folder = host.GetBaseFolder();
    const int opening = host.CountProductOpenings();
    if (folder.IsEmpty() || (folder == m_strChecked && opening == m_nOpening)) {
        return true;
    }
    const VerifyResult result = Verify(folder);
    if (result.bCancelled) {
        return false;
    }
    LogFindings(result);
    const bool goesOn = m_bUnattended || result.verdict == VerifyVerdict::AsBuilt || AskPerson(result);
    m_strChecked = goesOn ? folder : CString();
    m_nOpening = opening;
    return goesOn;
}

VerifyResult CBaseCheck::Verify(const CString& folder)
{
    VerifyResult result;
    CString complaint;
    WaitForWork(LastName(folder), CHECK_TEXTS, m_log,
                [&](IBuildProgress& progress) { complaint = m_verify(folder, progress, result); });
    if (!complaint.IsEmpty()) {
        result = VerifyResult();
        result.unknown.push_back(complaint);
    }
    return result;
}

void CBaseCheck::LogFindings(const VerifyResult& result)
{
    const bool isGood = result.verdict == VerifyVerdict::AsBuilt;
    m_log.Line((isGood ? CString() : CString(L"Warning: ")) + VerdictSentence(result));
    for (std::size_t index = 0; index < result.findings.size() && index < LOGGED_FINDINGS; ++index) {
        m_log.Line(L"  " + FindingLine(result.findings[index]));
    }
    for (const CString& sentence : result.unrecorded) {
        m_log.Line(L"  " + UnrecordedLine(sentence));
    }
    if (result.findings.size() > LOGGED_FINDINGS) {
        m_log.Line(L"  Setup.exe --verify names all " +
                   NumberText(static_cast<long long>(result.findings.size())) + L".");
    }
}

bool CBaseCheck::AskPerson(const VerifyResult& result)
{
    const CString question = BaseQuestion(result);
    const bool yes = MessageBoxW(nullptr, question, SetupText(IDS_PROGRAM_TITLE),
                                 MB_YESNO | MB_ICONWARNING | MB_DEFBUTTON2 | MB_SETFOREGROUND) == IDYES;
    m_log.Line(L"Question \"" + OneLine(question) + (yes ? L"\" = yes" : L"\" = no"));
    return yes;
}
