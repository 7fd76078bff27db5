// Before a deployment is modified or built upon: whether it is still what was built. All of it is read anew; what was found
// stands in the log, and a person decides whether to go on with it.
#pragma once

#include "builder/build_result.h"
#include "builder/verify_result.h"
#include "host/setup_host.h"
#include "setup/run_log.h"

#include <functional>

class CBaseCheck
{
public:
    // The empty text, or why it could not be done at all. Called on a thread of its own.
    using VerifyFunction =
        std::function<CString(const CString& folder, IBuildProgress& progress, VerifyResult& result)>;

    // Borrows the log.
    CBaseCheck(VerifyFunction verify, CRunLog& log, bool unattended)
        : m_verify(std::move(verify)), m_log(log), m_bUnattended(unattended)
    {
    }

    // True when the run can go on: there is no base, it was checked since its products were opened, nothing is wrong with it,
    // or a person goes on with it. Messages go on meanwhile; a window says how far it is when it takes longer than a moment.
    [[nodiscard]] bool Check(CSetupHost& host);

private:
    [[nodiscard]] VerifyResult Verify(const CString& folder);
    void LogFindings(const VerifyResult& result);
    [[nodiscard]] bool AskPerson(const VerifyResult& result);

    const VerifyFunction m_verify;
    CRunLog& m_log;
    const bool m_bUnattended;
    CString m_strChecked; // folder, empty for none
    int m_nOpening = 0;   // CountProductOpenings then
};

// The question about a base that isn't what was built, or of which that can't be determined.
[[nodiscard]] CString BaseQuestion(const VerifyResult& result);
