// The figures of the progress window: what share is done and how long the rest may take.
#pragma once

#include "base/string.h"

#include <cstdint>

// Parts in a thousand, 0 to 1000; 0 when the total isn't known.
int DoneInThousand(std::uint64_t done, std::uint64_t total);

// "512 bytes", "4.2 MB": 1024 to the step, one digit behind the point below ten of a unit. `point` is the decimal sign.
CString ByteCountText(std::uint64_t bytes, wchar_t point);

// Which sentence states the time that is left, and its number.
enum class TimeLeftKind
{
    Unknown, // too early to say
    Seconds,
    Minutes,
    Hours,
};
struct TimeLeft
{
    TimeLeftKind kind = TimeLeftKind::Unknown;
    int count = 0;
};

// Estimated from the speed so far. Unknown for the first two seconds and the first hundredth. Seconds are rounded up to
// fives, minutes from 90 seconds on, hours from 90 minutes on, so that the text doesn't flicker.
TimeLeft EstimateTimeLeft(std::uint64_t elapsedMilliseconds, std::uint64_t done, std::uint64_t total);
