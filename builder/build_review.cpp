#include "builder/build_review.h"

#include "base/number_text.h"

namespace {

constexpr std::uint64_t MEGABYTE = 1 << 20;

// Microseconds. A build reads, hashes and writes each byte once.
struct Costs
{
    std::uint64_t perFile;
    std::uint64_t perMegabyte;
};
constexpr Costs ON_A_DISK = {3000, 20000};         // 50 MB a second
constexpr Costs OVER_THE_NETWORK = {15000, 40000}; // 25 MB a second
constexpr std::uint64_t PER_PACKED_MEGABYTE = 150000;
constexpr std::uint64_t PER_ROW =
    40; // read as the vendor has it, as the pages left it, and once more as it was written
constexpr std::uint64_t PER_WRITTEN_DATABASE = 1000000;

constexpr std::uint64_t SECONDS_OF_A_MINUTE = 60;
constexpr std::uint64_t SECONDS_OF_AN_HOUR = 3600;
constexpr std::uint64_t MOST_MINUTES = 90; // hours are said from here on

} // namespace

std::vector<TableReview> CountByTable(const std::vector<RowDifference>& rows)
{
    std::vector<TableReview> tables;
    for (const RowDifference& row : rows) {
        if (tables.empty() || !(tables.back().strTable == row.strTable)) {
            tables.push_back({row.strTable});
        }
        TableReview& table = tables.back();
        ++(row.change == RowChange::Added     ? table.added
           : row.change == RowChange::Removed ? table.removed
                                              : table.changed);
    }
    return tables;
}

std::uint64_t EstimateSeconds(const BuildReview& review)
{
    const Costs& costs = review.bOverNetwork ? OVER_THE_NETWORK : ON_A_DISK;
    const std::uint64_t copying =
        review.filesInAll * costs.perFile + review.bytesNeeded / MEGABYTE * costs.perMegabyte;
    std::uint64_t microseconds = copying + review.bytesPacked / MEGABYTE * PER_PACKED_MEGABYTE;
    if (review.bReplaces) { // the old one is read as a whole, and was about as large
        microseconds += copying;
    }
    for (const DatabaseReview& database : review.databases) {
        microseconds += database.bWritten ? PER_WRITTEN_DATABASE + database.rowsToWrite * PER_ROW : 0;
    }
    return microseconds / 1000000;
}

CString DurationInWords(std::uint64_t seconds)
{
    const auto about = [](std::uint64_t count, const wchar_t* one, const wchar_t* many) {
        return CString(L"about ") +
               (count == 1 ? CString(one) : NumberText(static_cast<long long>(count)) + L" " + many);
    };
    if (seconds < SECONDS_OF_A_MINUTE) {
        return L"less than a minute";
    }
    const std::uint64_t minutes = (seconds + SECONDS_OF_A_MINUTE / 2) / SECONDS_OF_A_MINUTE;
    if (minutes < MOST_MINUTES) {
        return about(minutes, L"a minute", L"minutes");
    }
    return about((seconds + SECONDS_OF_AN_HOUR / 2) / SECONDS_OF_AN_HOUR, L"an hour", L"hours");
}
