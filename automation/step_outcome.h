// What became of a try to do or to see something: done, not yet (worth another try), or failed for good.
//
// Everything a person would have to wait for (a window that isn't there, a button that is disabled) is "not yet" with
// the reason; a script tries again until its deadline and then reports that reason.
#pragma once

#include "base/string.h"

class [[nodiscard]] StepOutcome
{
public:
    static StepOutcome Done() { return StepOutcome(Kind::Done, CString()); }
    static StepOutcome NotYet(const CString& reason) { return StepOutcome(Kind::NotYet, reason); }
    static StepOutcome Failed(const CString& reason) { return StepOutcome(Kind::Failed, reason); }

    bool IsDone() const { return m_kind == Kind::Done; }
    bool IsNotYet() const { return m_kind == Kind::NotYet; }
    bool IsFailed() const { return m_kind == Kind::Failed; }
    // Empty when done.
    const CString& GetReason() const { return m_reason; }

private:
    enum class Kind
    {
        Done,
        NotYet,
        Failed
    };
    StepOutcome(Kind kind, const CString& reason) : m_kind(kind), m_reason(reason) {}

    Kind m_kind;
    CString m_reason;
};
