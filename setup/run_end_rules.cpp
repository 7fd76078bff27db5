#include "setup/run_end_rules.h"

#include "base/number_text.h"

namespace {

constexpr std::uint64_t LONGEST_LOOK_MILLISECONDS = 10000; // between two looks; 200 is usual

struct Fault
{
    std::uint32_t code;
    const wchar_t* name;
};

constexpr Fault FAULTS[] = {
    {0xC0000005, L"access violation"},
    {0xC0000006, L"a file in use can no longer be read"},
    {0xC000013A, L"Ctrl+C in the console"},
    {0xC000001D, L"illegal instruction"},
    {0xC0000094, L"division by zero"},
    {0xC00000FD, L"stack overflow"},
    {0xC0000374, L"broken heap"},
    {0xC0000409, L"damaged stack or failed check"},
    {0xC0000417, L"invalid argument of the C library"},
    {FAULT_ABORT, L"abort"},
};

CString CodeText(std::uint64_t number, int digits)
{
    return L"0x" + HexText(number, digits, HexLetters::Capital);
}

} // namespace

CString FaultText(std::uint32_t code)
{
    const CString number = CodeText(code, 8);
    for (const Fault& fault : FAULTS) {
        if (fault.code == code) {
            return CString(fault.name) + L" (" + number + L")";
        }
    }
    return L"code " + number;
}

CString PlaceText(const CString& library, std::uint64_t offset)
{
    return library.IsEmpty() ? L"address " + CodeText(offset, 1) : library + L"+" + CodeText(offset, 1);
}

void CRunSteps::Add(const CString& line)
{
    CString text = line;
    text.Trim();
    if (!line.IsEmpty() && line[0] == L' ') {
        m_strDetail = text;
    } else {
        m_strStep = text;
        m_strDetail.Empty();
    }
}

CString CRunSteps::Text() const
{
    return m_strDetail.IsEmpty() ? m_strStep : m_strStep + L", " + m_strDetail;
}

bool CQuietWatch::IsOverdue(std::uint64_t nowMilliseconds, std::uint64_t signs)
{
    // Nobody looked for a while: the computer slept, or all of its processes were stopped, the run's among them.
    const bool slept = m_bStarted && nowMilliseconds - m_lookedAt > LONGEST_LOOK_MILLISECONDS;
    m_lookedAt = nowMilliseconds;
    if (!m_bStarted || slept || signs != m_signs) {
        m_bStarted = true;
        m_signs = signs;
        m_since = nowMilliseconds;
    }
    return nowMilliseconds - m_since >= m_limit;
}
