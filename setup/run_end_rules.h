// What is said of a run that didn't say itself how it ended, and when a run counts as hanging.
#pragma once

#include "base/string.h"

#include <cstdint>

// The name that people look up, and the number: "access violation (0xC0000005)".
[[nodiscard]] CString FaultText(std::uint32_t code);

constexpr std::uint32_t FAULT_ABORT = 0x40000015; // STATUS_FATAL_APP_EXIT: the program ended itself

// Library and distance from its start, "msi.dll+0x2E450", or the bare address where no library lies.
[[nodiscard]] CString PlaceText(const CString& library, std::uint64_t offset);

// The steps of a run as its lines report them: what is indented belongs to the line above. Line 1 "Page begin" and line 2
// "  name = Office" give "Page begin, name = Office".
class CRunSteps
{
public:
    void Add(const CString& line);
    [[nodiscard]] CString Text() const;

private:
    CString m_strStep;
    CString m_strDetail;
};

// Overdue when nothing that shows life has changed for the length of the limit. Time in which nobody looked doesn't count.
class CQuietWatch
{
public:
    explicit CQuietWatch(std::uint64_t limitMilliseconds) : m_limit(limitMilliseconds) {}

    // `signs`: any figure that grows while something gets done.
    [[nodiscard]] bool IsOverdue(std::uint64_t nowMilliseconds, std::uint64_t signs);

private:
    std::uint64_t m_limit;
    std::uint64_t m_signs = 0;
    std::uint64_t m_since = 0; // of the last change
    std::uint64_t m_lookedAt = 0;
    bool m_bStarted = false;
};
