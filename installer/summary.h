// The summary information of an installer file.
#pragma once

#include "base/string.h"
#include "installer/handle.h"

// The service's PID_ numbers, which mingw-w64's header lacks.
constexpr unsigned int SUMMARY_TEMPLATE = 7;
constexpr unsigned int SUMMARY_PACKAGE_CODE = 9;
constexpr unsigned int SUMMARY_WORD_COUNT = 15;

// Results are the service's codes.
class CSummary
{
public:
    // For as many writes as `changes` says; none is for reading.
    [[nodiscard]] unsigned int Open(MSIHANDLE database, unsigned int changes = 0);
    // Empty when the property isn't there, or is no text.
    [[nodiscard]] unsigned int ReadText(unsigned int property, CString& text) const;
    // 0 when the property isn't there, or is no number.
    [[nodiscard]] unsigned int ReadNumber(unsigned int property, int& number) const;
    [[nodiscard]] unsigned int WriteText(unsigned int property, const CString& text);
    // Puts what was written into the database.
    [[nodiscard]] unsigned int Persist();

private:
    CInstallerHandle m_summary;
};

// Empty, or 0, when the property isn't there or can't be read.
[[nodiscard]] CString SummaryText(MSIHANDLE database, unsigned int property);
[[nodiscard]] int SummaryNumber(MSIHANDLE database, unsigned int property);
// True when the template names a 64-bit platform.
[[nodiscard]] bool IsSixtyFourBit(MSIHANDLE database);
