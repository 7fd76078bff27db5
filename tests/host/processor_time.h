// What a piece of work costs, whatever else runs on the machine.
#pragma once

#include <windows.h>

// Processor seconds of this process so far.
inline double ProcessorSeconds()
{
    FILETIME created, ended, kernel, user;
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
    const auto seconds = [](const FILETIME& time) {
        return static_cast<double>((static_cast<unsigned long long>(time.dwHighDateTime) << 32) |
                                   time.dwLowDateTime) /
               1e7;
    };
    return seconds(kernel) + seconds(user);
}
