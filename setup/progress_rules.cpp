#include "setup/progress_rules.h"

#include <algorithm>
#include <iterator>

int DoneInThousand(std::uint64_t done, std::uint64_t total)
{
    if (total == 0) {
        return 0;
    }
    const double share = static_cast<double>(std::min(done, total)) / static_cast<double>(total);
    return static_cast<int>(share * 1000.0);
}

CString ByteCountText(std::uint64_t bytes, wchar_t point)
{
    constexpr const wchar_t* UNITS[] = {L" KB", L" MB", L" GB", L" TB"};
    if (bytes < 1024) {
        return NumberText(static_cast<long long>(bytes)) + L" bytes";
    }
    double amount = static_cast<double>(bytes) / 1024.0;
    std::size_t unit = 0;
    while (amount >= 1023.5 && unit + 1 < std::size(UNITS)) {
        amount /= 1024.0;
        ++unit;
    }
    if (amount >= 9.95) {
        return NumberText(static_cast<long long>(amount + 0.5)) + UNITS[unit];
    }
    const long long tenths = static_cast<long long>(amount * 10.0 + 0.5);
    return NumberText(tenths / 10) + point + NumberText(tenths % 10) + UNITS[unit];
}

TimeLeft EstimateTimeLeft(std::uint64_t elapsedMilliseconds, std::uint64_t done, std::uint64_t total)
{
    constexpr std::uint64_t TOO_EARLY_MILLISECONDS = 2000;
    constexpr double LONGEST_SECONDS = 99.0 * 3600.0; // beyond, a figure would say more than is known
    if (elapsedMilliseconds < TOO_EARLY_MILLISECONDS || done == 0 || done >= total || done < total / 100) {
        return {};
    }
    const double left = static_cast<double>(elapsedMilliseconds) / 1000.0 *
                        static_cast<double>(total - done) / static_cast<double>(done);
    if (left > LONGEST_SECONDS) {
        return {};
    }
    const int seconds = static_cast<int>(left) + 1;
    if (seconds <= 90) {
        return {TimeLeftKind::Seconds, (seconds + 4) / 5 * 5};
    }
    const int minutes = (seconds + 30) / 60;
    return minutes <= 90 ? TimeLeft{TimeLeftKind::Minutes, minutes}
                         : TimeLeft{TimeLeftKind::Hours, (minutes + 30) / 60};
}
