// What a piece of work costs, whatever else runs on the machine.
#pragma once

#if defined(ROLLOUT_NATIVE)
#include <ctime>
#else
#include <windows.h>
#endif

// Processor seconds of this process so far, in steps of a hundredth on some systems.
inline double ProcessorSeconds()
{
#if defined(ROLLOUT_NATIVE)
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
#else
    // The runtime's clock() counts the time of the day here.
    FILETIME created, ended, kernel, user;
    GetProcessTimes(GetCurrentProcess(), &created, &ended, &kernel, &user);
    const auto seconds = [](const FILETIME& time) {
        return static_cast<double>((static_cast<unsigned long long>(time.dwHighDateTime) << 32) |
                                   time.dwLowDateTime) /
               1e7;
    };
    return seconds(kernel) + seconds(user);
#endif
}
